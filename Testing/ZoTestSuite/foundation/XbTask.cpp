// XbTask: one piece of work for the thread pool.
#include "XbTask.h"

#include <utility>

#include "platform/Futex.h"

XbTask::XbTask(std::function<void()> function) : m_fnWork(std::move(function)) {}

void XbTask::run(const CRunnerWord& runner, std::uint32_t ticket) {
  {
    std::lock_guard lock(m_mutex);
    if (m_bStarted) return;
    m_bStarted = true;
  }
  std::exception_ptr error;
  try {
    if (m_fnWork) m_fnWork();
  } catch (...) { error = std::current_exception(); }
  // Notified under the lock: a waiter may destroy the task as soon as it
  // sees it done.
  std::lock_guard lock(m_mutex);
  m_error = error;
  m_runner = runner;
  m_uiRunnerTicket = ticket;
  m_bDone = true;
  m_done.notify_all();
}

bool XbTask::isLetGo() const { return !m_runner || m_runner->load(std::memory_order_acquire) != m_uiRunnerTicket; }

// Not limited: the runner lets go right after the run, without waiting for
// anything. It clears the word before it wakes, so no wake-up is missed.
void XbTask::awaitLetGo(std::atomic<std::uint32_t>* runner, std::uint32_t ticket) const {
  if (!runner) return;
  while (runner->load(std::memory_order_acquire) == ticket) ZoPlatform::Futex::Wait(*runner, ticket);
}

bool XbTask::Wait(unsigned int milliseconds) const {
  if (milliseconds == 0) return IsDone();
  std::unique_lock lock(m_mutex);
  if (!XbWaitFor(m_done, lock, milliseconds, [this] { return m_bDone; })) return false;
  // The waiter holds the task, and the task the word.
  std::atomic<std::uint32_t>* const runner = m_runner.get();
  const std::uint32_t ticket = m_uiRunnerTicket;
  lock.unlock();
  awaitLetGo(runner, ticket);
  return true;
}

bool XbTask::IsDone() const {
  std::lock_guard lock(m_mutex);
  return m_bDone && isLetGo();
}

std::exception_ptr XbTask::GetError() const {
  std::lock_guard lock(m_mutex);
  return m_error;
}
