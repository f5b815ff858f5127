// The retry policy: attempts of one row until it passes, is cancelled or
// has used its retries, and the marks a retried row carries.
#include "run/RetryPolicy.h"

#include <gtest/gtest.h>

#include <vector>

using namespace TestSuite;

namespace {

// An attempt that gives the next of `results`, with one output line naming
// the attempt, and records what the row held when it began.
struct SScriptedAttempts {
  explicit SScriptedAttempts(std::vector<Run::ECaseResult> scripted) : results(std::move(scripted)) {}

  std::vector<Run::ECaseResult> results;
  std::vector<CString> outputsSeen;
  unsigned int uiCalls = 0;

  std::function<void(SCaseResult&)> Attempt() {
    return [this](SCaseResult& row) {
      outputsSeen.push_back(row.sOutput);
      row.eResult = results[uiCalls];
      row.sOutput += FormatString(L"ERROR: attempt %d\n", uiCalls + 1);
      ++uiCalls;
    };
  }
};

const std::function<bool()> c_never = [] { return false; };

}  // namespace

TEST(RetryPolicy, FailuresAndErrorsAreFailedOkAndCancelledAreNot) {
  EXPECT_FALSE(IsFailedResult(Run::eCaseOk));
  EXPECT_FALSE(IsFailedResult(Run::eCaseCanceled));
  for (Run::ECaseResult result : {Run::eCaseError, Run::eCaseException, Run::eCaseNoInput, Run::eCaseDifferent,
                                  Run::eCaseUnknown, Run::eCaseNotFound, Run::eCaseTimeout})
    EXPECT_TRUE(IsFailedResult(result)) << result;
}

TEST(RetryPolicy, APassOnTheSecondAttemptIsOkWithAWarningAndAnInfoLine) {
  SScriptedAttempts attempts({Run::eCaseError, Run::eCaseOk});
  SCaseResult row;
  row.iThreadIndex = 3;
  RunAttempts(2, c_never, attempts.Attempt(), row);
  EXPECT_EQ(attempts.uiCalls, 2u);
  EXPECT_EQ(row.eResult, Run::eCaseOk);
  EXPECT_EQ(row.uiAttempts, 2u);
  EXPECT_TRUE(row.bWarning);
  EXPECT_TRUE(IsFlaky(row));
  EXPECT_EQ(row.iThreadIndex, 3);
  EXPECT_EQ(row.sOutput, CString(L"ERROR: attempt 2\nINFO:  Erst im 2. Versuch erfolgreich.\n"));
}

TEST(RetryPolicy, EachAttemptStartsFromTheRowAsItWasBeforeTheFirst) {
  SScriptedAttempts attempts({Run::eCaseError, Run::eCaseError, Run::eCaseOk});
  SCaseResult row;
  row.sOutput = L"before";
  RunAttempts(5, c_never, attempts.Attempt(), row);
  EXPECT_EQ(attempts.outputsSeen, (std::vector<CString>{L"before", L"before", L"before"}));
}

TEST(RetryPolicy, ACaseThatAlwaysFailsKeepsItsLastAttempt) {
  SScriptedAttempts attempts({Run::eCaseError, Run::eCaseException, Run::eCaseUnknown});
  SCaseResult row;
  RunAttempts(2, c_never, attempts.Attempt(), row);
  EXPECT_EQ(attempts.uiCalls, 3u);
  EXPECT_EQ(row.eResult, Run::eCaseUnknown);
  EXPECT_EQ(row.uiAttempts, 3u);
  EXPECT_FALSE(row.bWarning);
  EXPECT_FALSE(IsFlaky(row));
  EXPECT_EQ(row.sOutput, CString(L"ERROR: attempt 3\nINFO:  In allen 3 Versuchen fehlgeschlagen.\n"));
}

TEST(RetryPolicy, WithoutRetriesACaseRunsOnceAndIsLeftUnmarked) {
  SScriptedAttempts attempts({Run::eCaseError});
  SCaseResult row;
  RunAttempts(0, c_never, attempts.Attempt(), row);
  EXPECT_EQ(attempts.uiCalls, 1u);
  EXPECT_EQ(row.uiAttempts, 1u);
  EXPECT_EQ(row.sOutput, CString(L"ERROR: attempt 1\n"));
}

TEST(RetryPolicy, APassingOrCancelledCaseRunsOnce) {
  for (Run::ECaseResult result : {Run::eCaseOk, Run::eCaseCanceled}) {
    SScriptedAttempts attempts({result});
    SCaseResult row;
    RunAttempts(3, c_never, attempts.Attempt(), row);
    EXPECT_EQ(attempts.uiCalls, 1u);
    EXPECT_EQ(row.eResult, result);
    EXPECT_FALSE(row.bWarning);
  }
}

TEST(RetryPolicy, NoRetryAfterTheRunWasCancelled) {
  SScriptedAttempts attempts({Run::eCaseError, Run::eCaseOk});
  SCaseResult row;
  RunAttempts(
      3, [] { return true; }, attempts.Attempt(), row);
  EXPECT_EQ(attempts.uiCalls, 1u);
  EXPECT_EQ(row.eResult, Run::eCaseError);
}
