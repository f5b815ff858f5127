#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "foundation/ZoUniqueId.h"
#include "foundation/platform/NamedSemaphore.h"

namespace NamedSemaphore = ZoPlatform::NamedSemaphore;
using NamedSemaphore::CSemaphore;
using NamedSemaphore::EWaitResult;

namespace {

class CName {
 public:
  CName() : m_sName("ZoTestSuite-test-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8()) {}
  ~CName() { NamedSemaphore::Remove(m_sName); }
  const std::string& operator*() const { return m_sName; }

 private:
  std::string m_sName;
};

}  // namespace

TEST(NamedSemaphore, PostAndWaitCountThroughEveryHold) {
  CName name;
  CSemaphore owner, other;
  ASSERT_TRUE(owner.Create(*name, 0));
  ASSERT_TRUE(other.Open(*name));
  EXPECT_EQ(other.GetValue(), 0);
  EXPECT_TRUE(owner.Post());
  EXPECT_TRUE(owner.Post());
  EXPECT_EQ(other.GetValue(), 2);
  EXPECT_EQ(other.Wait(0), EWaitResult::eSignalled);
  EXPECT_EQ(other.Wait(0), EWaitResult::eSignalled);
  EXPECT_EQ(other.Wait(0), EWaitResult::eTimedOut);
  EXPECT_EQ(owner.GetValue(), 0);
}

TEST(NamedSemaphore, AnInitialCountIsTaken) {
  CName name;
  CSemaphore semaphore;
  ASSERT_TRUE(semaphore.Create(*name, 1));
  EXPECT_EQ(semaphore.Wait(0), EWaitResult::eSignalled);
  EXPECT_EQ(semaphore.Wait(0), EWaitResult::eTimedOut);
}

TEST(NamedSemaphore, AWaitEndsWithThePostOfAnotherThread) {
  CName name;
  CSemaphore waiter;
  ASSERT_TRUE(waiter.Create(*name, 0));
  std::thread poster([&name] {
    CSemaphore semaphore;
    if (semaphore.Open(*name)) semaphore.Post();
  });
  EXPECT_EQ(waiter.Wait(60000), EWaitResult::eSignalled);
  poster.join();
}

TEST(NamedSemaphore, AWaitTimesOutAfterItsLimit) {
  CName name;
  CSemaphore semaphore;
  ASSERT_TRUE(semaphore.Create(*name, 0));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(semaphore.Wait(50), EWaitResult::eTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
}

TEST(NamedSemaphore, ANameCanBeMadeOnlyOnceAndRemovedOnce) {
  CName name;
  CSemaphore first, second;
  ASSERT_TRUE(first.Create(*name, 0));
  int error = 0;
  EXPECT_FALSE(second.Create(*name, 0, &error));
  EXPECT_EQ(error, EEXIST);
  EXPECT_TRUE(NamedSemaphore::Exists(*name));
  EXPECT_TRUE(NamedSemaphore::Remove(*name));
  EXPECT_FALSE(NamedSemaphore::Exists(*name));
  EXPECT_FALSE(NamedSemaphore::Remove(*name));
  EXPECT_FALSE(second.Open(*name, &error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_TRUE(first.Post());  // a hold outlives the name
  EXPECT_EQ(first.Wait(0), EWaitResult::eSignalled);
}

TEST(NamedSemaphore, NothingHeldNothingDone) {
  CSemaphore semaphore;
  EXPECT_FALSE(semaphore.IsOpen());
  EXPECT_FALSE(semaphore.Post());
  EXPECT_EQ(semaphore.GetValue(), -1);
  EXPECT_EQ(semaphore.Wait(0), EWaitResult::eFailed);
  int error = 0;
  EXPECT_FALSE(semaphore.Create("a/b", 0, &error));
  EXPECT_EQ(error, EINVAL);
  EXPECT_FALSE(semaphore.Open(""));
}

TEST(NamedSemaphore, ListNamesFindsTheSemaphoresOfAPrefix) {
  CName name;
  CSemaphore semaphore;
  ASSERT_TRUE(semaphore.Create(*name, 0));
  EXPECT_EQ(NamedSemaphore::ListNames(*name), std::vector<std::string>{*name});
  NamedSemaphore::Remove(*name);
  EXPECT_TRUE(NamedSemaphore::ListNames(*name).empty());
}
