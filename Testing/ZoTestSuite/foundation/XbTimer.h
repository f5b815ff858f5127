// XbTimer: measures the time since its start on a monotonic clock.
//
// The resolution is the number of ticks per second in which GetElapsedTicks
// counts (1000: milliseconds). The clock can be replaced, so that code
// which measures time can be tested without waiting.
#pragma once

#include <cstdint>

class XbTimer {
 public:
  // Nanoseconds since some fixed point; must never go backwards.
  using FnClock = std::int64_t (*)();

  // Starts at once, on the system's monotonic clock. A resolution of 0 is
  // taken as 1.
  explicit XbTimer(unsigned int resolution = 1000);
  XbTimer(unsigned int resolution, FnClock clock);

  // Starts again from now.
  void Restart();
  double GetElapsedSeconds() const;
  // Whole ticks of 1/resolution seconds since the start.
  std::uint64_t GetElapsedTicks() const;
  unsigned int GetResolution() const { return m_uiResolution; }

  // The system's monotonic clock in nanoseconds.
  static std::int64_t MonotonicNanoseconds();

 private:
  std::int64_t elapsedNanoseconds() const;

  unsigned int m_uiResolution;
  FnClock m_fnClock;
  std::int64_t m_iStart;
};
