// XbThreadPool: a fixed set of worker threads that run tasks by priority.
//
// A task with a higher priority runs before one with a lower priority;
// tasks of one priority run in the order they were added. Once shut down,
// the pool refuses new tasks; the tasks already queued still run before
// the workers end. ShutdownAndWait must not be called from one of the
// pool's own tasks, which would wait for itself.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

#include "XbTask.h"
#include "XbWaitLimit.h"

class XbThreadPool {
 public:
  // One worker per logical processor.
  XbThreadPool();
  // `threadCount` workers, at least one. Throws XbException if no worker
  // thread can be started.
  explicit XbThreadPool(unsigned int threadCount);
  // Shuts down and waits without a limit.
  ~XbThreadPool();
  XbThreadPool(const XbThreadPool&) = delete;
  XbThreadPool& operator=(const XbThreadPool&) = delete;

  // Queues `task`. False, and the task is not queued, after shut-down.
  bool AddTask(const std::shared_ptr<XbTask>& task, int priority);
  // Queues a new task for `function`; null after shut-down.
  std::shared_ptr<XbTask> AddTask(std::function<void()> function, int priority);

  // Stops taking tasks and waits until all workers have ended, at most
  // `milliseconds` (XB_INFINITE: no limit). True if they have ended; after
  // false, a later call may wait again.
  bool ShutdownAndWait(unsigned int milliseconds);
  bool IsShutDown() const;
  // The number of workers the pool started with.
  unsigned int GetThreadCount() const { return m_uiThreadCount; }

 private:
  struct SEntry {
    int iPriority;
    std::uint64_t uiSequence;  // orders tasks of one priority
    std::shared_ptr<XbTask> task;
  };
  struct SRunsLater {
    bool operator()(const SEntry& a, const SEntry& b) const {
      return a.iPriority != b.iPriority ? a.iPriority < b.iPriority : a.uiSequence > b.uiSequence;
    }
  };

  void startWorkers(unsigned int threadCount);
  void work();

  mutable std::mutex m_mutex;
  std::condition_variable m_taskAdded;
  std::condition_variable m_workerEnded;
  std::priority_queue<SEntry, std::vector<SEntry>, SRunsLater> m_queue;
  std::uint64_t m_uiNextSequence = 0;
  bool m_bShutDown = false;
  unsigned int m_uiLiveWorkers = 0;
  unsigned int m_uiThreadCount = 0;
  std::vector<std::thread> m_workers;
};
