// XbEvent: an auto-reset event within one process.
//
// Set signals the event; one Wait that finds it signalled returns true and
// resets it, so each Set releases at most one waiter. Setting a signalled
// event changes nothing.
#pragma once

#include <condition_variable>
#include <mutex>

#include "XbWaitLimit.h"

class XbEvent {
 public:
  explicit XbEvent(bool bInitiallySet = false);
  XbEvent(const XbEvent&) = delete;
  XbEvent& operator=(const XbEvent&) = delete;

  void Set();
  void Reset();
  // Waits until the event is signalled, at most `milliseconds` (XB_INFINITE:
  // no limit, 0: only looks), and resets it. True if it was signalled.
  bool Wait(unsigned int milliseconds = XB_INFINITE);

 private:
  std::mutex m_mutex;
  std::condition_variable m_signalled;
  bool m_bSet;
};
