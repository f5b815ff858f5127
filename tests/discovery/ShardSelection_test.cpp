// The parts of a sharded run over real data trees, with the test classes of
// the library discovery_TestClasses (Alpha, Beta, Zulu ... list one subtest
// per line of "cases.txt"): by hash the parts are disjoint, together they
// are the whole set, a new case moves no other, and one class in many
// directories spreads; by time the parts are balanced.
#include "discovery/ShardSelection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ZoTestSuiteTree.h"
#include "foundation/ZoMurmurHash3.h"
#include "select_DataTree.h"

using namespace TestSuite;

namespace {

// Every case of a collected list as the bytes that place it.
std::set<std::string> keysOf(const SelectDataTree& tree, const XbArray<SUnitTest>& unitTests) {
  std::set<std::string> keys;
  for (const SUnitTest& unitTest : unitTests)
    for (const SUnitTest::SCase& testCase : unitTest.Cases)
      keys.insert(GetShardKeyBytes(tree.Path(), unitTest, testCase));
  return keys;
}

class ShardSelectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadSelectTestClasses(), "");
    // Beta stands in twelve directories with the same case names.
    m_tree.Class(L"Alpha", {"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8"});
    for (int i = 0; i < 12; ++i) m_tree.Class(FormatString(L"group%02d/Beta", i), {"b1", "b2"});
    m_tree.Class(L"deep/er/Zulu", {"z1", "z2", "z3", "z4", "z5"});
  }
  XbArray<SUnitTest> Collect(unsigned int index, unsigned int count) const {
    SCollectOptions options;
    options.shard.uiIndex = index;
    options.shard.uiCount = count;
    return CollectUnitTests(m_tree.Path(), options);
  }
  // The part of each case among `count` parts, by its key bytes.
  std::map<std::string, unsigned int> PartsOf(unsigned int count) const {
    std::map<std::string, unsigned int> parts;
    for (unsigned int i = 0; i < count; ++i)
      for (const std::string& key : keysOf(m_tree, Collect(i, count))) EXPECT_TRUE(parts.emplace(key, i).second) << key;
    return parts;
  }

  SelectDataTree m_tree;
};

}  // namespace

TEST_F(ShardSelectionTest, PartsAreDisjointAndTogetherTheWholeSet) {
  const std::set<std::string> whole = keysOf(m_tree, Collect(0, 1));
  ASSERT_EQ(whole.size(), 8u + 24u + 5u);
  for (unsigned int count : {1u, 2u, 3u, 7u}) {
    std::set<std::string> united;
    std::size_t total = 0;
    for (unsigned int i = 0; i < count; ++i) {
      const std::set<std::string> part = keysOf(m_tree, Collect(i, count));
      total += part.size();
      united.insert(part.begin(), part.end());
    }
    EXPECT_EQ(total, whole.size()) << count << " parts";  // no case in two parts
    EXPECT_EQ(united, whole) << count << " parts";
  }
}

TEST_F(ShardSelectionTest, AddingACaseMovesNoOtherCase) {
  for (unsigned int count : {2u, 3u, 7u}) {
    const std::map<std::string, unsigned int> before = PartsOf(count);
    m_tree.Class(FormatString(L"added%u/Alpha", count), {"new"});
    m_tree.Class(L"Alpha", {"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "a9"});
    const std::map<std::string, unsigned int> after = PartsOf(count);
    EXPECT_EQ(after.size(), before.size() + (count == 2 ? 2u : 1u));
    for (const auto& [key, part] : before) EXPECT_EQ(after.at(key), part) << key;
  }
}

TEST_F(ShardSelectionTest, OneClassInManyDirectoriesSpreadsOverTheParts) {
  std::set<unsigned int> partsOfBeta;
  for (unsigned int i = 0; i < 3; ++i)
    for (const SUnitTest& unitTest : Collect(i, 3))
      if (unitTest.Name == L"Beta") partsOfBeta.insert(i);
  EXPECT_EQ(partsOfBeta.size(), 3u);
}

TEST_F(ShardSelectionTest, PartsKeepTheOrderAndDropEmptyClasses) {
  for (unsigned int i = 0; i < 7; ++i) {
    const XbArray<SUnitTest> part = Collect(i, 7);
    for (const SUnitTest& unitTest : part) {
      EXPECT_FALSE(unitTest.Cases.IsEmpty()) << unitTest.Name.ToUtf8();
      std::vector<std::wstring> names;
      for (const SUnitTest::SCase& testCase : unitTest.Cases) names.push_back(testCase.Name.Str());
      EXPECT_TRUE(std::is_sorted(names.begin(), names.end())) << unitTest.Name.ToUtf8();
    }
  }
}

TEST_F(ShardSelectionTest, TheCaseLimitComesFirst) {
  SCollectOptions options;
  options.uiCaseLimit = 10;
  std::size_t total = 0;
  for (unsigned int i = 0; i < 3; ++i) {
    options.shard.uiIndex = i;
    options.shard.uiCount = 3;
    for (const SUnitTest& unitTest : CollectUnitTests(m_tree.Path(), options)) total += unitTest.Cases.GetCount();
  }
  EXPECT_EQ(total, 10u);
}

TEST(ShardKey, IsTheRelativeDirectoryThenTheKeyAsUtf8) {
  SUnitTest unitTest;
  unitTest.Name = L"Größe";
  unitTest.DataDir = L"/data/root/a/b/Größe/";
  SUnitTest::SCase testCase;
  testCase.Name = L"case 1";
  EXPECT_EQ(GetShardKeyBytes(L"/data/root", unitTest, testCase),
            "a/b/Gr\xC3\xB6\xC3\x9F"
            "e/Gr\xC3\xB6\xC3\x9F"
            "e:case 1");
  EXPECT_EQ(GetShardKeyBytes(L"/data/root/", unitTest, testCase), GetShardKeyBytes(L"/data/root", unitTest, testCase));
  unitTest.DataDir = L"/data/root/";
  EXPECT_EQ(GetShardKeyBytes(L"/data/root/", unitTest, testCase),
            "Gr\xC3\xB6\xC3\x9F"
            "e:case 1");
}

TEST(ShardKey, PlacesByTheLowHalfOfMurmurHash3WithSeedZero) {
  for (const std::string key : {"a/B/B:c", "x", "group07/Beta/Beta:b2", ""}) {
    const auto hash = ZoMurmurHash3::GetOptimizedChecksum128(key.data(), static_cast<unsigned int>(key.size()), 0);
    for (unsigned int count : {1u, 2u, 3u, 7u}) EXPECT_EQ(GetShardOfKey(key, count), hash.uiLow % count) << key;
  }
}

TEST(ShardBalance, PartsDifferByAtMostTheLongestCaseOnASkewedSet) {
  std::vector<double> times = {30.0, 12.0, 9.0, 7.5};
  for (int i = 0; i < 200; ++i) times.push_back(0.01 * (1 + i % 17));
  for (unsigned int count : {2u, 3u, 4u, 7u}) {
    const std::vector<unsigned int> parts = AssignShardsByTime(times, count);
    std::vector<double> load(count, 0.0);
    for (std::size_t i = 0; i < times.size(); ++i) load[parts[i]] += times[i];
    const auto [least, most] = std::minmax_element(load.begin(), load.end());
    EXPECT_LE(*most - *least, 30.0 + 1e-9) << count << " parts";
    EXPECT_EQ(AssignShardsByTime(times, count), parts) << "the same times give the same parts";
  }
}

TEST(ShardBalance, LongestFirstToTheLeastLoadedPart) {
  EXPECT_EQ(AssignShardsByTime({1.0, 5.0, 3.0, 3.0}, 2), (std::vector<unsigned int>{0, 0, 1, 1}));
  // Equal times: the part with fewer entries, then the lower index.
  EXPECT_EQ(AssignShardsByTime({0.0, 0.0, 0.0, 0.0, 0.0}, 3), (std::vector<unsigned int>{0, 1, 2, 0, 1}));
  EXPECT_EQ(AssignShardsByTime({4.0, 2.0}, 1), (std::vector<unsigned int>{0, 0}));
  EXPECT_TRUE(AssignShardsByTime({}, 4).empty());
}

TEST(ShardBalance, MedianOfTheKnownTimes) {
  XbMap<CString, double> times;
  EXPECT_EQ(GetMedianCaseTime(times), 0.0);
  times.SetAt(L"A:1", 5.0);
  times.SetAt(L"A:2", 1.0);
  times.SetAt(L"A:3", 3.0);
  EXPECT_EQ(GetMedianCaseTime(times), 3.0);
  times.SetAt(L"A:4", 4.0);
  EXPECT_EQ(GetMedianCaseTime(times), 3.5);
}

TEST_F(ShardSelectionTest, ByTimesCasesMissingFromTheTimesCountWithTheMedian) {
  // Alpha's a1 is long; the known short cases set the median at 1 second,
  // with which every other case counts: a1 alone in one part, the rest
  // spread over the other two.
  SCollectOptions options;
  options.shard.uiCount = 3;
  options.shard.bByTimes = true;
  options.shard.caseTimes.SetAt(L"Alpha:a1", 40.0);
  options.shard.caseTimes.SetAt(L"Alpha:a2", 1.0);
  options.shard.caseTimes.SetAt(L"Alpha:a3", 1.0);
  std::vector<std::size_t> sizes;
  for (unsigned int i = 0; i < 3; ++i) {
    options.shard.uiIndex = i;
    std::size_t cases = 0;
    for (const SUnitTest& unitTest : CollectUnitTests(m_tree.Path(), options)) cases += unitTest.Cases.GetCount();
    sizes.push_back(cases);
  }
  std::sort(sizes.begin(), sizes.end());
  EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 18, 18}));
}

TEST(ShardRunTag, NamesThePartFromOneWithoutASlash) {
  EXPECT_EQ(MakeShardRunTag(1, 4), L"shard 2 of 4");
  EXPECT_EQ(MakeShardRunTag(0, 1), L"shard 1 of 1");
  EXPECT_TRUE(IsShardRunTag(L"shard 2 of 4"));
  EXPECT_TRUE(IsShardRunTag(MakeShardRunTag(11, 12)));
  EXPECT_FALSE(IsShardRunTag(L"nightly"));
  EXPECT_FALSE(IsShardRunTag(L"shard 2 of 4 nightly"));
  EXPECT_FALSE(IsShardRunTag(L"shard 0 of 4"));
  EXPECT_FALSE(IsShardRunTag(L""));
}
