#include "foundation/XbArray.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <stdexcept>

#include "foundation/CString.h"

TEST(XbArray, AddReturnsTheIndexOfTheNewElement) {
  XbArray<CString> a;
  EXPECT_TRUE(a.IsEmpty());
  EXPECT_EQ(a.GetCount(), 0u);
  EXPECT_EQ(a.Add(CString(L"x")), 0u);
  const CString y(L"y");
  EXPECT_EQ(a.Add(y), 1u);
  EXPECT_EQ(a.Emplace(L"z"), CString(L"z"));
  EXPECT_EQ(a.GetCount(), 3u);
  EXPECT_FALSE(a.IsEmpty());
  EXPECT_EQ(a[0], CString(L"x"));
  EXPECT_EQ(a.GetAt(1), y);
  EXPECT_EQ(a.Last(), CString(L"z"));
  a[0] = L"changed";
  a.GetAt(1) = L"too";
  a.Last() = L"last";
  EXPECT_EQ(a, (XbArray<CString>{L"changed", L"too", L"last"}));
}

TEST(XbArray, MoveOnlyElements) {
  XbArray<std::unique_ptr<int>> a;
  a.Add(std::make_unique<int>(4));
  a.Emplace(std::make_unique<int>(5));
  EXPECT_EQ(*a[0] + *a[1], 9);
}

TEST(XbArray, InsertRemoveAndResize) {
  XbArray<int> a{1, 2, 3, 4, 5};
  a.InsertAt(0, 0);
  a.InsertAt(6, 6);  // at the end
  EXPECT_EQ(a, (XbArray<int>{0, 1, 2, 3, 4, 5, 6}));
  a.RemoveAt(1);
  EXPECT_EQ(a, (XbArray<int>{0, 2, 3, 4, 5, 6}));
  a.RemoveAt(2, 3);
  EXPECT_EQ(a, (XbArray<int>{0, 2, 6}));
  a.RemoveAt(0, 0);
  EXPECT_EQ(a.GetCount(), 3u);
  a.SetCount(5);  // grows with value-initialised elements
  EXPECT_EQ(a, (XbArray<int>{0, 2, 6, 0, 0}));
  a.SetCount(1);
  EXPECT_EQ(a, (XbArray<int>{0}));
  a.Reserve(100);
  EXPECT_EQ(a.GetCount(), 1u);
  a.RemoveAll();
  EXPECT_TRUE(a.IsEmpty());
}

TEST(XbArray, GetAtChecksTheIndex) {
  XbArray<int> a{1};
  const XbArray<int>& c = a;
  EXPECT_THROW(a.GetAt(1), std::out_of_range);
  EXPECT_THROW(c.GetAt(5), std::out_of_range);
  EXPECT_EQ(c.GetAt(0), 1);
  EXPECT_EQ(c[0], 1);
  EXPECT_EQ(c.Last(), 1);
}

TEST(XbArray, AppendIterateAndCompare) {
  XbArray<int> a{1, 2};
  const XbArray<int> b{3};
  a.Append(b);
  a.Append(XbArray<int>());
  EXPECT_EQ(std::accumulate(a.begin(), a.end(), 0), 6);
  const XbArray<int>& c = a;
  int order = 0;
  for (int value : c) EXPECT_EQ(value, ++order);
  EXPECT_EQ(order, 3);
  for (int& value : a) value *= 10;
  EXPECT_EQ(a.Std(), (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(XbArray<int>(std::vector<int>{10, 20, 30}), a);
  EXPECT_FALSE(a == b);
  a.Std().push_back(40);
  EXPECT_EQ(a.GetCount(), 4u);
}
