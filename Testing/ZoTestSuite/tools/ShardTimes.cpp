// ShardTimes: case times from a report for the balance of a sharded run.
#include "tools/ShardTimes.h"

#include <map>
#include <utility>

#include "tools/ReportInput.h"

namespace TestSuite {

XbMap<CString, double> GetCaseTimes(const Report::SData& report) {
  std::map<std::wstring, std::pair<double, unsigned int>> sums;
  for (const Report::SCaseData& row : report.Cases) {
    auto& sum = sums[FormatString(L"%s:%s", row.ClassName, row.CaseName).Str()];
    sum.first += row.Time;
    ++sum.second;
  }
  XbMap<CString, double> times;
  for (const auto& [key, sum] : sums) times.SetAt(CString(key), sum.first / sum.second);
  return times;
}

bool LoadShardTimes(const CString& path, SShard& shard) {
  Report::SData report;
  if (!LoadReportInput(path, report)) return false;
  shard.caseTimes = GetCaseTimes(report);
  shard.bByTimes = true;
  return true;
}

}  // namespace TestSuite
