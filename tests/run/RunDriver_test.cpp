#include "run/RunDriver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "HeapInterception.h"
#include "RunTestClasses.h"
#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "run/external/ChildProcess.h"
#include "run_FakeClock.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

namespace {

// A run over ready classes with times off, so that the text is stable.
Run::SResult runClasses(SSetup& setup) {
  setup.run.bShowTimes = false;
  CEnvironment env;
  CFakeClock clock;  // the supervisor's looks cost no real time
  return RunTests(setup, env, clock, DefaultChildStarter());
}

}  // namespace

TEST(RunSetup, DefaultRecord) {
  const SSetup setup;
  EXPECT_TRUE(setup.run.bReportMemLeak);
  EXPECT_TRUE(setup.run.bAssertDialog);
  EXPECT_TRUE(setup.run.bShowTimes);
  EXPECT_TRUE(setup.bHtmlHideWarnings);
  EXPECT_EQ(setup.run.uiRepeatCount, 1u);
  EXPECT_EQ(setup.run.uiTimeOutSec, 0xFFFFFFFFu);
  EXPECT_EQ(setup.iMessageReportMax, 3);
  EXPECT_FALSE(setup.run.bTrackHeap || setup.run.bDumpLeaks || setup.run.bExternal || setup.run.bIsolated ||
               setup.run.bShowThreadInfo || setup.run.bDebugOption0 || setup.run.bDebugOption1 ||
               setup.run.bDebugOption2 || setup.run.bParallel || setup.run.bRecordStartTime);
  EXPECT_FALSE(setup.bOpenHtmlReport || setup.bHtmlClassesOnly || setup.bFrontEndFlagA || setup.bFrontEndFlagB ||
               setup.bFrontEndFlagC || setup.bFrontEndFlagD);
  EXPECT_TRUE(setup.collectOptions.bDropDisabled);
  EXPECT_EQ(setup.collectOptions.uiCaseLimit, 0xFFFFFFFFu);
  EXPECT_FALSE(setup.oXmlReport || setup.oHtmlReport || setup.oLogFile || setup.oDuplicateAction ||
               setup.oDiffFilterMode || setup.run.oObserveID || setup.run.oObserveSize);
  EXPECT_FALSE(setup.callbacks.fnIsCanceled());
}

TEST(RunDriver, NoTestClassAtAll) {
  TempDirectory data;
  SSetup setup;
  setup.sDataDir = data.Path();
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  EXPECT_TRUE(result.cases.IsEmpty());
  EXPECT_TRUE(std::isinf(result.statistics.dTimeMin));
  EXPECT_EQ(result.statistics.uiMemoryMin, ~std::uint64_t{0});
  EXPECT_EQ(recorder.Text(),
            CString(L"\nZusammenfassung\n\tAusgeführt:\t0 Tests, 0 Klassen\n\tErfolgreich:\t0 Tests, 0 Klassen\n"));
}

TEST(RunDriver, RepeatCountGivesOneRowPerRepetition) {
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2"}));
  setup.run.uiRepeatCount = 3;
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  ASSERT_EQ(result.cases.GetCount(), 6u);
  for (unsigned int i = 0; i < 6; ++i) {
    EXPECT_EQ(result.cases[i].uiCaseIndex, i / 3);
    EXPECT_EQ(result.cases[i].uiRepetition, i % 3);
    EXPECT_EQ(result.cases[i].iThreadIndex, -1);
  }
  EXPECT_EQ(result.statistics.total.uiTotal, 6u);
  EXPECT_EQ(result.statistics.total.uiResults[Run::eCaseOk], 3u);
  EXPECT_EQ(result.statistics.total.uiResults[Run::eCaseError], 3u);
  EXPECT_NE(recorder.Text().Find(L"\t(3/3) r2... FEHLER"), -1);
}

TEST(RunDriver, AllCasesCancelled) {
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2"}));
  setup.callbacks.fnIsCanceled = [] { return true; };
  int finished = 0;
  setup.callbacks.fnCaseFinished = [&finished](Run::ECaseResult result) {
    EXPECT_EQ(result, Run::eCaseCanceled);
    ++finished;
  };
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  EXPECT_EQ(result.cases.GetCount(), 2u);
  EXPECT_EQ(finished, 2);
  EXPECT_EQ(result.statistics.total.uiTotal, 0u);
  EXPECT_EQ(result.statistics.uiClassesRun, 0u);
  EXPECT_EQ(recorder.Messages()[0].sText, CString(L"\tAusführung abgebrochen.\n"));
  EXPECT_EQ(recorder.Messages()[0].color, ZoColorRGBA::c_GRAY);
}

TEST(RunDriver, ClassWithCancelledAndPassedRowsIsSuccessful) {
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2"}));
  int asked = 0;
  setup.callbacks.fnIsCanceled = [&asked] { return ++asked > 1; };
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  EXPECT_EQ(result.cases[0].eResult, Run::eCaseOk);
  EXPECT_EQ(result.cases[1].eResult, Run::eCaseCanceled);
  EXPECT_EQ(result.statistics.uiClassesRun, 1u);
  EXPECT_EQ(result.statistics.uiClassesOk, 1u);
}

TEST(RunDriver, ClassWithOnlyAWarningIsOkButNotClean) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"leak100", L"clean"}));
  setup.run.bTrackHeap = true;
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  EXPECT_EQ(result.statistics.total.uiWarnings, 1u);
  EXPECT_EQ(result.statistics.uiClassesOk, 1u);
  EXPECT_EQ(result.statistics.uiClassesClean, 0u);
  EXPECT_GE(result.statistics.uiMemoryMax, 500u);
}

TEST(RunDriver, ThreadCountWithoutParallelUsesNoWorkers) {
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2"}));
  setup.run.uiThreadCount = 8;
  COutRecorder recorder;
  for (const SCaseResult& row : runClasses(setup).cases) EXPECT_EQ(row.iThreadIndex, -1);
}

TEST(RunDriver, ParallelWithZeroThreadsRunsOneWorker) {
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2", L"r3"}));
  setup.run.bParallel = true;
  setup.run.uiThreadCount = 0;
  COutRecorder recorder;
  const Run::SResult result = runClasses(setup);
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.iThreadIndex, 0);
    EXPECT_NE(row.eResult, Run::eCaseUnknown);
  }
}

TEST(RunDriver, TheRunsTimeIsTakenOnItsClock) {
  SSetup setup;
  setup.run.bShowTimes = false;
  setup.run.bParallel = true;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1", L"r2"}));
  CEnvironment env;
  CFakeClock clock;
  COutRecorder recorder;
  const Run::SResult result = RunTests(setup, env, clock, DefaultChildStarter());
  ASSERT_GE(clock.SleepCount(), 1u);
  EXPECT_DOUBLE_EQ(result.statistics.dTimeTotal, clock.SleepCount() * 0.25) << "the supervisor's sleeps alone";
  for (const SCaseResult& row : result.cases) EXPECT_EQ(row.dTime, 0.0) << "a case's time was not taken on the clock";
}

TEST(RunDriver, RestoresTheWorkingDirectory) {
  const CString before = ZoFileSystem::GetCurrentDirectoryW();
  SSetup setup;
  setup.unitTests.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"}));
  COutRecorder recorder;
  runClasses(setup);
  EXPECT_EQ(ZoFileSystem::GetCurrentDirectoryW(), before);
}

TEST(ComputeStatistics, CancelledRowsCountNowhere) {
  XbArray<SCaseResult> cases;
  SCaseResult ok, canceled;
  ok.eResult = Run::eCaseOk;
  ok.dTime = 1.5;
  ok.uiMemoryPeak = 10;
  canceled.eResult = Run::eCaseCanceled;
  canceled.dTime = 100.0;
  cases.Add(ok);
  cases.Add(canceled);
  SRunStatistics statistics;
  ComputeStatistics(cases, 1, statistics);
  EXPECT_EQ(statistics.total.uiTotal, 1u);
  EXPECT_EQ(statistics.dTimeMax, 1.5);
  EXPECT_EQ(statistics.dTimeSum, 1.5);
  EXPECT_EQ(statistics.uiMemoryMin, 10u);
  EXPECT_EQ(statistics.uiClassesClean, 1u);
}
