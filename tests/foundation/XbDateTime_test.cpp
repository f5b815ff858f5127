#include "foundation/XbDateTime.h"

#include <gtest/gtest.h>

#include <chrono>

#include "foundation_TestFiles.h"

using FoundationTest::CScopedEnvironment;

namespace {

constexpr std::uint64_t c_second = 1'000'000;
// Central European time: UTC+1, and UTC+2 from the last Sunday of March
// to the last Sunday of October.
constexpr const char* c_cet = "CET-1CEST,M3.5.0,M10.5.0/3";

}  // namespace

TEST(XbDateTime, ValueIsMicrosecondsSinceTheEpochInUtc) {
  EXPECT_EQ(XbDateTime().GetValue(), 0u);
  EXPECT_EQ(XbDateTime().ToString(L"Y-m-d H:i:s.v", false), CString(L"1970-01-01 00:00:00.000"));
  const XbDateTime t(1'700'000'000 * c_second + 123'456);
  EXPECT_EQ(t.ToString(L"Y-m-d H:i:s.v", false), CString(L"2023-11-14 22:13:20.123"));
  EXPECT_EQ(XbDateTime(2'147'483'648 * c_second).ToString(L"Y-m-d H:i:s", false),
            CString(L"2038-01-19 03:14:08"));  // beyond 32-bit seconds
  EXPECT_EQ(XbDateTime(1'709'251'199 * c_second + 999'999).ToString(L"Y-m-d H:i:s.v", false),
            CString(L"2024-02-29 23:59:59.999"));  // leap day; milliseconds cut, not rounded
  XbDateTime set;
  set.SetValue(42);
  EXPECT_EQ(set.GetValue(), 42u);
}

TEST(XbDateTime, NowLiesBetweenTwoReadingsOfTheSystemClock) {
  using namespace std::chrono;
  const auto before = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
  const auto now = XbDateTime::Now().GetValue();
  const auto after = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
  EXPECT_GE(now, static_cast<std::uint64_t>(before));
  EXPECT_LE(now, static_cast<std::uint64_t>(after));
}

TEST(XbDateTime, ToStringLettersAndOtherCharacters) {
  const CScopedEnvironment tz("TZ", "UTC0");
  const XbDateTime t(1'700'000'000 * c_second + 7'000);
  EXPECT_EQ(t.ToString(L"Y-m-d H.i.s"), CString(L"2023-11-14 22.13.20"));
  EXPECT_EQ(t.ToString(L"YmdHisv"), CString(L"20231114221320007"));
  EXPECT_EQ(t.ToString(L"[y M D h I S V]"), CString(L"[y M D h I S V]"));  // not letters of the format
  EXPECT_EQ(t.ToString(L"\u00E4 %Y"), CString(L"\u00E4 %2023"));
  EXPECT_EQ(t.ToString(L""), CString());
  EXPECT_EQ(t.ToString(nullptr), CString());
  EXPECT_EQ(XbDateTime(2 * c_second).ToString(L"m/d H:i:s"), CString(L"01/01 00:00:02"));  // two digits
}

TEST(XbDateTime, LocalTimeFollowsTheTimeZone) {
  const CScopedEnvironment tz("TZ", c_cet);
  const XbDateTime summer(1'688'212'800 * c_second);  // 2023-07-01 12:00 UTC
  const XbDateTime winter(1'705'320'000 * c_second);  // 2024-01-15 12:00 UTC
  EXPECT_EQ(summer.ToString(L"Y-m-d H:i"), CString(L"2023-07-01 14:00"));
  EXPECT_EQ(summer.ToString(L"Y-m-d H:i", true), CString(L"2023-07-01 14:00"));
  EXPECT_EQ(summer.ToString(L"Y-m-d H:i", false), CString(L"2023-07-01 12:00"));
  EXPECT_EQ(winter.ToString(L"H:i"), CString(L"13:00"));
  const CScopedEnvironment tokyo("TZ", "JST-9");
  EXPECT_EQ(winter.ToString(L"Y-m-d H:i"), CString(L"2024-01-15 21:00"));
}

TEST(XbDateTime, CalendarConstructorTakesLocalTime) {
  {
    const CScopedEnvironment tz("TZ", c_cet);
    EXPECT_EQ(XbDateTime(2023, 7, 1, 14, 0, 0).GetValue(), 1'688'212'800 * c_second);
    EXPECT_EQ(XbDateTime(2024, 1, 15, 13, 0, 0, 250).GetValue(), 1'705'320'000 * c_second + 250'000);
    const XbDateTime t(2024, 2, 29, 8, 5, 9, 42);
    EXPECT_EQ(t.ToString(L"Y-m-d H:i:s.v"), CString(L"2024-02-29 08:05:09.042"));  // round trip
  }
  const CScopedEnvironment tz("TZ", "UTC0");
  EXPECT_EQ(XbDateTime(1970, 1, 1, 0, 0, 0).GetValue(), 0u);
  EXPECT_EQ(XbDateTime(2023, 13, 1, 0, 0, 0).ToString(L"Y-m-d"), CString(L"2024-01-01"));  // carried over
  EXPECT_EQ(XbDateTime(2023, 1, 32, 0, 0, 0).ToString(L"Y-m-d"), CString(L"2023-02-01"));
  EXPECT_EQ(XbDateTime(1969, 12, 31, 23, 59, 59).GetValue(), 0u);  // before the epoch: the epoch
}

TEST(XbDateTime, ComparesByValue) {
  const XbDateTime a(5), b(6), c(5);
  EXPECT_TRUE(a == c);
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a < c);
}
