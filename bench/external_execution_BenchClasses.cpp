// external_execution_BenchClasses: the test classes of the external
// execution benchmark. It is compiled into the benchmark itself, for the
// cases that run in process, and into a test library, for its children.
#include "external_execution_BenchClasses.h"

#include <atomic>
#include <chrono>
#include <limits>

#include "ZoUnitTest.h"

namespace BenchClasses {

namespace {

std::atomic<std::int64_t> s_firstStart{std::numeric_limits<std::int64_t>::max()};
std::atomic<std::int64_t> s_lastEnd{0};
std::atomic<std::uint64_t> s_busyIterations{0};
std::atomic<std::uint64_t> s_sink{0};  // keeps the results of Work alive

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// Widens the span of cases seen in this process to [start, end].
void note(std::int64_t start, std::int64_t end) {
  for (std::int64_t first = s_firstStart.load(); start < first;) s_firstStart.compare_exchange_weak(first, start);
  for (std::int64_t last = s_lastEnd.load(); end > last;) s_lastEnd.compare_exchange_weak(last, end);
}

}  // namespace

std::int64_t FirstStart() { return s_firstStart.load(); }
std::int64_t LastEnd() { return s_lastEnd.load(); }
void Reset() {
  s_firstStart = std::numeric_limits<std::int64_t>::max();
  s_lastEnd = 0;
}

std::uint64_t Work(std::uint64_t iterations) {
  // A chain of multiplications, each depending on the last: no vector
  // units, no shortcut, the same time on any core.
  std::uint64_t x = iterations | 1;
  for (std::uint64_t i = 0; i < iterations; ++i) x = (x ^ (x >> 29)) * 6364136223846793005ULL + i;
  s_sink.fetch_add(x, std::memory_order_relaxed);
  return x;
}

void SetBusyIterations(std::uint64_t iterations) { s_busyIterations = iterations; }

}  // namespace BenchClasses

// One subtest, "trivial", which passes at once and notes when it ran.
class BenchTrivial : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchTrivial)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"trivial"); }
  EResult OnRunSubtest(unsigned int) override {
    const std::int64_t start = BenchClasses::now();
    BenchClasses::note(start, BenchClasses::now());
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(BenchTrivial, ZoUnitTest);

// One subtest, "busy", which computes for a set number of iterations (about
// 20 ms on one core), passes and notes when it ran: work that only more
// cores make faster.
class BenchBusy : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchBusy)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"busy"); }
  EResult OnRunSubtest(unsigned int) override {
    const std::int64_t start = BenchClasses::now();
    BenchClasses::Work(BenchClasses::s_busyIterations.load());
    BenchClasses::note(start, BenchClasses::now());
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(BenchBusy, ZoUnitTest);
