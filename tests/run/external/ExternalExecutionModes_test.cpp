// The three modes of execution with real children of the private front end,
// whose test library crashes, hangs, floods and leaks on purpose; and
// cancellation in every mode.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cwchar>
#include <memory>
#include <thread>

#include "FakeChildStarter.h"
#include "IsolationFrontEnd.h"
#include "RunTestClasses.h"
#include "foundation/platform/NamedSemaphore.h"
#include "foundation/platform/Process.h"
#include "foundation/platform/SharedMemory.h"
#include "foundation/platform/System.h"
#include "heap_TrackerTestKit.h"
#include "run/RunClock.h"
#include "run/RunDriver.h"
#include "run/external/ChildProcess.h"
#include "run/external/ExternalExecution.h"
#include "run/external/ExternalObjectName.h"
#include "run_FakeClock.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using IsolationTestClasses::CIsolationContext;
using IsolationTestClasses::IsolationFrontEnd;
using RunTestClasses::CFakeChildStarter;
using RunTestClasses::SFakeChildren;

namespace {

// Runs one case on the context's clock and with its child starter.
SCaseResult execute(const SUnitTest& unitTest, unsigned int caseIndex, const SRunOptions& options,
                    SCaseContext& context, const Run::SCallbacks& callbacks = {}) {
  SSetup setup;
  setup.sDataDir = L"/data/tree/";
  return RunTestClasses::ExecuteOneCase(setup, unitTest, caseIndex, options, context, callbacks);
}

SRunOptions externalOptions(bool isolated = false) {
  SRunOptions options;
  options.bExternal = true;
  options.bIsolated = isolated;
  return options;
}

CString pidLine() { return FormatString(L"INFO:  pid=%u\n", ZoPlatform::System::GetProcessId()); }

class ExternalModes : public IsolationTestClasses::CIsolationTest {};

}  // namespace

TEST_F(ExternalModes, ExternalModeKeepsOneChildForTheCasesOfAContext) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b", L"c"});
  CIsolationContext context;
  const SCaseResult first = execute(unitTest, 0, externalOptions(), context);
  EXPECT_EQ(first.eResult, Run::eCaseOk);
  EXPECT_GE(first.iProcessIndex, 0);
  EXPECT_EQ(first.iThreadIndex, -1);
  EXPECT_EQ(first.sOutput.Left(10), CString(L"INFO:  pid"));
  EXPECT_NE(first.sOutput, pidLine()) << "the case ran in this process";
  const CString memoryId = context.sMemoryId;
  for (unsigned int i : {1u, 2u}) {
    const SCaseResult row = execute(unitTest, i, externalOptions(), context);
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.iProcessIndex, first.iProcessIndex);
    EXPECT_EQ(row.sOutput, first.sOutput);
  }
  EXPECT_EQ(context.sMemoryId, memoryId);
  ASSERT_NE(context.child, nullptr);
  EXPECT_TRUE(context.child->IsAlive());
}

TEST_F(ExternalModes, ExitInTheChildGivesCaseUnknownAndTheNextCaseANewChild) {
  const SUnitTest crash = RunTestClasses::MakeClass(L"IsoCrash", {L"exit0"});
  const SUnitTest pass = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  SRunOptions options = externalOptions();
  options.bTrackHeap = true;
  CIsolationContext context;
  CFakeClock clock;  // without a limit the case waits for as long as the child lives
  context.pClock = &clock;
  const SCaseResult crashed = execute(crash, 0, options, context);
  EXPECT_EQ(crashed.eResult, Run::eCaseUnknown);
  EXPECT_TRUE(crashed.sOutput.IsEmpty());
  EXPECT_EQ(crashed.iMemoryDelta, 0);
  EXPECT_EQ(crashed.uiAllocCount, 0u);
  EXPECT_EQ(crashed.uiMemoryPeak, 0u);
  EXPECT_EQ(crashed.dTime, 0.0);
  EXPECT_EQ(context.child, nullptr);
  const SCaseResult next = execute(pass, 0, options, context);
  EXPECT_EQ(next.eResult, Run::eCaseOk);
  EXPECT_GT(next.iProcessIndex, crashed.iProcessIndex);
}

TEST_F(ExternalModes, ATimeOutGivesTheNextCaseANewChildNumberedOneHigher) {
  SUnitTest hang = RunTestClasses::MakeClass(L"IsoHang", {L"endlessLoop"});
  hang.Cases[0].Params.SetAt(L"TimeOutSec", XbVariant(1u));
  const SUnitTest pass = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  CIsolationContext context;
  CFakeClock clock;
  context.pClock = &clock;
  const SCaseResult timedOut = execute(hang, 0, externalOptions(), context);
  EXPECT_EQ(timedOut.eResult, Run::eCaseTimeout);
  EXPECT_EQ(clock.Waits().size(), 1u) << "a limit of one second is over at the first look";
  context.pClock = &SystemRunClock();
  const SCaseResult next = execute(pass, 0, externalOptions(), context);
  EXPECT_EQ(next.eResult, Run::eCaseOk);
  EXPECT_EQ(next.iProcessIndex, timedOut.iProcessIndex + 1);
}

TEST_F(ExternalModes, IsolatedModeGivesEveryCaseAFreshChildBlockAndEvents) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  CIsolationContext context;
  const SCaseResult first = execute(unitTest, 0, externalOptions(true), context);
  const CString ids[] = {context.sMemoryId, context.sRequestEventId, context.sResponseEventId};
  const SCaseResult second = execute(unitTest, 1, externalOptions(true), context);
  EXPECT_EQ(first.eResult, Run::eCaseOk);
  EXPECT_EQ(second.eResult, Run::eCaseOk);
  EXPECT_GT(second.iProcessIndex, first.iProcessIndex);
  EXPECT_NE(second.sOutput, first.sOutput) << "both cases ran in one process";
  EXPECT_NE(context.sMemoryId, ids[0]);
  EXPECT_NE(context.sRequestEventId, ids[1]);
  EXPECT_NE(context.sResponseEventId, ids[2]);
  EXPECT_FALSE(ZoPlatform::SharedMemory::Exists(MakeExternalObjectName(ids[0])));
  EXPECT_FALSE(ZoPlatform::NamedSemaphore::Exists(MakeExternalObjectName(ids[1])));
  EXPECT_FALSE(ZoPlatform::NamedSemaphore::Exists(MakeExternalObjectName(ids[2])));
}

// The last case's child is killed when the next case takes the context and
// reaped once the next child has started: by the time the next case runs,
// no process of the last one is left, not even a zombie.
TEST_F(ExternalModes, IsolatedModeLeavesNothingOfTheLastChildOnceTheNextCaseRuns) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  CIsolationContext context;
  const SCaseResult first = execute(unitTest, 0, externalOptions(true), context);
  unsigned int firstPid = 0;
  ASSERT_EQ(std::swscanf(first.sOutput.GetString(), L"INFO:  pid=%u", &firstPid), 1) << first.sOutput.ToUtf8();
  EXPECT_TRUE(ZoPlatform::Process::Exists(firstPid)) << "the child waits for another request until it is let go";
  const SCaseResult second = execute(unitTest, 1, externalOptions(true), context);
  EXPECT_EQ(second.eResult, Run::eCaseOk);
  EXPECT_FALSE(ZoPlatform::Process::Exists(firstPid));
}

TEST_F(ExternalModes, CaseParametersChooseTheModeOfTheirCase) {
  SUnitTest outside = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  outside.Cases[0].Params.SetAt(L"External", XbVariant(true));
  SUnitTest inside = RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"});
  inside.Cases[0].Params.SetAt(L"External", XbVariant(false));
  SUnitTest isolated = RunTestClasses::MakeClass(L"IsoPass", {L"b"});
  isolated.Cases[0].Params.SetAt(L"Isolated", XbVariant(true));
  CIsolationContext context;
  const SCaseResult external = execute(outside, 0, SRunOptions(), context);
  EXPECT_EQ(external.eResult, Run::eCaseOk);
  EXPECT_GE(external.iProcessIndex, 0);
  const SCaseResult internal = execute(inside, 0, externalOptions(), context);
  EXPECT_EQ(internal.eResult, Run::eCaseOk);
  EXPECT_EQ(internal.iProcessIndex, -1);
  EXPECT_EQ(internal.sOutput, CString(L"INFO:  subtest 1\n"));
  const SCaseResult fresh = execute(isolated, 0, externalOptions(), context);
  EXPECT_EQ(fresh.eResult, Run::eCaseOk);
  EXPECT_GT(fresh.iProcessIndex, external.iProcessIndex);
}

TEST_F(ExternalModes, TheChildKeepsTheFrontEndsAssertionDialog) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"assertDialog"});
  SRunOptions options = externalOptions();
  options.bAssertDialog = false;
  CIsolationContext context;
  EXPECT_EQ(execute(unitTest, 0, options, context).sOutput, CString(L"INFO:  assertDialog=1\n"));
}

TEST_F(ExternalModes, OutputBeyondTheLimitIsCutInTheChild) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoOutput", {L"limit", L"beyondLimit"});
  CIsolationContext context;
  for (unsigned int i : {0u, 1u}) {
    const SCaseResult row = execute(unitTest, i, externalOptions(), context);
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.sOutput, CString(L'x', 1048575));
  }
}

TEST_F(ExternalModes, ALeakInTheChildIsAWarning) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoLeak", {L"leak"});
  SRunOptions options = externalOptions();
  options.bTrackHeap = true;
  CIsolationContext context;
  const SCaseResult row = execute(unitTest, 0, options, context);
  EXPECT_EQ(row.eResult, Run::eCaseOk);
  EXPECT_EQ(row.iMemoryDelta, 100);
  EXPECT_TRUE(row.bWarning);
}

// The child ends by itself after five seconds without a request (the child
// side's own test); here it is ended from outside between two cases. It
// never saw the next case, which goes to a new child.
TEST_F(ExternalModes, AChildThatEndedBetweenTwoCasesIsReplacedForTheNextCase) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  CIsolationContext context;
  const SCaseResult first = execute(unitTest, 0, externalOptions(), context);
  ASSERT_EQ(first.eResult, Run::eCaseOk);
  ASSERT_NE(context.child, nullptr);
  context.child->process.Kill();
  const SCaseResult second = execute(unitTest, 1, externalOptions(), context);
  EXPECT_EQ(second.eResult, Run::eCaseOk);
  EXPECT_GT(second.iProcessIndex, first.iProcessIndex);
  EXPECT_NE(second.sOutput, first.sOutput) << "the dead child served the case";
}

// Children that a fake starter gives: none, one that is dead at once, one
// that lives and never answers.

TEST_F(ExternalModes, AChildThatCannotBeStartedCostsItsCaseOnlyAndSaysNothing) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  SFakeChildren fake(CFakeChildStarter::EKind::eFailsToStart);
  auto& [starter, clock, context] = fake;
  COutRecorder recorder;
  for (unsigned int i : {0u, 1u}) {
    const SCaseResult row = execute(unitTest, i, externalOptions(), context);
    EXPECT_EQ(row.eResult, Run::eCaseUnknown);
    EXPECT_EQ(row.iProcessIndex, -1);
  }
  EXPECT_EQ(starter.Starts(), 2u) << "the next case did not try again";
  EXPECT_TRUE(clock.Waits().empty()) << "a case without a child waited for an answer";
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

// A child that cannot live long enough to take a case is replaced twice,
// then the case is lost: no endless loop of children.
TEST_F(ExternalModes, ChildrenThatDieAtOnceAreReplacedTwiceAndThenCostTheCase) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  SFakeChildren fake(CFakeChildStarter::EKind::eDiesAtOnce);
  auto& [starter, clock, context] = fake;
  const SCaseResult first = execute(unitTest, 0, externalOptions(), context);
  EXPECT_EQ(first.eResult, Run::eCaseUnknown);
  EXPECT_GE(first.iProcessIndex, 0);
  EXPECT_TRUE(first.sOutput.IsEmpty());
  EXPECT_EQ(context.child, nullptr);
  EXPECT_EQ(starter.Starts(), 3u);
  EXPECT_EQ(starter.Gone(), 3u);
  EXPECT_EQ(clock.Waits(), (std::vector<unsigned int>{1000, 1000})) << "a dead child was not found at the first look";
  const SCaseResult second = execute(unitTest, 1, externalOptions(), context);
  EXPECT_EQ(second.eResult, Run::eCaseUnknown);
  EXPECT_EQ(second.iProcessIndex, first.iProcessIndex + 3);
  EXPECT_EQ(starter.Starts(), 6u);
}

TEST_F(ExternalModes, AChildThatNeverAnswersIsKilledWhenTheLimitIsOver) {
  SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  unitTest.Cases[0].Params.SetAt(L"TimeOutSec", XbVariant(3u));
  SFakeChildren fake(CFakeChildStarter::EKind::eNeverAnswers);
  auto& [starter, clock, context] = fake;
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries, false; };
  const SCaseResult row = execute(unitTest, 0, externalOptions(), context, callbacks);
  EXPECT_EQ(row.eResult, Run::eCaseTimeout);
  EXPECT_EQ(clock.Waits().size(), 3u) << "the limit is looked at once a second";
  EXPECT_EQ(queries, 2) << "the cancel query comes after the limit, in each look but the last";
  EXPECT_EQ(context.child, nullptr);
  EXPECT_EQ(starter.Gone(), 1u) << "the child was not killed";
}

TEST_F(ExternalModes, AChildThatNeverAnswersIsKilledByACancel) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  SFakeChildren fake(CFakeChildStarter::EKind::eNeverAnswers);
  auto& [starter, clock, context] = fake;
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries == 10; };
  const SCaseResult row = execute(unitTest, 0, externalOptions(), context, callbacks);
  EXPECT_EQ(row.eResult, Run::eCaseCanceled);
  EXPECT_EQ(clock.Waits().size(), 10u);
  EXPECT_EQ(context.child, nullptr);
  EXPECT_EQ(starter.Gone(), 1u);
}

// Cancellation in every mode: the query turns true after its first
// `answers` calls. Every row ends in the table, as run or as cancelled, and
// the statistics count exactly the rows that ran.

namespace {

struct SMode {
  const char* szName;
  bool bExternal;
  bool bIsolated;
  bool bParallel;
};

Run::SResult runCancelledAfter(const SMode& mode, int answers, int& finished) {
  SSetup setup;
  setup.sDataDir = L"/data/tree/";
  setup.run.bShowTimes = false;
  setup.run.bExternal = mode.bExternal;
  setup.run.bIsolated = mode.bIsolated;
  setup.run.bParallel = mode.bParallel;
  setup.run.uiThreadCount = 2;
  setup.run.uiRepeatCount = 2;
  // In process the cases must be this program's; in a child the library's.
  setup.unitTests.Add(mode.bExternal ? RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b", L"c"})
                                     : RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"}));
  auto calls = std::make_shared<std::atomic<int>>(0);
  setup.callbacks.fnIsCanceled = [calls, answers] { return calls->fetch_add(1) >= answers; };
  setup.callbacks.fnCaseFinished = [&finished](Run::ECaseResult) { ++finished; };
  CEnvironment env;
  return RunTests(setup, env, SystemRunClock(), IsolationTestClasses::IsolationStarter());
}

}  // namespace

TEST_F(ExternalModes, ACancelEndsEveryRowInEveryMode) {
  const SMode modes[] = {{"Internal", false, false, false},        {"Internal, workers", false, false, true},
                         {"External", true, false, false},         {"External, workers", true, false, true},
                         {"External Isolated", true, true, false}, {"External Isolated, workers", true, true, true}};
  COutRecorder recorder;
  for (const SMode& mode : modes) {
    int finished = 0;
    const Run::SResult result = runCancelledAfter(mode, 2, finished);
    unsigned int ran = 0, cancelled = 0;
    for (const SCaseResult& row : result.cases) {
      EXPECT_TRUE(row.eResult == Run::eCaseOk || row.eResult == Run::eCaseCanceled) << mode.szName;
      (row.eResult == Run::eCaseOk ? ran : cancelled) += 1;
      EXPECT_EQ(row.iProcessIndex >= 0, mode.bExternal && row.eResult == Run::eCaseOk) << mode.szName;
    }
    EXPECT_EQ(ran + cancelled, result.cases.GetCount()) << mode.szName;
    EXPECT_LE(ran, 2u) << mode.szName;
    EXPECT_EQ(result.statistics.total.uiTotal, ran) << mode.szName;
    EXPECT_EQ(result.statistics.total.uiResults[Run::eCaseOk], ran) << mode.szName;
    EXPECT_EQ(result.statistics.total.uiResults[Run::eCaseCanceled], 0u) << mode.szName;
    if (!mode.bParallel) {
      EXPECT_EQ(ran, 2u) << mode.szName;
      EXPECT_EQ(finished, static_cast<int>(result.cases.GetCount())) << mode.szName;
    } else {
      EXPECT_LE(finished, static_cast<int>(ran)) << mode.szName;
    }
  }
}

TEST_F(ExternalModes, ACancelStopsACaseThatRunsInAChild) {
  for (const bool isolated : {false, true}) {
    SSetup setup;
    setup.sDataDir = L"/data/tree/";
    setup.run.bShowTimes = false;
    setup.run.bExternal = true;
    setup.run.bIsolated = isolated;
    setup.unitTests.Add(RunTestClasses::MakeClass(L"IsoSlow", {L"sleep"}));
    setup.unitTests.Add(RunTestClasses::MakeClass(L"IsoPass", {L"a"}));
    // The first answer lets the case begin, the second comes a second into it.
    auto calls = std::make_shared<std::atomic<int>>(0);
    setup.callbacks.fnIsCanceled = [calls] { return calls->fetch_add(1) >= 1; };
    COutRecorder recorder;
    CEnvironment env;
    CFakeClock clock;
    const Run::SResult result = RunTests(setup, env, clock, IsolationTestClasses::IsolationStarter());
    EXPECT_LT(clock.Seconds(), 30.0) << "the case ran to its end";
    ASSERT_EQ(result.cases.GetCount(), 2u);
    EXPECT_EQ(result.cases[0].eResult, Run::eCaseCanceled);
    EXPECT_GE(result.cases[0].iProcessIndex, 0);
    EXPECT_EQ(result.cases[1].eResult, Run::eCaseCanceled);
    EXPECT_EQ(result.statistics.total.uiTotal, 0u);
    const CString text = recorder.Text();
    EXPECT_NE(text.Find(L"\tsleep... WARNUNG (Ausführung des Testfalls vom Benutzer abgebrochen)\n"), -1)
        << text.ToUtf8();
    EXPECT_NE(text.Find(L"\tAusführung abgebrochen.\n"), -1);
  }
}
