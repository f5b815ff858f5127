// XbEvent: an auto-reset event within one process.
#include "XbEvent.h"

XbEvent::XbEvent(bool bInitiallySet) : m_bSet(bInitiallySet) {}

void XbEvent::Set() {
  // Notified under the lock: a waiter that wakes may destroy the event at
  // once, and must not find Set still at work on it.
  std::lock_guard lock(m_mutex);
  m_bSet = true;
  m_signalled.notify_one();
}

void XbEvent::Reset() {
  std::lock_guard lock(m_mutex);
  m_bSet = false;
}

bool XbEvent::Wait(unsigned int milliseconds) {
  std::unique_lock lock(m_mutex);
  if (!XbWaitFor(m_signalled, lock, milliseconds, [this] { return m_bSet; })) return false;
  m_bSet = false;
  return true;
}
