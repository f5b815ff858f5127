#include "foundation/XbMap.h"

#include <gtest/gtest.h>

#include <set>

TEST(XbMap, LookupCopiesOnlyWhenFound) {
  XbMap<CString, int> map;
  EXPECT_TRUE(map.IsEmpty());
  map.SetAt(L"one", 1);
  int value = -7;
  EXPECT_TRUE(map.Lookup(L"one", value));
  EXPECT_EQ(value, 1);
  value = -7;
  EXPECT_FALSE(map.Lookup(L"two", value));
  EXPECT_EQ(value, -7);
  EXPECT_FALSE(map.Lookup(L"ONE", value));  // keys are compared exactly
}

TEST(XbMap, SetAtReplacesAndIndexInserts) {
  XbMap<CString, CString> map;
  map.SetAt(L"k", L"first");
  map.SetAt(L"k", L"second");
  EXPECT_EQ(map.GetCount(), 1u);
  EXPECT_EQ(*map.Find(L"k"), CString(L"second"));
  EXPECT_TRUE(map[L"new"].IsEmpty());  // inserted with a default value
  EXPECT_EQ(map.GetCount(), 2u);
  map[L"new"] = L"set";
  EXPECT_EQ(*map.Find(L"new"), CString(L"set"));
}

TEST(XbMap, FindContainsAndRemove) {
  XbMap<int, double> map;
  map.SetAt(1, 1.5);
  map.SetAt(2, 2.5);
  const XbMap<int, double>& c = map;
  ASSERT_NE(c.Find(1), nullptr);
  EXPECT_EQ(*c.Find(1), 1.5);
  EXPECT_EQ(c.Find(3), nullptr);
  *map.Find(2) = 9.0;
  EXPECT_EQ(*c.Find(2), 9.0);
  EXPECT_TRUE(map.Contains(1));
  EXPECT_FALSE(map.Contains(3));
  EXPECT_TRUE(map.RemoveKey(1));
  EXPECT_FALSE(map.RemoveKey(1));
  EXPECT_FALSE(map.Contains(1));
  EXPECT_EQ(map.GetCount(), 1u);
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
}

TEST(XbMap, IterationVisitsEveryPairOnce) {
  XbMap<CString, int> map;
  for (int i = 0; i < 50; ++i) map.SetAt(FormatString(L"key%d", i), i);
  std::set<int> seen;
  for (const auto& [key, value] : map) {
    EXPECT_EQ(key, FormatString(L"key%d", value));
    EXPECT_TRUE(seen.insert(value).second);
  }
  EXPECT_EQ(seen.size(), 50u);
  for (auto& pair : map) pair.second = -pair.second;
  EXPECT_EQ(*map.Find(L"key7"), -7);
}

TEST(XbMap, EqualityIgnoresInsertionOrder) {
  XbMap<int, int> a, b;
  a.SetAt(1, 10);
  a.SetAt(2, 20);
  b.SetAt(2, 20);
  b.SetAt(1, 10);
  EXPECT_TRUE(a == b);
  b.SetAt(1, 11);
  EXPECT_FALSE(a == b);
}
