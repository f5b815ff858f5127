// XbThreadPool: a fixed set of worker threads that run tasks by priority.
//
// The workers start with the first task: a pool that is made but never used
// (a child process that warms up for a case that may not need it) costs no
// threads. Starting them allocates nothing through malloc, and the queue
// has its first entry's room from the start, so a task added first inside a
// heap measurement costs what any later one costs.
//
// A task with a higher priority runs before one with a lower priority;
// tasks of one priority run in the order they were added. Once shut down,
// the pool refuses new tasks; the tasks already queued still run before
// the workers end. ShutdownAndWait must not be called from one of the
// pool's own tasks, which would wait for itself.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <queue>
#include <vector>

#include "XbTask.h"
#include "XbWaitLimit.h"
#include "platform/Thread.h"

class XbThreadPool {
 public:
  // Starts a worker thread; false if the system gives none.
  using FnStartThread = bool (*)(ZoPlatform::Thread::CJoinableThread& thread, void (*function)(void*), void* argument);

  // One worker per logical processor.
  XbThreadPool();
  // `threadCount` workers, at least one.
  explicit XbThreadPool(unsigned int threadCount);
  // With the workers started by `startThread` (tests refuse threads).
  XbThreadPool(unsigned int threadCount, FnStartThread startThread);
  // Shuts down and waits without a limit.
  ~XbThreadPool();
  XbThreadPool(const XbThreadPool&) = delete;
  XbThreadPool& operator=(const XbThreadPool&) = delete;

  // Queues `task`. False, and the task is not queued, after shut-down or
  // when not one worker thread can be started.
  bool AddTask(const std::shared_ptr<XbTask>& task, int priority);
  // Queues a new task for `function`; null where the other one is false.
  std::shared_ptr<XbTask> AddTask(std::function<void()> function, int priority);

  // Stops taking tasks and waits until all workers have ended, at most
  // `milliseconds` (XB_INFINITE: no limit). True if they have ended; after
  // false, a later call may wait again.
  bool ShutdownAndWait(unsigned int milliseconds);
  bool IsShutDown() const;
  // The number of workers: those that started with the first task (fewer
  // than asked for if the system refused some), before it those to come.
  unsigned int GetThreadCount() const;

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

  static void runWorker(void* pool);
  bool startWorkersOnce();
  void work();
  void runAndLetGo(std::shared_ptr<XbTask> task, const XbTask::CRunnerWord& word, std::uint32_t& ticket);

  mutable std::mutex m_mutex;
  std::condition_variable m_taskAdded;
  std::condition_variable m_workerEnded;
  std::priority_queue<SEntry, std::vector<SEntry>, SRunsLater> m_queue;
  std::uint64_t m_uiNextSequence = 0;
  bool m_bShutDown = false;
  unsigned int m_uiLiveWorkers = 0;
  unsigned int m_uiStartedWorkers = 0;
  unsigned int m_uiUnjoinedWorkers = 0;
  const unsigned int m_uiThreadCount;
  const FnStartThread m_fnStartThread;
  std::unique_ptr<ZoPlatform::Thread::CJoinableThread[]> m_workers;
  // One word per worker, which holds the ticket of the task that the worker
  // holds (see XbTask); made with the pool, so that running takes no memory.
  std::shared_ptr<std::atomic<std::uint32_t>[]> m_runnerWords;
  unsigned int m_uiWordsGiven = 0;
};
