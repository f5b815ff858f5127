// CNamedEvent: the named auto-reset event over a named semaphore.
#include "run/external/NamedEvent.h"

#include "foundation/XbException.h"
#include "run/external/ExternalObjectName.h"

namespace TestSuite {

namespace NamedSemaphore = ZoPlatform::NamedSemaphore;

CNamedEvent::CNamedEvent(const CString& sName, bool bOpenOnly) : m_sName(sName), m_bOwner(!bOpenOnly) {
  const std::string name = MakeExternalObjectName(sName);
  const bool ok = bOpenOnly ? m_semaphore.Open(name) : m_semaphore.Create(name, 0);
  if (!ok) XB_THROW("TestSuite::Run::CNamedEvent::CNamedEvent");
}

CNamedEvent::~CNamedEvent() {
  m_semaphore.Close();
  if (m_bOwner) NamedSemaphore::Remove(MakeExternalObjectName(m_sName));
}

// The semaphore is used as a binary one: it is only raised from zero. Only
// one thread of one process sets a given event, so nobody else can raise
// it between the look and the post.
void CNamedEvent::Set() {
  if (m_semaphore.GetValue() == 0) m_semaphore.Post();
}

CNamedEvent::EWaitResult CNamedEvent::Wait(unsigned int milliseconds) {
  switch (m_semaphore.Wait(milliseconds)) {
    case NamedSemaphore::EWaitResult::eSignalled: return eWaitSignalled;
    case NamedSemaphore::EWaitResult::eTimedOut: return eWaitTimedOut;
    default: return eWaitFailed;
  }
}

}  // namespace TestSuite
