// The slot pool: slot size and alignment, blocks taken only when no freed
// slot is left, and reuse of freed slots.
#include "XbPlexManager.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

namespace {

TEST(XbPlexManager, SlotsAreAlignedAndAtLeastAPointerWide) {
  XbPlexManager tiny(1);
  EXPECT_GE(tiny.GetSlotSize(), sizeof(void*));
  XbPlexManager pool(24, 4);
  for (int i = 0; i < 10; ++i) {
    void* slot = pool.Allocate();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slot) % alignof(std::max_align_t), 0u);
  }
}

TEST(XbPlexManager, TakesABlockOnlyWhenNoSlotIsFree) {
  XbPlexManager pool(32, 4);
  EXPECT_EQ(pool.GetBlockCount(), 0u);
  std::vector<void*> slots;
  for (int i = 0; i < 4; ++i) slots.push_back(pool.Allocate());
  EXPECT_EQ(pool.GetBlockCount(), 1u);
  slots.push_back(pool.Allocate());
  EXPECT_EQ(pool.GetBlockCount(), 2u);
  EXPECT_EQ(pool.GetUsedCount(), 5u);
  EXPECT_EQ(std::set<void*>(slots.begin(), slots.end()).size(), 5u);
}

TEST(XbPlexManager, AFreedSlotIsHandedOutAgainBeforeANewBlock) {
  XbPlexManager pool(32, 2);
  void* a = pool.Allocate();
  void* b = pool.Allocate();
  pool.Free(a);
  EXPECT_EQ(pool.GetUsedCount(), 1u);
  EXPECT_EQ(pool.Allocate(), a);
  EXPECT_EQ(pool.GetBlockCount(), 1u);
  pool.Free(b);
  pool.Free(nullptr);
  EXPECT_EQ(pool.GetUsedCount(), 1u);
}

TEST(XbPlexManager, SlotsDoNotOverlap) {
  XbPlexManager pool(40, 3);
  std::vector<unsigned char*> slots;
  for (int i = 0; i < 9; ++i) {
    auto* slot = static_cast<unsigned char*>(pool.Allocate());
    std::memset(slot, i + 1, 40);
    slots.push_back(slot);
  }
  for (int i = 0; i < 9; ++i)
    for (int byte = 0; byte < 40; ++byte) ASSERT_EQ(slots[i][byte], i + 1);
}

}  // namespace
