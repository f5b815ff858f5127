// The run clock of the system: the steady clock, real sleeps and waits.
#include "run/RunClock.h"

#include <chrono>
#include <thread>

#include "foundation/XbTimer.h"

namespace TestSuite {

namespace {

class CSystemRunClock : public IRunClock {
 public:
  std::int64_t Now() override { return XbTimer::MonotonicNanoseconds(); }
  void Sleep(unsigned int milliseconds) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }
  CNamedEvent::EWaitResult Wait(CNamedEvent& event, unsigned int milliseconds) override {
    return event.Wait(milliseconds);
  }
};

}  // namespace

IRunClock& SystemRunClock() {
  static CSystemRunClock clock;
  return clock;
}

}  // namespace TestSuite
