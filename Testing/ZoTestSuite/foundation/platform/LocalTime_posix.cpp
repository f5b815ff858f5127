// Local calendar time on Linux: localtime_r and mktime, which follow TZ.
#include <time.h>

#include <cstdlib>
#include <ctime>
#include <mutex>
#include <string>

#include "LocalTime.h"

namespace ZoPlatform::LocalTime {

namespace {

// localtime_r alone keeps the zone it first saw. Re-reading the zone costs
// a look at /etc/localtime, so it happens only when TZ has changed.
void followTimeZone() {
  static std::mutex lock;
  static std::string lastZone;
  static bool known = false;
  const char* zone = std::getenv("TZ");
  const std::string current = zone ? std::string(1, '=') + zone : std::string();
  std::lock_guard<std::mutex> guard(lock);
  if (known && current == lastZone) return;
  ::tzset();
  lastZone = current;
  known = true;
}

}  // namespace

bool FromSeconds(std::int64_t seconds, SCalendar& calendar) {
  const auto t = static_cast<std::time_t>(seconds);
  std::tm tm{};
  followTimeZone();
  if (!::localtime_r(&t, &tm)) return false;
  calendar = {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
  return true;
}

bool ToSeconds(const SCalendar& calendar, std::int64_t& seconds) {
  std::tm tm{};
  tm.tm_year = calendar.iYear - 1900;
  tm.tm_mon = calendar.iMonth - 1;
  tm.tm_mday = calendar.iDay;
  tm.tm_hour = calendar.iHour;
  tm.tm_min = calendar.iMinute;
  tm.tm_sec = calendar.iSecond;
  tm.tm_isdst = -1;
  followTimeZone();
  tm.tm_wday = -1;  // stays so only when mktime fails
  const std::time_t t = std::mktime(&tm);
  // -1 is also a valid moment (one second before the epoch).
  if (t == static_cast<std::time_t>(-1) && tm.tm_wday < 0) return false;
  seconds = static_cast<std::int64_t>(t);
  return true;
}

}  // namespace ZoPlatform::LocalTime
