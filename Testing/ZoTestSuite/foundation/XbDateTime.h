// XbDateTime: a point in time as one 64-bit value (microseconds since
// 1970-01-01 00:00:00 UTC), with a letter-format ToString.
#pragma once

#include <cstdint>

#include "CString.h"

class XbDateTime {
 public:
  XbDateTime() = default;
  explicit XbDateTime(std::uint64_t value) : m_uiValue(value) {}
  // Local calendar time.
  XbDateTime(int year, int month, int day, int hour, int minute, int second, int millisecond = 0);

  static XbDateTime Now();

  std::uint64_t GetValue() const { return m_uiValue; }
  void SetValue(std::uint64_t value) { m_uiValue = value; }

  // Formats with the letters Y (four-digit year), m, d, H, i, s (two
  // digits each) and v (three-digit milliseconds); every other character
  // stands for itself. `local` true shows local time, false UTC.
  CString ToString(const wchar_t* format, bool local = true) const;

  friend bool operator==(XbDateTime a, XbDateTime b) { return a.m_uiValue == b.m_uiValue; }
  friend bool operator<(XbDateTime a, XbDateTime b) { return a.m_uiValue < b.m_uiValue; }

 private:
  std::uint64_t m_uiValue = 0;
};
