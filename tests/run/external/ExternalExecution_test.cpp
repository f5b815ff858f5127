#include "run/external/ExternalExecution.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "IsolationFrontEnd.h"
#include "RunTestClasses.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "run/external/ChildProcess.h"
#include "run/external/NamedEvent.h"
#include "run/external/SharedMemoryWorkBuffer.h"
#include "run_FakeClock.h"

using namespace TestSuite;

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

bool processExists(int pid) { return std::filesystem::exists("/proc/" + std::to_string(pid)); }

class ExternalExecution : public IsolationTestClasses::CIsolationTest {};

}  // namespace

// The parent's supervision, with stand-ins for the child.

TEST_F(ExternalExecution, WithoutAChildTheRowStaysCaseUnknownWithNoProcessIndex) {
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
  CFakeClock clock;
  context.pClock = &clock;
  prepareHandOver(context, {"sleep", "30"});
  const int pid = context.child->process.GetId();
  SCaseResult row;
  RunCaseInChild(context, 0, Run::SCallbacks(), row);
  EXPECT_EQ(clock.Waits(), std::vector<unsigned int>{1000});
  EXPECT_DOUBLE_EQ(clock.Seconds(), 1.001);
  EXPECT_EQ(blockResult(context), Run::eCaseTimeout);
  EXPECT_EQ(context.child, nullptr);
  EXPECT_FALSE(processExists(pid));
}

TEST_F(ExternalExecution, ALimitOfOneSecondIsOverAtTheFirstLook) {
  SCaseContext context;
  CFakeClock clock;
  context.pClock = &clock;
  prepareHandOver(context, {"sleep", "30"});
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries, false; };
  SCaseResult row;
  RunCaseInChild(context, 1, callbacks, row);
  EXPECT_EQ(blockResult(context), Run::eCaseTimeout);
  EXPECT_EQ(queries, 0) << "the limit is looked at before the cancel query";
  EXPECT_EQ(clock.Waits().size(), 1u);
}

// The check is strict: a case that answers in the wait that ends its
// limit's last second passes.
TEST_F(ExternalExecution, AnAnswerWithinTheLastSecondOfTheLimitPasses) {
  SCaseContext context;
  CFakeClock clock;
  context.pClock = &clock;
  prepareHandOver(context, {"sleep", "30"});
  CNamedEvent response(context.sResponseEventId, true);
  clock.OnWait([&clock, &response](unsigned int) {
    if (clock.Waits().size() == 5) response.Set();
  });
  SCaseResult row;
  RunCaseInChild(context, 5, Run::SCallbacks(), row);
  EXPECT_EQ(blockResult(context), Run::eCaseUnknown) << "the answer was taken as a time-out";
  EXPECT_EQ(clock.Waits().size(), 5u);
  EXPECT_DOUBLE_EQ(clock.Seconds(), 4.004);
  ASSERT_NE(context.child, nullptr);
  EXPECT_TRUE(context.child->IsAlive());
}

TEST_F(ExternalExecution, ACancelKillsTheChildAndGivesCaseCanceled) {
  SCaseContext context;
  CFakeClock clock;
  context.pClock = &clock;
  prepareHandOver(context, {"sleep", "30"});
  const int pid = context.child->process.GetId();
  int queries = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&queries] { return ++queries > 0; };
  SCaseResult row;
  RunCaseInChild(context, sc_uiNoLimit, callbacks, row);
  EXPECT_EQ(queries, 1) << "the cancel query comes once a second, not before the first";
  EXPECT_EQ(clock.Waits(), std::vector<unsigned int>{1000});
  EXPECT_EQ(blockResult(context), Run::eCaseCanceled);
  EXPECT_EQ(context.child, nullptr);
  EXPECT_FALSE(processExists(pid));
}

// A process's exit status is a byte here, and whether a child still runs is
// asked of the system, never read from the status: 259 is no special value,
// and a child that ended with it is found to have ended at the first look.
TEST_F(ExternalExecution, AChildThatEndedWithStatus259HasEndedAndLeavesCaseUnknown) {
  SCaseContext context;
  CFakeClock clock;
  context.pClock = &clock;
  prepareHandOver(context, {"/bin/sh", "-c", "exit 259"});
  SCaseResult row;
  RunCaseInChild(context, sc_uiNoLimit, Run::SCallbacks(), row);
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
    } catch (const XbException& error) { EXPECT_STREQ(error.what(), "TestSuite::Run::RunExternalExecution"); }
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

// The test plays the parent in the child side's waits: it hands over the
// first case before the child side starts and the second in the wait after
// the first answer, and then no more.
TEST_F(ExternalExecution, TheChildSideServesCasesAndEndsAfterFiveSecondsWithoutARequest) {
  SSetup setup;
  setup.sMemoryId = newId();
  setup.sRequestEventId = newId();
  setup.sResponseEventId = newId();
  CSharedMemoryWorkBuffer buffer(setup.sMemoryId, false);
  CNamedEvent request(setup.sRequestEventId, false), response(setup.sResponseEventId, false);
  const auto handOver = [&buffer, &request](unsigned int i) {
    SBufferAccess access = buffer.GetWriteAccess();
    ResetWorkBlock(*access.pBlock);
    StoreBlockText(access.pBlock->sClassName, SWorkBlock::sc_uiTextUnits, RunTestClasses::sc_szResults);
    StoreBlockText(access.pBlock->sCaseName, SWorkBlock::sc_uiTextUnits, FormatString(L"r%u", i));
    request.Set();
  };
  std::vector<std::pair<int, CString>> answers;
  const auto takeAnswer = [&buffer, &response, &answers] {
    if (response.Wait(0) != CNamedEvent::eWaitSignalled) return;
    SBufferAccess access = buffer.GetReadAccess();
    answers.emplace_back(access.pBlock->eResult, LoadBlockText(access.pBlock->output, SWorkBlock::sc_uiOutputUnits));
  };
  CFakeClock clock;
  std::vector<double> idleSince;
  clock.OnWait([&](unsigned int) {
    takeAnswer();
    idleSince.push_back(clock.Seconds());
    if (answers.size() == 1 && idleSince.size() == 2) handOver(2);
  });
  handOver(1);
  const CString directory = ZoFileSystem::GetCurrentDirectoryW();
  CEnvironment env;
  ServeExternalCases(setup, env, clock);
  ZoFileSystem::SetCurrentDirectoryW(directory);
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_EQ(answers[0], std::make_pair(int{Run::eCaseOk}, CString(L"INFO:  subtest 1\n")));
  EXPECT_EQ(answers[1], std::make_pair(int{Run::eCaseError}, CString(L"INFO:  subtest 2\n")));
  EXPECT_EQ(clock.Waits(), (std::vector<unsigned int>{sc_uiChildIdleMs, sc_uiChildIdleMs, sc_uiChildIdleMs}));
  EXPECT_DOUBLE_EQ(clock.Seconds() - idleSince.back(), sc_uiChildIdleMs / 1000.0 + 0.001)
      << "the child side ended after other than five seconds without a request";
}
