// XbTask: one piece of work for the thread pool, which can be waited for.
//
// A task runs once. An exception that leaves its function is caught and
// kept, so that a task never ends the thread that runs it. A task that a
// pool's worker runs counts as done for its waiters only once the worker
// has let go of its reference: a waiter that drops its handle next frees
// the task there and then, inside whatever heap measurement it runs in.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

#include "XbWaitLimit.h"

class XbTask {
 public:
  explicit XbTask(std::function<void()> function);
  XbTask(const XbTask&) = delete;
  XbTask& operator=(const XbTask&) = delete;

  // Runs the function, unless it has run before, and wakes the waiters.
  void Run() { run(nullptr, 0); }
  // Waits until the task has run, at most `milliseconds` (XB_INFINITE: no
  // limit, 0: only looks). True if it has run.
  bool Wait(unsigned int milliseconds = XB_INFINITE) const;
  bool IsDone() const;
  // The exception the function ended with; null if it returned normally or
  // has not run.
  std::exception_ptr GetError() const;

 private:
  friend class XbThreadPool;

  // The word of a pool's worker that holds its ticket while the worker
  // holds a task; the worker clears it once it has let go. Shared, so that
  // a task can be waited for after its pool is gone.
  using CRunnerWord = std::shared_ptr<std::atomic<std::uint32_t>>;

  // Runs as Run does; `runner`, if given, holds `ticket` until the runner
  // has let go of this task, and the waiters wait for that too.
  void run(const CRunnerWord& runner, std::uint32_t ticket);
  // Under the lock.
  bool isLetGo() const;
  // With the lock released, the task done.
  void awaitLetGo(std::atomic<std::uint32_t>* runner, std::uint32_t ticket) const;

  std::function<void()> m_fnWork;
  mutable std::mutex m_mutex;
  mutable std::condition_variable m_done;
  bool m_bStarted = false;
  bool m_bDone = false;
  std::exception_ptr m_error;
  CRunnerWord m_runner;  // set when done, if a pool's worker ran the task
  std::uint32_t m_uiRunnerTicket = 0;
};
