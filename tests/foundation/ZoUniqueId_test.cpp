#include "foundation/ZoUniqueId.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cwctype>
#include <set>
#include <thread>
#include <vector>

#include "foundation/platform/System.h"

namespace {

CString newId() { return ZoUniqueIdT<CString>::GetUniqueID(); }

CString pidPart() { return FormatString(L"%08X", ZoPlatform::System::GetProcessId()); }

}  // namespace

TEST(ZoUniqueId, IsLettersAndDigitsWithTheProcessIdFirst) {
  const CString id = newId();
  EXPECT_EQ(id.GetLength(), 32);
  for (wchar_t ch : id.Str()) EXPECT_TRUE((ch >= L'0' && ch <= L'9') || (ch >= L'A' && ch <= L'Z')) << id.ToUtf8();
  EXPECT_EQ(id.Left(8), pidPart());
}

TEST(ZoUniqueId, ManyCallsGiveDistinctIdsWithARisingCounter) {
  std::set<CString> ids;
  CString previous = newId();
  for (int i = 0; i < 10000; ++i) {
    const CString id = newId();
    EXPECT_EQ(std::wcstoul(id.Mid(8, 8).GetString(), nullptr, 16),
              std::wcstoul(previous.Mid(8, 8).GetString(), nullptr, 16) + 1);
    ids.insert(id);
    previous = id;
  }
  EXPECT_EQ(ids.size(), 10000u);
}

TEST(ZoUniqueId, ThreadsGetDistinctIds) {
  constexpr int c_threads = 4, c_perThread = 2000;
  std::vector<std::vector<CString>> made(c_threads);
  std::vector<std::thread> threads;
  for (int t = 0; t < c_threads; ++t)
    threads.emplace_back([&made, t] {
      for (int i = 0; i < c_perThread; ++i) made[static_cast<std::size_t>(t)].push_back(newId());
    });
  for (auto& thread : threads) thread.join();
  std::set<CString> ids;
  for (const auto& list : made) ids.insert(list.begin(), list.end());
  EXPECT_EQ(ids.size(), static_cast<std::size_t>(c_threads * c_perThread));
}

TEST(ZoUniqueId, AnotherProcessGivesAnotherId) {
  // A forked child starts with a copy of this process's counter: only its
  // process id keeps its ids apart from ours.
  GTEST_FLAG_SET(death_test_style, "fast");
  const CString parent = newId();
  EXPECT_EXIT(
      {
        const CString child = newId();
        const bool ok = child.Left(8) == pidPart() && child.Left(8) != parent.Left(8) && child != parent;
        std::_Exit(ok ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(ZoUniqueId, TheIdNamesTheProcessThatMadeIt) {
  EXPECT_EQ(GetUniqueIdProcessId(ZoUniqueIdT<CString>::GetUniqueID()), ZoPlatform::System::GetProcessId());
  EXPECT_EQ(GetUniqueIdProcessId(L"0000002A"), 42u);
  EXPECT_EQ(GetUniqueIdProcessId(L"not-an-id"), 0u);
  EXPECT_EQ(GetUniqueIdProcessId(L"12"), 0u);
}
