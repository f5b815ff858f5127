// XbTask: one piece of work for the thread pool.
#include "XbTask.h"

#include <utility>

XbTask::XbTask(std::function<void()> function) : m_fnWork(std::move(function)) {}

void XbTask::Run() {
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
  m_bDone = true;
  m_done.notify_all();
}

bool XbTask::Wait(unsigned int milliseconds) const {
  std::unique_lock lock(m_mutex);
  return XbWaitFor(m_done, lock, milliseconds, [this] { return m_bDone; });
}

bool XbTask::IsDone() const {
  std::lock_guard lock(m_mutex);
  return m_bDone;
}

std::exception_ptr XbTask::GetError() const {
  std::lock_guard lock(m_mutex);
  return m_error;
}
