// The retry policy of a run: a case that failed or broke runs again, in the
// same mode, until it passes or its attempts are used up; a case that
// passed only on a later attempt is flaky and stays visible as a warning.
#pragma once

#include <functional>

#include "ZoTestSuite.h"
#include "run/RunContext.h"

namespace TestSuite {

struct SCaseContext;

// Whether a result counts as failed: every failure and error does, OK and
// cancelled do not. Such a row earns another attempt and counts against
// the failure limit.
bool IsFailedResult(Run::ECaseResult result);

// Runs `attempt` on the row, and again, on a row as it was before the first
// attempt, while the result is failed, `retries` more times at most and
// not after the run was cancelled. The row keeps the last attempt and its
// count in `uiAttempts`. A row that passed on a later attempt gets the
// warning flag and an info line naming that attempt; one that failed every
// attempt of several, an info line saying so.
void RunAttempts(unsigned int retries, const std::function<bool()>& isCanceled,
                 const std::function<void(SCaseResult&)>& attempt, SCaseResult& row);

// ExecuteCase with the run's retries: what both phases of a run execute.
void ExecuteRow(const SRunContext& run, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                SCaseContext& context, SCaseResult& row);

// Whether the row passed only on a later attempt.
inline bool IsFlaky(const SCaseResult& row) { return row.eResult == Run::eCaseOk && row.uiAttempts > 1; }

}  // namespace TestSuite
