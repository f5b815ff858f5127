// report_diff_bench: the diff page of two large reports. For 10,000,
// 100,000 and 1,000,000 cases in classes of 1,000, a reference A and a
// report B in which every tenth case changed its result, every seventh
// gained or lost a warning, one case in a hundred is gone and as many are
// new. Times the whole diff (load both XML reports, build the row tables,
// write the page) and its parts (loading both, the row tables alone, and the
// page writer, which builds the row tables itself), each the best of a few runs, beside
// two anchors measured in the same run: loading one of the reports alone
// and writing the plain HTML report of it. The cost per case shows whether
// it grows linearly. An argument N leaves out the sizes above N cases.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "BenchTiming.h"
#include "report/HtmlReportWriter.h"
#include "report/ReportDiff.h"
#include "report/ReportDiffWriter.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

namespace {

using namespace TestSuite;

constexpr unsigned int c_uiCasesPerClass = 1000;
constexpr double c_dTargetSeconds = 2.0;
constexpr unsigned int c_uiTargetCases = 100000;

void addClass(Report::SData& data, unsigned int index) {
  Report::SClassData row;
  row.Name = FormatString(L"CGeometryTest%u", index);
  row.ContactName = L"Jörg Bäcker";
  row.ContactEMail = L"joerg@example.com";
  data.Classes.Add(row);
}

// Case `id` of report A (`isB` false) or B; false if that report lacks it.
bool addCase(Report::SData& data, unsigned int id, bool isB, std::mt19937& random) {
  if ((isB && id % 100 == 5) || (!isB && id % 100 == 6)) return false;
  Report::SCaseData row;
  row.Id = id;
  row.ClassName = FormatString(L"CGeometryTest%u", id / c_uiCasesPerClass);
  row.CaseName = FormatString(L"case_%06u & variantä.dat", id % c_uiCasesPerClass);
  row.Time = (random() % 100000) / 1000.0;
  row.Memory = 1000000 + random() % 9000000;
  const bool changed = isB && id % 10 == 3;
  row.ResultType = id % 13 == 0 ? Run::eCaseError : Run::eCaseOk;
  if (changed) row.ResultType = row.ResultType == Run::eCaseOk ? Run::eCaseTimeout : Run::eCaseOk;
  row.Warning = id % 7 == 0 ? !isB : (id % 7 == 1 && isB);
  if (row.Warning) {
    row.MemoryDelta = 64;
    row.Message = Report::MakeLeakMessage(64);
  }
  data.Cases.Add(row);
  return true;
}

// The report's counts follow its rows, so that every figure of the page is
// worked out as for a real run.
Report::SData makeReport(unsigned int cases, bool isB) {
  std::mt19937 random(isB ? 7u : 42u);
  Report::SData data;
  data.BuildConfiguration = L"Release x64";
  data.MachineName = isB ? L"BUILD-08" : L"BUILD-07";
  data.ExecutionMode = L"Internal";
  data.TimeOut = 0xFFFFFFFF;
  data.DateBegin = L"2021-05-04 12:34:56";
  data.DateEnd = L"2021-05-04 13:34:56";
  for (unsigned int c = 0; c < cases / c_uiCasesPerClass; ++c) addClass(data, c);
  for (unsigned int id = 0; id < cases; ++id) {
    if (!addCase(data, id, isB, random)) continue;
    const Report::SCaseData& row = data.Cases.Last();
    Report::SClassData& owner = data.Classes[id / c_uiCasesPerClass];
    ++owner.CasesTotal;
    ++data.CasesTotal;
    if (row.ResultType != Run::eCaseOk) ++owner.Errors, ++data.Errors;
    if (row.Warning) ++owner.Warnings, ++data.Warnings;
  }
  for (Report::SClassData& row : data.Classes) row.Successful = row.CasesTotal - row.Errors;
  data.Successful = data.CasesTotal - data.Errors;
  data.ClassesTotal = data.Classes.GetCount();
  return data;
}

struct SFigures {
  double dDiff, dLoadBoth, dRows, dWrite, dLoadOne, dPlainPage, dPageMB;
};

SFigures measure(unsigned int cases, const std::filesystem::path& dir, int runs) {
  const CString pathA = CString::FromUtf8((dir / "A.xml").string());
  const CString pathB = CString::FromUtf8((dir / "B.xml").string());
  const CString page = CString::FromUtf8((dir / "diff.html").string());
  const CString plain = CString::FromUtf8((dir / "A.html").string());
  Report::WriteXmlReport(pathA, makeReport(cases, false));
  Report::WriteXmlReport(pathB, makeReport(cases, true));
  SFigures f{};
  Report::SData a, b;
  const auto loadBoth = [&] {
    return Report::LoadReportDataFromXMLFile(pathA, a) && Report::LoadReportDataFromXMLFile(pathB, b) &&
           a.Cases.GetCount() > 0 && b.Cases.GetCount() > 0;
  };
  f.dDiff = bestSeconds(runs, [&] {
    if (!loadBoth()) return false;
    Report::WriteReportDiff(page, pathA, pathB, a, b, false, false, false);
    return true;
  });
  f.dLoadBoth = bestSeconds(runs, loadBoth);
  f.dRows = bestSeconds(runs, [&] {
    return !Report::BuildDiffClassRows(a, b, false, false).empty() &&
           !Report::BuildDiffCaseRows(a, b, false, false).empty();
  });
  f.dWrite = bestSeconds(runs, [&] {
    Report::WriteReportDiff(page, pathA, pathB, a, b, false, false, false);
    return true;
  });
  Report::SData one;
  f.dLoadOne = bestSeconds(runs, [&] { return Report::LoadReportDataFromXMLFile(pathA, one); });
  f.dPlainPage = bestSeconds(runs, [&] {
    Report::WriteHtmlReport(plain, one, false, false);
    return true;
  });
  std::error_code error;
  f.dPageMB = static_cast<double>(std::filesystem::file_size(dir / "diff.html", error)) / 1e6;
  return f;
}

double microsPerCase(double seconds, unsigned int cases) { return seconds * 1e6 / cases; }

}  // namespace

int main(int argc, char** argv) {
  const unsigned long largest = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000ul;
  std::random_device device;
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("zo-report-diff-bench-" + std::to_string(device()));
  std::filesystem::create_directories(dir);
  std::printf("diff of two reports (A the reference, B with changes); best of the runs given, seconds\n");
  std::printf("%9s %4s | %8s %8s %8s %9s | %8s %8s | %9s %9s | %7s\n", "cases", "runs", "diff", "load 2", "rows",
              "rows+page", "load 1", "plain", "diff/case", "load/case", "page MB");
  bool ok = true;
  for (const unsigned int cases : {10000u, 100000u, 1000000u}) {
    if (cases > largest) break;
    const int runs = cases >= 1000000 ? 1 : 3;
    const SFigures f = measure(cases, dir, runs);
    ok = ok && f.dDiff >= 0 && f.dLoadBoth >= 0 && f.dRows >= 0 && f.dLoadOne >= 0;
    std::printf("%9u %4d | %8.3f %8.3f %8.3f %9.3f | %8.3f %8.3f | %7.2fus %7.2fus | %7.1f\n", cases, runs, f.dDiff,
                f.dLoadBoth, f.dRows, f.dWrite, f.dLoadOne, f.dPlainPage, microsPerCase(f.dDiff, cases),
                microsPerCase(f.dLoadOne, cases), f.dPageMB);
    if (cases == c_uiTargetCases) {
      std::printf("          target: diff of %u cases under %.0f s: %s (%.1f x loading one report)\n", cases,
                  c_dTargetSeconds, f.dDiff >= 0 && f.dDiff < c_dTargetSeconds ? "met" : "MISSED",
                  f.dDiff / f.dLoadOne);
    }
  }
  std::filesystem::remove_all(dir);
  if (!ok) std::printf("loading a report or building the rows failed\n");
  return ok ? 0 : 1;
}
