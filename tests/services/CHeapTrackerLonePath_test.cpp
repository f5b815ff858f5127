// Tests of CHeapTracker's ways through the allocator: the lone tracker is
// served in place, without the lock while the process has only ever had one
// thread and under it otherwise; several trackers are walked one by one.
// All must come to the same figures.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "foundation/XbReentrantLock.h"
#include "heap_TrackerTestKit.h"
#include "services/CHeapTracker.h"

namespace TestSuite {
namespace {

// Dump lines without the addresses, which differ from process to process.
std::string dumpWithoutAddresses(CHeapTracker& tracker) {
  const std::wstring dump = dumpOf(tracker);
  std::string text;
  for (std::size_t at = 0; at < dump.size();) {
    const std::size_t address = dump.find(L"Address 0x", at);
    const std::size_t end = address == std::wstring::npos ? dump.size() : address;
    for (std::size_t i = at; i < end; ++i) text += static_cast<char>(dump[i]);
    if (address == std::wstring::npos) break;
    at = dump.find(L',', address) + 2;
  }
  return text;
}

// A workload with everything the in-place way has to hand on: more live
// blocks than the first table takes (it grows twice), removals that move
// other entries, frees of null and of a block from before, an address live
// twice, and reallocs.
std::string runWorkload() {
  void* before = g_fnMalloc(48);
  CHeapTracker tracker(false, true);
  std::vector<void*> blocks;
  blocks.reserve(300);
  tracker.Activate();
  for (unsigned int i = 0; i < 300; ++i) blocks.push_back(g_fnMalloc(16 + (i * 37) % 900));
  for (unsigned int i = 0; i < 300; i += 3) g_fnFree(blocks[i]);
  g_fnFree(nullptr);
  g_fnFree(before);
  for (unsigned int i = 1; i < 300; i += 3) blocks[i] = g_fnRealloc(blocks[i], 2000 + i);
  for (unsigned int round = 0; round < 2000; ++round) g_fnFree(g_fnMalloc(16 + round % 500));
  for (unsigned int i = 2; i < 300; i += 3) g_fnFree(blocks[i]);
  // A free the tracker does not see: the allocator hands the address out
  // again, which is then live twice.
  void* twice = g_fnMalloc(72);
  tracker.Deactivate();
  g_fnFree(twice);
  tracker.Activate();
  void* again = g_fnMalloc(72);
  tracker.Deactivate();
  const std::string figures =
      "malloc " + std::to_string(tracker.GetMallocCount()) + ", free " + std::to_string(tracker.GetFreeCount()) +
      ", realloc " + std::to_string(tracker.GetReallocCount()) + ", current " +
      std::to_string(tracker.GetCurrentAlloc()) + ", max " + std::to_string(tracker.GetCurrentMax());
  const std::string dump = dumpWithoutAddresses(tracker);
  for (unsigned int i = 1; i < 300; i += 3) g_fnFree(blocks[i]);
  g_fnFree(again);
  return figures + "\n" + dump;
}

// Hands what a death test's process wrote to stderr to the test, between
// the marks "<<" and ">>".
class CCaptureBetweenMarks : public ::testing::MatcherInterface<const std::string&> {
 public:
  explicit CCaptureBetweenMarks(std::string& captured) : m_Captured(captured) {}
  bool MatchAndExplain(const std::string& output, ::testing::MatchResultListener*) const override {
    const std::size_t begin = output.find("<<"), end = output.rfind(">>");
    if (begin == std::string::npos || end == std::string::npos || end < begin) return false;
    m_Captured = output.substr(begin + 2, end - begin - 2);
    return true;
  }
  void DescribeTo(std::ostream* os) const override { *os << "has text between << and >>"; }

 private:
  std::string& m_Captured;
};

TEST(CHeapTrackerLonePath, ComesToTheSameFiguresAsTheLockedPath) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  // A fresh run of this program that runs this test only starts with one
  // thread, and runs nothing of the test but what comes before the death
  // test and its body.
  std::string alone;
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        if (!XbReentrantLock::IsProcessSingleThreaded()) std::_Exit(3);
        const std::string figures = runWorkload();
        if (!XbReentrantLock::IsProcessSingleThreaded()) std::_Exit(4);
        std::fprintf(stderr, "<<%s>>", figures.c_str());
        std::fflush(stderr);
        std::_Exit(0);
      },
      testing::ExitedWithCode(0), ::testing::Matcher<const std::string&>(new CCaptureBetweenMarks(alone)));

  std::thread([] {}).join();  // from here on, this process takes the lock
  ASSERT_FALSE(XbReentrantLock::IsProcessSingleThreaded());
  const std::string locked = runWorkload();
  EXPECT_NE(locked.find("malloc 2302, free 2202, realloc 100, current "), std::string::npos) << locked;
  EXPECT_NE(locked.find("ID 402, Size 2001 Bytes."), std::string::npos) << locked;
  EXPECT_NE(locked.find("Size 144 Bytes."), std::string::npos) << "the address live twice";
  EXPECT_EQ(alone, locked);

  // A second tracker, registered but inactive, sends every call through the
  // list walk of the general way.
  const CHeapTracker bystander(false, true);
  EXPECT_EQ(runWorkload(), locked);
}

using CHeapTrackerLonePathDeathTest = ::testing::Test;

TEST_F(CHeapTrackerLonePathDeathTest, AWatchedSizeStillStopsTheLoneTracker) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        if (!XbReentrantLock::IsProcessSingleThreaded()) std::_Exit(3);
        CHeapTracker tracker(false, true);
        tracker.ObserveSize(4321);
        tracker.Activate();
        g_fnFree(g_fnMalloc(100));
        g_fnFree(g_fnMalloc(4321));
        tracker.Deactivate();
        std::_Exit(0);
      },
      ::testing::KilledBySignal(SIGTRAP), "");
}

}  // namespace
}  // namespace TestSuite
