// The open trace list and the finished groups: order, removal during a
// walk, and the pool that the list's nodes come from.
#include "report/TraceLists.h"

#include <gtest/gtest.h>

#include <string>

namespace TestSuite::Report {
namespace {

STrace trace(const wchar_t* className, const wchar_t* caseName) {
  return STrace{className, caseName, std::nullopt, SRevisionResult{1, true}};
}

std::wstring names(COpenTraceList& list) {
  std::wstring text;
  list.RemoveIf([&text](STrace& item) {
    text += item.Case.Str() + L"|";
    return false;
  });
  return text;
}

TEST(OpenTraceList, KeepsTheOrderOfAppendingAndCounts) {
  COpenTraceList list;
  EXPECT_TRUE(list.IsEmpty());
  list.Append(trace(L"A", L"1"));
  list.Append(trace(L"A", L"2"));
  list.Append(trace(L"B", L"3"));
  EXPECT_EQ(list.GetCount(), 3u);
  EXPECT_EQ(names(list), L"1|2|3|");
}

TEST(OpenTraceList, RemovesFirstMiddleAndLastDuringOneWalk) {
  COpenTraceList list;
  for (const wchar_t* name : {L"1", L"2", L"3", L"4", L"5"}) list.Append(trace(L"A", name));
  list.RemoveIf([](STrace& item) { return item.Case != CString(L"2") && item.Case != CString(L"4"); });
  EXPECT_EQ(list.GetCount(), 2u);
  EXPECT_EQ(names(list), L"2|4|");
  list.Append(trace(L"A", L"6"));
  EXPECT_EQ(names(list), L"2|4|6|");
  list.RemoveIf([](STrace&) { return true; });
  EXPECT_TRUE(list.IsEmpty());
  list.Append(trace(L"A", L"7"));
  EXPECT_EQ(names(list), L"7|");
}

TEST(OpenTraceList, ChangesMadeDuringTheWalkStay) {
  COpenTraceList list;
  list.Append(trace(L"A", L"1"));
  list.RemoveIf([](STrace& item) {
    item.After.Revision = 42;
    return false;
  });
  std::uint64_t revision = 0;
  list.RemoveIf([&revision](STrace& item) {
    revision = item.After.Revision;
    return false;
  });
  EXPECT_EQ(revision, 42u);
}

TEST(OpenTraceList, NodesComeFromTheSharedPoolAndGoBack) {
  const std::shared_ptr<XbPlexManager> pool = COpenTraceList::MakePool();
  {
    COpenTraceList list(pool);
    for (int i = 0; i < 100; ++i) list.Append(trace(L"A", L"x"));
    EXPECT_EQ(pool->GetUsedCount(), 100u);
    list.RemoveIf([](STrace&) { return true; });
    EXPECT_EQ(pool->GetUsedCount(), 0u);
    list.Append(trace(L"A", L"y"));
    EXPECT_EQ(pool->GetUsedCount(), 1u);
  }
  EXPECT_EQ(pool->GetUsedCount(), 0u);  // the list's destructor gives its nodes back
}

TEST(OpenTraceList, ThePoolOutlivesTheListThatSharesIt) {
  std::weak_ptr<XbPlexManager> watched;
  {
    COpenTraceList list;
    list.Append(trace(L"A", L"1"));
  }
  std::shared_ptr<XbPlexManager> pool = COpenTraceList::MakePool();
  watched = pool;
  auto list = std::make_unique<COpenTraceList>(pool);
  list->Append(trace(L"A", L"1"));
  pool.reset();
  EXPECT_FALSE(watched.expired());
  list.reset();
  EXPECT_TRUE(watched.expired());
}

TEST(TraceGroups, GroupsByClassInTheOrderOfFirstFinishing) {
  CTraceGroups groups;
  groups.Add(trace(L"B", L"b1"));
  groups.Add(trace(L"A", L"a1"));
  groups.Add(trace(L"B", L"b2"));
  ASSERT_EQ(groups.GetGroups().GetCount(), 2u);
  EXPECT_EQ(groups.GetTraceCount(), 3u);
  const XbArray<STrace>& first = groups.GetGroups()[0];
  ASSERT_EQ(first.GetCount(), 2u);
  EXPECT_EQ(first[0].Case, CString(L"b1"));
  EXPECT_EQ(first[1].Case, CString(L"b2"));
  EXPECT_EQ(groups.GetGroups()[1][0].Class, CString(L"A"));
}

}  // namespace
}  // namespace TestSuite::Report
