// The retry policy: repeated attempts of one row and the marks they leave on it.
#include "run/RetryPolicy.h"

#include "run/CaseExecution.h"

namespace TestSuite {

bool IsFailedResult(Run::ECaseResult result) { return result != Run::eCaseOk && result != Run::eCaseCanceled; }

void RunAttempts(unsigned int retries, const std::function<bool()>& isCanceled,
                 const std::function<void(SCaseResult&)>& attempt, SCaseResult& row) {
  const SCaseResult initial = row;
  attempt(row);
  unsigned int attempts = 1;
  while (IsFailedResult(row.eResult) && attempts <= retries && !isCanceled()) {
    row = initial;
    attempt(row);
    ++attempts;
  }
  row.uiAttempts = attempts;
  if (attempts < 2) return;
  // The info tag makes the line an info line in the reports, while the
  // warning flag keeps the case visible in the summary and the reports.
  if (row.eResult == Run::eCaseOk) {
    row.bWarning = true;
    row.sOutput.AppendFormat(L"INFO:  Erst im %d. Versuch erfolgreich.\n", attempts);
  } else if (IsFailedResult(row.eResult)) {
    row.sOutput.AppendFormat(L"INFO:  In allen %d Versuchen fehlgeschlagen.\n", attempts);
  }
}

void ExecuteRow(const SRunContext& run, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                SCaseContext& context, SCaseResult& row) {
  RunAttempts(
      run.setup.uiRetryCount, run.callbacks.fnIsCanceled,
      [&](SCaseResult& target) { ExecuteCase(run, unitTest, testCase, context, target); }, row);
}

}  // namespace TestSuite
