#include "foundation/XbTimer.h"

#include <gtest/gtest.h>

namespace {

std::int64_t s_iFakeNow = 0;
std::int64_t fakeClock() { return s_iFakeNow; }

}  // namespace

TEST(XbTimer, MeasuresFromItsStartInSecondsAndTicks) {
  s_iFakeNow = 5'000'000'000;
  XbTimer timer(1000, &fakeClock);
  EXPECT_EQ(timer.GetElapsedSeconds(), 0.0);
  s_iFakeNow += 1'234'567'890;
  EXPECT_DOUBLE_EQ(timer.GetElapsedSeconds(), 1.23456789);
  EXPECT_EQ(timer.GetElapsedTicks(), 1234u);
  EXPECT_EQ(timer.GetResolution(), 1000u);
}

TEST(XbTimer, TheResolutionSetsTheTickLength) {
  s_iFakeNow = 0;
  XbTimer microseconds(1'000'000, &fakeClock);
  XbTimer seconds(1, &fakeClock);
  s_iFakeNow = 2'500'000'999;
  EXPECT_EQ(microseconds.GetElapsedTicks(), 2'500'000u);
  EXPECT_EQ(seconds.GetElapsedTicks(), 2u);
}

TEST(XbTimer, ResolutionZeroCountsInSeconds) {
  s_iFakeNow = 0;
  XbTimer timer(0, &fakeClock);
  EXPECT_EQ(timer.GetResolution(), 1u);
  s_iFakeNow = 3'000'000'000;
  EXPECT_EQ(timer.GetElapsedTicks(), 3u);
}

TEST(XbTimer, RestartBeginsAgainFromNow) {
  s_iFakeNow = 100;
  XbTimer timer(1000, &fakeClock);
  s_iFakeNow = 4'000'000'100;
  timer.Restart();
  s_iFakeNow += 2'000'000;
  EXPECT_EQ(timer.GetElapsedTicks(), 2u);
}

TEST(XbTimer, LongTimesDoNotOverflowFineTicks) {
  s_iFakeNow = 0;
  XbTimer timer(1'000'000'000, &fakeClock);
  s_iFakeNow = 400LL * 24 * 3600 * 1'000'000'000;  // 400 days
  EXPECT_EQ(timer.GetElapsedTicks(), 400ULL * 24 * 3600 * 1'000'000'000);
}

TEST(XbTimer, TheSystemClockNeverGoesBackwards) {
  XbTimer timer;
  const double first = timer.GetElapsedSeconds();
  const std::int64_t a = XbTimer::MonotonicNanoseconds();
  const std::int64_t b = XbTimer::MonotonicNanoseconds();
  EXPECT_GE(first, 0.0);
  EXPECT_LE(a, b);
  EXPECT_GE(timer.GetElapsedSeconds(), first);
}
