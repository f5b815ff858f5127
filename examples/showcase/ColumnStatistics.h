// ColumnStatistics: the code under test of ColumnStatisticsTest. It reads a
// column of numbers and describes it: count, minimum, maximum, mean, median
// and the sample standard deviation.
#pragma once

#include <string>
#include <string_view>

namespace Showcase {

// The description of the column in `text`, one "name value" line each.
// The column has one number per line; blank lines and lines that begin with
// '#' are skipped. A line that is no number gives the single line
// "error: line N: 'TEXT' is not a number". An empty column gives "count 0";
// a column of one number has no standard deviation ("stddev -").
std::string DescribeColumn(std::string_view text);

}  // namespace Showcase
