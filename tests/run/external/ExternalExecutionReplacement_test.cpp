// A child that ended or died before it took the request is replaced and the
// case goes to the new one; only a child that dies while it works costs its
// case; and a lost case carries nothing of the case before it. The
// children are stand-ins on a fake clock, so no test waits for the idle
// rule; the test plays the child's side of the hand-over.
#include <gtest/gtest.h>

#include <functional>

#include "FakeChildStarter.h"
#include "RunTestClasses.h"
#include "run/external/ExternalExecution.h"
#include "run/external/NamedEvent.h"

using namespace TestSuite;
using RunTestClasses::CFakeChildStarter;
using RunTestClasses::SFakeChildren;
using EKind = CFakeChildStarter::EKind;

namespace {

SCaseResult execute(const SUnitTest& unitTest, unsigned int caseIndex, SCaseContext& context,
                    SRunOptions options = SRunOptions()) {
  SSetup setup;
  setup.sDataDir = L"/data/tree/";
  options.bExternal = true;
  return RunTestClasses::ExecuteOneCase(setup, unitTest, caseIndex, options, context);
}

// What the played child does when the parent waits for its answer.
enum class EPlay { eAnswer, eDieBeforeTaking, eDieWhileWorking, eNothing };

// The child's side: takes the request and writes a leak of 100 bytes, a
// time and a line of output, as a case that leaks would; or ends the child
// before or after it took the request.
void play(SFakeChildren& fake, EPlay what) {
  SCaseContext& context = fake.context;
  if (what == EPlay::eNothing) return;
  if (what == EPlay::eDieBeforeTaking) return fake.starter.EndLastChild();
  if (context.requestEvent->Wait(0) != CNamedEvent::eWaitSignalled) return;
  if (what == EPlay::eDieWhileWorking) return fake.starter.EndLastChild();
  SBufferAccess access = context.sharedBuffer->GetWriteAccess();
  access.pBlock->eResult = Run::eCaseOk;
  access.pBlock->iMemoryDelta = 100;
  access.pBlock->uiAllocCount = 3;
  access.pBlock->uiMemoryPeak = 400;
  access.pBlock->dTime = 1.5;
  AppendBlockOutput(*access.pBlock, L"INFO:  leaked\n");
  context.responseEvent->Set();
}

// Plays `script[n]` at the parent's n-th wait for an answer, and nothing
// after the script's end.
void playScript(SFakeChildren& fake, std::vector<EPlay> script) {
  auto step = std::make_shared<std::size_t>(0);
  fake.clock.OnWait([&fake, script, step](unsigned int limit) {
    if (limit != sc_uiChildPollMs || *step >= script.size()) return;
    play(fake, script[(*step)++]);
  });
}

void expectLostWithNothingOfTheCaseBefore(const SCaseResult& row) {
  EXPECT_TRUE(row.sOutput.IsEmpty()) << row.sOutput.ToUtf8();
  EXPECT_EQ(row.iMemoryDelta, 0);
  EXPECT_EQ(row.uiAllocCount, 0u);
  EXPECT_EQ(row.uiMemoryPeak, 0u);
  EXPECT_EQ(row.dTime, 0.0);
  EXPECT_FALSE(row.bWarning);
}

const SUnitTest& cases() {
  static const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  return unitTest;
}

}  // namespace

TEST(ExternalExecutionReplacement, AChildThatEndedWhileIdleIsReplacedBeforeTheHandOver) {
  SFakeChildren fake(EKind::eNeverAnswers);
  playScript(fake, {EPlay::eAnswer, EPlay::eAnswer});
  const SCaseResult first = execute(cases(), 0, fake.context);
  ASSERT_EQ(first.eResult, Run::eCaseOk);
  fake.starter.EndLastChild();  // its idle rule, while the parent was slow
  const std::size_t waitsBefore = fake.clock.Waits().size();
  const SCaseResult second = execute(cases(), 1, fake.context);
  EXPECT_EQ(second.eResult, Run::eCaseOk);
  EXPECT_EQ(second.iProcessIndex, first.iProcessIndex + 1);
  EXPECT_EQ(fake.starter.Starts(), 2u);
  EXPECT_EQ(fake.clock.Waits().size(), waitsBefore + 1) << "the dead child cost the case a second";
}

TEST(ExternalExecutionReplacement, AChildThatDiesBeforeItTakesTheRequestIsReplaced) {
  SFakeChildren fake(EKind::eNeverAnswers);
  playScript(fake, {EPlay::eDieBeforeTaking, EPlay::eAnswer});
  const SCaseResult row = execute(cases(), 0, fake.context);
  EXPECT_EQ(row.eResult, Run::eCaseOk);
  EXPECT_EQ(row.sOutput, CString(L"INFO:  leaked\n"));
  EXPECT_EQ(fake.starter.Starts(), 2u);
  ASSERT_NE(fake.context.child, nullptr);
  EXPECT_EQ(row.iProcessIndex, static_cast<int>(fake.context.child->uiIndex));
}

TEST(ExternalExecutionReplacement, AChildThatDiesWhileItWorksCostsTheCaseOnly) {
  SFakeChildren fake(EKind::eNeverAnswers);
  playScript(fake, {EPlay::eDieWhileWorking, EPlay::eAnswer});
  const SCaseResult lost = execute(cases(), 0, fake.context);
  EXPECT_EQ(lost.eResult, Run::eCaseUnknown);
  EXPECT_EQ(fake.starter.Starts(), 1u) << "the case was handed to a second child";
  EXPECT_EQ(fake.context.child, nullptr);
  const SCaseResult next = execute(cases(), 1, fake.context);
  EXPECT_EQ(next.eResult, Run::eCaseOk);
  EXPECT_EQ(next.iProcessIndex, lost.iProcessIndex + 1);
}

// The row of a case whose child was lost (here: ended while idle, and no
// new one can start) carries nothing of the leaking case before it.
TEST(ExternalExecutionReplacement, ALostChildLeavesNoFiguresOfTheCaseBefore) {
  SFakeChildren fake(std::vector<EKind>{EKind::eNeverAnswers, EKind::eFailsToStart});
  playScript(fake, {EPlay::eAnswer});
  const SCaseResult leaking = execute(cases(), 0, fake.context);
  ASSERT_EQ(leaking.iMemoryDelta, 100);
  ASSERT_TRUE(leaking.bWarning);
  fake.starter.EndLastChild();
  const SCaseResult lost = execute(cases(), 1, fake.context);
  EXPECT_EQ(lost.eResult, Run::eCaseUnknown);
  EXPECT_EQ(lost.iProcessIndex, -1);
  expectLostWithNothingOfTheCaseBefore(lost);
}

TEST(ExternalExecutionReplacement, ACaseTimedOutBeforeTheChildTookItHasNoFiguresOfTheCaseBefore) {
  SFakeChildren fake(EKind::eNeverAnswers);
  playScript(fake, {EPlay::eAnswer});
  ASSERT_EQ(execute(cases(), 0, fake.context).iMemoryDelta, 100);
  SRunOptions options;
  options.uiTimeOutSec = 0;
  const SCaseResult timedOut = execute(cases(), 1, fake.context, options);
  EXPECT_EQ(timedOut.eResult, Run::eCaseTimeout);
  expectLostWithNothingOfTheCaseBefore(timedOut);
}

TEST(ExternalExecutionReplacement, AChildThatDiesWhileItWorksLeavesNoFiguresOfTheCaseBefore) {
  SFakeChildren fake(EKind::eNeverAnswers);
  playScript(fake, {EPlay::eAnswer, EPlay::eDieWhileWorking});
  ASSERT_EQ(execute(cases(), 0, fake.context).iMemoryDelta, 100);
  const SCaseResult lost = execute(cases(), 1, fake.context);
  EXPECT_EQ(lost.eResult, Run::eCaseUnknown);
  expectLostWithNothingOfTheCaseBefore(lost);
}
