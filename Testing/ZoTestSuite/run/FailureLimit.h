// CFailureLimit: the failed and erroneous cases of a run counted against
// the number after which the rest of the run is cancelled, the way a
// cancel by the user cancels it.
#pragma once

#include <atomic>

#include "ZoTestSuite.h"

namespace TestSuite {

class CFailureLimit {
 public:
  // 0: no limit; the count is then never reached.
  explicit CFailureLimit(unsigned int limit) : m_uiLimit(limit) {}

  // Counts a finished row that is neither OK nor cancelled. Any thread.
  void Count(Run::ECaseResult result);
  // Any thread; quick.
  bool IsReached() const;
  unsigned int GetLimit() const { return m_uiLimit; }

  // The run's callbacks over `callbacks`: a row counts when it is
  // reported finished, and the run counts as cancelled once the limit is
  // reached or when `callbacks` says so. Counting at that point means the
  // case that reaches the limit is the last one printed. The result refers
  // to this object and to `callbacks`, which must outlive it.
  Run::SCallbacks Wrap(const Run::SCallbacks& callbacks);

 private:
  const unsigned int m_uiLimit;
  std::atomic<unsigned int> m_uiFailures{0};
};

}  // namespace TestSuite
