#include "run/external/ExternalExecution.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "IsolationFrontEnd.h"
#include "RunTestClasses.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "run/external/ChildProcess.h"
#include "run/external/NamedEvent.h"
#include "run/external/SharedMemoryWorkBuffer.h"

using namespace TestSuite;
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

class ExternalExecution : public IsolationTestClasses::CIsolationTest {};

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
    } catch (...) {}
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
