// CaseOrder: the seeded order of a shuffled run.
#include "run/CaseOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using namespace TestSuite;

namespace {

std::vector<unsigned int> identity(unsigned int count) {
  std::vector<unsigned int> order(count);
  std::iota(order.begin(), order.end(), 0u);
  return order;
}

}  // namespace

TEST(CaseOrder, IsAPermutationOfEveryRow) {
  for (unsigned int count : {0u, 1u, 2u, 7u, 100u}) {
    std::vector<unsigned int> order = ShuffledOrder(count, 42);
    std::sort(order.begin(), order.end());
    EXPECT_EQ(order, identity(count)) << count;
  }
}

TEST(CaseOrder, TheSameSeedGivesTheSameOrderAndAnotherSeedAnother) {
  EXPECT_EQ(ShuffledOrder(20, 42), ShuffledOrder(20, 42));
  EXPECT_NE(ShuffledOrder(20, 42), ShuffledOrder(20, 43));
  EXPECT_NE(ShuffledOrder(20, 42), identity(20));
}

// The order is fixed by the seed alone, on every build: it does not come
// from the standard library's distributions, which differ between them.
TEST(CaseOrder, TheOrderOfASeedIsFixed) {
  EXPECT_EQ(ShuffledOrder(6, 42), (std::vector<unsigned int>{4, 3, 0, 2, 5, 1}));
}

TEST(CaseOrder, EveryPositionIsReachedByManySeeds) {
  unsigned int firsts[5] = {};
  for (std::uint64_t seed = 0; seed < 500; ++seed) ++firsts[ShuffledOrder(5, seed).front()];
  for (unsigned int count : firsts) EXPECT_GT(count, 60u);
}

TEST(CaseOrder, ShuffleRowsReordersThePointersByTheSeed) {
  XbArray<SCaseResult> table;
  table.SetCount(8);
  RowList rows;
  for (SCaseResult& row : table) rows.Add(&row);
  ShuffleRows(rows, 42);
  const std::vector<unsigned int> order = ShuffledOrder(8, 42);
  ASSERT_EQ(rows.GetCount(), 8u);
  for (unsigned int i = 0; i < 8; ++i) EXPECT_EQ(rows[i], &table[order[i]]) << i;
}
