// CFailureLimit: counting failed cases and cancelling the run at the limit.
#include "run/FailureLimit.h"

#include "run/RetryPolicy.h"

namespace TestSuite {

void CFailureLimit::Count(Run::ECaseResult result) {
  if (IsFailedResult(result)) m_uiFailures.fetch_add(1);
}

bool CFailureLimit::IsReached() const { return m_uiLimit != 0 && m_uiFailures.load() >= m_uiLimit; }

Run::SCallbacks CFailureLimit::Wrap(const Run::SCallbacks& callbacks) {
  Run::SCallbacks wrapped;
  wrapped.fnIsCanceled = [this, &callbacks] { return IsReached() || callbacks.fnIsCanceled(); };
  wrapped.fnCaseFinished = [this, &callbacks](Run::ECaseResult result) {
    Count(result);
    callbacks.fnCaseFinished(result);
  };
  return wrapped;
}

}  // namespace TestSuite
