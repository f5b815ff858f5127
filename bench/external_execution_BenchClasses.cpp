// external_execution_BenchClasses: the trivial test class of the external
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

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

std::int64_t FirstStart() { return s_firstStart.load(); }
std::int64_t LastEnd() { return s_lastEnd.load(); }
void Reset() {
  s_firstStart = std::numeric_limits<std::int64_t>::max();
  s_lastEnd = 0;
}

}  // namespace BenchClasses

// One subtest, "trivial", which passes at once and notes when it ran.
class BenchTrivial : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchTrivial)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"trivial"); }
  EResult OnRunSubtest(unsigned int) override {
    const std::int64_t start = BenchClasses::now();
    for (std::int64_t first = BenchClasses::s_firstStart.load(); start < first;)
      BenchClasses::s_firstStart.compare_exchange_weak(first, start);
    const std::int64_t end = BenchClasses::now();
    for (std::int64_t last = BenchClasses::s_lastEnd.load(); end > last;)
      BenchClasses::s_lastEnd.compare_exchange_weak(last, end);
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(BenchTrivial, ZoUnitTest);
