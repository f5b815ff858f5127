// CFakeClock: a run clock that stands still until something sleeps or
// waits on it or a test moves it, so that time limits, the child's idle
// rule and estimates act at once and to the nanosecond.
//
// A sleep moves the clock by its length. A wait finds its event signalled
// and returns at once, or moves the clock by its whole limit and one
// millisecond more and times out, as a wait on the system does that has
// run out. Safe to use from several threads.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include "run/RunClock.h"

class CFakeClock : public TestSuite::IRunClock {
 public:
  std::int64_t Now() override { return m_iNow.load(); }
  void Sleep(unsigned int milliseconds) override;
  TestSuite::CNamedEvent::EWaitResult Wait(TestSuite::CNamedEvent& event, unsigned int milliseconds) override;

  void Advance(double seconds);
  // The clock's reading in seconds from its start at 0.
  double Seconds() const { return static_cast<double>(m_iNow.load()) / 1e9; }

  // Called at the start of every wait with its limit, before the event is
  // looked at: where a test plays the other side of a hand-over.
  void OnWait(std::function<void(unsigned int)> fnOnWait);
  // The limits of all waits so far, in order.
  std::vector<unsigned int> Waits() const;
  unsigned int SleepCount() const;

 private:
  void advanceNanoseconds(std::int64_t nanoseconds) { m_iNow.fetch_add(nanoseconds); }

  std::atomic<std::int64_t> m_iNow{0};
  mutable std::mutex m_lock;
  std::function<void(unsigned int)> m_fnOnWait;
  std::vector<unsigned int> m_waits;
  unsigned int m_uiSleeps = 0;
};
