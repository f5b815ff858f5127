// ZoTimeTracker: named timings that add up per name, kept apart per thread.
#include "foundation/ZoTimeTracker.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

class ZoTimeTrackerTest : public ::testing::Test {
 protected:
  void SetUp() override { ZoTimeTracker::Clear(); }
  void TearDown() override { ZoTimeTracker::Clear(); }
};

TEST_F(ZoTimeTrackerTest, TimingsOfOneNameAddUpInOrderOfFirstUse) {
  ZoTimeTracker::Add(L"load", 0.5);
  ZoTimeTracker::Add(L"mesh", 0.25);
  ZoTimeTracker::Add(L"load", 1.0);
  const XbArray<ZoTimeTracker::SEntry> entries = ZoTimeTracker::GetEntries();
  ASSERT_EQ(entries.GetCount(), 2u);
  EXPECT_EQ(entries[0].sName, CString(L"load"));
  EXPECT_EQ(entries[0].uiCount, 2u);
  EXPECT_DOUBLE_EQ(entries[0].dSeconds, 1.5);
  EXPECT_EQ(entries[1].sName, CString(L"mesh"));
  EXPECT_EQ(entries[1].uiCount, 1u);
  EXPECT_DOUBLE_EQ(entries[1].dSeconds, 0.25);
}

TEST_F(ZoTimeTrackerTest, ClearForgetsEverything) {
  ZoTimeTracker::Add(L"load", 0.5);
  ZoTimeTracker::Clear();
  EXPECT_TRUE(ZoTimeTracker::GetEntries().IsEmpty());
}

TEST_F(ZoTimeTrackerTest, EachThreadHasItsOwnTable) {
  ZoTimeTracker::Add(L"main", 1.0);
  unsigned int otherCount = 0;
  CString otherName;
  std::thread other([&] {
    ZoTimeTracker::Add(L"worker", 2.0);
    const XbArray<ZoTimeTracker::SEntry> entries = ZoTimeTracker::GetEntries();
    otherCount = entries.GetCount();
    if (otherCount == 1) otherName = entries[0].sName;
  });
  other.join();
  EXPECT_EQ(otherCount, 1u);
  EXPECT_EQ(otherName, CString(L"worker"));
  const XbArray<ZoTimeTracker::SEntry> entries = ZoTimeTracker::GetEntries();
  ASSERT_EQ(entries.GetCount(), 1u);
  EXPECT_EQ(entries[0].sName, CString(L"main"));
}

TEST_F(ZoTimeTrackerTest, AScopeAddsOneTimingWhenItEnds) {
  {
    const ZoTimeTracker::CScope scope(L"scoped");
    EXPECT_TRUE(ZoTimeTracker::GetEntries().IsEmpty());
  }
  const XbArray<ZoTimeTracker::SEntry> entries = ZoTimeTracker::GetEntries();
  ASSERT_EQ(entries.GetCount(), 1u);
  EXPECT_EQ(entries[0].sName, CString(L"scoped"));
  EXPECT_EQ(entries[0].uiCount, 1u);
  EXPECT_GE(entries[0].dSeconds, 0.0);
}

TEST_F(ZoTimeTrackerTest, PreallocationKeepsTheEntries) {
  ZoTimeTracker::Add(L"load", 0.5);
  ZoTimeTracker::PreallocateStaticData();
  ASSERT_EQ(ZoTimeTracker::GetEntries().GetCount(), 1u);
  EXPECT_EQ(ZoTimeTracker::GetEntries()[0].sName, CString(L"load"));
}

}  // namespace
