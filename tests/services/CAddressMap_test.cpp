// Tests of CAddressMap: lookup, removal with the entries behind shifted back,
// the key 0, growth of the table and what happens without memory.
#include "services/CAddressMap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>

namespace {

using TestSuite::CAddressMap;

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

using CCountedMap = CAddressMap<SValue, CCountingAllocator>;

// Addresses as an allocator hands them out: aligned to 16 bytes.
std::uint64_t addressOf(unsigned int i) { return 0x7f0000001000ull + 16ull * i; }

// Inserts the addresses `from` to `to` - 1, each with its number as the value.
template <typename TMap>
void insertRange(TMap& map, unsigned int from, unsigned int to) {
  for (unsigned int i = from; i < to; ++i) map.Insert(addressOf(i), SValue{i, 0});
}

TEST(CAddressMap, FindsInsertedValuesAndForgetsRemovedOnes) {
  CAddressMap<SValue> map;
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

TEST(CAddressMap, FindOrInsertAddsOnlyWhatIsMissing) {
  CAddressMap<SValue> map;
  bool inserted = false;
  map.FindOrInsert(addressOf(1), SValue{11, 1}, inserted).iB = 7;
  EXPECT_TRUE(inserted);
  SValue& again = map.FindOrInsert(addressOf(1), SValue{99, 9}, inserted);
  EXPECT_FALSE(inserted);
  EXPECT_EQ(again.uiA, 11u) << "the value there is kept";
  EXPECT_EQ(again.iB, 7);
  EXPECT_EQ(map.GetCount(), 1u);
}

TEST(CAddressMap, RemoveIfLetsTheValueDecideWhetherItGoes) {
  CAddressMap<SValue> map;
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

TEST(CAddressMap, StartsWith1024SlotsAndDoublesAboveASixteenthWhileSmall) {
  CAddressMap<SValue> map;
  EXPECT_EQ(map.GetSlotCount(), 0u);
  map.Insert(addressOf(0), SValue{0, 0});
  EXPECT_EQ(map.GetSlotCount(), 1024u);
  insertRange(map, 1, 64);
  EXPECT_EQ(map.GetSlotCount(), 1024u);
  map.Insert(addressOf(64), SValue{64, 0});
  EXPECT_EQ(map.GetSlotCount(), 2048u);
  insertRange(map, 65, 129);
  EXPECT_EQ(map.GetSlotCount(), 4096u);
  // Nothing got lost in the two moves.
  for (unsigned int i = 0; i < 129; ++i) {
    ASSERT_NE(map.Find(addressOf(i)), nullptr) << i;
    EXPECT_EQ(map.Find(addressOf(i))->uiA, i);
  }
}

TEST(CAddressMap, FillsUpToHalfOnceTheTableIsLarge) {
  CAddressMap<SValue> map;
  // 32,768 slots hold 2,048 entries; the next doubles into the dense range.
  insertRange(map, 0, 2048);
  EXPECT_EQ(map.GetSlotCount(), 32768u);
  map.Insert(addressOf(2048), SValue{2048, 0});
  EXPECT_EQ(map.GetSlotCount(), 65536u);
  insertRange(map, 2049, 32768);
  EXPECT_EQ(map.GetSlotCount(), 65536u);
  map.Insert(addressOf(32768), SValue{32768, 0});
  EXPECT_EQ(map.GetSlotCount(), 131072u);
  EXPECT_EQ(map.GetCount(), 32769u);
  for (unsigned int i = 0; i <= 32768; i += 97) EXPECT_EQ(map.Find(addressOf(i))->uiA, i) << i;
}

TEST(CAddressMap, KeepsTheKeyZeroBesideTheTable) {
  CAddressMap<SValue> map;
  map.Insert(0, SValue{5, 1});
  EXPECT_EQ(map.GetCount(), 1u);
  EXPECT_EQ(map.GetSlotCount(), 0u) << "the key 0 needs no table";
  ASSERT_NE(map.Find(0), nullptr);
  EXPECT_EQ(map.Find(0)->uiA, 5u);
  map.Insert(addressOf(1), SValue{1, 1});
  bool inserted = true;
  map.FindOrInsert(0, SValue{9, 9}, inserted).iB = 3;
  EXPECT_FALSE(inserted);
  int keys = 0;
  map.ForEach([&keys](std::uint64_t key, const SValue& value) {
    ++keys;
    if (key == 0) { EXPECT_EQ(value.iB, 3); }
  });
  EXPECT_EQ(keys, 2);
  EXPECT_TRUE(map.Remove(0));
  EXPECT_FALSE(map.Remove(0));
  EXPECT_EQ(map.Find(0), nullptr);
  EXPECT_EQ(map.GetCount(), 1u);
  map.Insert(0, SValue{6, 1});
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.Find(0), nullptr);
}

TEST(CAddressMap, AgreesWithAReferenceMapUnderMixedUse) {
  CAddressMap<SValue> map;
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

// With growth refused, the table of 1,024 slots fills up to its last free
// slot: long probe sequences that wrap round the end, and removals that
// shift whole runs back.
TEST(CAddressMap, StaysCorrectWhenFullAndUnableToGrow) {
  CCountingAllocator::Clear();
  CCountedMap map;
  map.Insert(addressOf(0), SValue{0, 0});
  CCountingAllocator::s_bRefuse = true;
  std::map<std::uint64_t, std::uint64_t> reference{{addressOf(0), 0}};
  std::uint64_t state = 99;
  for (int step = 0; step < 200000; ++step) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    const std::uint64_t key = addressOf(static_cast<unsigned int>((state >> 33) % 1400));
    if (map.Find(key)) {
      ASSERT_TRUE(map.Remove(key));
      reference.erase(key);
    } else if (reference.size() < 1023) {
      map.Insert(key, SValue{key, 0});
      reference[key] = key;
    }
  }
  EXPECT_EQ(map.GetSlotCount(), 1024u);
  std::map<std::uint64_t, std::uint64_t> seen;
  map.ForEach([&seen](std::uint64_t key, const SValue& value) { seen[key] = value.uiA; });
  EXPECT_EQ(seen, reference);
  for (const auto& [key, value] : reference) EXPECT_EQ(map.Find(key)->uiA, value);
  CCountingAllocator::s_bRefuse = false;
}

TEST(CAddressMap, ThrowsWhenTheLastFreeSlotWouldGoAndNoLargerTableComes) {
  CCountingAllocator::Clear();
  CCountedMap map;
  CCountingAllocator::s_bRefuse = true;
  EXPECT_THROW(map.Insert(addressOf(0), SValue{0, 0}), XbException);
  CCountingAllocator::s_bRefuse = false;
  map.Insert(addressOf(0), SValue{0, 0});
  CCountingAllocator::s_bRefuse = true;
  insertRange(map, 1, 1023);
  try {
    map.Insert(addressOf(1023), SValue{1023, 0});
    FAIL() << "no exception";
  } catch (const XbException& e) { EXPECT_STREQ(e.what(), "XbPlexManager"); }
  EXPECT_EQ(map.GetCount(), 1023u);
  EXPECT_EQ(map.Find(addressOf(1023)), nullptr);
  CCountingAllocator::s_bRefuse = false;
  map.Insert(addressOf(1023), SValue{1023, 0});
  EXPECT_EQ(map.GetSlotCount(), 2048u);
  for (unsigned int i = 0; i < 1024; ++i) EXPECT_NE(map.Find(addressOf(i)), nullptr) << i;
}

TEST(CAddressMap, AllocatesNothingInSteadyUse) {
  CCountingAllocator::Clear();
  {
    CCountedMap map;
    insertRange(map, 0, 40);
    const int afterFirstFill = CCountingAllocator::s_iAllocations;
    EXPECT_EQ(afterFirstFill, 1);  // the table

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

TEST(CAddressMap, KeepsItsTableWhenGrowingFails) {
  CCountingAllocator::Clear();
  CCountedMap map;
  insertRange(map, 0, 64);
  CCountingAllocator::s_bRefuse = true;
  map.Insert(addressOf(64), SValue{64, 0});  // would double the table
  map.Insert(addressOf(65), SValue{65, 0});  // and tries again
  CCountingAllocator::s_bRefuse = false;
  EXPECT_EQ(map.GetSlotCount(), 1024u);
  for (unsigned int i = 0; i < 66; ++i) EXPECT_NE(map.Find(addressOf(i)), nullptr) << i;
  map.Insert(addressOf(66), SValue{66, 0});
  EXPECT_EQ(map.GetSlotCount(), 2048u);
  for (unsigned int i = 0; i < 67; ++i) EXPECT_NE(map.Find(addressOf(i)), nullptr) << i;
}

}  // namespace
