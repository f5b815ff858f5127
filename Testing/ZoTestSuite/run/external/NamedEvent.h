// CNamedEvent: an auto-reset event under a name, shared between a parent
// and its child processes.
//
// One side creates the event and removes its name again when it goes; the
// other side attaches to it by name. Set signals the event; one Wait that
// finds it signalled returns and resets it, so each Set releases at most
// one waiter, and setting a signalled event changes nothing. A Set made
// before anyone waits stays in the event.
#pragma once

#include "foundation/CString.h"
#include "foundation/platform/NamedSemaphore.h"

namespace TestSuite {

class CNamedEvent {
 public:
  enum EWaitResult : int { eWaitFailed = 0, eWaitSignalled = 1, eWaitTimedOut = 2 };

  // Without `bOpenOnly` creates the event, not signalled, under a name of
  // its own (an event of that name must not exist); with it, attaches to
  // the existing one. Throws XbException if that fails.
  CNamedEvent(const CString& sName, bool bOpenOnly);
  // The creating side removes the name; a side that attached only lets go.
  ~CNamedEvent();
  CNamedEvent(const CNamedEvent&) = delete;
  CNamedEvent& operator=(const CNamedEvent&) = delete;

  void Set();
  // Waits at most `milliseconds` for the event and resets it.
  EWaitResult Wait(unsigned int milliseconds);

  const CString& GetName() const { return m_sName; }

 private:
  CString m_sName;
  bool m_bOwner;
  ZoPlatform::NamedSemaphore::CSemaphore m_semaphore;
};

}  // namespace TestSuite
