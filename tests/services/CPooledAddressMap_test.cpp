// Tests of CPooledAddressMap: lookup, removal, growth of the table, recycling
// of pooled nodes and the failure of the pool.
#include "services/CPooledAddressMap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>

namespace {

using TestSuite::CPooledAddressMap;

struct SValue {
  std::uint64_t uiA;
  int iB;
};

// Counts what the map takes from the allocator, and can refuse.
struct CCountingAllocator {
  static inline int s_iAllocations = 0;
  static inline int s_iFrees = 0;
  static inline bool s_bRefuse = false;
  static void* Allocate(std::size_t size) {
    if (s_bRefuse) return nullptr;
    ++s_iAllocations;
    return std::malloc(size);
  }
  static void Free(void* memory) {
    ++s_iFrees;
    std::free(memory);
  }
  static void Clear() {
    s_iAllocations = s_iFrees = 0;
    s_bRefuse = false;
  }
};

using CCountedMap = CPooledAddressMap<SValue, CCountingAllocator>;

// Addresses as an allocator hands them out: aligned to 16 bytes.
std::uint64_t addressOf(unsigned int i) { return 0x7f0000001000ull + 16ull * i; }

TEST(CPooledAddressMap, FindsInsertedValuesAndForgetsRemovedOnes) {
  CPooledAddressMap<SValue> map;
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.Find(addressOf(1)), nullptr);
  map.Insert(addressOf(1), SValue{11, 1});
  map.Insert(addressOf(2), SValue{22, 2});
  ASSERT_NE(map.Find(addressOf(1)), nullptr);
  EXPECT_EQ(map.Find(addressOf(1))->uiA, 11u);
  EXPECT_EQ(map.Find(addressOf(2))->iB, 2);
  EXPECT_EQ(map.GetCount(), 2u);

  map.Find(addressOf(2))->iB = 5;
  EXPECT_EQ(map.Find(addressOf(2))->iB, 5);

  EXPECT_TRUE(map.Remove(addressOf(1)));
  EXPECT_FALSE(map.Remove(addressOf(1)));
  EXPECT_EQ(map.Find(addressOf(1)), nullptr);
  EXPECT_EQ(map.GetCount(), 1u);
}

TEST(CPooledAddressMap, FindOrInsertAddsOnlyWhatIsMissing) {
  CPooledAddressMap<SValue> map;
  bool inserted = false;
  map.FindOrInsert(addressOf(1), SValue{11, 1}, inserted).iB = 7;
  EXPECT_TRUE(inserted);
  SValue& again = map.FindOrInsert(addressOf(1), SValue{99, 9}, inserted);
  EXPECT_FALSE(inserted);
  EXPECT_EQ(again.uiA, 11u) << "the value there is kept";
  EXPECT_EQ(again.iB, 7);
  EXPECT_EQ(map.GetCount(), 1u);
}

TEST(CPooledAddressMap, RemoveIfLetsTheValueDecideWhetherItGoes) {
  CPooledAddressMap<SValue> map;
  map.Insert(addressOf(1), SValue{0, 2});
  const auto countDown = [](SValue& value) { return --value.iB == 0; };
  EXPECT_FALSE(map.RemoveIf(addressOf(1), countDown));
  ASSERT_NE(map.Find(addressOf(1)), nullptr);
  EXPECT_EQ(map.Find(addressOf(1))->iB, 1) << "the change stays with the entry";
  EXPECT_TRUE(map.RemoveIf(addressOf(1), countDown));
  EXPECT_EQ(map.Find(addressOf(1)), nullptr);
  EXPECT_TRUE(map.IsEmpty());
  bool called = false;
  EXPECT_FALSE(map.RemoveIf(addressOf(2), [&called](SValue&) { return called = true; }));
  EXPECT_FALSE(called) << "a missing key is not handed to the callback";
}

TEST(CPooledAddressMap, StartsWith128BucketsAndDoublesAtThreeQuarters) {
  CPooledAddressMap<SValue> map;
  EXPECT_EQ(map.GetBucketCount(), 0u);
  map.Insert(addressOf(0), SValue{0, 0});
  EXPECT_EQ(map.GetBucketCount(), 128u);
  // 95 * 4 < 128 * 3 = 384 = 96 * 4.
  for (unsigned int i = 1; i < 95; ++i) map.Insert(addressOf(i), SValue{i, 0});
  EXPECT_EQ(map.GetBucketCount(), 128u);
  map.Insert(addressOf(95), SValue{95, 0});
  EXPECT_EQ(map.GetBucketCount(), 256u);
  for (unsigned int i = 96; i < 192; ++i) map.Insert(addressOf(i), SValue{i, 0});
  EXPECT_EQ(map.GetBucketCount(), 512u);
  // Nothing got lost in the two rehashes.
  for (unsigned int i = 0; i < 192; ++i) {
    ASSERT_NE(map.Find(addressOf(i)), nullptr) << i;
    EXPECT_EQ(map.Find(addressOf(i))->uiA, i);
  }
}

TEST(CPooledAddressMap, AgreesWithAReferenceMapUnderMixedUse) {
  CPooledAddressMap<SValue> map;
  std::map<std::uint64_t, std::uint64_t> reference;
  std::uint64_t state = 12345;
  for (int step = 0; step < 20000; ++step) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    const std::uint64_t key = addressOf(static_cast<unsigned int>((state >> 33) % 3000));
    if (map.Find(key)) {
      EXPECT_TRUE(map.Remove(key));
      reference.erase(key);
    } else {
      map.Insert(key, SValue{key ^ 0xABCDu, 0});
      reference[key] = key ^ 0xABCDu;
    }
  }
  EXPECT_EQ(map.GetCount(), reference.size());
  std::map<std::uint64_t, std::uint64_t> seen;
  map.ForEach([&seen](std::uint64_t key, const SValue& value) { seen[key] = value.uiA; });
  EXPECT_EQ(seen, reference);
}

TEST(CPooledAddressMap, RecyclesNodesWithoutAllocatingAgain) {
  CCountingAllocator::Clear();
  {
    CCountedMap map;
    for (unsigned int i = 0; i < 40; ++i) map.Insert(addressOf(i), SValue{i, 0});
    const int afterFirstFill = CCountingAllocator::s_iAllocations;
    EXPECT_EQ(afterFirstFill, 2);  // the table and one block of nodes

    for (unsigned int i = 0; i < 40; ++i) EXPECT_TRUE(map.Remove(addressOf(i)));
    for (unsigned int i = 0; i < 40; ++i) map.Insert(addressOf(100 + i), SValue{i, 0});
    map.RemoveAll();
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.Find(addressOf(100)), nullptr);
    for (unsigned int i = 0; i < 40; ++i) map.Insert(addressOf(200 + i), SValue{i, 0});
    EXPECT_EQ(CCountingAllocator::s_iAllocations, afterFirstFill);
    EXPECT_EQ(CCountingAllocator::s_iFrees, 0);
    EXPECT_EQ(map.GetCount(), 40u);
  }
  // The destructor gives back all it took.
  EXPECT_EQ(CCountingAllocator::s_iFrees, CCountingAllocator::s_iAllocations);
}

TEST(CPooledAddressMap, ThrowsWhenThePoolGetsNoMemory) {
  CCountingAllocator::Clear();
  CCountedMap map;
  CCountingAllocator::s_bRefuse = true;
  try {
    map.Insert(addressOf(1), SValue{1, 1});
    FAIL() << "no exception";
  } catch (const XbException& e) { EXPECT_STREQ(e.what(), "XbPlexManager"); }
  EXPECT_TRUE(map.IsEmpty());
  CCountingAllocator::s_bRefuse = false;
  map.Insert(addressOf(1), SValue{1, 1});
  EXPECT_EQ(map.GetCount(), 1u);
}

TEST(CPooledAddressMap, KeepsItsTableWhenGrowingFails) {
  CCountingAllocator::Clear();
  CCountedMap map;
  for (unsigned int i = 0; i < 64; ++i) map.Insert(addressOf(i), SValue{i, 0});  // one full block
  CCountingAllocator::s_bRefuse = true;
  EXPECT_THROW(map.Insert(addressOf(64), SValue{64, 0}), XbException);
  CCountingAllocator::s_bRefuse = false;
  for (unsigned int i = 64; i < 95; ++i) map.Insert(addressOf(i), SValue{i, 0});
  CCountingAllocator::s_bRefuse = true;
  map.Insert(addressOf(95), SValue{95, 0});  // would double the table
  CCountingAllocator::s_bRefuse = false;
  EXPECT_EQ(map.GetBucketCount(), 128u);
  for (unsigned int i = 0; i < 96; ++i) EXPECT_NE(map.Find(addressOf(i)), nullptr) << i;
}

}  // namespace
