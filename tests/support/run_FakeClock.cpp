// CFakeClock: a run clock that moves only when slept or waited on or told.
#include "run_FakeClock.h"

#include <chrono>
#include <thread>

using TestSuite::CNamedEvent;

void CFakeClock::Sleep(unsigned int milliseconds) {
  {
    std::lock_guard<std::mutex> lock(m_lock);
    ++m_uiSleeps;
  }
  advanceNanoseconds(std::int64_t{milliseconds} * 1'000'000);
  // Other threads get the processor while a loop sleeps on this clock; its
  // readings do not depend on how long that takes.
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

CNamedEvent::EWaitResult CFakeClock::Wait(CNamedEvent& event, unsigned int milliseconds) {
  std::function<void(unsigned int)> onWait;
  {
    std::lock_guard<std::mutex> lock(m_lock);
    m_waits.push_back(milliseconds);
    onWait = m_fnOnWait;
  }
  if (onWait) onWait(milliseconds);
  const CNamedEvent::EWaitResult result = event.Wait(0);
  if (result == CNamedEvent::eWaitTimedOut) advanceNanoseconds((std::int64_t{milliseconds} + 1) * 1'000'000);
  return result;
}

void CFakeClock::Advance(double seconds) { advanceNanoseconds(static_cast<std::int64_t>(seconds * 1e9)); }

void CFakeClock::OnWait(std::function<void(unsigned int)> fnOnWait) {
  std::lock_guard<std::mutex> lock(m_lock);
  m_fnOnWait = std::move(fnOnWait);
}

std::vector<unsigned int> CFakeClock::Waits() const {
  std::lock_guard<std::mutex> lock(m_lock);
  return m_waits;
}

unsigned int CFakeClock::SleepCount() const {
  std::lock_guard<std::mutex> lock(m_lock);
  return m_uiSleeps;
}
