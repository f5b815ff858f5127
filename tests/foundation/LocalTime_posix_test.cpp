#include <gtest/gtest.h>

#include "foundation/platform/LocalTime.h"
#include "foundation_TestFiles.h"

using FoundationTest::CScopedEnvironment;
namespace LocalTime = ZoPlatform::LocalTime;

namespace {

bool operator==(const LocalTime::SCalendar& a, const LocalTime::SCalendar& b) {
  return a.iYear == b.iYear && a.iMonth == b.iMonth && a.iDay == b.iDay && a.iHour == b.iHour &&
         a.iMinute == b.iMinute && a.iSecond == b.iSecond;
}

}  // namespace

TEST(LocalTime, ConvertsBothWaysInTheZoneOfTz) {
  const CScopedEnvironment tz("TZ", "EST5EDT,M3.2.0,M11.1.0");  // New York
  LocalTime::SCalendar c;
  ASSERT_TRUE(LocalTime::FromSeconds(1'688'212'800, c));  // 2023-07-01 12:00 UTC
  EXPECT_TRUE(c == (LocalTime::SCalendar{2023, 7, 1, 8, 0, 0}));
  std::int64_t seconds = 0;
  ASSERT_TRUE(LocalTime::ToSeconds({2023, 7, 1, 8, 0, 0}, seconds));
  EXPECT_EQ(seconds, 1'688'212'800);
  ASSERT_TRUE(LocalTime::ToSeconds({2024, 1, 15, 7, 0, 0}, seconds));  // standard time
  EXPECT_EQ(seconds, 1'705'320'000);
}

TEST(LocalTime, FollowsAChangeOfTzWithinTheProcess) {
  LocalTime::SCalendar c;
  {
    const CScopedEnvironment tz("TZ", "UTC0");
    ASSERT_TRUE(LocalTime::FromSeconds(0, c));
    EXPECT_TRUE(c == (LocalTime::SCalendar{1970, 1, 1, 0, 0, 0}));
  }
  const CScopedEnvironment tz("TZ", "JST-9");
  ASSERT_TRUE(LocalTime::FromSeconds(0, c));
  EXPECT_TRUE(c == (LocalTime::SCalendar{1970, 1, 1, 9, 0, 0}));
}

TEST(LocalTime, OneSecondBeforeTheEpochIsAValidMoment) {
  const CScopedEnvironment tz("TZ", "UTC0");
  std::int64_t seconds = 0;
  ASSERT_TRUE(LocalTime::ToSeconds({1969, 12, 31, 23, 59, 59}, seconds));
  EXPECT_EQ(seconds, -1);
}
