// report_bench: the reports of a large run. A synthetic run of 100,000
// cases in 100 classes, every tenth case failing with a few output lines,
// every seventh leaking; times the report record (BuildReportData), the XML
// and HTML reports, and loading the XML report back, each the best of a few
// runs; prints the file sizes and compares the load with `xmllint --noout`
// on the same file in MB/s.
//
// The table row sets the load beside its anchor, report_ExpatParser, which
// parses the same file with expat and handlers that only count: the median
// of five rounds each, taken in turns. Both sides read the file (from the
// page cache) into memory and parse it; the load also builds the record
// and releases its parse tree. The parser is a fresh child process each
// round and times itself (its start-up is left out, the first touch of its
// buffer is in); the loads run in this process, one after the other.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "BenchTable.h"
#include "BenchTiming.h"
#include "report/HtmlReportWriter.h"
#include "report/ReportData.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"
#include "run/RunDriver.h"

namespace {

using namespace TestSuite;

constexpr unsigned int c_uiClasses = 100;
constexpr unsigned int c_uiCasesPerClass = 1000;
constexpr int c_iRuns = 3;
constexpr int c_iLoadRounds = 5;
constexpr double c_dExpatRatio = 1.0;  // at least expat's MB/s
constexpr double c_dTargetSeconds = 2.0;

struct SRun {
  SSetup setup;
  XbArray<SUnitTest> classes;
  Run::SResult result;
};

void addCase(SRun& run, unsigned int classIndex, unsigned int caseIndex, std::mt19937& random) {
  const unsigned int id = classIndex * c_uiCasesPerClass + caseIndex;
  SCaseResult row;
  row.uiClassIndex = classIndex;
  row.uiCaseIndex = caseIndex;
  row.dTime = (random() % 100000) / 1000.0;
  row.uiMemoryPeak = 1000000 + random() % 9000000;
  row.eResult = Run::eCaseOk;
  if (id % 10 == 3) {
    row.eResult = id % 20 == 3 ? Run::eCaseDifferent : Run::eCaseError;
    row.sOutput = FormatString(
        L"INFO:  Lade Referenz \"ref_%u.dat\"\nERROR: %u Abweichungen < 1e-3 & mehr\n"
        L"weiter im Fehler\nINFO:  Dauer %u ms\n",
        id, random() % 100, random() % 1000);
  }
  if (id % 7 == 0) {
    row.iMemoryDelta = 64 + random() % 1000;
    row.bWarning = true;
  }
  run.result.cases.Add(row);
}

SRun makeRun() {
  std::mt19937 random(42u);
  SRun run;
  for (unsigned int c = 0; c < c_uiClasses; ++c) {
    SUnitTest unitTest;
    unitTest.Name = FormatString(L"CGeometryTest%u", c);
    unitTest.DataDir = L"/data/tests/" + unitTest.Name + L"/";
    unitTest.Contacts.Add(SUnitTest::SContact{L"Jörg Bäcker", L"joerg@example.com", L"owner"});
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i)
      unitTest.Cases.Add(SUnitTest::SCase{FormatString(L"case_%06u & variantä.dat", i), {}});
    run.classes.Add(unitTest);
  }
  for (unsigned int c = 0; c < c_uiClasses; ++c)
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i) addCase(run, c, i, random);
  ComputeStatistics(run.result.cases, run.classes.GetCount(), run.result.statistics);
  return run;
}

double megabytes(const std::filesystem::path& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return error ? 0.0 : static_cast<double>(size) / 1e6;
}

// The seconds report_ExpatParser took for `xml`, by its own clock; negative
// if it failed.
double expatSeconds(const std::filesystem::path& parser, const std::filesystem::path& xml) {
  const std::filesystem::path out = xml.parent_path() / "expat.txt";
  std::string command;  // appended: "literal" + std::string draws a false -Wrestrict from g++ 12 at -O3
  for (const std::string& word : {parser.string(), xml.string(), out.string()})
    command.append("'").append(word).append("' ");
  double seconds = -1.0;
  if (std::system(command.c_str()) != 0 || !(std::ifstream(out) >> seconds)) return -1.0;
  return seconds;
}

// Medians of c_iLoadRounds loads and, if `parser` exists, as many expat
// parses, in turns; `expat` stays negative without the parser.
bool measureLoading(const std::filesystem::path& parser, const std::filesystem::path& xml, std::size_t cases,
                    double& load, double& expat) {
  std::vector<double> loads, parses;
  const bool withExpat = std::filesystem::exists(parser);
  for (int round = 0; round < c_iLoadRounds; ++round) {
    Report::SData loaded;
    const double seconds = bestSeconds(1, [&] {
      return Report::LoadReportDataFromXMLFile(CString::FromUtf8(xml.string()), loaded) &&
             loaded.Cases.GetCount() == cases;
    });
    if (seconds < 0) return false;
    loads.push_back(seconds);
    if (!withExpat) continue;
    const double parse = expatSeconds(parser, xml);
    if (parse < 0) return false;
    parses.push_back(parse);
  }
  load = medianOf(loads);
  expat = withExpat ? medianOf(parses) : -1.0;
  return true;
}

void printTime(const char* what, double seconds) {
  std::printf("%-34s %8.3f s  %s\n", what, seconds, seconds >= 0 && seconds < c_dTargetSeconds ? "" : "(over 2 s)");
}

// The load in MB/s beside expat's (the table row) and xmllint's.
void printComparisons(double megabytes, double load, double expat, double lint) {
  std::printf("load             %8.1f MB/s\n", megabytes / load);
  if (expat < 0) std::printf("expat            anchor missing (report_ExpatParser was not built)\n");
  else std::printf("expat            %8.1f MB/s  (%.3f s)\n", megabytes / expat, expat);
  if (lint < 0) std::printf("xmllint --noout  not available or failed; no comparison\n");
  else std::printf("xmllint --noout  %8.1f MB/s  (%.3f s)\n", megabytes / lint, lint);
  if (expat > 0)
    printTableRow("report loading", withUnit(megabytes / load, "MB/s"), "expat", withUnit(megabytes / expat, "MB/s"),
                  expat / load, c_dExpatRatio, false);
}

}  // namespace

int main(int, char** argv) {
  const std::filesystem::path parser =
      std::filesystem::canonical(std::filesystem::path(argv[0])).parent_path() / "report_ExpatParser";
  std::printf("Load average at the start: %s\n", loadAverage().c_str());
  std::random_device device;
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("zo-report-bench-" + std::to_string(device()));
  std::filesystem::create_directories(dir);
  const CString xmlPath = CString::FromUtf8((dir / "report.xml").string());
  const CString htmlPath = CString::FromUtf8((dir / "report.html").string());

  const SRun run = makeRun();
  Report::SData data;
  const double dBuild = bestSeconds(c_iRuns, [&] {
    data = Report::SData();
    Report::BuildReportData(data, run.setup, run.classes, run.result.cases, run.result.statistics);
    return data.Cases.GetCount() == c_uiClasses * c_uiCasesPerClass;
  });
  const double dXml = bestSeconds(c_iRuns, [&] {
    Report::WriteXmlReport(xmlPath, data);
    return true;
  });
  const double dHtml = bestSeconds(c_iRuns, [&] {
    Report::WriteHtmlReport(htmlPath, data, false, false);
    return true;
  });
  double dLoad = -1.0, dExpat = -1.0;
  const bool bLoaded = measureLoading(parser, dir / "report.xml", data.Cases.GetCount(), dLoad, dExpat);
  const std::string lint = "xmllint --noout '" + (dir / "report.xml").string() + "' 2>/dev/null";
  const double dTool = bestSeconds(c_iRuns, [&] { return std::system(lint.c_str()) == 0; });
  const double dXmlMB = megabytes(dir / "report.xml");
  const double dHtmlMB = megabytes(dir / "report.html");
  std::filesystem::remove_all(dir);

  std::printf("run: %u cases in %u classes; XML report %.1f MB, HTML report %.1f MB\n", c_uiClasses * c_uiCasesPerClass,
              c_uiClasses, dXmlMB, dHtmlMB);
  std::printf("best of %d runs each (loading: median of %d), target under %.0f s:\n", c_iRuns, c_iLoadRounds,
              c_dTargetSeconds);
  printTime("BuildReportData", dBuild);
  printTime("WriteXmlReport", dXml);
  printTime("WriteHtmlReport", dHtml);
  printTime("LoadReportDataFromXMLFile", dLoad);
  if (dBuild < 0 || !bLoaded) {
    std::printf("building or loading the report failed\n");
    return 1;
  }
  printComparisons(dXmlMB, dLoad, dExpat, dTool);
  std::printf("Load average at the end: %s\n", loadAverage().c_str());
  return 0;
}
