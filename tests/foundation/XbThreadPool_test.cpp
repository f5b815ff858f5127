// XbThreadPool: priorities, shut-down, failing tasks, and workers that start
// with the first task.
#include "foundation/XbThreadPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "HeapInterception.h"
#include "foundation/XbEvent.h"
#include "foundation/platform/Thread.h"
#include "services/CHeapTracker.h"

namespace {

// Occupies the pool's only worker until the gate opens.
std::shared_ptr<XbTask> blockWorker(XbThreadPool& pool, XbEvent& started, XbEvent& gate) {
  auto blocker = pool.AddTask(
      [&] {
        started.Set();
        gate.Wait();
      },
      1000);
  started.Wait();
  return blocker;
}

}  // namespace

TEST(XbThreadPool, HigherPrioritiesRunFirstAndEqualOnesInOrder) {
  XbThreadPool pool(1);
  XbEvent started, gate;
  blockWorker(pool, started, gate);
  std::mutex mutex;
  std::vector<int> order;
  std::vector<std::shared_ptr<XbTask>> tasks;
  for (const auto& [id, priority] : std::vector<std::pair<int, int>>{{1, 1}, {2, 5}, {3, 3}, {4, 5}, {5, -2}}) {
    tasks.push_back(pool.AddTask(
        [&, id = id] {
          std::lock_guard lock(mutex);
          order.push_back(id);
        },
        priority));
  }
  gate.Set();
  for (const auto& task : tasks) ASSERT_TRUE(task->Wait());
  EXPECT_EQ(order, (std::vector<int>{2, 4, 3, 1, 5}));
}

TEST(XbThreadPool, WaitingWithALimitForATaskThatCannotRunYetFails) {
  XbThreadPool pool(1);
  XbEvent started, gate;
  blockWorker(pool, started, gate);
  auto task = pool.AddTask([] {}, 1);
  ASSERT_NE(task, nullptr);
  EXPECT_FALSE(task->Wait(0));
  gate.Set();
  EXPECT_TRUE(task->Wait(XB_INFINITE));
}

TEST(XbThreadPool, TasksRunOnNamedWorkerThreads) {
  XbThreadPool pool(2);
  EXPECT_EQ(pool.GetThreadCount(), 2u);
  std::string name;
  auto task = pool.AddTask([&] { name = ZoPlatform::Thread::GetCurrentName(); }, 1);
  ASSERT_TRUE(task->Wait());
  EXPECT_EQ(name, "XbThreadPool");
}

TEST(XbThreadPool, TasksAddedAfterShutdownAreRefused) {
  XbThreadPool pool(2);
  EXPECT_FALSE(pool.IsShutDown());
  EXPECT_TRUE(pool.ShutdownAndWait(XB_INFINITE));
  EXPECT_TRUE(pool.IsShutDown());
  int runs = 0;
  EXPECT_EQ(pool.AddTask([&] { ++runs; }, 1), nullptr);
  auto task = std::make_shared<XbTask>([&] { ++runs; });
  EXPECT_FALSE(pool.AddTask(task, 1));
  EXPECT_FALSE(task->IsDone());
  EXPECT_EQ(runs, 0);
}

TEST(XbThreadPool, ShutdownRunsTheTasksAlreadyQueued) {
  XbThreadPool pool(1);
  XbEvent started, gate;
  blockWorker(pool, started, gate);
  std::vector<std::shared_ptr<XbTask>> queued;
  for (int i = 0; i < 5; ++i) queued.push_back(pool.AddTask([] {}, i));
  EXPECT_FALSE(pool.ShutdownAndWait(0));  // the worker is still blocked
  EXPECT_EQ(pool.AddTask([] {}, 1), nullptr);
  gate.Set();
  EXPECT_TRUE(pool.ShutdownAndWait(XB_INFINITE));
  for (const auto& task : queued) EXPECT_TRUE(task->IsDone());
}

TEST(XbThreadPool, AFailingTaskDoesNotStopItsWorker) {
  XbThreadPool pool(1);
  auto failing = pool.AddTask([] { throw std::runtime_error("broken"); }, 1);
  auto next = pool.AddTask([] {}, 1);
  ASSERT_TRUE(failing->Wait());
  EXPECT_NE(failing->GetError(), nullptr);
  EXPECT_TRUE(next->Wait());
}

TEST(XbThreadPool, AtLeastOneWorkerIsStarted) {
  XbThreadPool pool(0);
  EXPECT_EQ(pool.GetThreadCount(), 1u);
  XbThreadPool defaultPool;
  EXPECT_GE(defaultPool.GetThreadCount(), 1u);
  EXPECT_TRUE(pool.AddTask([] {}, 0)->Wait());
}

namespace {

std::atomic<int> g_threadStarts{0};
std::atomic<int> g_threadsAllowed{0};

// Starts real threads while `g_threadsAllowed` lasts, and counts the calls.
bool startCountedThread(ZoPlatform::Thread::CJoinableThread& thread, void (*function)(void*), void* argument) {
  ++g_threadStarts;
  if (g_threadsAllowed.fetch_sub(1) <= 0) return false;
  return thread.Start(function, argument);
}

}  // namespace

TEST(XbThreadPool, TheWorkersStartWithTheFirstTask) {
  g_threadStarts = 0;
  g_threadsAllowed = 3;
  XbThreadPool pool(3, &startCountedThread);
  EXPECT_EQ(g_threadStarts.load(), 0);
  EXPECT_EQ(pool.GetThreadCount(), 3u);
  EXPECT_TRUE(pool.AddTask([] {}, 0)->Wait());
  EXPECT_TRUE(pool.AddTask([] {}, 0)->Wait());
  EXPECT_EQ(g_threadStarts.load(), 3);
  EXPECT_EQ(pool.GetThreadCount(), 3u);
}

TEST(XbThreadPool, APoolWithoutThreadsRefusesTasksUntilItGetsOne) {
  g_threadStarts = 0;
  g_threadsAllowed = 0;
  XbThreadPool pool(2, &startCountedThread);
  EXPECT_EQ(pool.AddTask([] {}, 0), nullptr);
  EXPECT_EQ(pool.GetThreadCount(), 2u);
  g_threadsAllowed = 1;  // the system gives one thread now
  auto task = pool.AddTask([] {}, 0);
  ASSERT_NE(task, nullptr);
  EXPECT_TRUE(task->Wait());
  EXPECT_EQ(pool.GetThreadCount(), 1u);
  EXPECT_TRUE(pool.ShutdownAndWait(XB_INFINITE));
}

TEST(XbThreadPool, APoolNeverUsedShutsDownAtOnce) {
  g_threadStarts = 0;
  g_threadsAllowed = 2;
  XbThreadPool pool(2, &startCountedThread);
  EXPECT_TRUE(pool.ShutdownAndWait(0));
  EXPECT_EQ(pool.AddTask([] {}, 0), nullptr);
  EXPECT_EQ(g_threadStarts.load(), 0);
}

// Made before a measurement and used first inside it, a pool costs the
// measurement its task and nothing else: no thread state, no queue room.
TEST(XbThreadPool, TheFirstTaskCostsAHeapMeasurementOnlyItself) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  XbThreadPool pool(2);
  auto task = std::make_shared<XbTask>([] {});
  TestSuite::CHeapTracker tracker(false, true);
  tracker.Activate();
  const bool added = pool.AddTask(task, 0);
  const bool ran = added && task->Wait();
  const bool ended = pool.ShutdownAndWait(XB_INFINITE);  // every worker has started and ended
  tracker.Deactivate();
  EXPECT_TRUE(ran);
  EXPECT_TRUE(ended);
  EXPECT_EQ(tracker.GetMallocCount(), 0u);
  EXPECT_EQ(tracker.GetReallocCount(), 0u);
}

// A waiter that returns from Wait, or sees the task done, holds the only
// reference left: the worker has let go of its own, so a caller that drops
// its handle next frees the task there and then.
TEST(XbThreadPool, AWaiterSeesATaskDoneOnlyOnceItsWorkerHasLetGo) {
  XbThreadPool pool(2);
  int early = 0;
  for (int i = 0; i < 3000; ++i) {
    std::shared_ptr<XbTask> task = pool.AddTask([] {}, 1);
    ASSERT_TRUE(task);
    if (i % 2 == 0) {
      ASSERT_TRUE(task->Wait());
    } else {
      while (!task->IsDone()) {}
    }
    if (task.use_count() != 1) ++early;
  }
  EXPECT_EQ(early, 0) << "times the worker still held the task";
}

TEST(XbThreadPool, ATaskCanBeAskedAfterItsPoolIsGone) {
  auto pool = std::make_unique<XbThreadPool>(1);
  std::shared_ptr<XbTask> task = pool->AddTask([] {}, 1);
  ASSERT_TRUE(task);
  ASSERT_TRUE(task->Wait());
  pool.reset();
  EXPECT_TRUE(task->IsDone());
  EXPECT_TRUE(task->Wait(0));
  EXPECT_TRUE(task->Wait());
}
