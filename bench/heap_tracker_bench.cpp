// heap_tracker_bench: what the heap tracker's interception costs an
// allocation. Times millions of malloc/free pairs with the interception off,
// on without an active tracker, and on with one and two active trackers, and
// prints nanoseconds per pair and the ratio to the first; once while the
// process has one thread and once after it has had a second.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>

#include "services/CHeapTracker.h"
#include "services/platform/HeapHooks.h"

namespace {

using TestSuite::CHeapTracker;

// Through volatile pointers, so that the compiler keeps every call.
void* (*volatile g_fnMalloc)(std::size_t) = &std::malloc;
void (*volatile g_fnFree)(void*) = &std::free;

constexpr int c_iPairs = 1'000'000;
constexpr int c_iBatch = 1000;
// Samples are short and interleaved, and the best one counts: on a shared
// machine, other processes only ever add time.
constexpr int c_iRounds = 15;

// One block at a time: the allocator's fastest path, where the overhead shows most.
void pairs() {
  for (int i = 0; i < c_iPairs; ++i) g_fnFree(g_fnMalloc(64));
}

// A thousand blocks live at a time: the tracker's map holds entries.
void batches() {
  static void* blocks[c_iBatch];
  for (int round = 0; round < c_iPairs / c_iBatch; ++round) {
    for (int i = 0; i < c_iBatch; ++i) blocks[i] = g_fnMalloc(16 + (i & 255));
    for (int i = 0; i < c_iBatch; ++i) g_fnFree(blocks[i]);
  }
}

using FnWorkload = void (*)();

double nanosecondsPerPair(FnWorkload workload) {
  const auto start = std::chrono::steady_clock::now();
  workload();
  const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
  return elapsed.count() / c_iPairs;
}

enum EConfig { eOff, eHookedIdle, eOneTracker, eTwoTrackers, eConfigCount };
const char* const c_ConfigNames[eConfigCount] = {"interception off", "interception on, no active tracker",
                                                 "one active tracker", "two active trackers"};

// One sample of a workload under a configuration; false if a tracker missed a call.
bool sample(EConfig config, FnWorkload workload, double& nanoseconds) {
  if (config == eOff) {
    CHeapTracker::UnhookAll();
    nanoseconds = nanosecondsPerPair(workload);
    return true;
  }
  CHeapTracker first(false, true);
  std::optional<CHeapTracker> second;
  if (config == eTwoTrackers) second.emplace(false, true);
  if (config != eHookedIdle) first.Activate();
  if (second) second->Activate();
  nanoseconds = nanosecondsPerPair(workload);
  first.Deactivate();
  if (second) second->Deactivate();
  if (config != eOneTracker) return true;
  return first.GetMallocCount() == c_iPairs && first.GetFreeCount() == c_iPairs && first.GetCurrentAlloc() == 0;
}

// All configurations, interleaved, and the table of their best figures.
bool measureAndPrint(const char* heading) {
  const FnWorkload workloads[2] = {&pairs, &batches};
  double best[eConfigCount][2];
  std::fill(&best[0][0], &best[0][0] + eConfigCount * 2, 1e300);
  for (int round = 0; round < c_iRounds; ++round) {
    for (int config = 0; config < eConfigCount; ++config) {
      for (int w = 0; w < 2; ++w) {
        double nanoseconds = 0;
        if (!sample(static_cast<EConfig>(config), workloads[w], nanoseconds)) {
          std::printf("unexpected: the tracker did not see every malloc and free\n");
          return false;
        }
        best[config][w] = std::min(best[config][w], nanoseconds);
      }
    }
  }
  CHeapTracker::UnhookAll();
  std::printf("%s: %d malloc/free pairs per sample, best of %d, per pair:\n", heading, c_iPairs, c_iRounds);
  std::printf("  %-36s %-20s %-20s\n", "", "one block at a time", "1000 blocks live");
  for (int config = 0; config < eConfigCount; ++config) {
    std::printf("  %-36s %6.1f ns %6.2fx   %6.1f ns %6.2fx\n", c_ConfigNames[config], best[config][0],
                best[config][0] / best[eOff][0], best[config][1], best[config][1] / best[eOff][1]);
  }
  return true;
}

}  // namespace

int main() {
  if (!TestSuite::HeapHooks::IsAvailable()) {
    std::printf("This build does not intercept the allocator (sanitizer build): nothing to measure.\n");
    return 0;
  }
  // The C library takes its locks without atomic instructions while the
  // process has only one thread; a test run has many.
  if (!measureAndPrint("single-threaded process")) return 1;
  std::thread([] {}).join();
  if (!measureAndPrint("multi-threaded process")) return 1;
  return 0;
}
