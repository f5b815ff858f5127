// report_Fixtures: the records and files of the report tests.
#include "report_Fixtures.h"

#include <sstream>

#include "GoldenFile.h"
#include "WholeFile.h"

namespace ReportTest {

using namespace TestSuite;
using namespace TestSuite::Report;

namespace {

void addDump(SCaseData& row, bool isError, const wchar_t* text) { row.Dumps.Add(SDump{isError, text}); }

void fillFixedHeader(SData& data) {
  data.BuildConfiguration = L"Release x64";
  data.SvnInfo = std::make_shared<SSvnInfo>(SSvnInfo{L"trunk", L"/src/zo", L"svn://vcs.example/zo/trunk",
                                                     L"svn://vcs.example/zo", L"1234", L"mueller", L"1230",
                                                     L"2021-05-03 10:00:00 +0200 (Mo, 03 Mai 2021)"});
  data.PscmInfo = std::make_shared<SPscmInfo>(
      SPscmInfo{L"ssh://vcs.example/zo.git", L"zo", L"main", L"4711", L"Jörg Bäcker", L"/src/zo"});
  data.Processor = L"Model: Test CPU 3000, Cores: 8, Speed 3.600 GHz, Memory 31.9 GB";
  data.GPU = L"Test GPU";
  data.MachineName = L"BUILD-07";
  data.DataDirectory = L"/data/tests";
  data.ExecutionMode = L"External Isolated";
  data.ThreadCount = 4;
  data.TimeOut = 30;
  data.RunTag = L"nightly";
}

void fillFixedStatistics(SData& data) {
  data.ClassesTotal = 3;
  data.ClassesSuccessful = 1;
  data.ClassesNotClean = 2;
  data.CasesTotal = 5;
  data.Successful = 3;
  data.Failures = 1;
  data.Errors = 1;
  data.Warnings = 1;
  data.DateBegin = L"2021-05-04 12:34:56";
  data.DateEnd = L"2021-05-04 12:35:10";
  data.TimeTotal = 14.25;
  data.TimeAvg = 0.5390625;
  data.TimeMax = 1.25;
  data.TimeMin = 0.015625;
  data.MemoryAvg = 5000;
  data.MemoryMax = 12000;
  data.MemoryMin = 1000;
}

}  // namespace

SClassData& AddClass(SData& data, const wchar_t* name, unsigned int cases, unsigned int failures, unsigned int errors,
                     unsigned int warnings) {
  SClassData row;
  row.Name = name;
  row.CasesTotal = cases;
  row.Failures = failures;
  row.Errors = errors;
  row.Successful = cases - failures - errors;
  row.Warnings = warnings;
  data.Classes.Add(row);
  return data.Classes.Last();
}

SCaseData& AddCase(SData& data, unsigned int id, const wchar_t* className, const wchar_t* caseName,
                   Run::ECaseResult result, bool warning) {
  SCaseData row;
  row.Id = id;
  row.ClassName = className;
  row.CaseName = caseName;
  row.ResultType = result;
  row.Warning = warning;
  data.Cases.Add(row);
  return data.Cases.Last();
}

SData MakeFixedReport() {
  SData data;
  fillFixedHeader(data);
  fillFixedStatistics(data);
  SClassData& geometry = AddClass(data, L"Geometry", 2, 1, 0, 0);
  geometry.ContactName = L"Anna Müller";
  geometry.ContactEMail = L"anna@example.com";
  AddClass(data, L"Import", 1, 0, 1, 0).ContactEMail = L"import@example.com";
  AddClass(data, L"Mesh", 2, 0, 0, 1);
  AddClass(data, L"Empty", 0, 0, 0, 0);

  SCaseData& cube = AddCase(data, 0, L"Geometry", L"cube & sphere", Run::eCaseOk);
  cube.Time = 0.25;
  cube.Memory = 12000;
  addDump(cube, false, L"loaded 12 faces");
  SCaseData& greeting = AddCase(data, 1, L"Geometry", L"grüße.dat", Run::eCaseDifferent);
  greeting.Time = 1.25;
  greeting.Memory = 8000;
  addDump(greeting, true, L"Abweichung bei &lt;node 3&gt;: &#246;ffnen");
  addDump(greeting, true, L"second line");
  addDump(greeting, false, L"...");
  SCaseData& big = AddCase(data, 2, L"Import", L"big.step", Run::eCaseTimeout);
  big.Time = 0.5;
  big.Memory = 4000;
  SCaseData& torus = AddCase(data, 4, L"Mesh", L"torus", Run::eCaseOk, true);
  torus.Time = 0.625;
  torus.Memory = 1000;
  torus.MemoryDelta = 256;
  torus.Message = MakeLeakMessage(256);
  addDump(torus, false, L"subdivided 3 times");
  SCaseData& plane = AddCase(data, 5, L"Mesh", L"plane", Run::eCaseOk);
  plane.Time = 0.015625;
  plane.Memory = 1000;
  return data;
}

SData MakeEmptyReport() {
  SData data;
  data.BuildConfiguration = L"Release x64";
  data.ExecutionMode = L"Internal";
  data.ThreadCount = 1;
  data.TimeOut = 0xFFFFFFFF;
  data.DateBegin = L"2021-05-04 12:34:56";
  data.DateEnd = L"2021-05-04 12:34:57";
  return data;
}

SData MakeReportOfCases(const std::vector<SCaseRow>& rows) {
  SData data = MakeEmptyReport();
  unsigned int id = 0;
  for (const SCaseRow& row : rows) AddCase(data, id++, row.sClass, row.sCase, row.eResult);
  return data;
}

std::string ReadBytes(const CString& path) { return TestSupport::ReadWholeFile(path.ToUtf8()); }

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::size_t CountOf(const std::string& text, const std::string& needle) {
  std::size_t count = 0;
  for (auto at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size())) ++count;
  return count;
}

void ExpectGoldenBytes(const std::string& name, const std::string& actual) {
  TestSupport::ExpectGoldenFile("report/golden/" + name, actual);
}

}  // namespace ReportTest
