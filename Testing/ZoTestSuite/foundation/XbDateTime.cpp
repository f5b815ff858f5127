// XbDateTime: the clock reading, the calendar fields and the format operation of a point in time.
#include "XbDateTime.h"

#include <chrono>

#include "platform/LocalTime.h"

namespace {

using SCalendar = ZoPlatform::LocalTime::SCalendar;

constexpr std::uint64_t c_microsPerSecond = 1000000;

SCalendar utcCalendar(std::int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds moment{std::chrono::seconds(seconds)};
  const auto day = floor<days>(moment);
  const year_month_day date{day};
  const hh_mm_ss time{moment - day};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

}  // namespace

XbDateTime::XbDateTime(int year, int month, int day, int hour, int minute, int second, int millisecond) {
  std::int64_t seconds = 0;
  if (!ZoPlatform::LocalTime::ToSeconds({year, month, day, hour, minute, second}, seconds)) return;
  const std::int64_t micros = seconds * static_cast<std::int64_t>(c_microsPerSecond) + millisecond * 1000LL;
  // The value cannot go below the epoch: an earlier time is the epoch.
  m_uiValue = micros < 0 ? 0 : static_cast<std::uint64_t>(micros);
}

XbDateTime XbDateTime::Now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(since).count();
  return XbDateTime(micros < 0 ? 0 : static_cast<std::uint64_t>(micros));
}

CString XbDateTime::ToString(const wchar_t* format, bool local) const {
  const auto seconds = static_cast<std::int64_t>(m_uiValue / c_microsPerSecond);
  const auto millis = static_cast<int>(m_uiValue % c_microsPerSecond / 1000);
  SCalendar c;
  if (!local || !ZoPlatform::LocalTime::FromSeconds(seconds, c)) c = utcCalendar(seconds);
  CString text;
  for (const wchar_t* p = format ? format : L""; *p; ++p) {
    switch (*p) {
      case L'Y': text.AppendFormat(L"%04d", c.iYear); break;
      case L'm': text.AppendFormat(L"%02d", c.iMonth); break;
      case L'd': text.AppendFormat(L"%02d", c.iDay); break;
      case L'H': text.AppendFormat(L"%02d", c.iHour); break;
      case L'i': text.AppendFormat(L"%02d", c.iMinute); break;
      case L's': text.AppendFormat(L"%02d", c.iSecond); break;
      case L'v': text.AppendFormat(L"%03d", millis); break;
      default: text += *p;
    }
  }
  return text;
}
