// LocalTime: conversion between seconds since the epoch and the calendar
// time of the process's time zone (TZ, else the system's zone).
#pragma once

#include <cstdint>

namespace ZoPlatform::LocalTime {

// A broken-down time: the year in full, month 1-12, day 1-31.
struct SCalendar {
  int iYear = 1970, iMonth = 1, iDay = 1, iHour = 0, iMinute = 0, iSecond = 0;
};

// The local calendar time of a moment; false if it cannot be represented.
bool FromSeconds(std::int64_t seconds, SCalendar& calendar);
// The moment of a local calendar time; fields out of range are carried
// over (month 13 is January of the next year). Daylight saving time is
// found out, not given: a local time that happens twice when the clocks go
// back gives one of its two moments, as the system chooses.
bool ToSeconds(const SCalendar& calendar, std::int64_t& seconds);

}  // namespace ZoPlatform::LocalTime
