// Tests of CHeapTracker: counting through the real malloc, free and realloc
// interception, the bookkeeping rules and the dump.
#include "services/CHeapTracker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "heap_TrackerTestKit.h"

namespace TestSuite {
namespace {

using EOperation = CHeapTracker::EOperation;

TEST(CHeapTracker, ConstructorArgumentsDecideActivity) {
  CHeapTracker plain(false, false);
  EXPECT_FALSE(plain.IsActive());
  EXPECT_EQ(plain.GetMallocCount(), 0u);
  EXPECT_EQ(plain.GetFreeCount(), 0u);
  EXPECT_EQ(plain.GetReallocCount(), 0u);
  EXPECT_EQ(plain.GetCurrentAlloc(), 0);
  EXPECT_EQ(plain.GetCurrentMax(), 0);
  CHeapTracker activateOnly(true, false);
  EXPECT_FALSE(activateOnly.IsActive());
  CHeapTracker initializeOnly(false, true);
  EXPECT_FALSE(initializeOnly.IsActive());
  CHeapTracker both;
  EXPECT_TRUE(both.IsActive());
  both.Deactivate();
  EXPECT_FALSE(both.IsActive());
}

TEST(CHeapTracker, UninitializedTrackerSeesNothingEvenWhenActive) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker witness(false, true);
  CHeapTracker unregistered(true, false);
  unregistered.Activate();
  witness.Activate();
  g_fnFree(g_fnMalloc(40));
  witness.Deactivate();
  unregistered.Deactivate();
  EXPECT_EQ(witness.GetMallocCount(), 1u);
  EXPECT_EQ(unregistered.GetMallocCount(), 0u);
  EXPECT_EQ(unregistered.GetFreeCount(), 0u);
  EXPECT_EQ(unregistered.GetCurrentMax(), 0);
}

TEST(CHeapTracker, MallocFreePairLeavesNothingButTheMaximum) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  // A fresh tracker: its map allocates at the first insertion, inside the
  // dispatch, and must not count that itself.
  CHeapTracker tracker(false, true);
  tracker.Activate();
  void* block = g_fnMalloc(64);
  g_fnFree(block);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetReallocCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_EQ(tracker.GetCurrentMax(), 64);
  EXPECT_TRUE(endsWith(dumpOf(tracker), L"Active Allocations:\n"));
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
  EXPECT_EQ(nextIdPrefix(tracker), L"ID 2");
}

TEST(CHeapTracker, ReallocOfATrackedBlockNeverAddsOldAndNewSize) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  void* block = g_fnMalloc(100);
  block = g_fnRealloc(block, 200);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetReallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 200);
  EXPECT_EQ(tracker.GetCurrentMax(), 200);
  EXPECT_TRUE(endsWith(dumpOf(tracker), entryLine(1, block, 200)));
  g_fnFree(block);
}

TEST(CHeapTracker, LeakShowsAsCurrentAllocationAndInTheDump) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  void* leaked = g_fnMalloc(48);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetCurrentAlloc(), 48);
  EXPECT_EQ(dumpOf(tracker),
            L"CountMalloc 1\nCountFree 0\nCountRealloc 0\nCurrentAlloc 48 Bytes\n"
            L"CurrentMax 48 Bytes\nActive Allocations:\n" +
                entryLine(0, leaked, 48));
  g_fnFree(leaked);
}

TEST(CHeapTracker, DumpListsLiveBlocksByIdOfTheirLastAllocation) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  void* first = g_fnMalloc(10);      // ID 0
  void* second = g_fnMalloc(20);     // ID 1
  void* third = g_fnMalloc(30);      // ID 2
  g_fnFree(first);                   // ID 3
  second = g_fnRealloc(second, 25);  // ID 4
  tracker.Deactivate();
  const std::wstring text = dumpOf(tracker);
  EXPECT_TRUE(endsWith(text, L"Active Allocations:\n" + entryLine(2, third, 30) + entryLine(4, second, 25))) << text;
  EXPECT_EQ(tracker.GetCurrentAlloc(), 55);
  EXPECT_EQ(tracker.GetCurrentMax(), 60);
  g_fnFree(second);
  g_fnFree(third);
}

TEST(CHeapTracker, DumpWithoutLiveBlocksEndsWithTheHeading) {
  CHeapTracker tracker(false, false);
  EXPECT_EQ(dumpOf(tracker),
            L"CountMalloc 0\nCountFree 0\nCountRealloc 0\nCurrentAlloc 0 Bytes\n"
            L"CurrentMax 0 Bytes\nActive Allocations:\n");
}

TEST(CHeapTracker, DumpChangesNoCounterWhetherActiveOrNot) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  XbStreamWriteASCIIStringT<CString> first;
  XbStreamWriteASCIIStringT<CString> second;
  tracker.Activate();
  void* block = g_fnMalloc(56);
  tracker.Dump(first);
  tracker.Dump(second);
  const bool stillActive = tracker.IsActive();
  const std::uint64_t mallocCount = tracker.GetMallocCount();
  const std::int64_t currentAlloc = tracker.GetCurrentAlloc();
  tracker.Deactivate();
  EXPECT_TRUE(stillActive);
  EXPECT_EQ(mallocCount, 1u);
  EXPECT_EQ(currentAlloc, 56);
  EXPECT_EQ(first.GetString().Str(), second.GetString().Str());
  EXPECT_EQ(tracker.GetFreeCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentMax(), 56);

  EXPECT_EQ(dumpOf(tracker), first.GetString().Str());
  EXPECT_FALSE(tracker.IsActive());
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(nextIdPrefix(tracker), L"ID 1");
  g_fnFree(block);
}

TEST(CHeapTracker, ResetZeroesCountersAndKeepsActivity) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  void* block = g_fnMalloc(24);
  g_fnFree(g_fnMalloc(8));
  tracker.Reset();
  const bool stillActive = tracker.IsActive();
  tracker.Deactivate();
  g_fnFree(block);
  EXPECT_TRUE(stillActive);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetFreeCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_EQ(tracker.GetCurrentMax(), 0);
  EXPECT_TRUE(endsWith(dumpOf(tracker), L"Active Allocations:\n"));
  EXPECT_EQ(nextIdPrefix(tracker), L"ID 0");
}

TEST(CHeapTracker, FreeOfAnUnknownBlockCountsOnlyTheFreeAndTheId) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  void* older = g_fnMalloc(32);
  CHeapTracker tracker(false, true);
  tracker.Activate();
  g_fnFree(older);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_EQ(tracker.GetCurrentMax(), 0);
  EXPECT_TRUE(endsWith(dumpOf(tracker), L"Active Allocations:\n"));
  EXPECT_EQ(nextIdPrefix(tracker), L"ID 1");
}

TEST(CHeapTracker, InactiveTrackerSeesNothingNotEvenIds) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker witness(false, true);
  CHeapTracker tracker(false, true);
  witness.Activate();
  void* block = g_fnMalloc(16);
  g_fnFree(block);
  block = g_fnRealloc(nullptr, 16);
  g_fnFree(block);
  witness.Deactivate();
  EXPECT_EQ(witness.GetFreeCount(), 2u);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetFreeCount(), 0u);
  EXPECT_EQ(tracker.GetReallocCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentMax(), 0);
  EXPECT_EQ(nextIdPrefix(tracker), L"ID 0");
}

TEST(CHeapTracker, NullArgumentsCountAsCalls) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  g_fnFree(nullptr);
  void* block = g_fnRealloc(nullptr, 50);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetReallocCount(), 1u);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 50);
  EXPECT_TRUE(endsWith(dumpOf(tracker), entryLine(1, block, 50)));
  g_fnFree(block);
}

TEST(CHeapTracker, ReallocOfAnOlderBlockRecordsTheWholeNewSize) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  void* block = g_fnMalloc(40);
  CHeapTracker tracker(false, true);
  tracker.Activate();
  block = g_fnRealloc(block, 80);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetReallocCount(), 1u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 80);
  EXPECT_TRUE(endsWith(dumpOf(tracker), entryLine(0, block, 80)));
  g_fnFree(block);
}

TEST(CHeapTracker, OperatorNewAndDeleteCountThroughMallocAndFree) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.Activate();
  char* text = new char[40];
  asm volatile("" : : "r"(text) : "memory");
  delete[] text;
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_EQ(tracker.GetCurrentMax(), 40);
}

TEST(CHeapTracker, ManyBlocksCountExactlyWhileTheMapGrowsInsideTheDispatch) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  std::vector<void*> blocks(1000, nullptr);
  CHeapTracker tracker(false, true);
  tracker.Activate();
  for (std::size_t i = 0; i < blocks.size(); ++i) blocks[i] = g_fnMalloc(i + 1);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 1000u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 1000 * 1001 / 2);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
  const std::wstring text = dumpOf(tracker);
  EXPECT_TRUE(endsWith(text, entryLine(999, blocks[999], 1000)));
  tracker.Activate();
  for (void* block : blocks) g_fnFree(block);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetFreeCount(), 1000u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
}

TEST(CHeapTracker, TwoTrackersCountTheSameCalls) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker first(false, true);
  CHeapTracker second(false, true);
  // Each one's map allocates once at its first insertion, which the other
  // one would count; after that the pools serve.
  first.Activate();
  second.Activate();
  g_fnFree(g_fnMalloc(8));
  first.Deactivate();
  second.Deactivate();
  first.Reset();
  second.Reset();

  first.Activate();
  second.Activate();
  void* block = g_fnMalloc(24);
  g_fnFree(block);
  first.Deactivate();
  second.Deactivate();
  for (const CHeapTracker* tracker : {&first, &second}) {
    EXPECT_EQ(tracker->GetMallocCount(), 1u);
    EXPECT_EQ(tracker->GetFreeCount(), 1u);
    EXPECT_EQ(tracker->GetCurrentAlloc(), 0);
    EXPECT_EQ(tracker->GetCurrentMax(), 24);
  }
}

TEST(CHeapTracker, SecondTrackerCountsTheFirstOnesInternalAllocations) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker first(false, true);
  CHeapTracker second(false, true);
  first.Activate();
  second.Activate();
  void* block = g_fnMalloc(24);
  first.Deactivate();
  second.Deactivate();
  g_fnFree(block);
  EXPECT_EQ(first.GetMallocCount(), 1u);
  EXPECT_GT(second.GetMallocCount(), 1u);
}

TEST(CHeapTracker, DestroyedTrackerLeavesTheOthersCounting) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker first(false, true);
  auto middle = std::make_unique<CHeapTracker>(false, true);
  CHeapTracker last(false, true);
  middle->Activate();
  middle.reset();
  for (CHeapTracker* tracker : {&first, &last}) {
    tracker->Activate();
    g_fnFree(g_fnMalloc(12));
    tracker->Deactivate();
    EXPECT_EQ(tracker->GetMallocCount(), 1u);
    EXPECT_EQ(tracker->GetFreeCount(), 1u);
  }
}

TEST(CHeapTracker, SeesAllocationsOfOtherThreads) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  std::atomic<int> stage{0};
  auto waitFor = [&stage](int value) {
    while (stage.load() != value) std::this_thread::yield();
  };
  std::thread worker([&stage, &waitFor] {
    g_fnFree(g_fnMalloc(16));  // the thread's first allocation sets up its arena
    stage.store(1);
    waitFor(2);
    g_fnFree(g_fnMalloc(72));
    stage.store(3);
    waitFor(4);  // the end of the thread frees memory: only after Deactivate
  });
  waitFor(1);
  tracker.Activate();
  stage.store(2);
  waitFor(3);
  tracker.Deactivate();
  stage.store(4);
  worker.join();
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetCurrentMax(), 72);
}

// Four threads allocate at once while the tracker is active; every call is
// counted and the live bytes come back to zero, whichever thread runs.
TEST(CHeapTracker, CountsExactlyWhileSeveralThreadsAllocateAtOnce) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  constexpr int c_iThreads = 4, c_iPairs = 20000;
  CHeapTracker tracker(false, true);
  std::atomic<int> ready{0}, done{0};
  std::atomic<bool> go{false}, leave{false};
  std::vector<std::thread> workers;
  for (int t = 0; t < c_iThreads; ++t) {
    workers.emplace_back([&, t] {
      g_fnFree(g_fnMalloc(16));  // the thread's arena, before the count starts
      ready.fetch_add(1);
      while (!go.load()) std::this_thread::yield();
      for (int i = 0; i < c_iPairs; ++i) g_fnFree(g_fnMalloc(16 + static_cast<std::size_t>((i * 7 + t) % 500)));
      done.fetch_add(1);
      while (!leave.load()) std::this_thread::yield();
    });
  }
  while (ready.load() != c_iThreads) std::this_thread::yield();
  tracker.Activate();
  go.store(true);
  while (done.load() != c_iThreads) std::this_thread::yield();
  tracker.Deactivate();
  leave.store(true);
  for (std::thread& worker : workers) worker.join();
  EXPECT_EQ(tracker.GetMallocCount(), std::uint64_t{c_iThreads} * c_iPairs);
  EXPECT_EQ(tracker.GetFreeCount(), std::uint64_t{c_iThreads} * c_iPairs);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_GE(tracker.GetCurrentMax(), 515);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
}

TEST(CHeapTracker, UnhookAllEndsTheInterceptionUntilTheNextInitialize) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  CHeapTracker::UnhookAll();
  tracker.Activate();
  g_fnFree(g_fnMalloc(20));
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetFreeCount(), 0u);

  CHeapTracker rehooking(false, true);
  tracker.Activate();
  g_fnFree(g_fnMalloc(20));
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
}

TEST(CHeapTracker, AddressAllocatedTwiceStaysLiveUntilItsLastFree) {
  CHeapTracker tracker(false, false);
  tracker.Activate();
  const std::uint64_t address = 0x5000;
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, address, 10);
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, address, 20);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 30);
  CHeapTrackerTestAccess::Track(tracker, EOperation::Free, address, 0, 0);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 30);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
  EXPECT_TRUE(endsWith(dumpOf(tracker), entryLine(1, reinterpret_cast<void*>(address), 30)));
  CHeapTrackerTestAccess::Track(tracker, EOperation::Free, address, 0, 0);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
  EXPECT_EQ(tracker.GetCurrentMax(), 30);
  EXPECT_EQ(tracker.GetMallocCount(), 2u);
  EXPECT_EQ(tracker.GetFreeCount(), 2u);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
}

TEST(CHeapTracker, ConsistencyTestComparesCurrentAllocationWithTheMap) {
  CHeapTracker tracker(false, false);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
  CHeapTrackerTestAccess::SetCurrentAlloc(tracker, 5);
  EXPECT_FALSE(CHeapTrackerTestAccess::ConsistencyTest(tracker));  // bytes, but no block
  tracker.Activate();
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, 0x4000, 10);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 15);
  EXPECT_FALSE(CHeapTrackerTestAccess::ConsistencyTest(tracker));  // 15 against 10
  CHeapTrackerTestAccess::SetCurrentAlloc(tracker, 10);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
}

TEST(CHeapTracker, TrackFollowsTheDispatchRulesForOneTracker) {
  CHeapTracker tracker(false, false);
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, 0x100, 7);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);  // inactive: nothing
  tracker.Activate();
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, 0x100, 7);
  CHeapTrackerTestAccess::Track(tracker, EOperation::Realloc, 0x100, 0x200, 9);
  CHeapTrackerTestAccess::Track(tracker, EOperation::Free, 0x999, 0, 0);
  EXPECT_TRUE(tracker.IsActive());
  EXPECT_EQ(tracker.GetMallocCount(), 1u);
  EXPECT_EQ(tracker.GetReallocCount(), 1u);
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 9);
  EXPECT_EQ(tracker.GetCurrentMax(), 9);
  EXPECT_TRUE(CHeapTrackerTestAccess::ConsistencyTest(tracker));
  // The realloc was operation 1; the free of an unknown address took ID 2.
  CHeapTrackerTestAccess::Track(tracker, EOperation::Malloc, 0, 0x300, 1);
  EXPECT_TRUE(endsWith(dumpOf(tracker), entryLine(1, reinterpret_cast<void*>(0x200), 9) +
                                            entryLine(3, reinterpret_cast<void*>(0x300), 1)));
}

}  // namespace
}  // namespace TestSuite
