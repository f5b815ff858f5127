#include "foundation/XbReentrantLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/platform/Futex.h"

namespace {

// Constant-initialised, as the allocator's lock must be.
constinit XbReentrantLock g_StaticLock;

bool canLockFromAnotherThread(XbReentrantLock& lock) {
  return std::async(std::launch::async,
                    [&lock] {
                      if (!lock.TryLock()) return false;
                      lock.Unlock();
                      return true;
                    })
      .get();
}

// Threads that each take the lock `rounds` times, once nested, and count
// under it with a plain read-modify-write that only mutual exclusion keeps
// exact; `overlaps` counts entries that found another thread inside.
struct SContention {
  XbReentrantLock lock;
  std::uint64_t uiCount = 0;
  std::atomic<int> iInside{0};
  std::atomic<int> iOverlaps{0};

  void Run(int threads, int rounds) {
    std::atomic<int> ready{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
      workers.emplace_back([&, t] {
        ready.fetch_add(1);
        while (ready.load() < threads) std::this_thread::yield();
        for (int i = 0; i < rounds; ++i) enter(t + i);
      });
    }
    for (std::thread& worker : workers) worker.join();
  }

 private:
  void enter(int salt) {
    std::lock_guard outer(lock);
    if (iInside.fetch_add(1) != 0) iOverlaps.fetch_add(1);
    {
      std::lock_guard inner(lock);
      const std::uint64_t before = uiCount;
      // Now and then giving up the processor between the read and the write
      // widens the window that a second thread inside would use.
      if ((salt & 63) == 0) std::this_thread::yield();
      uiCount = before + 1;
    }
    iInside.fetch_sub(1);
  }
};

}  // namespace

TEST(XbReentrantLock, TheOwningThreadMayEnterAgainAndOthersWaitUntilTheLastUnlock) {
  XbReentrantLock lock;
  lock.Lock();
  lock.Lock();
  EXPECT_TRUE(lock.TryLock());
  EXPECT_TRUE(lock.IsHeldByCurrentThread());
  EXPECT_FALSE(canLockFromAnotherThread(lock));
  lock.Unlock();
  lock.Unlock();
  EXPECT_FALSE(canLockFromAnotherThread(lock)) << "one Lock is still open";
  lock.Unlock();
  EXPECT_FALSE(lock.IsHeldByCurrentThread());
  EXPECT_TRUE(canLockFromAnotherThread(lock));
}

TEST(XbReentrantLock, AConstantInitialisedLockWorksAtOnce) {
  EXPECT_FALSE(g_StaticLock.IsHeldByCurrentThread());
  std::lock_guard guard(g_StaticLock);
  EXPECT_TRUE(g_StaticLock.IsHeldByCurrentThread());
  EXPECT_FALSE(canLockFromAnotherThread(g_StaticLock));
}

TEST(XbReentrantLock, EightThreadsUnderContentionCountExactly) {
  SContention contention;
  contention.Run(8, 20000);
  EXPECT_EQ(contention.uiCount, 8u * 20000u);
  EXPECT_EQ(contention.iOverlaps.load(), 0);
  EXPECT_TRUE(canLockFromAnotherThread(contention.lock)) << "the lock is free at the end";
}

namespace {

// Six threads that each take `lock` 2,000 times and count under it, started
// while the caller holds it: more threads than processors, so owners are
// preempted inside, waiters give up spinning and sleep, and every release
// must wake one of them. Adds 1,000 under the caller's hold, lets `release`
// end it and waits for the threads.
template <typename TRelease>
std::uint64_t countBehindAHeldLock(XbReentrantLock& lock, TRelease release) {
  std::uint64_t count = 0;
  std::atomic<int> started{0};
  std::vector<std::thread> waiters;
  for (int t = 0; t < 6; ++t) {
    waiters.emplace_back([&] {
      started.fetch_add(1);
      for (int i = 0; i < 2000; ++i) {
        std::lock_guard guard(lock);
        ++count;
      }
    });
  }
  while (started.load() < 6) std::this_thread::yield();
  // Long enough for the waiters to give up spinning and sleep.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  count += 1000;
  release();
  for (std::thread& waiter : waiters) waiter.join();
  return count;
}

}  // namespace

TEST(XbReentrantLock, SleepingWaitersAreAllWokenAndCountExactly) {
  XbReentrantLock lock;
  lock.Lock();
  EXPECT_EQ(countBehindAHeldLock(lock, [&lock] { lock.Unlock(); }), 6u * 2000u + 1000u);
}

// A lock taken while the process had one thread (and so without an atomic
// exchange) is handed over properly to a thread that comes later. Runs in a
// fresh run of this program that runs this test only, and so starts with one
// thread.
TEST(XbReentrantLock, ALockTakenWithOneThreadIsHandedToASecondThreadThatComesLater) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        if (*ZoPlatform::Futex::g_pSingleThreadedFlag == 0) std::_Exit(3);
        XbReentrantLock lock;
        lock.Lock();
        std::uint64_t count = 0;
        std::atomic<bool> started{false};
        std::thread second([&] {
          started.store(true);
          std::lock_guard guard(lock);
          count += 2;
        });
        while (!started.load()) std::this_thread::yield();
        count += 1;
        lock.Unlock();
        second.join();
        std::_Exit(count == 3 && *ZoPlatform::Futex::g_pSingleThreadedFlag == 0 ? 0 : 4);
      },
      testing::ExitedWithCode(0), "");
}

TEST(XbReentrantLock, AHoldIsRefusedWhileAnyoneHoldsTheLockItsOwnerIncluded) {
  XbReentrantLock lock;
  lock.Lock();
  EXPECT_FALSE(lock.TryHold()) << "a hold never enters again";
  EXPECT_FALSE(std::async(std::launch::async, [&lock] { return lock.TryHold(); }).get());
  lock.Unlock();

  ASSERT_TRUE(lock.TryHold());
  EXPECT_FALSE(lock.IsHeldByCurrentThread()) << "a hold belongs to no thread in particular";
  EXPECT_FALSE(lock.TryHold());
  EXPECT_FALSE(canLockFromAnotherThread(lock));
  lock.ReleaseHold();
  EXPECT_TRUE(canLockFromAnotherThread(lock));
}

// Threads that take the lock by brief holds where they can and the
// re-entrant way where not, against threads that always take it the
// re-entrant way, count exactly; sleepers are woken by both kinds of release.
TEST(XbReentrantLock, HoldsAndReentrantLocksExcludeEachOther) {
  XbReentrantLock lock;
  std::uint64_t count = 0;
  std::atomic<int> inside{0};
  std::atomic<int> overlaps{0};
  std::atomic<int> holds{0};
  const auto countOnce = [&](int salt) {
    if (inside.fetch_add(1) != 0) overlaps.fetch_add(1);
    const std::uint64_t before = count;
    if ((salt & 63) == 0) std::this_thread::yield();
    count = before + 1;
    inside.fetch_sub(1);
  };
  std::vector<std::thread> threads;
  for (int t = 0; t < 6; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 20000; ++i) {
        if (t % 2 == 0 && lock.TryHold()) {
          holds.fetch_add(1);
          countOnce(i);
          lock.ReleaseHold();
        } else {
          std::lock_guard guard(lock);
          countOnce(i);
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 6u * 20000u);
  EXPECT_EQ(overlaps.load(), 0);
  EXPECT_GT(holds.load(), 0);
  EXPECT_TRUE(canLockFromAnotherThread(lock)) << "the lock is free at the end";
}

TEST(XbReentrantLock, TheEndOfAHoldWakesTheSleepers) {
  XbReentrantLock lock;
  ASSERT_TRUE(lock.TryHold());
  EXPECT_EQ(countBehindAHeldLock(lock, [&lock] { lock.ReleaseHold(); }), 6u * 2000u + 1000u);
}
