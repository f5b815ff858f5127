#include "foundation/XbCriticalSection.h"

#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <thread>

namespace {

// Asks from another thread whether the section can be taken now.
bool canLockFromAnotherThread(XbCriticalSection& section) {
  return std::async(std::launch::async,
                    [&section] {
                      if (!section.TryLock()) return false;
                      section.Unlock();
                      return true;
                    })
      .get();
}

}  // namespace

TEST(XbCriticalSection, TheOwningThreadMayEnterAgain) {
  XbCriticalSection section;
  section.Lock();
  section.Lock();
  EXPECT_TRUE(section.TryLock());
  { const XbScopedLock inner(section); }
  section.Unlock();
  section.Unlock();
  EXPECT_FALSE(canLockFromAnotherThread(section));  // still held once
  section.Unlock();
  EXPECT_TRUE(canLockFromAnotherThread(section));
}

TEST(XbCriticalSection, ScopedLockHoldsForItsScope) {
  XbCriticalSection section;
  {
    const XbScopedLock lock(section);
    EXPECT_FALSE(canLockFromAnotherThread(section));
  }
  EXPECT_TRUE(canLockFromAnotherThread(section));
  {
    const std::lock_guard guard(section);  // the standard lock names work too
    EXPECT_FALSE(canLockFromAnotherThread(section));
  }
  std::unique_lock<XbCriticalSection> tried(section, std::try_to_lock);
  EXPECT_TRUE(tried.owns_lock());
}

TEST(XbCriticalSection, TwoThreadsExcludeEachOther) {
  XbCriticalSection section;
  long long counter = 0;  // not atomic: only the lock protects it
  bool overlapped = false;
  int inside = 0;
  auto work = [&] {
    for (int i = 0; i < 100000; ++i) {
      const XbScopedLock lock(section);
      if (++inside != 1) overlapped = true;
      ++counter;
      --inside;
    }
  };
  std::thread first(work), second(work);
  first.join();
  second.join();
  EXPECT_EQ(counter, 200000);
  EXPECT_FALSE(overlapped);
}

TEST(XbCriticalSection, AWaitingThreadEntersOnceTheOwnerLeaves) {
  XbCriticalSection section;
  section.Lock();
  std::promise<void> started;
  auto waiter = std::async(std::launch::async, [&] {
    started.set_value();
    const XbScopedLock lock(section);  // blocks until the main thread unlocks
    return true;
  });
  started.get_future().wait();
  section.Unlock();
  EXPECT_TRUE(waiter.get());
}
