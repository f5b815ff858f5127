// Run::Run: prepares the process, collects the classes, schedules and
// executes every row, condenses the table into statistics, prints the
// summary and hands over to the report output.
#include "run/RunDriver.h"

#include "foundation/ZoAssertDialog.h"
#include "foundation/ZoDebugSerializationGeneric.h"
#include "foundation/ZoFileSystem.h"
#include "run/CaseExecution.h"
#include "run/CaseOrder.h"
#include "run/FailureLimit.h"
#include "run/ProgressOutput.h"
#include "run/RetryPolicy.h"
#include "run/RunClock.h"
#include "run/RunReports.h"
#include "run/WorkerPhase.h"
#include "run/external/ChildProcess.h"
#include "services/COut.h"

namespace TestSuite {

namespace {

bool rowIsParallel(const SRunOptions& options, const SUnitTest::SCase& testCase) {
  if (!options.bParallel) return false;
  const XbVariant* parallel = testCase.Params.Find(CString(L"Parallel"));
  if (parallel && parallel->IsBool()) return parallel->GetBool();
  return true;
}

void countRow(const SCaseResult& row, SRunStatistics& s) {
  SCaseCounters& counters = s.classes[row.uiClassIndex];
  const auto result = static_cast<unsigned int>(row.eResult);
  ++s.total.uiTotal;
  ++counters.uiTotal;
  if (result < Run::sc_uiResultCount) {
    ++counters.uiResults[result];
    ++s.total.uiResults[result];
  }
  if (row.bWarning) {
    ++counters.uiWarnings;
    ++s.total.uiWarnings;
  }
  if (IsFlaky(row)) ++s.uiFlaky;
  s.dTimeSum += row.dTime;
  if (row.dTime < s.dTimeMin) s.dTimeMin = row.dTime;
  if (row.dTime > s.dTimeMax) s.dTimeMax = row.dTime;
  s.uiMemorySum += row.uiMemoryPeak;
  if (row.uiMemoryPeak < s.uiMemoryMin) s.uiMemoryMin = row.uiMemoryPeak;
  if (row.uiMemoryPeak > s.uiMemoryMax) s.uiMemoryMax = row.uiMemoryPeak;
}

bool hasCanceledRow(const XbArray<SCaseResult>& cases) {
  for (const SCaseResult& row : cases)
    if (row.eResult == Run::eCaseCanceled) return true;
  return false;
}

}  // namespace

void PrepareProcess(const SSetup& setup, CEnvironment& env) {
  env.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
  if (setup.run.bAssertDialog) ZoAssertDialog::Enable();
  else ZoAssertDialog::Disable();
  env.SetExecutableDirectoryAsWorkingDirectory();
}

void ComputeStatistics(const XbArray<SCaseResult>& cases, unsigned int classCount, SRunStatistics& s) {
  s.classes.RemoveAll();
  s.classes.SetCount(classCount);
  s.total.uiTotal = 0;
  for (const SCaseResult& row : cases)
    if (row.eResult != Run::eCaseCanceled) countRow(row, s);
  for (const SCaseCounters& counters : s.classes) {
    if (counters.uiTotal == 0) continue;
    ++s.uiClassesRun;
    if (counters.uiResults[Run::eCaseOk] == counters.uiTotal) {
      ++s.uiClassesOk;
      if (counters.uiWarnings == 0) ++s.uiClassesClean;
    }
  }
}

void RunSequentialPhase(const SRunContext& run, const RowList& rows) {
  const SRunOptions& options = run.options;
  SCaseContext context(run);
  bool canceled = false;
  for (unsigned int i = 0; i < rows.GetCount(); ++i) {
    SCaseResult& row = *rows[i];
    if (!canceled && run.callbacks.fnIsCanceled()) {
      COut::Write(L"\tAusführung abgebrochen.\n").Color(ZoColorRGBA::c_GRAY);
      canceled = true;
    }
    if (canceled) {
      row.eResult = Run::eCaseCanceled;
    } else {
      const SUnitTest& unitTest = run.classes[row.uiClassIndex];
      const SUnitTest::SCase& testCase = unitTest.Cases[row.uiCaseIndex];
      if (options.bRecordStartTime) row.sStartTime = XbDateTime::Now().ToString(L"Y-m-d H:i:s.v", true);
      PrintCaseHead(options, unitTest, testCase, rows, i);
      ExecuteRow(run, unitTest, testCase, context, row);
      PrintCaseResult(row, options.bShowTimes, options.bShowThreadInfo);
    }
    run.callbacks.fnCaseFinished(row.eResult);
  }
}

void ScheduleCases(const SRunContext& run, Run::SResult& result) {
  const XbArray<SUnitTest>& classes = run.classes;
  result.cases.RemoveAll();
  XbArray<unsigned char> parallelFlags;  // not bool: rows are flags one by one
  for (unsigned int c = 0; c < classes.GetCount(); ++c) {
    for (unsigned int k = 0; k < classes[c].Cases.GetCount(); ++k) {
      const bool parallel = rowIsParallel(run.options, classes[c].Cases[k]);
      for (unsigned int r = 0; r < run.options.uiRepeatCount; ++r) {
        SCaseResult row;
        row.uiClassIndex = c;
        row.uiCaseIndex = k;
        row.uiRepetition = r;
        result.cases.Add(std::move(row));
        parallelFlags.Add(parallel ? 1 : 0);
      }
    }
  }
  RowList parallelCases, sequentialCases;
  for (unsigned int i = 0; i < result.cases.GetCount(); ++i)
    (parallelFlags[i] != 0 ? parallelCases : sequentialCases).Add(&result.cases[i]);
  if (run.setup.oShuffleSeed) {
    ShuffleRows(parallelCases, *run.setup.oShuffleSeed);
    ShuffleRows(sequentialCases, *run.setup.oShuffleSeed);
  }
  if (!parallelCases.IsEmpty()) RunWorkerPhase(run, parallelCases);
  if (!sequentialCases.IsEmpty()) RunSequentialPhase(run, sequentialCases);
}

Run::SResult RunTests(const SSetup& setup, CEnvironment& env, IRunClock& clock, IChildStarter& childStarter) {
  PrepareProcess(setup, env);
  const XbArray<SUnitTest> classes =
      !setup.unitTests.IsEmpty() ? setup.unitTests : CollectUnitTests(setup.sDataDir, setup.collectOptions);
  const std::int64_t start = clock.Now();
  const XbDateTime date = XbDateTime::Now();
  ZoDebugSerializationGeneric::SetDefaultOutputDirectory(ZoFileSystem::GetDirectory(ZoFileSystem::eDebugOutputRoot) +
                                                         date.ToString(L"Y-m-d H.i.s", true) + L"/");

  if (setup.oShuffleSeed)
    COut::Write(L"Zufällige Reihenfolge, Startwert %I64u\n", *setup.oShuffleSeed).Color(ZoColorRGBA::c_GRAY);

  Run::SResult result;
  result.statistics.dateBegin = date;
  CFailureLimit failureLimit(setup.uiMaxFailures);
  const Run::SCallbacks callbacks = failureLimit.Wrap(setup.callbacks);
  ScheduleCases(SRunContext{setup, classes, setup.run, callbacks, date, clock, childStarter}, result);
  ComputeStatistics(result.cases, classes.GetCount(), result.statistics);
  if (failureLimit.IsReached() && hasCanceledRow(result.cases))
    result.statistics.uiFailureLimit = failureLimit.GetLimit();
  result.statistics.dTimeTotal = clock.SecondsSince(start);
  result.statistics.dateEnd = XbDateTime::Now();

  PrintSummary(classes, setup.run.bShowTimes, result.statistics);
  if (!setup.run.bAssertDialog) ZoAssertDialog::Enable();
  env.RestoreWorkingDirectory();
  WriteRunReports(setup, classes, result);
  return result;
}

Run::SResult Run::Run(const SSetup& setup, CEnvironment& env) {
  return RunTests(setup, env, SystemRunClock(), DefaultChildStarter());
}

}  // namespace TestSuite
