#include "foundation/XbWaitLimit.h"

#include <gtest/gtest.h>

#include <thread>

TEST(XbWaitLimit, NoLimitIsAllOnes) { EXPECT_EQ(XB_INFINITE, 0xFFFFFFFFu); }

TEST(XbWaitLimit, AConditionThatHoldsEndsTheWaitAtOnce) {
  std::mutex mutex;
  std::condition_variable condition;
  std::unique_lock lock(mutex);
  EXPECT_TRUE(XbWaitFor(condition, lock, 0, [] { return true; }));
  EXPECT_TRUE(XbWaitFor(condition, lock, XB_INFINITE, [] { return true; }));
}

TEST(XbWaitLimit, ALimitOfZeroOnlyLooks) {
  std::mutex mutex;
  std::condition_variable condition;
  std::unique_lock lock(mutex);
  EXPECT_FALSE(XbWaitFor(condition, lock, 0, [] { return false; }));
  EXPECT_TRUE(lock.owns_lock());
}

TEST(XbWaitLimit, WithoutALimitTheWaitEndsWhenTheConditionComesTrue) {
  std::mutex mutex;
  std::condition_variable condition;
  bool done = false;
  std::thread setter([&] {
    std::lock_guard lock(mutex);
    done = true;
    condition.notify_all();
  });
  std::unique_lock lock(mutex);
  EXPECT_TRUE(XbWaitFor(condition, lock, XB_INFINITE, [&] { return done; }));
  lock.unlock();
  setter.join();
}
