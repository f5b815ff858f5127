// IRunClock: the time of a run as its stages see it: a monotonic clock, a
// sleep, and the wait for an event of external execution with a limit.
//
// Everything in a run that measures or waits goes through one of these, so
// that time limits, the child's idle rule and the estimates can be tested
// on a clock that moves only when told.
#pragma once

#include <cstdint>

#include "run/external/NamedEvent.h"

namespace TestSuite {

class IRunClock {
 public:
  virtual ~IRunClock() = default;
  // Nanoseconds since some fixed point; never goes backwards.
  virtual std::int64_t Now() = 0;
  virtual void Sleep(unsigned int milliseconds) = 0;
  // Waits at most `milliseconds` for `event` and resets it.
  virtual CNamedEvent::EWaitResult Wait(CNamedEvent& event, unsigned int milliseconds) = 0;

  // Seconds from `start`, a value of Now, until now.
  double SecondsSince(std::int64_t start) { return static_cast<double>(Now() - start) / 1e9; }
};

// The system's steady clock, real sleeps and real waits.
IRunClock& SystemRunClock();

}  // namespace TestSuite
