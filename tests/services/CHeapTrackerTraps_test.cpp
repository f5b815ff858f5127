// Tests of CHeapTracker's observation of an allocation ID or size: the
// breakpoint trap, which ends a process that runs without a debugger.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "heap_TrackerTestKit.h"
#include "services/CHeapTracker.h"

namespace TestSuite {
namespace {

TEST(CHeapTracker, FreeHasNoObservationCheck) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  CHeapTracker tracker(false, true);
  tracker.ObserveID(1);
  tracker.ObserveSize(0);
  tracker.Activate();
  void* block = g_fnMalloc(16);  // ID 0
  g_fnFree(block);               // ID 1, size 0: no check
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetFreeCount(), 1u);
}

using CHeapTrackerDeathTest = ::testing::Test;

TEST_F(CHeapTrackerDeathTest, ObserveIdZeroStopsAtTheFirstOperation) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveID(0);
        tracker.Activate();
        g_fnMalloc(16);
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
}

TEST_F(CHeapTrackerDeathTest, ObserveIdCountsFreesAsOperations) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveID(2);
        tracker.Activate();
        g_fnFree(g_fnMalloc(16));  // IDs 0 and 1
        g_fnMalloc(16);            // ID 2
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
}

TEST_F(CHeapTrackerDeathTest, ObserveSizeStopsAtMallocAndRealloc) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveSize(4321);
        tracker.Activate();
        g_fnMalloc(4321);
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveSize(4321);
        tracker.Activate();
        g_fnRealloc(g_fnMalloc(10), 4321);
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
}

TEST_F(CHeapTrackerDeathTest, UnobservedSizesAndIdsRunThrough) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveSize(4321);
        tracker.ObserveID(50);
        tracker.Activate();
        g_fnFree(g_fnRealloc(g_fnMalloc(4320), 4322));
        tracker.Deactivate();
        std::exit(tracker.GetMallocCount() == 1 && tracker.GetReallocCount() == 1 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(CHeapTrackerDeathTest, ResetKeepsTheObservedIdAndSize) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveSize(777);
        tracker.Reset();
        tracker.Activate();
        g_fnMalloc(777);
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
  EXPECT_EXIT(
      {
        CHeapTracker tracker(false, true);
        tracker.ObserveID(1);
        tracker.Activate();
        g_fnFree(nullptr);  // ID 0
        tracker.Reset();    // the next operation is ID 0 again
        g_fnFree(nullptr);  // ID 0
        g_fnMalloc(8);      // ID 1
        tracker.Deactivate();
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
}

}  // namespace
}  // namespace TestSuite
