// XbTimer: elapsed time on a monotonic clock.
#include "XbTimer.h"

#include <chrono>

XbTimer::XbTimer(unsigned int resolution) : XbTimer(resolution, &XbTimer::MonotonicNanoseconds) {}

XbTimer::XbTimer(unsigned int resolution, FnClock clock)
    : m_uiResolution(resolution ? resolution : 1),
      m_fnClock(clock ? clock : &XbTimer::MonotonicNanoseconds),
      m_iStart(m_fnClock()) {}

void XbTimer::Restart() { m_iStart = m_fnClock(); }

double XbTimer::GetElapsedSeconds() const { return static_cast<double>(elapsedNanoseconds()) / 1e9; }

std::uint64_t XbTimer::GetElapsedTicks() const {
  const auto nanoseconds = static_cast<unsigned __int128>(elapsedNanoseconds());
  return static_cast<std::uint64_t>(nanoseconds * m_uiResolution / 1'000'000'000u);
}

std::int64_t XbTimer::MonotonicNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

std::int64_t XbTimer::elapsedNanoseconds() const {
  const std::int64_t elapsed = m_fnClock() - m_iStart;
  return elapsed > 0 ? elapsed : 0;
}
