#include "foundation/XbTask.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

TEST(XbTask, RunsItsFunctionOnce) {
  int runs = 0;
  XbTask task([&] { ++runs; });
  EXPECT_FALSE(task.IsDone());
  task.Run();
  task.Run();
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(task.IsDone());
  EXPECT_EQ(task.GetError(), nullptr);
}

TEST(XbTask, WaitWithALimitSaysWhetherTheTaskHasRun) {
  XbTask task([] {});
  EXPECT_FALSE(task.Wait(0));
  task.Run();
  EXPECT_TRUE(task.Wait(0));
  EXPECT_TRUE(task.Wait());
}

TEST(XbTask, WaitWithoutALimitReturnsOnceAnotherThreadHasRunIt) {
  XbTask task([] {});
  std::thread runner([&] { task.Run(); });
  EXPECT_TRUE(task.Wait(XB_INFINITE));
  EXPECT_TRUE(task.IsDone());
  runner.join();
}

TEST(XbTask, AnExceptionIsKeptAndTheTaskCountsAsDone) {
  XbTask task([] { throw std::runtime_error("broken"); });
  EXPECT_NO_THROW(task.Run());
  EXPECT_TRUE(task.Wait(0));
  ASSERT_NE(task.GetError(), nullptr);
  EXPECT_THROW(std::rethrow_exception(task.GetError()), std::runtime_error);
}

TEST(XbTask, AnEmptyFunctionIsDoneAtOnce) {
  XbTask task(nullptr);
  task.Run();
  EXPECT_TRUE(task.IsDone());
}
