// archive_bench: the overview update of a report archive. An archive of
// N reports (default 1,000) of M cases each (default 1,000), in classes of
// 100, every report with a few other failures than the one before and every
// tenth a partial run. Times the first update, which makes every report
// page and every diff page, and a second one with nothing new, which is to
// write index.html and nothing else (the files of html/ are compared before
// and after). Beside them, two anchors measured in the same run: reading
// all bytes of the archive's XML reports once, and loading every report
// once. Arguments: N and M.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>

#include "BenchTiming.h"
#include "foundation/ZoFileSystem.h"
#include "report/ArchiveOverview.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

namespace {

using namespace TestSuite;
namespace fs = std::filesystem;

constexpr unsigned int c_uiCasesPerClass = 100;
constexpr double c_dTargetSeconds = 3.0;

// Report `index` of the archive: case i fails where (i + 7 * index) % 97
// is 0, so that neighbouring runs differ in a few cases.
Report::SData makeReport(unsigned int index, unsigned int cases) {
  Report::SData data;
  data.BuildConfiguration = L"Release x64";
  data.ExecutionMode = L"External";
  data.TimeOut = 300;
  data.DateBegin = FormatString(L"2026-%02u-%02u 22:00:00", 1 + index / 28 % 12, 1 + index % 28);
  data.DateEnd = data.DateBegin;
  for (unsigned int c = 0; c * c_uiCasesPerClass < cases; ++c) {
    Report::SClassData row;
    row.Name = FormatString(L"CGeometryTest%u", c);
    data.Classes.Add(row);
  }
  for (unsigned int i = 0; i < cases; ++i) {
    Report::SCaseData row;
    row.Id = i;
    row.ClassName = FormatString(L"CGeometryTest%u", i / c_uiCasesPerClass);
    row.CaseName = FormatString(L"case_%05u.dat", i % c_uiCasesPerClass);
    row.Time = 0.001 * (i % 1000);
    row.Memory = 1000000 + i;
    row.ResultType = (i + 7 * index) % 97 == 0 ? Run::eCaseDifferent : Run::eCaseOk;
    Report::SClassData& owner = data.Classes[i / c_uiCasesPerClass];
    ++owner.CasesTotal;
    if (row.ResultType != Run::eCaseOk) ++owner.Failures, ++data.Failures;
    data.Cases.Add(row);
  }
  for (Report::SClassData& row : data.Classes) {
    row.Successful = row.CasesTotal - row.Failures;
    data.ClassesSuccessful += row.Failures == 0 ? 1 : 0;
  }
  data.CasesTotal = cases;
  data.Successful = cases - data.Failures;
  data.ClassesTotal = data.Classes.GetCount();
  return data;
}

CString archiveName(unsigned int index) {
  const CString stem =
      FormatString(L"Report-%u-[2026.%02u.%02u-22.00.00]", 1000 + index, 1 + index / 28 % 12, 1 + index % 28);
  return index % 10 == 9 ? stem + L"-T[Part].xml" : stem + L".xml";
}

// Modification time and size of every file below html/ but index.html.
std::map<std::string, std::pair<fs::file_time_type, std::uintmax_t>> pageStamps(const fs::path& html) {
  std::map<std::string, std::pair<fs::file_time_type, std::uintmax_t>> stamps;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(html))
    if (entry.is_regular_file() && entry.path().filename() != "index.html")
      stamps[entry.path().string()] = {entry.last_write_time(), entry.file_size()};
  return stamps;
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned int reports = argc > 1 ? static_cast<unsigned int>(std::strtoul(argv[1], nullptr, 10)) : 1000u;
  const unsigned int cases = argc > 2 ? static_cast<unsigned int>(std::strtoul(argv[2], nullptr, 10)) : 1000u;
  std::random_device device;
  const fs::path dir = fs::temp_directory_path() / ("zo-archive-bench-" + std::to_string(device()));
  fs::create_directories(dir);
  const CString archive = CString::FromUtf8(dir.string() + "/");
  XbArray<CString> paths;
  for (unsigned int r = 0; r < reports; ++r) {
    paths.Add(archive + archiveName(r));
    Report::WriteXmlReport(paths.Last(), makeReport(r, cases));
  }
  std::uintmax_t bytes = 0;
  for (const CString& path : paths) bytes += fs::file_size(path.ToUtf8());
  std::printf("archive of %u reports of %u cases (%.1f MB of XML); seconds, one run each\n", reports, cases,
              static_cast<double>(bytes) / 1e6);

  const double readAll = bestSeconds(1, [&] {
    std::string text;
    for (const CString& path : paths)
      if (!ZoFileSystem::ReadFile(path, text)) return false;
    return true;
  });
  const double loadAll = bestSeconds(1, [&] {
    Report::SData data;
    for (const CString& path : paths)
      if (!Report::LoadReportDataFromXMLFile(path, data)) return false;
    return true;
  });
  const double first = bestSeconds(1, [&] {
    Report::WriteArchiveOverview(archive);
    return true;
  });
  const auto before = pageStamps(dir / "html");
  const double second = bestSeconds(1, [&] {
    Report::WriteArchiveOverview(archive);
    return true;
  });
  const auto after = pageStamps(dir / "html");
  unsigned int rewritten = 0;
  for (const auto& [path, stamp] : before) rewritten += after.count(path) && after.at(path) == stamp ? 0 : 1;

  std::printf("  anchor: read all XML bytes once      %8.3f\n", readAll);
  std::printf("  anchor: load every report once       %8.3f\n", loadAll);
  std::printf("  first update, %zu pages made          %8.3f  (%.1f x loading every report)\n", before.size(), first,
              first / loadAll);
  std::printf("  second update, nothing new           %8.3f  (%.1f x reading all bytes)\n", second, second / readAll);
  std::printf("  target: second update under %.0f s: %s; pages written again: %u%s\n", c_dTargetSeconds,
              second < c_dTargetSeconds ? "met" : "MISSED", rewritten,
              after.size() != before.size() ? " (files added)" : "");
  fs::remove_all(dir);
  const bool ok = readAll >= 0 && loadAll >= 0 && rewritten == 0 && after.size() == before.size();
  return ok ? 0 : 1;
}
