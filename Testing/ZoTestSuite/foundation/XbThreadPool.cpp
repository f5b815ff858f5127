// XbThreadPool: worker threads that run tasks by priority.
#include "XbThreadPool.h"

#include <algorithm>
#include <system_error>

#include "XbException.h"
#include "platform/Thread.h"

XbThreadPool::XbThreadPool() : XbThreadPool(std::max(1u, std::thread::hardware_concurrency())) {}

XbThreadPool::XbThreadPool(unsigned int threadCount) { startWorkers(std::max(1u, threadCount)); }

XbThreadPool::~XbThreadPool() { ShutdownAndWait(XB_INFINITE); }

void XbThreadPool::startWorkers(unsigned int threadCount) {
  for (unsigned int i = 0; i < threadCount; ++i) {
    try {
      std::lock_guard lock(m_mutex);
      m_workers.emplace_back([this] { work(); });
      ++m_uiLiveWorkers;
    } catch (const std::system_error&) {
      break;  // fewer workers than asked for is still a pool
    }
  }
  if (m_workers.empty()) XB_THROW("XbThreadPool::XbThreadPool");
  m_uiThreadCount = static_cast<unsigned int>(m_workers.size());
}

bool XbThreadPool::AddTask(const std::shared_ptr<XbTask>& task, int priority) {
  if (!task) return false;
  {
    std::lock_guard lock(m_mutex);
    if (m_bShutDown) return false;
    m_queue.push(SEntry{priority, m_uiNextSequence++, task});
  }
  m_taskAdded.notify_one();
  return true;
}

std::shared_ptr<XbTask> XbThreadPool::AddTask(std::function<void()> function, int priority) {
  auto task = std::make_shared<XbTask>(std::move(function));
  return AddTask(task, priority) ? task : nullptr;
}

bool XbThreadPool::ShutdownAndWait(unsigned int milliseconds) {
  std::unique_lock lock(m_mutex);
  m_bShutDown = true;
  m_taskAdded.notify_all();
  if (!XbWaitFor(m_workerEnded, lock, milliseconds, [this] { return m_uiLiveWorkers == 0; })) return false;
  std::vector<std::thread> ended;
  ended.swap(m_workers);
  lock.unlock();
  for (std::thread& worker : ended) worker.join();  // each has already left work()
  return true;
}

bool XbThreadPool::IsShutDown() const {
  std::lock_guard lock(m_mutex);
  return m_bShutDown;
}

void XbThreadPool::work() {
  ZoPlatform::Thread::SetCurrentName("XbThreadPool");
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_taskAdded.wait(lock, [this] { return m_bShutDown || !m_queue.empty(); });
    if (m_queue.empty()) break;  // shut down and nothing left to do
    std::shared_ptr<XbTask> task = m_queue.top().task;
    m_queue.pop();
    lock.unlock();
    task->Run();
    task.reset();
    lock.lock();
  }
  --m_uiLiveWorkers;
  m_workerEnded.notify_all();
}
