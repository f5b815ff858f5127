// shard_balance_bench: how evenly four parts of a skewed test set come out,
// placed by hash (--shard I/4) and balanced by the case times of an earlier
// report (--shard I/4 --shard-times). 40 classes of 25 cases in a real
// data tree; the times of an earlier run are written as an XML report and
// read back as the front end reads them. Two sets: a few long cases among
// many short ones, and one case longer than a quarter of the whole. For
// each way, the longest part's time beside the ideal (total / 4) and the
// target (10 % above the ideal, or the longest single case if that is
// more), then the wall-clock cost of collecting a part beside collecting
// the whole set.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "BenchClassNames.h"
#include "BenchTiming.h"
#include "ZoTestSuite.h"
#include "foundation/ZoUnitTest.h"
#include "report/XmlReportWriter.h"
#include "tools/ShardTimes.h"

namespace fs = std::filesystem;
using namespace TestSuite;

namespace {

constexpr unsigned int c_uiClasses = 40;
constexpr unsigned int c_uiCasesPerClass = 25;
constexpr unsigned int c_uiParts = 4;

class BenchShardCases : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchShardCases)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i) names.Add(FormatString(L"case_%02u", i));
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(BenchShardCases, ZoUnitTest);

CString className(unsigned int index) { return FormatString(L"Shard%02u", index); }

// The times of an earlier run: short cases of 0.05 to 2 s, and `longCases`
// spread over the classes.
Report::SData makeTimes(const std::vector<double>& longCases) {
  std::mt19937 random(4711u);
  std::uniform_real_distribution<double> shortTime(0.05, 2.0);
  Report::SData data;
  for (unsigned int c = 0; c < c_uiClasses; ++c)
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i) {
      Report::SCaseData& row = data.Cases.Emplace();
      row.Id = data.Cases.GetCount() - 1;
      row.ClassName = className(c);
      row.CaseName = FormatString(L"case_%02u", i);
      row.Time = shortTime(random);
    }
  for (std::size_t i = 0; i < longCases.size(); ++i)
    data.Cases[static_cast<unsigned int>(i * 97 % 1000)].Time = longCases[i];
  return data;
}

// The time of the longest part when every part is collected with `shard`.
double longestPart(const CString& dataDir, SShard shard, const XbMap<CString, double>& times) {
  double longest = 0.0;
  for (unsigned int part = 0; part < c_uiParts; ++part) {
    SCollectOptions options;
    options.shard = shard;
    options.shard.uiIndex = part;
    options.shard.uiCount = c_uiParts;
    double sum = 0.0;
    for (const SUnitTest& unitTest : CollectUnitTests(dataDir, options))
      for (const SUnitTest::SCase& testCase : unitTest.Cases)
        sum += *times.Find(FormatString(L"%s:%s", unitTest.Name, testCase.Name));
    longest = std::max(longest, sum);
  }
  return longest;
}

void measureSet(const char* title, const std::vector<double>& longCases, const CString& dataDir,
                const CString& reportPath) {
  const Report::SData earlier = makeTimes(longCases);
  Report::WriteXmlReport(reportPath, earlier);
  SShard byTimes;
  if (!LoadShardTimes(reportPath, byTimes)) return;
  double total = 0.0, longestCase = 0.0;
  for (const Report::SCaseData& row : earlier.Cases) {
    total += row.Time;
    longestCase = std::max(longestCase, row.Time);
  }
  const double ideal = total / c_uiParts;
  const double target = std::max(ideal * 1.10, longestCase);
  const double hash = longestPart(dataDir, SShard(), byTimes.caseTimes);
  const double timed = longestPart(dataDir, byTimes, byTimes.caseTimes);
  std::printf("%s: %u cases, %.1f s in all, longest case %.1f s\n", title, c_uiClasses * c_uiCasesPerClass, total,
              longestCase);
  std::printf("  %-30s %8.1f s\n", "ideal part (total / 4)", ideal);
  std::printf("  %-30s %8.1f s  (max of ideal + 10 %% and longest case)\n", "target", target);
  std::printf("  %-30s %8.1f s  = %5.1f %% of ideal\n", "longest part by hash", hash, 100.0 * hash / ideal);
  std::printf("  %-30s %8.1f s  = %5.1f %% of ideal, target %s\n", "longest part by --shard-times", timed,
              100.0 * timed / ideal, timed <= target ? "met" : "MISSED");
}

void measureCost(const CString& dataDir, const CString& reportPath) {
  SShard byTimes;
  if (!LoadShardTimes(reportPath, byTimes)) return;
  SCollectOptions whole;
  SCollectOptions hashed;
  hashed.shard.uiCount = c_uiParts;
  SCollectOptions timed;
  timed.shard = byTimes;
  timed.shard.uiCount = c_uiParts;
  const double dWhole = bestSeconds(5, [&] { return !CollectUnitTests(dataDir, whole).IsEmpty(); });
  const double dHash = bestSeconds(5, [&] { return !CollectUnitTests(dataDir, hashed).IsEmpty(); });
  const double dTimed = bestSeconds(5, [&] { return !CollectUnitTests(dataDir, timed).IsEmpty(); });
  std::printf("collecting, best of 5:\n");
  std::printf("  %-30s %8.3f ms\n", "the whole set (anchor)", dWhole * 1e3);
  std::printf("  %-30s %8.3f ms\n", "part 0 of 4 by hash", dHash * 1e3);
  std::printf("  %-30s %8.3f ms\n", "part 0 of 4 by times", dTimed * 1e3);
}

}  // namespace

int main() {
  const CBenchClassNames<BenchShardCases> classNames(c_uiClasses, className);
  char leaf[64];
  std::snprintf(leaf, sizeof leaf, "zo-shard-balance-bench-%u", std::random_device()());
  const fs::path base = fs::temp_directory_path() / leaf;
  for (unsigned int c = 0; c < c_uiClasses; ++c) {
    char group[16];
    std::snprintf(group, sizeof group, "g%u", c % 5);
    fs::create_directories(base / "tree" / group / className(c).ToUtf8());
  }
  const CString dataDir = CString::FromUtf8((base / "tree").string());
  const CString reportPath = CString::FromUtf8((base / "Report.xml").string());
  CEnvironment environment;
  std::printf("shard_balance_bench: 4 parts, below %s\n", base.string().c_str());
  measureSet("a few long cases", {240.0, 180.0, 150.0, 120.0, 90.0, 75.0, 60.0, 45.0}, dataDir, reportPath);
  measureSet("one case longer than a part", {1200.0, 150.0, 90.0}, dataDir, reportPath);
  measureCost(dataDir, reportPath);
  fs::remove_all(base);
  return 0;
}
