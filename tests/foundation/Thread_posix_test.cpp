// The platform's threads: names, and threads started without memory.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "HeapInterception.h"
#include "foundation/platform/Thread.h"
#include "services/CHeapTracker.h"

namespace {

// The name a new thread has after naming itself `name`.
std::string nameAfterSetting(const std::string& name) {
  std::string seen;
  std::thread([&] {
    ZoPlatform::Thread::SetCurrentName(name.c_str());
    seen = ZoPlatform::Thread::GetCurrentName();
  }).join();
  return seen;
}

}  // namespace

TEST(Thread, AThreadCarriesTheNameItGivesItself) { EXPECT_EQ(nameAfterSetting("ApiWorker"), "ApiWorker"); }

TEST(Thread, LongNamesAreCutToFifteenBytes) {
  EXPECT_EQ(nameAfterSetting("TestSuite::Run::CWorkerThread"), "TestSuite::Run:");
}

TEST(Thread, ANameIsNeverCutInsideACharacter) {
  // Fourteen letters and a two-byte character: the character does not fit.
  EXPECT_EQ(nameAfterSetting("abcdefghijklmn\xC3\xA4"), "abcdefghijklmn");
}

TEST(Thread, NamingAThreadTakesNoMemory) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const std::string before = ZoPlatform::Thread::GetCurrentName();
  TestSuite::CHeapTracker tracker(false, true);
  tracker.Activate();
  ZoPlatform::Thread::SetCurrentName("TestSuite::Run::CWorkerThread");
  tracker.Deactivate();
  ZoPlatform::Thread::SetCurrentName(before.c_str());
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetReallocCount(), 0u);
}

TEST(JoinableThread, RunsTheFunctionWithItsArgumentUntilJoined) {
  std::atomic<int> value{0};
  ZoPlatform::Thread::CJoinableThread thread;
  ASSERT_TRUE(thread.Start([](void* argument) { static_cast<std::atomic<int>*>(argument)->store(42); }, &value));
  thread.Join();
  EXPECT_EQ(value.load(), 42);
  thread.Join();  // a second join returns at once
}

TEST(JoinableThread, AThreadThatRunsIsNotStartedAgainAndIsJoinedByItsEnd) {
  std::atomic<bool> release{false};
  std::atomic<int> runs{0};
  struct SShared {
    std::atomic<bool>* pRelease;
    std::atomic<int>* pRuns;
  } shared{&release, &runs};
  auto work = [](void* argument) {
    auto* s = static_cast<SShared*>(argument);
    s->pRuns->fetch_add(1);
    while (!s->pRelease->load()) std::this_thread::yield();
  };
  {
    ZoPlatform::Thread::CJoinableThread thread;
    ASSERT_TRUE(thread.Start(work, &shared));
    EXPECT_FALSE(thread.Start(work, &shared));
    release = true;
  }  // joined here: the count below is final
  EXPECT_EQ(runs.load(), 1);
}

TEST(JoinableThread, StartingAndJoiningTakesNoMemory) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  ZoPlatform::Thread::CJoinableThread warm;  // the first thread of a process may set up the runtime
  ASSERT_TRUE(warm.Start([](void*) {}, nullptr));
  warm.Join();
  ZoPlatform::Thread::CJoinableThread thread;
  TestSuite::CHeapTracker tracker(false, true);
  tracker.Activate();
  const bool started = thread.Start([](void*) {}, nullptr);
  thread.Join();
  tracker.Deactivate();
  EXPECT_TRUE(started);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetReallocCount(), 0u);
}
