// heap_tracking_bench: what watching an allocation-heavy case costs, with
// the heap tracker and with outside heap profilers. One workload of ten
// million malloc/free pairs of 16 to 1,024 bytes through a ring of 64 live
// blocks runs (a) untracked, (b) under an active CHeapTracker while the
// process has only ever had one thread, (c) the same after a second thread
// has existed, and in children of this program (d) under a plain preloaded
// interposer with a mutex and a hash map that the benchmark builds, and
// (e) under heaptrack. Every figure is the median of five runs; the table
// rows give each as a multiple of the untracked time.
//
// "heap_tracking_bench --workload-only FILE" runs the workload once,
// untracked, and writes its time in seconds to FILE: that is what runs
// under (d) and (e), whose own messages are dropped.
// "heap_tracking_bench --in-process" measures (a) to (c) only.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "BenchTable.h"
#include "foundation/ZoUniqueId.h"
#include "services/CHeapTracker.h"
#include "services/platform/HeapHooks.h"

namespace {

namespace fs = std::filesystem;
using TestSuite::CHeapTracker;

// Through volatile pointers, so that the compiler keeps every call.
void* (*volatile g_fnMalloc)(std::size_t) = &std::malloc;
void (*volatile g_fnFree)(void*) = &std::free;

constexpr int c_iPairs = 10'000'000;
constexpr int c_iLive = 64;  // blocks live at a time, in a ring
constexpr int c_iRuns = 5;
constexpr double c_dSingleThreadTarget = 2.0, c_dMultiThreadTarget = 2.5;

// The workload: each step frees the oldest of c_iLive blocks and allocates
// one of 16 to 1,024 bytes, picked by a fixed pseudo-random sequence so that
// every run does the same. The first byte of each block is written, so that
// the memory is really used.
void workload() {
  void* ring[c_iLive] = {};
  std::uint32_t state = 12345;
  for (int i = 0; i < c_iPairs; ++i) {
    state = state * 1664525u + 1013904223u;
    const std::size_t size = 16 + ((state >> 8) % 1009);
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

// One tracked sample; negative if the tracker did not see the workload exactly.
double trackedSample() {
  CHeapTracker tracker(false, true);
  tracker.Activate();
  const double seconds = secondsOf(&workload);
  tracker.Deactivate();
  const bool sawAll = tracker.GetMallocCount() == c_iPairs && tracker.GetFreeCount() == c_iPairs + c_iLive &&
                      tracker.GetCurrentAlloc() == 0;
  return sawAll ? seconds : -1.0;
}

// Medians of interleaved untracked and tracked samples; false if the
// tracker missed a call.
bool measureInProcess(double& untracked, double& tracked) {
  std::vector<double> plain, watched;
  for (int run = 0; run < c_iRuns; ++run) {
    CHeapTracker::UnhookAll();
    plain.push_back(secondsOf(&workload));
    const double sample = trackedSample();
    if (sample < 0) return false;
    watched.push_back(sample);
  }
  CHeapTracker::UnhookAll();
  untracked = medianOf(plain);
  tracked = medianOf(watched);
  return true;
}

// The median workload time in children of this program started with
// `prefix` before them; negative if a child failed.
double childSeconds(const std::string& self, const std::string& prefix) {
  std::vector<double> samples;
  const fs::path scratch =
      fs::temp_directory_path() / ("zo-heap-tracking-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8());
  fs::create_directories(scratch);
  for (int run = 0; run < c_iRuns; ++run) {
    const fs::path result = scratch / "seconds.txt";
    const std::string command = "cd '" + scratch.string() + "' && " + prefix + " '" + self + "' --workload-only '" +
                                result.string() + "' >/dev/null 2>&1";
    double seconds = -1.0;
    if (std::system(command.c_str()) == 0 && !(std::ifstream(result) >> seconds)) seconds = -1.0;
    if (seconds < 0) break;
    samples.push_back(seconds);
  }
  std::error_code ignored;
  fs::remove_all(scratch, ignored);
  return static_cast<int>(samples.size()) == c_iRuns ? medianOf(samples) : -1.0;
}

void printFigure(const char* name, double seconds, double untracked) {
  if (seconds < 0) std::printf("  %-44s not measured\n", name);
  else
    std::printf("  %-44s %8.1f ms  %6.1f ns per pair  %6.2fx\n", name, seconds * 1e3, seconds / c_iPairs * 1e9,
                seconds / untracked);
}

}  // namespace

int main(int argc, char** argv) {
  // Anything else than the two documented forms would start the whole
  // benchmark again in each child.
  if (argc >= 2 && std::strcmp(argv[1], "--workload-only") == 0) {
    if (argc != 3) return 2;
    const double seconds = secondsOf(&workload);
    std::ofstream(argv[2]) << seconds << "\n";
    return 0;
  }
  if (!TestSuite::HeapHooks::IsAvailable()) {
    std::printf("This build does not intercept the allocator (sanitizer build): nothing to measure.\n");
    return 0;
  }
  std::printf("Load average at the start: %s\n", loadAverage().c_str());
  double untracked = 0, trackedSingle = 0, untrackedMulti = 0, trackedMulti = 0;
  if (!measureInProcess(untracked, trackedSingle)) {
    std::printf("unexpected: the tracker did not see every malloc and free\n");
    return 1;
  }
  std::thread([] {}).join();  // the C library and the tracker's lock take atomic instructions from now on
  if (!measureInProcess(untrackedMulti, trackedMulti)) {
    std::printf("unexpected: the tracker did not see every malloc and free\n");
    return 1;
  }
  const bool bOutside = !(argc == 2 && std::strcmp(argv[1], "--in-process") == 0);
  const std::string self = fs::canonical(argv[0]).string();
  const std::string interposer = (fs::path(self).parent_path() / "heap_tracking_Interposer.so").string();
  const double preloaded = bOutside ? childSeconds(self, "LD_PRELOAD='" + interposer + "'") : -1.0;
  const double heaptrack = bOutside && std::system("heaptrack --version >/dev/null 2>&1") == 0
                               ? childSeconds(self, "heaptrack -o profile")
                               : -1.0;

  std::printf("%d malloc/free pairs of 16 to 1024 bytes, %d blocks live at a time, median of %d:\n", c_iPairs, c_iLive,
              c_iRuns);
  printFigure("(a) untracked, one thread", untracked, untracked);
  printFigure("(b) CHeapTracker, one thread", trackedSingle, untracked);
  printFigure("(a') untracked, after a second thread", untrackedMulti, untrackedMulti);
  printFigure("(c) CHeapTracker, after a second thread", trackedMulti, untrackedMulti);
  printFigure("(d) preloaded interposer, mutex + hash map", preloaded, untracked);
  printFigure("(e) heaptrack", heaptrack, untracked);
  std::printf("Load average at the end: %s\n", loadAverage().c_str());
  printTableRow("heap tracking, one thread", withUnit(trackedSingle * 1e3, "ms"), "untracked",
                withUnit(untracked * 1e3, "ms"), trackedSingle / untracked, c_dSingleThreadTarget, true);
  printTableRow("heap tracking, after a second thread", withUnit(trackedMulti * 1e3, "ms"), "untracked",
                withUnit(untrackedMulti * 1e3, "ms"), trackedMulti / untrackedMulti, c_dMultiThreadTarget, true);
  if (preloaded > 0)
    printComparisonRow("preloaded interposer (for comparison)", withUnit(preloaded * 1e3, "ms"), "untracked",
                       withUnit(untracked * 1e3, "ms"), preloaded / untracked);
  if (heaptrack > 0)
    printComparisonRow("heaptrack (for comparison)", withUnit(heaptrack * 1e3, "ms"), "untracked",
                       withUnit(untracked * 1e3, "ms"), heaptrack / untracked);
  return 0;
}
