// BenchTable: medians of repeated samples, the machine's load, and the rows
// of the summary table that bench/run.sh gathers from every benchmark's
// output: one line per figure, its anchor measured in the same run, the
// ratio, the target and whether it was met.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The median of the samples; 0 for none.
inline double medianOf(std::vector<double> samples) {
  if (samples.empty()) return 0.0;
  std::sort(samples.begin(), samples.end());
  const std::size_t middle = samples.size() / 2;
  return samples.size() % 2 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

// The first line of /proc/loadavg.
inline std::string loadAverage() {
  std::ifstream file("/proc/loadavg");
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text.empty() ? "unknown" : text;
}

// One row of the summary table, on a line of its own that begins with
// "TABLE|": the figure and its value, the anchor and its value, the ratio
// figure/anchor, the target as text, and met or not. `lowerIsBetter` says
// which side of `limit` the ratio must stay on.
inline void printTableRow(const std::string& figure, const std::string& value, const std::string& anchor,
                          const std::string& anchorValue, double ratio, double limit, bool lowerIsBetter) {
  const bool met = lowerIsBetter ? ratio <= limit : ratio >= limit;
  const char* label = std::getenv("ZO_BENCH_LABEL");
  const std::string name = label && *label ? std::string(label) + ": " + figure : figure;
  std::printf("TABLE|%s|%s|%s|%s|%.2f|%s %.2f|%s\n", name.c_str(), value.c_str(), anchor.c_str(), anchorValue.c_str(),
              ratio, lowerIsBetter ? "<=" : ">=", limit, met ? "met" : "NOT MET");
}

// A row that only shows a figure beside the anchor, with no target of its own.
inline void printComparisonRow(const std::string& figure, const std::string& value, const std::string& anchor,
                               const std::string& anchorValue, double ratio) {
  std::printf("TABLE|%s|%s|%s|%s|%.2f|-|-\n", figure.c_str(), value.c_str(), anchor.c_str(), anchorValue.c_str(),
              ratio);
}

// A number with its unit, for a table row.
inline std::string withUnit(double value, const char* unit) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f %s", value, unit);
  return text;
}
