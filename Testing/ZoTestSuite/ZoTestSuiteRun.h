// Execution: the result of every case, the statistics of a run, the
// callbacks of a run, and the entry functions that run cases.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>

#include "ZoTestSuiteTree.h"
#include "foundation/XbDateTime.h"

namespace TestSuite {

struct SSetup;
class CEnvironment;

namespace Run {

// The numbers are part of the report format.
enum ECaseResult : std::int32_t {
  eCaseOk = 0,
  eCaseError = 1,
  eCaseException = 2,
  eCaseNoInput = 3,
  eCaseDifferent = 4,
  eCaseUnknown = 5,  // every row starts here
  eCaseNotFound = 6,
  eCaseCanceled = 7,
  eCaseTimeout = 8,
};
inline constexpr unsigned int sc_uiResultCount = 9;

// Cancel query (called from every thread of a run; must be quick) and the
// per-case notification (called on the thread that called Run::Run).
struct SCallbacks {
  std::function<bool()> fnIsCanceled = [] { return false; };
  std::function<void(ECaseResult)> fnCaseFinished = [](ECaseResult) {};
};

}  // namespace Run

// One row of the result table.
struct SCaseResult {
  unsigned int uiClassIndex = 0;
  unsigned int uiCaseIndex = 0;
  unsigned int uiRepetition = 0;
  Run::ECaseResult eResult = Run::eCaseUnknown;
  std::int64_t iMemoryDelta = 0;
  std::uint64_t uiAllocCount = 0;
  std::uint64_t uiMemoryPeak = 0;
  double dTime = 0.0;  // seconds of RunUnitTest alone
  CString sOutput;
  bool bWarning = false;
  std::int32_t iThreadIndex = -1;
  std::int32_t iProcessIndex = -1;
  CString sStartTime;           // "Y-m-d H:i:s.v", only with bRecordStartTime
  unsigned int uiAttempts = 1;  // above 1 only when a failed case ran again
};

// The tally of a group of rows.
struct SCaseCounters {
  unsigned int uiResults[Run::sc_uiResultCount] = {};
  unsigned int uiTotal = 0;
  unsigned int uiWarnings = 0;
};

struct SRunStatistics {
  SCaseCounters total;
  XbArray<SCaseCounters> classes;  // indexed like the run's classes
  unsigned int uiClassesRun = 0;
  unsigned int uiClassesOk = 0;
  unsigned int uiClassesClean = 0;
  double dTimeMin = std::numeric_limits<double>::infinity();
  double dTimeMax = 0.0;
  double dTimeSum = 0.0;
  double dTimeTotal = 0.0;
  std::uint64_t uiMemoryMin = ~std::uint64_t{0};
  std::uint64_t uiMemoryMax = 0;
  std::uint64_t uiMemorySum = 0;
  XbDateTime dateBegin;
  XbDateTime dateEnd;
  unsigned int uiFlaky = 0;         // rows that passed only on a later attempt
  unsigned int uiFailureLimit = 0;  // the limit of failed cases that cut the run short; 0 if none did
};

namespace Run {

struct SResult {
  XbArray<SCaseResult> cases;  // in the order ScheduleCases built them
  SRunStatistics statistics;
};

// A whole test run: collect, execute, summarise, report.
SResult Run(const SSetup& setup, CEnvironment& env);
// The child side of external execution: serves cases until told to stop.
void RunExternalExecution(const SSetup& setup, CEnvironment& env);
// Asks every case of `classes` to renew its reference data.
void Recreate(CEnvironment& env, const XbArray<SUnitTest>& classes, const SCallbacks& callbacks);

}  // namespace Run
}  // namespace TestSuite
