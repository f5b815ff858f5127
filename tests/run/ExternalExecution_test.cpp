#include "ExternalExecution.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "ChildProcess.h"
#include "ExternalObjectName.h"
#include "IsolationFrontEnd.h"
#include "NamedEvent.h"
#include "RunTestClasses.h"
#include "SharedMemoryWorkBuffer.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/SharedMemory.h"
#include "foundation/platform/System.h"
#include "heap_TrackerTestKit.h"
#include "services_COutRecorder.h"
#include "services_ScratchDir.h"

using namespace TestSuite;
using IsolationTestClasses::CChildrenFromPrivateFrontEnd;
using IsolationTestClasses::IsolationFrontEnd;
using Clock = std::chrono::steady_clock;

namespace {

constexpr unsigned int sc_uiNoLimit = 0xFFFFFFFF;

CString newId() { return ZoUniqueIdT<CString>::GetUniqueID(); }

// The block and the events of a context, made the way AcquireSharedWorkBuffer
// makes them, with a stand-in for the child: any program.
void prepareHandOver(SCaseContext& context, const std::vector<std::string>& childProgram) {
  context.sMemoryId = newId();
  context.sharedBuffer = std::make_unique<CSharedMemoryWorkBuffer>(context.sMemoryId, false);
  context.sRequestEventId = newId();
  context.requestEvent = std::make_unique<CNamedEvent>(context.sRequestEventId, false);
  context.sResponseEventId = newId();
  context.responseEvent = std::make_unique<CNamedEvent>(context.sResponseEventId, false);
  ZoPlatform::Process::CChild child;
  ASSERT_TRUE(child.Start({childProgram, "", ZoPlatform::Process::EStandardStreams::eNull}));
  context.child = std::make_unique<SChildProcess>(std::move(child), TakeChildIndex());
  SBufferAccess access = context.sharedBuffer->GetWriteAccess();
  ResetWorkBlock(*access.pBlock);
}

int blockResult(SCaseContext& context) { return context.sharedBuffer->GetReadAccess().pBlock->eResult; }

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

bool processExists(int pid) { return std::filesystem::exists("/proc/" + std::to_string(pid)); }

// Waits at most `seconds` for `done`.
template <typename Predicate>
bool waitUntil(Predicate done, double seconds) {
  const Clock::time_point start = Clock::now();
  while (!done()) {
    if (secondsSince(start) > seconds) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

SCaseResult execute(const SUnitTest& unitTest, unsigned int caseIndex, const SRunOptions& options,
                    SCaseContext& context, const Run::SCallbacks& callbacks = {}) {
  SSetup setup;
  setup.sDataDir = L"/data/tree/";
  SCaseResult row;
  row.uiCaseIndex = caseIndex;
  ExecuteCase(setup, unitTest, unitTest.Cases[caseIndex], options, callbacks, context, row);
  return row;
}

SRunOptions externalOptions(bool isolated = false) {
  SRunOptions options;
  options.bExternal = true;
  options.bIsolated = isolated;
  return options;
}

CString pidLine() { return FormatString(L"INFO:  pid=%u\n", ZoPlatform::System::GetProcessId()); }

// After every test: no child of the private front end runs and no block or
// event of this process remains.
class ExternalExecution : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_TRUE(ProcessesRunningFrom(IsolationFrontEnd().Directory()).empty()) << "a child outlived its test";
    EXPECT_TRUE(ExternalObjectsOfProcess(ZoPlatform::System::GetProcessId()).empty()) << "a name outlived its test";
  }
  CChildrenFromPrivateFrontEnd m_scope;
};

}  // namespace

// The parent's supervision, with stand-ins for the child.

TEST_F(ExternalExecution, WithoutAChildTheRowKeepsResult5AndNoProcessIndex) {
  SCaseContext context;
  SCaseResult row;
  RunCaseInChild(context, sc_uiNoLimit, Run::SCallbacks(), row);
  EXPECT_EQ(row.eResult, Run::eCaseUnknown);
  EXPECT_EQ(row.iProcessIndex, -1);
}

TEST_F(ExternalExecution, AnAnswerEndsTheCaseAndTheChildStays) {
  SCaseContext context;
  prepareHandOver(context, {"sleep", "30"});
  std::thread child([&context] {
    CNamedEvent request(context.sRequestEventId, true), response(context.sResponseEventId, true);
    CSharedMemoryWorkBuffer buffer(context.sMemoryId, true);
    if (request.Wait(60000) != CNamedEvent::eWaitSignalled) return;
    buffer.GetWriteAccess().pBlock->eResult = Run::eCaseOk;
    response.Set();
  });
  SCaseResult row;
  RunCaseInChild(context, 0, Run::SCallbacks(), row);
  child.join();
  EXPECT_EQ(blockResult(context), Run::eCaseOk);
  EXPECT_EQ(row.iProcessIndex, static_cast<int>(context.child->uiIndex));
  ASSERT_NE(context.child, nullptr);
  EXPECT_TRUE(context.child->IsAlive());
}

TEST_F(ExternalExecution, ALimitOfZeroKillsTheChildAfterTheFirstSecond) {
  SCaseContext context;
  prepareHandOver(context, {"sleep", "30"});
  const int pid = context.child->process.GetId();
  SCaseResult row;
  const Clock::time_point start = Clock::now();
  RunCaseInChild(context, 0, Run::SCallbacks(), row);
  EXPECT_GE(secondsSince(start), 0.9);
  EXPECT_EQ(blockResult(context), Run::eCaseTimeout);
  EXPECT_EQ(context.child, nullptr);
  EXPECT_FALSE(processExists(pid));
}

TEST_F(ExternalExecution, ALimitOfOneSecondIsOverAtTheFirstLook) {
  SCaseContext context;
  prepareHandOver(context, {"sleep", "30"});
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries, false; };
  SCaseResult row;
  RunCaseInChild(context, 1, callbacks, row);
  EXPECT_EQ(blockResult(context), Run::eCaseTimeout);
  EXPECT_EQ(queries, 0) << "the limit is looked at before the cancel query";
}

TEST_F(ExternalExecution, ACancelKillsTheChildAndGivesResult7) {
  SCaseContext context;
  prepareHandOver(context, {"sleep", "30"});
  const int pid = context.child->process.GetId();
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries > 0; };
  SCaseResult row;
  RunCaseInChild(context, sc_uiNoLimit, callbacks, row);
  EXPECT_EQ(queries, 1) << "the cancel query comes once a second, not before the first";
  EXPECT_EQ(blockResult(context), Run::eCaseCanceled);
  EXPECT_EQ(context.child, nullptr);
  EXPECT_FALSE(processExists(pid));
}

// A process's exit status is a byte here, and whether a child still runs is
// asked of the system, never read from the status: 259 is no special value,
// and a child that ended with it is found to have ended at the first look.
TEST_F(ExternalExecution, AChildThatEndedWithStatus259HasEndedAndLeavesResult5) {
  SCaseContext context;
  prepareHandOver(context, {"/bin/sh", "-c", "exit 259"});
  SCaseResult row;
  const Clock::time_point start = Clock::now();
  RunCaseInChild(context, sc_uiNoLimit, Run::SCallbacks(), row);
  EXPECT_LT(secondsSince(start), 30.0);
  EXPECT_EQ(blockResult(context), Run::eCaseUnknown);
  EXPECT_EQ(context.child, nullptr);
  CNamedEvent request(context.sRequestEventId, true);
  EXPECT_EQ(request.Wait(0), CNamedEvent::eWaitTimedOut) << "the request that nobody took was left for the next child";
}

// The child's side, run in this process.

TEST_F(ExternalExecution, TheChildSideNeedsAllThreeIds) {
  for (int missing = 0; missing < 3; ++missing) {
    SSetup setup;
    setup.sMemoryId = missing == 0 ? CString() : newId();
    setup.sRequestEventId = missing == 1 ? CString() : newId();
    setup.sResponseEventId = missing == 2 ? CString() : newId();
    CEnvironment env;
    try {
      Run::RunExternalExecution(setup, env);
      ADD_FAILURE() << "no exception without id " << missing;
    } catch (const XbException& error) {
      EXPECT_STREQ(error.what(), "TestSuite::Run::RunExternalExecution");
    }
  }
}

TEST_F(ExternalExecution, TheChildSideEndsWithAnExceptionWhenTheBlockIsGone) {
  SSetup setup;
  setup.sMemoryId = newId();
  setup.sRequestEventId = newId();
  setup.sResponseEventId = newId();
  CNamedEvent request(setup.sRequestEventId, false), response(setup.sResponseEventId, false);
  request.Set();
  const CString directory = ZoFileSystem::GetCurrentDirectoryW();
  CEnvironment env;
  try {
    Run::RunExternalExecution(setup, env);
    ADD_FAILURE() << "no exception";
  } catch (const XbException& error) {
    EXPECT_STREQ(error.what(), "TestSuite::Run::CSharedMemoryWorkBuffer::GetWriteAccess");
  }
  ZoFileSystem::SetCurrentDirectoryW(directory);
  EXPECT_EQ(response.Wait(0), CNamedEvent::eWaitTimedOut);
}

TEST_F(ExternalExecution, TheChildSideServesCasesAndEndsAfterFiveSecondsWithoutARequest) {
  SSetup setup;
  setup.sMemoryId = newId();
  setup.sRequestEventId = newId();
  setup.sResponseEventId = newId();
  CSharedMemoryWorkBuffer buffer(setup.sMemoryId, false);
  CNamedEvent request(setup.sRequestEventId, false), response(setup.sResponseEventId, false);
  const CString directory = ZoFileSystem::GetCurrentDirectoryW();
  std::promise<void> ended;
  std::thread child([&setup, &ended] {
    CEnvironment env;
    try {
      Run::RunExternalExecution(setup, env);
    } catch (...) {
    }
    ended.set_value();
  });
  Clock::time_point lastAnswer;
  for (unsigned int i : {1u, 2u}) {
    {
      SBufferAccess access = buffer.GetWriteAccess();
      ResetWorkBlock(*access.pBlock);
      StoreBlockText(access.pBlock->sClassName, SWorkBlock::sc_uiTextUnits, RunTestClasses::sc_szResults);
      StoreBlockText(access.pBlock->sCaseName, SWorkBlock::sc_uiTextUnits, FormatString(L"r%u", i));
    }
    request.Set();
    ASSERT_EQ(response.Wait(60000), CNamedEvent::eWaitSignalled);
    lastAnswer = Clock::now();
    SBufferAccess access = buffer.GetReadAccess();
    EXPECT_EQ(access.pBlock->eResult, i == 1 ? Run::eCaseOk : Run::eCaseError);
    EXPECT_EQ(LoadBlockText(access.pBlock->output, SWorkBlock::sc_uiOutputUnits),
              FormatString(L"INFO:  subtest %u\n", i));
  }
  std::future<void> end = ended.get_future();
  const bool endedInTime = end.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
  const double idle = secondsSince(lastAnswer);
  child.join();
  ZoFileSystem::SetCurrentDirectoryW(directory);
  ASSERT_TRUE(endedInTime);
  EXPECT_GE(idle, sc_uiChildIdleMs / 1000.0 - 0.1);
}

// Real children of the private front end.

TEST_F(ExternalExecution, ExternalModeKeepsOneChildForTheCasesOfAContext) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b", L"c"});
  SCaseContext context;
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

TEST_F(ExternalExecution, ExitInTheChildGivesResult5AndTheNextCaseANewChild) {
  const SUnitTest crash = RunTestClasses::MakeClass(L"IsoCrash", {L"exit0"});
  const SUnitTest pass = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  SRunOptions options = externalOptions();
  options.bTrackHeap = true;
  SCaseContext context;
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

TEST_F(ExternalExecution, ATimeOutGivesTheNextCaseANewChildNumberedOneHigher) {
  SUnitTest hang = RunTestClasses::MakeClass(L"IsoHang", {L"endlessLoop"});
  hang.Cases[0].Params.SetAt(L"TimeOutSec", XbVariant(1u));
  const SUnitTest pass = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  SCaseContext context;
  const SCaseResult timedOut = execute(hang, 0, externalOptions(), context);
  EXPECT_EQ(timedOut.eResult, Run::eCaseTimeout);
  const SCaseResult next = execute(pass, 0, externalOptions(), context);
  EXPECT_EQ(next.eResult, Run::eCaseOk);
  EXPECT_EQ(next.iProcessIndex, timedOut.iProcessIndex + 1);
}

TEST_F(ExternalExecution, IsolatedModeGivesEveryCaseAFreshChildBlockAndEvents) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  SCaseContext context;
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

TEST_F(ExternalExecution, CaseParametersChooseTheModeOfTheirCase) {
  SUnitTest outside = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  outside.Cases[0].Params.SetAt(L"External", XbVariant(true));
  SUnitTest inside = RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"});
  inside.Cases[0].Params.SetAt(L"External", XbVariant(false));
  SUnitTest isolated = RunTestClasses::MakeClass(L"IsoPass", {L"b"});
  isolated.Cases[0].Params.SetAt(L"Isolated", XbVariant(true));
  SCaseContext context;
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

TEST_F(ExternalExecution, TheChildKeepsTheFrontEndsAssertionDialog) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"assertDialog"});
  SRunOptions options = externalOptions();
  options.bAssertDialog = false;
  SCaseContext context;
  EXPECT_EQ(execute(unitTest, 0, options, context).sOutput, CString(L"INFO:  assertDialog=1\n"));
}

TEST_F(ExternalExecution, OutputBeyondTheLimitIsCutInTheChild) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoOutput", {L"limit", L"beyondLimit"});
  SCaseContext context;
  for (unsigned int i : {0u, 1u}) {
    const SCaseResult row = execute(unitTest, i, externalOptions(), context);
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.sOutput, CString(L'x', 1048575));
  }
}

TEST_F(ExternalExecution, ALeakInTheChildIsAWarning) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoLeak", {L"leak"});
  SRunOptions options = externalOptions();
  options.bTrackHeap = true;
  SCaseContext context;
  const SCaseResult row = execute(unitTest, 0, options, context);
  EXPECT_EQ(row.eResult, Run::eCaseOk);
  EXPECT_EQ(row.iMemoryDelta, 100);
  EXPECT_TRUE(row.bWarning);
}

TEST_F(ExternalExecution, AChildThatWasIdleForFiveSecondsIsFoundDeadByTheNextCase) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b", L"c"});
  SCaseContext context;
  const SCaseResult first = execute(unitTest, 0, externalOptions(), context);
  ASSERT_EQ(first.eResult, Run::eCaseOk);
  const std::string directory = IsolationFrontEnd().Directory();
  ASSERT_TRUE(waitUntil([&directory] { return ProcessesRunningFrom(directory).empty(); }, 30.0));
  const SCaseResult second = execute(unitTest, 1, externalOptions(), context);
  EXPECT_EQ(second.eResult, Run::eCaseUnknown);
  EXPECT_EQ(second.iProcessIndex, first.iProcessIndex);
  const SCaseResult third = execute(unitTest, 2, externalOptions(), context);
  EXPECT_EQ(third.eResult, Run::eCaseOk);
  EXPECT_GT(third.iProcessIndex, first.iProcessIndex);
}

TEST_F(ExternalExecution, AChildThatCannotBeStartedCostsItsCaseOnlyAndSaysNothing) {
  ServicesScratchDir empty;
  SetChildProgramDirectory(empty.Path());
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  SCaseContext context;
  COutRecorder recorder;
  const SCaseResult row = execute(unitTest, 0, externalOptions(), context);
  EXPECT_EQ(row.eResult, Run::eCaseUnknown);
  EXPECT_EQ(row.iProcessIndex, -1);
  EXPECT_TRUE(recorder.Text().IsEmpty());
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
  return Run::Run(setup, env);
}

}  // namespace

TEST_F(ExternalExecution, ACancelEndsEveryRowInEveryMode) {
  const SMode modes[] = {{"Internal", false, false, false},         {"Internal, workers", false, false, true},
                         {"External", true, false, false},          {"External, workers", true, false, true},
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

TEST_F(ExternalExecution, ACancelStopsACaseThatRunsInAChild) {
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
    const Clock::time_point start = Clock::now();
    const Run::SResult result = Run::Run(setup, env);
    EXPECT_LT(secondsSince(start), 30.0) << "the case ran to its end";
    ASSERT_EQ(result.cases.GetCount(), 2u);
    EXPECT_EQ(result.cases[0].eResult, Run::eCaseCanceled);
    EXPECT_GE(result.cases[0].iProcessIndex, 0);
    EXPECT_EQ(result.cases[1].eResult, Run::eCaseCanceled);
    EXPECT_EQ(result.statistics.total.uiTotal, 0u);
    const CString text = recorder.Text();
    EXPECT_NE(text.Find(L"\tsleep... WARNUNG (Ausführung des Testfalls vom Benutzer abgebrochen)\n"), -1) << text.ToUtf8();
    EXPECT_NE(text.Find(L"\tAusführung abgebrochen.\n"), -1);
  }
}
