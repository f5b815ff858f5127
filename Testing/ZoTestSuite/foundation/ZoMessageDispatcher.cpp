// ZoMessageDispatcher: a thread that handles posted messages in order.
#include "ZoMessageDispatcher.h"

#include <system_error>
#include <utility>

#include "platform/Thread.h"

ZoMessageDispatcher::ZoMessageDispatcher() = default;

ZoMessageDispatcher::~ZoMessageDispatcher() { ShutdownAndWait(XB_INFINITE); }

bool ZoMessageDispatcher::Start() {
  std::lock_guard lock(m_mutex);
  if (m_eState == EState::eRunning) return true;
  if (m_eState == EState::eStopping) return false;
  if (m_thread.joinable()) m_thread.join();  // ended in an earlier shut-down
  try {
    m_thread = std::thread([this] { dispatch(); });
  } catch (const std::system_error&) { return false; }
  m_eState = EState::eRunning;
  return true;
}

bool ZoMessageDispatcher::IsRunning() const {
  std::lock_guard lock(m_mutex);
  return m_eState != EState::eStopped;
}

bool ZoMessageDispatcher::Post(std::function<void()> message) {
  {
    std::lock_guard lock(m_mutex);
    if (m_eState != EState::eRunning) return false;
    m_queue.push_back(std::move(message));
  }
  m_posted.notify_one();
  return true;
}

bool ZoMessageDispatcher::ShutdownAndWait(unsigned int milliseconds) {
  std::unique_lock lock(m_mutex);
  if (m_eState == EState::eRunning) m_eState = EState::eStopping;
  m_posted.notify_one();
  if (!XbWaitFor(m_ended, lock, milliseconds, [this] { return m_eState == EState::eStopped; })) return false;
  std::thread ended = std::move(m_thread);
  lock.unlock();
  if (ended.joinable()) ended.join();  // it has already left dispatch()
  return true;
}

void ZoMessageDispatcher::dispatch() {
  ZoPlatform::Thread::SetCurrentName("ZoMessageDispatcher");
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_posted.wait(lock, [this] { return m_eState == EState::eStopping || !m_queue.empty(); });
    if (m_queue.empty()) break;  // shutting down and nothing left
    std::function<void()> message = std::move(m_queue.front());
    m_queue.pop_front();
    lock.unlock();
    try {
      if (message) message();
    } catch (...) {
      // A message's failure is its own; the dispatcher goes on.
    }
    message = nullptr;
    lock.lock();
  }
  m_eState = EState::eStopped;
  m_ended.notify_all();
}
