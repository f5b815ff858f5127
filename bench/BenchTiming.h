// BenchTiming: the best wall-clock time of a few runs of a piece of work.
#pragma once

#include <algorithm>
#include <chrono>

// Runs `run` `runs` times and gives the quickest in seconds; -1 as soon as a
// run reports failure by returning false.
template <typename F>
double bestSeconds(int runs, F&& run) {
  double best = 1e30;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    if (!run()) return -1.0;
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}
