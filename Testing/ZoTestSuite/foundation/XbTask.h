// XbTask: one piece of work for the thread pool, which can be waited for.
//
// A task runs once. An exception that leaves its function is caught and
// kept, so that a task never ends the thread that runs it.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>

#include "XbWaitLimit.h"

class XbTask {
 public:
  explicit XbTask(std::function<void()> function);
  XbTask(const XbTask&) = delete;
  XbTask& operator=(const XbTask&) = delete;

  // Runs the function, unless it has run before, and wakes the waiters.
  void Run();
  // Waits until the task has run, at most `milliseconds` (XB_INFINITE: no
  // limit, 0: only looks). True if it has run.
  bool Wait(unsigned int milliseconds = XB_INFINITE) const;
  bool IsDone() const;
  // The exception the function ended with; null if it returned normally or
  // has not run.
  std::exception_ptr GetError() const;

 private:
  std::function<void()> m_fnWork;
  mutable std::mutex m_mutex;
  mutable std::condition_variable m_done;
  bool m_bStarted = false;
  bool m_bDone = false;
  std::exception_ptr m_error;
};
