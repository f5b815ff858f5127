// End-to-end: the real front end writes the XML, HTML and JUnit reports of
// a small run; the XML report loads back as the run was, the JUnit file
// validates, and the page has its style sheet and script beside it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "CliRunner.h"
#include "HeapInterception.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "Xmllint.h"
#include "report/XmlReportLoader.h"

using namespace TestSuite;

namespace {

// CliScripted with a passing, a failing and a talking case; CliSecond with
// a leaking case and one that returns a value outside the results (UNKNOWN).
void makeTree(const TempDirectory& root) {
  TestSupport::WriteScriptedClass(
      root, L"data/CliScripted",
      {{"a_pass.case", "pass"}, {"b_fail.case", "fail"}, {"c_info.case", "info Grüße <aus> dem Test"}});
  TestSupport::WriteScriptedClass(root, L"data/CliSecond",
                                  {{"d_leak.case", "leak 100"}, {"e_unknown.case", "result 8"}});
  root.MakeDirectory(L"out");
}

struct SReports {
  CliTest::SCliResult run;
  std::string sOut;
  Report::SData data;
  bool bLoaded = false;
};

SReports runWithReports(const TempDirectory& root, std::vector<std::string> extra = {}) {
  SReports reports;
  reports.sOut = root.Path().ToUtf8() + "out/";
  std::vector<std::string> arguments = {"-d",
                                        root.Path().ToUtf8() + "data",
                                        "--dll",
                                        "cli_ScriptedClasses",
                                        "--track-heap",
                                        "--xml",
                                        reports.sOut + "run.xml",
                                        "--html",
                                        reports.sOut + "run.html",
                                        "--junit",
                                        reports.sOut + "junit.xml"};
  arguments.insert(arguments.end(), extra.begin(), extra.end());
  reports.run = CliTest::RunCli(arguments);
  reports.bLoaded = Report::LoadReportDataFromXMLFile(CString::FromUtf8(reports.sOut + "run.xml"), reports.data);
  return reports;
}

const Report::SCaseData* findCase(const Report::SData& data, const wchar_t* name) {
  for (const Report::SCaseData& row : data.Cases)
    if (row.CaseName == name) return &row;
  return nullptr;
}

TEST(Reports, XmlReportLoadsBackAsTheRunWas) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  TempDirectory root;
  makeTree(root);
  const SReports reports = runWithReports(root, {"--run-tag", "e2e"});
  ASSERT_FALSE(reports.run.bTimedOut);
  EXPECT_EQ(reports.run.iExitCode, 1);
  ASSERT_TRUE(reports.bLoaded);
  const Report::SData& data = reports.data;
  EXPECT_EQ(data.CasesTotal, 5u);
  EXPECT_EQ(data.Successful, 3u);
  EXPECT_EQ(data.Failures, 1u);
  EXPECT_EQ(data.Errors, 1u);
  EXPECT_EQ(data.Warnings, 1u);
  EXPECT_EQ(data.ClassesTotal, 2u);
  EXPECT_EQ(data.ClassesSuccessful, 0u);
  EXPECT_EQ(data.RunTag, L"e2e");
  EXPECT_EQ(data.ExecutionMode, L"Internal");
  EXPECT_EQ(data.TimeOut, 0xFFFFFFFFu);
  EXPECT_EQ(data.DataDirectory, CString::FromUtf8(root.Path().ToUtf8() + "data"));
  ASSERT_EQ(data.Classes.GetCount(), 2u);
  ASSERT_EQ(data.Cases.GetCount(), 5u);
  const Report::SCaseData* failed = findCase(data, L"b_fail.case");
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(failed->ResultType, Run::eCaseError);
  ASSERT_EQ(failed->Dumps.GetCount(), 1u);
  EXPECT_EQ(failed->Dumps[0].Text, L"b_fail.case fails on purpose");
  const Report::SCaseData* talking = findCase(data, L"c_info.case");
  ASSERT_NE(talking, nullptr);
  ASSERT_EQ(talking->Dumps.GetCount(), 1u);
  EXPECT_EQ(talking->Dumps[0].Text, L"Gr&#252;&#223;e &lt;aus&gt; dem Test");  // escaped, as the run held it
  EXPECT_FALSE(talking->Dumps[0].IsError);
  const Report::SCaseData* leaking = findCase(data, L"d_leak.case");
  ASSERT_NE(leaking, nullptr);
  EXPECT_TRUE(leaking->Warning);
  EXPECT_EQ(leaking->MemoryDelta, 100);
  EXPECT_EQ(leaking->Message, L"Speicherleck von 100 Bytes detektiert.");
  const Report::SCaseData* unknown = findCase(data, L"e_unknown.case");
  ASSERT_NE(unknown, nullptr);
  EXPECT_EQ(unknown->ResultType, Run::eCaseUnknown);
}

TEST(Reports, JUnitFileValidatesAgainstTheSchema) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  TempDirectory root;
  makeTree(root);
  const SReports reports = runWithReports(root);
  const std::string junit = reports.sOut + "junit.xml";
  ASSERT_TRUE(std::filesystem::exists(junit));
  std::string messages;
  EXPECT_EQ(TestSupport::ValidateJUnitFile(junit, messages), 0) << messages;
  const std::string text = CliTest::ReadText(junit);
  EXPECT_NE(text.find("<testsuite name=\"CliScripted\" tests=\"3\" failures=\"1\" errors=\"0\""), std::string::npos);
  EXPECT_NE(text.find("<testsuite name=\"CliSecond\" tests=\"2\" failures=\"0\" errors=\"1\""), std::string::npos);
  EXPECT_NE(text.find("<error type=\"Unvollst&#228;ndige Ausf&#252;hrung\""), std::string::npos);
  EXPECT_NE(text.find("<system-err>Speicherleck von 100 Bytes detektiert.</system-err>"), std::string::npos);
}

TEST(Reports, PageHasItsStyleSheetAndScriptBeside) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  TempDirectory root;
  makeTree(root);
  const SReports reports = runWithReports(root, {"--show-warnings"});
  const std::string page = CliTest::ReadText(reports.sOut + "run.html");
  EXPECT_NE(page.find("<h1>ZoTestSuite Report</h1>"), std::string::npos);
  EXPECT_NE(page.find("<h2>Class Summary</h2>"), std::string::npos);
  EXPECT_NE(page.find("<td>b_fail.case</td>"), std::string::npos);
  EXPECT_NE(page.find("<tr class=\"warning\">"), std::string::npos);
  EXPECT_NE(page.find("href=\"ZoTestSuite.css\""), std::string::npos);
  const std::string css = CliTest::ReadText(reports.sOut + "ZoTestSuite.css");
  const std::string js = CliTest::ReadText(reports.sOut + "ZoTestSuite.js");
  EXPECT_NE(css.find("tr.failure { color:red; }\r\n"), std::string::npos);
  EXPECT_NE(js.find("Javascript Datei f\xFCr die Reports."), std::string::npos);
  EXPECT_NE(js.find("sorttable"), std::string::npos);
}

TEST(Reports, MessageLimitAndClassesOnlyReachTheReports) {
  TempDirectory root;
  makeTree(root);
  const SReports reports = runWithReports(root, {"--message-report-max", "0", "--html-classes-only"});
  ASSERT_TRUE(reports.bLoaded);
  const Report::SCaseData* failed = findCase(reports.data, L"b_fail.case");
  ASSERT_NE(failed, nullptr);
  ASSERT_EQ(failed->Dumps.GetCount(), 1u);
  EXPECT_EQ(failed->Dumps[0].Text, L"...");
  const std::string page = CliTest::ReadText(reports.sOut + "run.html");
  EXPECT_EQ(page.find("<h2>Testcases</h2>"), std::string::npos);
}

TEST(Reports, DefaultLocationIsBelowTheDocumentsDirectory) {
  TempDirectory root;
  makeTree(root);
  root.MakeDirectory(L"documents");
  const std::string documents = root.Path().ToUtf8() + "documents";
  const auto result = CliTest::RunCli(
      {"-d", root.Path().ToUtf8() + "data/CliSecond", "--dll", "cli_ScriptedClasses", "--xml", "--html"}, "", 120,
      {"XDG_DOCUMENTS_DIR=" + documents});
  ASSERT_FALSE(result.bTimedOut);
  int xml = 0, html = 0;
  for (const auto& entry : std::filesystem::directory_iterator(documents + "/ZoTestSuite/Reports")) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("Report-", 0) == 0 && entry.path().extension() == ".xml") ++xml;
    if (name.rfind("Report-", 0) == 0 && entry.path().extension() == ".html") ++html;
  }
  EXPECT_EQ(xml, 1);
  EXPECT_EQ(html, 1);
  EXPECT_TRUE(std::filesystem::exists(documents + "/ZoTestSuite/Reports/ZoTestSuite.js"));
}

}  // namespace
