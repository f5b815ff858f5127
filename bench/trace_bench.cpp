// trace_bench: the diff result trace through an archive of 101 reports
// (revisions 1 to 101) of 10,000 cases each in classes of 1,000. Case j of
// the first 100 passes up to revision 100 - j and fails from 101 - j on, so
// a trace that ends at the newest report and begins 25, 50 or 100 reports
// earlier has 25, 50 or 100 changed cases and walks back 25, 50 or 100
// reports before the last of them finds its change. Each trace is timed
// beside the anchor measured in the same run: loading one report of the
// archive. The time per report walked, in loads of one report, shows
// whether the cost grows linearly with the reports walked.
// Arguments: [reports walked at most, default 100] [cases per report,
// default 10,000].
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "BenchTiming.h"
#include "report/DiffResultTrace.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

namespace {

using namespace TestSuite;

constexpr unsigned int c_uiCasesPerClass = 1000;
constexpr unsigned int c_uiChangedCases = 100;
constexpr double c_dTargetSeconds = 5.0;

Report::SData makeReport(unsigned int cases) {
  Report::SData data;
  data.BuildConfiguration = L"Release x64";
  data.ExecutionMode = L"External";
  data.TimeOut = 300;
  data.DateBegin = L"2021-05-04 02:00:00";
  data.DateEnd = L"2021-05-04 03:00:00";
  for (unsigned int c = 0; c < (cases + c_uiCasesPerClass - 1) / c_uiCasesPerClass; ++c) {
    Report::SClassData row;
    row.Name = FormatString(L"CGeometryTest%u", c);
    row.ContactName = L"Jörg Bäcker";
    row.ContactEMail = L"joerg@example.com";
    data.Classes.Add(row);
  }
  for (unsigned int id = 0; id < cases; ++id) {
    Report::SCaseData row;
    row.Id = id;
    row.ClassName = FormatString(L"CGeometryTest%u", id / c_uiCasesPerClass);
    row.CaseName = FormatString(L"case_%06u.dat", id % c_uiCasesPerClass);
    row.Time = 0.25;
    row.Memory = 1000000;
    row.ResultType = id % 97 == 50 ? Run::eCaseError : Run::eCaseOk;  // steady failures, never traced
    data.Cases.Add(row);
  }
  data.CasesTotal = cases;
  return data;
}

CString reportPath(const std::string& directory, unsigned int revision) {
  return CString::FromUtf8(directory) + FormatString(L"Report-%u-[2021.05.04-02.00.00].xml", revision);
}

// Revisions 1 to `reports`; the changed cases spread over the newest ones.
void writeArchive(const std::string& directory, unsigned int reports, unsigned int cases) {
  Report::SData data = makeReport(cases);
  for (unsigned int revision = 1; revision <= reports; ++revision) {
    for (unsigned int j = 0; j < c_uiChangedCases && j < cases; ++j) {
      const bool failing = revision + j >= reports;  // from revision reports - j on
      data.Cases[j * (cases / c_uiChangedCases)].ResultType = failing ? Run::eCaseError : Run::eCaseOk;
    }
    Report::WriteXmlReport(reportPath(directory, revision), data);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned int walkedMax = argc > 1 ? static_cast<unsigned int>(std::atoi(argv[1])) : 100;
  const unsigned int cases = argc > 2 ? static_cast<unsigned int>(std::atoi(argv[2])) : 10000;
  const unsigned int reports = walkedMax + 1;
  const std::string directory = (std::filesystem::temp_directory_path() / "zo_trace_bench/").string();
  std::filesystem::remove_all(directory);
  std::filesystem::create_directories(directory);
  std::printf("writing an archive of %u reports of %u cases ...\n", reports, cases);
  writeArchive(directory, reports, cases);

  Report::SData loaded;
  const double anchor =
      bestSeconds(3, [&] { return Report::LoadReportDataFromXMLFile(reportPath(directory, 1), loaded); });
  std::printf("anchor: loading one report of %u cases: %.3f s\n\n", cases, anchor);
  std::printf("%8s %8s %8s %10s %14s %16s\n", "walked", "changed", "loaded", "trace [s]", "per report [s]",
              "per report/anchor");
  const CString out = CString::FromUtf8(directory) + L"trace.xml";
  double full = 0.0;
  for (unsigned int walked : {walkedMax / 4, walkedMax / 2, walkedMax}) {
    if (walked == 0) continue;
    Report::STraceOutcome outcome;
    const double seconds = bestSeconds(2, [&] {
      outcome = Report::TraceDiffResults(SSetup::eDiffAll, reportPath(directory, reports - walked),
                                         reportPath(directory, reports), out);
      return outcome.bWritten;
    });
    // The begin and the end report are loaded besides the walk.
    std::printf("%8u %8u %8u %10.3f %14.4f %16.2f\n", outcome.uiReportsWalked, outcome.uiTraceCount,
                outcome.uiReportsWalked + 2, seconds, seconds / (outcome.uiReportsWalked + 2),
                seconds / (outcome.uiReportsWalked + 2) / anchor);
    full = seconds;
  }
  std::printf("\ntrace over %u reports walked: %.3f s (target: under %.1f s for 100 reports of 10,000 cases)\n",
              walkedMax, full, c_dTargetSeconds);
  std::filesystem::remove_all(directory);
  return 0;
}
