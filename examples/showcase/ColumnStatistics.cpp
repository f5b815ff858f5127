#include "ColumnStatistics.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "TextFiles.h"

namespace Showcase {

namespace {

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

double sampleStandardDeviation(const std::vector<double>& values, double mean) {
  double squares = 0.0;
  for (double value : values) squares += (value - mean) * (value - mean);
  return std::sqrt(squares / static_cast<double>(values.size() - 1));
}

std::string describe(const std::vector<double>& values) {
  std::string text = "count " + std::to_string(values.size()) + "\n";
  if (values.empty()) return text;
  double sum = 0.0;
  for (double value : values) sum += value;
  const double mean = sum / static_cast<double>(values.size());
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  text += "min " + FormatNumber(*low) + "\n";
  text += "max " + FormatNumber(*high) + "\n";
  text += "mean " + FormatNumber(mean) + "\n";
  text += "median " + FormatNumber(median(values)) + "\n";
  text += "stddev " + (values.size() < 2 ? std::string("-") : FormatNumber(sampleStandardDeviation(values, mean)));
  return text + "\n";
}

}  // namespace

std::string DescribeColumn(std::string_view text) {
  std::vector<double> values;
  std::size_t lineNumber = 0;
  for (const std::string_view line : SplitLines(text)) {
    ++lineNumber;
    const std::string_view word = Trim(line);
    if (word.empty() || word.front() == '#') continue;
    const std::optional<double> value = ParseNumber(word);
    if (!value) return "error: line " + std::to_string(lineNumber) + ": " + Quoted(word) + " is not a number\n";
    values.push_back(*value);
  }
  return describe(values);
}

}  // namespace Showcase
