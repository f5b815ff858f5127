#include "foundation/XbSingleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

struct SApiCounted {
  static std::atomic<int> s_iMade;
  SApiCounted() { ++s_iMade; }
  int iValue = 7;
};
std::atomic<int> SApiCounted::s_iMade{0};

struct SApiNeverAsked {};

struct SApiShared {
  int iValue = 0;
};

}  // namespace

TEST(XbSingleton, HasInstanceDoesNotMakeOne) {
  EXPECT_FALSE(XbSingleton<SApiNeverAsked>::HasInstance());
  EXPECT_FALSE(XbSingleton<SApiNeverAsked>::HasInstance());
}

TEST(XbSingleton, GetInstanceMakesOneInstanceOnFirstRequest) {
  SApiShared& first = XbSingleton<SApiShared>::GetInstance();
  EXPECT_TRUE(XbSingleton<SApiShared>::HasInstance());
  first.iValue = 42;
  EXPECT_EQ(&XbSingleton<SApiShared>::GetInstance(), &first);
  EXPECT_EQ(XbSingleton<SApiShared>::GetInstance().iValue, 42);
}

TEST(XbSingleton, ThreadsAskingAtOnceShareOneInstance) {
  std::vector<std::thread> threads;
  std::vector<SApiCounted*> seen(8, nullptr);
  for (std::size_t i = 0; i < seen.size(); ++i) {
    threads.emplace_back([&seen, i] { seen[i] = &XbSingleton<SApiCounted>::GetInstance(); });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(SApiCounted::s_iMade, 1);
  for (SApiCounted* p : seen) EXPECT_EQ(p, seen[0]);
  EXPECT_EQ(seen[0]->iValue, 7);
}
