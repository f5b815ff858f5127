// CFailureLimit: failed rows counted against the limit, and the callbacks
// through which the limit cancels a run.
#include "run/FailureLimit.h"

#include <gtest/gtest.h>

using namespace TestSuite;

TEST(FailureLimit, WithoutALimitNothingIsEverReached) {
  CFailureLimit limit(0);
  for (int i = 0; i < 100; ++i) limit.Count(Run::eCaseError);
  EXPECT_FALSE(limit.IsReached());
}

TEST(FailureLimit, FailuresAndErrorsCountOkAndCancelledDoNot) {
  CFailureLimit limit(2);
  limit.Count(Run::eCaseOk);
  limit.Count(Run::eCaseCanceled);
  limit.Count(Run::eCaseDifferent);
  EXPECT_FALSE(limit.IsReached());
  limit.Count(Run::eCaseTimeout);
  EXPECT_TRUE(limit.IsReached());
  EXPECT_EQ(limit.GetLimit(), 2u);
}

TEST(FailureLimit, TheWrappedCallbacksCountFinishedRowsAndCancelAtTheLimit) {
  bool userCancel = false;
  std::vector<Run::ECaseResult> seen;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&userCancel] { return userCancel; };
  callbacks.fnCaseFinished = [&seen](Run::ECaseResult result) { seen.push_back(result); };
  CFailureLimit limit(2);
  const Run::SCallbacks wrapped = limit.Wrap(callbacks);

  wrapped.fnCaseFinished(Run::eCaseError);
  wrapped.fnCaseFinished(Run::eCaseOk);
  EXPECT_FALSE(wrapped.fnIsCanceled());
  wrapped.fnCaseFinished(Run::eCaseUnknown);
  EXPECT_TRUE(wrapped.fnIsCanceled());
  EXPECT_EQ(seen, (std::vector<Run::ECaseResult>{Run::eCaseError, Run::eCaseOk, Run::eCaseUnknown}));
}

TEST(FailureLimit, TheUsersCancelStillCancels) {
  bool userCancel = false;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&userCancel] { return userCancel; };
  CFailureLimit limit(5);
  const Run::SCallbacks wrapped = limit.Wrap(callbacks);
  EXPECT_FALSE(wrapped.fnIsCanceled());
  userCancel = true;
  EXPECT_TRUE(wrapped.fnIsCanceled());
  EXPECT_FALSE(limit.IsReached());
}
