// heap_tracking_bench: what watching an allocation-heavy case costs, with
// the heap tracker and with an outside memory checker. One workload of
// millions of malloc/free pairs of mixed sizes runs (a) untracked, (b) under
// an active CHeapTracker in the same process, and (c) untracked in a child
// of this program started under valgrind's memcheck. Prints the three times
// and the ratios tracked/untracked (target: at most 4) and memcheck/tracked
// (target: at least 5).
//
// "heap_tracking_bench --workload-only" runs the workload once, untracked,
// and prints its time in seconds: that is what runs under memcheck.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "foundation/ZoUniqueId.h"
#include "services/CHeapTracker.h"
#include "services/platform/HeapHooks.h"

namespace {

using TestSuite::CHeapTracker;

// Through volatile pointers, so that the compiler keeps every call.
void* (*volatile g_fnMalloc)(std::size_t) = &std::malloc;
void (*volatile g_fnFree)(void*) = &std::free;

constexpr int c_iPairs = 2'000'000;
constexpr int c_iLive = 256;  // blocks live at a time, in a ring
constexpr int c_iRounds = 5;  // the best of these counts: other processes only ever add time
constexpr double c_dTrackedTarget = 4.0, c_dMemcheckTarget = 5.0;

// The workload: each step frees the oldest of c_iLive blocks and allocates
// one of a size between 8 bytes and 4 KiB, picked by a fixed pseudo-random
// sequence so that every run does the same. The first byte of each block is
// written, so that the memory is really used.
void workload() {
  void* ring[c_iLive] = {};
  std::uint32_t state = 12345;
  for (int i = 0; i < c_iPairs; ++i) {
    state = state * 1664525u + 1013904223u;
    const std::size_t size = 8 + ((state >> 8) % 4089);
    void*& slot = ring[i % c_iLive];
    g_fnFree(slot);
    slot = g_fnMalloc(size);
    static_cast<unsigned char*>(slot)[0] = static_cast<unsigned char>(i);
  }
  for (void* block : ring) g_fnFree(block);
}

double secondsOf(void (*work)()) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return elapsed.count();
}

// One tracked sample; negative if the tracker did not see the workload.
double trackedSample() {
  CHeapTracker tracker(false, true);
  tracker.Activate();
  const double seconds = secondsOf(&workload);
  tracker.Deactivate();
  const bool sawAll = tracker.GetMallocCount() == c_iPairs && tracker.GetCurrentAlloc() == 0;
  return sawAll ? seconds : -1.0;
}

// The workload's own time inside a child under memcheck; negative if
// valgrind is missing or the child failed.
double memcheckSeconds(const char* self) {
  if (std::system("valgrind --version >/dev/null 2>&1") != 0) return -1.0;
  const std::filesystem::path result = std::filesystem::temp_directory_path() /
                                       ("zo-heap-tracking-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8() + ".txt");
  const std::string command = std::string("valgrind --tool=memcheck --quiet '") + self + "' --workload-only >'" +
                              result.string() + "' 2>/dev/null";
  const int status = std::system(command.c_str());
  double seconds = -1.0;
  std::ifstream(result) >> seconds;
  std::filesystem::remove(result);
  return status == 0 ? seconds : -1.0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--workload-only") == 0) {
    std::printf("%.6f\n", secondsOf(&workload));
    return 0;
  }
  if (!TestSuite::HeapHooks::IsAvailable()) {
    std::printf("This build does not intercept the allocator (sanitizer build): nothing to measure.\n");
    return 0;
  }
  double untracked = 1e300, tracked = 1e300;
  for (int round = 0; round < c_iRounds; ++round) {
    CHeapTracker::UnhookAll();
    untracked = std::min(untracked, secondsOf(&workload));
    const double sample = trackedSample();
    if (sample < 0) {
      std::printf("unexpected: the tracker did not see every malloc and free\n");
      return 1;
    }
    tracked = std::min(tracked, sample);
  }
  CHeapTracker::UnhookAll();
  std::printf("%d malloc/free pairs of 8 to 4096 bytes, %d blocks live at a time, best of %d:\n", c_iPairs, c_iLive,
              c_iRounds);
  std::printf("  (a) untracked                 %8.1f ms   %6.1f ns per pair\n", untracked * 1e3,
              untracked / c_iPairs * 1e9);
  std::printf("  (b) tracked by CHeapTracker   %8.1f ms   %6.1f ns per pair\n", tracked * 1e3,
              tracked / c_iPairs * 1e9);
  const double memcheck = memcheckSeconds(argv[0]);
  if (memcheck < 0) std::printf("  (c) valgrind memcheck         not measured (valgrind is missing or failed)\n");
  else
    std::printf("  (c) valgrind memcheck         %8.1f ms   %6.1f ns per pair\n", memcheck * 1e3,
                memcheck / c_iPairs * 1e9);
  const double trackedRatio = tracked / untracked;
  std::printf("tracked/untracked: %.2fx (target: at most %.0fx) %s\n", trackedRatio, c_dTrackedTarget,
              trackedRatio <= c_dTrackedTarget ? "met" : "MISSED");
  if (memcheck >= 0) {
    const double memcheckRatio = memcheck / tracked;
    std::printf("memcheck/tracked: %.2fx (target: at least %.0fx) %s\n", memcheckRatio, c_dMemcheckTarget,
                memcheckRatio >= c_dMemcheckTarget ? "met" : "MISSED");
  }
  return 0;
}
