// XbThreadPool: worker threads that run tasks by priority.
#include "XbThreadPool.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/Futex.h"
#include "platform/Thread.h"

namespace {

bool startPlatformThread(ZoPlatform::Thread::CJoinableThread& thread, void (*function)(void*), void* argument) {
  return thread.Start(function, argument);
}

template <typename TEntry>
std::vector<TEntry> roomForOneEntry() {
  std::vector<TEntry> entries;
  entries.reserve(1);
  return entries;
}

}  // namespace

XbThreadPool::XbThreadPool() : XbThreadPool(std::max(1u, std::thread::hardware_concurrency())) {}

XbThreadPool::XbThreadPool(unsigned int threadCount) : XbThreadPool(threadCount, &startPlatformThread) {}

XbThreadPool::XbThreadPool(unsigned int threadCount, FnStartThread startThread)
    : m_queue(SRunsLater(), roomForOneEntry<SEntry>()),
      m_uiThreadCount(std::max(1u, threadCount)),
      m_fnStartThread(startThread),
      m_workers(std::make_unique<ZoPlatform::Thread::CJoinableThread[]>(m_uiThreadCount)),
      m_runnerWords(new std::atomic<std::uint32_t>[m_uiThreadCount]()) {}

XbThreadPool::~XbThreadPool() { ShutdownAndWait(XB_INFINITE); }

void XbThreadPool::runWorker(void* pool) { static_cast<XbThreadPool*>(pool)->work(); }

// Under the lock. A pool whose threads the system refused tries again with
// the next task.
bool XbThreadPool::startWorkersOnce() {
  if (m_uiStartedWorkers > 0) return true;
  for (unsigned int i = 0; i < m_uiThreadCount; ++i) {
    if (!m_fnStartThread(m_workers[i], &XbThreadPool::runWorker, this)) break;  // fewer workers is still a pool
    ++m_uiStartedWorkers;
    ++m_uiLiveWorkers;
  }
  m_uiUnjoinedWorkers = m_uiStartedWorkers;
  return m_uiStartedWorkers > 0;
}

bool XbThreadPool::AddTask(const std::shared_ptr<XbTask>& task, int priority) {
  if (!task) return false;
  {
    std::lock_guard lock(m_mutex);
    if (m_bShutDown || !startWorkersOnce()) return false;
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
  // One caller joins; each worker has already left work().
  const unsigned int unjoined = std::exchange(m_uiUnjoinedWorkers, 0u);
  lock.unlock();
  for (unsigned int i = 0; i < unjoined; ++i) m_workers[i].Join();
  return true;
}

// The word holds a new ticket (never 0, the word's value while the worker
// holds no task) from before the run until the reference has gone.
void XbThreadPool::runAndLetGo(std::shared_ptr<XbTask> task, const XbTask::CRunnerWord& word, std::uint32_t& ticket) {
  if (++ticket == 0) ticket = 1;
  word->store(ticket, std::memory_order_relaxed);
  task->run(word, ticket);
  task.reset();
  word->store(0, std::memory_order_release);
  ZoPlatform::Futex::WakeAll(*word);
}

unsigned int XbThreadPool::GetThreadCount() const {
  std::lock_guard lock(m_mutex);
  return m_uiStartedWorkers > 0 ? m_uiStartedWorkers : m_uiThreadCount;
}

bool XbThreadPool::IsShutDown() const {
  std::lock_guard lock(m_mutex);
  return m_bShutDown;
}

void XbThreadPool::work() {
  ZoPlatform::Thread::SetCurrentName("XbThreadPool");
  std::unique_lock lock(m_mutex);
  // An alias of the words, which takes no memory.
  const XbTask::CRunnerWord word(m_runnerWords, &m_runnerWords[m_uiWordsGiven++]);
  std::uint32_t ticket = 0;
  for (;;) {
    m_taskAdded.wait(lock, [this] { return m_bShutDown || !m_queue.empty(); });
    if (m_queue.empty()) break;  // shut down and nothing left to do
    std::shared_ptr<XbTask> task = std::move(m_queue.top().task);
    m_queue.pop();
    lock.unlock();
    runAndLetGo(std::move(task), word, ticket);
    lock.lock();
  }
  --m_uiLiveWorkers;
  m_workerEnded.notify_all();
}
