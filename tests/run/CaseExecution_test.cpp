#include "run/CaseExecution.h"

#include <gtest/gtest.h>

#include "HeapInterception.h"
#include "RunTestClasses.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

namespace {

// Runs one case in process and gives its row.
SCaseResult runOne(const SUnitTest& unitTest, unsigned int caseIndex, const SRunOptions& options = {}) {
  SCaseContext context(XbDateTime::Now().GetValue());
  return RunTestClasses::ExecuteOneCase(SSetup(), unitTest, caseIndex, options, context);
}

SRunOptions tracking(bool dumpLeaks = false) {
  SRunOptions options;
  options.bTrackHeap = true;
  options.bDumpLeaks = dumpLeaks;
  return options;
}

}  // namespace

TEST(CaseExecution, MapsEveryTestResult) {
  const SUnitTest unitTest =
      RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r0", L"r1", L"r2", L"r3", L"r4", L"r5", L"r6"});
  const Run::ECaseResult expected[] = {Run::eCaseNoInput,   Run::eCaseOk,      Run::eCaseError,  Run::eCaseException,
                                       Run::eCaseDifferent, Run::eCaseUnknown, Run::eCaseUnknown};
  for (unsigned int i = 0; i < 7; ++i) {
    const SCaseResult row = runOne(unitTest, i);
    EXPECT_EQ(row.eResult, expected[i]) << "r" << i;
    EXPECT_EQ(row.sOutput, FormatString(L"INFO:  subtest %u\n", i));
  }
}

TEST(CaseExecution, ExceptionsOfAnyTypeGiveCaseExceptionAndKeepTheOutput) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szThrows, {L"throws", L"throwsInt"});
  for (unsigned int i = 0; i < 2; ++i) {
    const SCaseResult row = runOne(unitTest, i);
    EXPECT_EQ(row.eResult, Run::eCaseException);
    EXPECT_EQ(row.sOutput, CString(L"ERROR: before the throw\n"));
    EXPECT_EQ(row.dTime, 0.0);
  }
}

TEST(CaseExecution, UnknownClassOrCaseGivesCaseNotFound) {
  EXPECT_EQ(runOne(RunTestClasses::MakeClass(L"NoSuchClassAnywhere", {L"x"}), 0).eResult, Run::eCaseNotFound);
  const SCaseResult gone = runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"gone"}), 0);
  EXPECT_EQ(gone.eResult, Run::eCaseNotFound);
  EXPECT_EQ(gone.dTime, 0.0);
}

TEST(CaseExecution, TwoSubtestsOfOneNameBothRunTheFirst) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szDuplicate, {L"same", L"same"});
  EXPECT_EQ(runOne(unitTest, 0).eResult, Run::eCaseOk);
  EXPECT_EQ(runOne(unitTest, 1).eResult, Run::eCaseOk);
}

TEST(CaseExecution, DebugOptionsAreSetInTheOrderOneTwoZero) {
  RunTestClasses::DebugLog().clear();
  SRunOptions options;
  options.bDebugOption0 = true;
  options.bDebugOption1 = false;
  options.bDebugOption2 = true;
  EXPECT_EQ(runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szDebug, {L"only"}), 0, options).eResult, Run::eCaseOk);
  const std::vector<std::string> expected = {"Supports(1)", "Set(1,false)", "Supports(2)", "Supports(0)",
                                             "Set(0,true)"};
  EXPECT_EQ(RunTestClasses::DebugLog(), expected);
}

TEST(CaseExecution, NameLongerThan1023CharactersIsNotRun) {
  SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"});
  unitTest.Cases[0].Name = CString(L'a', 1024);
  const SCaseResult row = runOne(unitTest, 0);
  EXPECT_EQ(row.eResult, Run::eCaseUnknown);
  EXPECT_TRUE(row.sOutput.IsEmpty());
  unitTest.Cases[0].Name = CString(L'a', 1023);
  EXPECT_EQ(runOne(unitTest, 0).eResult, Run::eCaseNotFound);  // fits, and is run
}

TEST(CaseExecution, LeakBecomesAWarning) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"leak100", L"clean"});
  const SCaseResult leak = runOne(unitTest, 0, tracking());
  EXPECT_EQ(leak.iMemoryDelta, 100);
  EXPECT_TRUE(leak.bWarning);
  EXPECT_GE(leak.uiAllocCount, 1u);
  EXPECT_GE(leak.uiMemoryPeak, 100u);
  const SCaseResult clean = runOne(unitTest, 1, tracking());
  EXPECT_EQ(clean.iMemoryDelta, 0);
  EXPECT_FALSE(clean.bWarning);
  EXPECT_GE(clean.uiMemoryPeak, 500u);
}

TEST(CaseExecution, ReportMemLeakFalseKeepsTheDeltaButNoWarning) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"leak100"});
  unitTest.Cases[0].Params.SetAt(L"ReportMemLeak", XbVariant(false));
  const SCaseResult row = runOne(unitTest, 0, tracking());
  EXPECT_EQ(row.iMemoryDelta, 100);
  EXPECT_FALSE(row.bWarning);
}

TEST(CaseExecution, LeakInDestructorIsSeenLeakInWarmUpIsNot) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EQ(
      runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"destructorLeak"}), 0, tracking()).iMemoryDelta,
      64);
  const SCaseResult warmUp =
      runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szWarmUpLeak, {L"only"}), 0, tracking());
  EXPECT_EQ(warmUp.iMemoryDelta, 0);
  EXPECT_FALSE(warmUp.bWarning);
}

TEST(CaseExecution, WithoutTrackingTheMemoryFieldsAreZero) {
  const SCaseResult row = runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"leak100"}), 0);
  EXPECT_EQ(row.iMemoryDelta, 0);
  EXPECT_EQ(row.uiAllocCount, 0u);
  EXPECT_EQ(row.uiMemoryPeak, 0u);
  EXPECT_FALSE(row.bWarning);
}

TEST(CaseExecution, DumpLeaksAppendsInfoLines) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const SCaseResult row =
      runOne(RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"leak100"}), 0, tracking(true));
  EXPECT_EQ(row.sOutput.Left(19), CString(L"\t\tINFO:  Dump()...\n"));
  EXPECT_NE(row.sOutput.Find(L"\t\tINFO:  CurrentAlloc 100 Bytes\n"), -1);
  EXPECT_NE(row.sOutput.Find(L"\t\tINFO:  Active Allocations:\n"), -1);
  EXPECT_NE(row.sOutput.Find(L", Size 100 Bytes.\n"), -1);
}

TEST(CaseExecution, OutputIsCutAtTheLimitAndTheDumpWithIt) {
  const SUnitTest unitTest =
      RunTestClasses::MakeClass(RunTestClasses::sc_szMemory, {L"output:1048575", L"output:1048600"});
  const SCaseResult exact = runOne(unitTest, 0, tracking(true));
  EXPECT_EQ(exact.sOutput.GetLength(), 1048575);
  EXPECT_EQ(exact.sOutput.Find(L"Dump"), -1);
  const SCaseResult over = runOne(unitTest, 1);
  EXPECT_EQ(over.sOutput.GetLength(), 1048575);
}

TEST(CaseExecution, TimeOutParameterHasNoEffectInProcess) {
  SUnitTest unitTest = RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"});
  unitTest.Cases[0].Params.SetAt(L"TimeOutSec", XbVariant(0u));
  SRunOptions options;
  options.uiTimeOutSec = 0;
  EXPECT_EQ(runOne(unitTest, 0, options).eResult, Run::eCaseOk);
}

TEST(ResolveCaseOptions, ParametersOverrideTheirFieldsExactly) {
  SUnitTest::SCase testCase;
  testCase.Params.SetAt(L"ReportMemLeak", XbVariant(false));
  testCase.Params.SetAt(L"TimeOutSec", XbVariant(7u));
  testCase.Params.SetAt(L"External", XbVariant(true));
  testCase.Params.SetAt(L"Isolated", XbVariant(true));
  testCase.Params.SetAt(L"Parallel", XbVariant(true));
  testCase.Params.SetAt(L"external", XbVariant(false));  // other keys are ignored
  const SRunOptions resolved = ResolveCaseOptions(SRunOptions(), testCase);
  EXPECT_FALSE(resolved.bReportMemLeak);
  EXPECT_EQ(resolved.uiTimeOutSec, 7u);
  EXPECT_TRUE(resolved.bExternal);
  EXPECT_TRUE(resolved.bIsolated);
  EXPECT_TRUE(resolved.bParallel);
  EXPECT_FALSE(resolved.bTrackHeap);
}
