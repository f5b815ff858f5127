// The style sheet and the script of the HTML reports, as the build embeds
// them, and the files written beside a page.
#include "report/ReportResources.h"

#include <gtest/gtest.h>

#include <regex>

#include "TempDirectory.h"
#include "report_Fixtures.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

struct SRule {
  const char* sComment;  // empty: the group of the rule before goes on
  const char* sSelector;
  const char* sDeclarations;
};

// The style of every report page, rule by rule.
const SRule c_rules[] = {
    {"/* Standardschriftart des gesamten Dokuments */", "*", "font-family:\"Segoe UI\", Arial, Helvetica, sans-serif;"},
    {"/* Header */", "h1, h2, h3, h4, h5, h6", "border-style:solid; border-width:0px; border-bottom-width:1px;"},
    {"/* Tabellen */", "table", "border-collapse:collapse;"},
    {"/* Tabellendaten */", "td, th", "border:1px solid #98bf21; padding:2px 7px 2px 7px;"},
    {"/* Tabellenheader */", "th",
     "text-align:left; padding-top:4px; padding-bottom:4px; background-color:#A7C942; color:#ffffff;"},
    {"/* Testfalltabelle mit kleinerer Schrift */", "#testcases td, th", "font-size: 0.8em; vertical-align: top;"},
    {"/* Farbkodierung von Tabellenzeilen f\xFCr die Testresultatskategorien. */", "tr.ok", "color:green;"},
    {"", "tr.failure", "color:red;"},
    {"", "tr.error", "color:orange;"},
    {"", "tr.warning", "color:goldenrod;"},
    {"", "tr.diff", "background-color:#e0ffff;"},
    {"", "tr.better", "background-color:#80ff80;"},
    {"", "tr.worse", "background-color:#ff8080;"},
    {"/* Farbkodierung der div Elemente */", "div.ok", "background-color:green; color:black; float:left;"},
    {"", "div.error", "background-color:red; color:black; float:right;"},
};

std::string toLineFeeds(std::string text) {
  for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) text.erase(at, 1);
  return text;
}

TEST(ReportResourcesTest, StyleSheetMatchesTheGoldenFile) { ExpectGoldenBytes("ZoTestSuite.css", LoadStyleSheet()); }

TEST(ReportResourcesTest, StyleSheetHoldsExactlyTheRulesOfTheTable) {
  const std::string styleSheet = LoadStyleSheet();
  std::vector<std::string> lines;
  for (const std::string& line : SplitLines(toLineFeeds(styleSheet)))
    if (!line.empty()) lines.push_back(line);
  std::vector<std::string> expected;
  for (const SRule& rule : c_rules) {
    if (*rule.sComment) expected.push_back(rule.sComment);
    expected.push_back(std::string(rule.sSelector) + " { " + rule.sDeclarations + " }");
  }
  EXPECT_EQ(lines, expected);
}

TEST(ReportResourcesTest, ResourcesHaveCarriageReturnLineFeedsOnly) {
  for (const std::string& text : {LoadStyleSheet(), LoadReportScript()}) {
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(CountOf(text, "\n"), CountOf(text, "\r\n"));
    EXPECT_EQ(CountOf(text, "\r"), CountOf(text, "\r\n"));
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
  }
}

TEST(ReportResourcesTest, ScriptIsTheSortingScriptBehindTheGermanHeader) {
  const std::string script = LoadReportScript();
  EXPECT_EQ(script.rfind("/*\r\n  Javascript Datei f\xFCr die Reports.\r\n", 0), 0u);
  EXPECT_NE(script.find("sorttable 1.0.2"), std::string::npos);
  const std::string package = ReadBytes(CString::FromUtf8(ZO_SOURCE_DIR "/node_modules/sorttable/sorttable.js"));
  ASSERT_FALSE(package.empty()) << "the npm packages are not installed (scripts/setup.sh)";
  const std::string body = toLineFeeds(script).substr(toLineFeeds(script).find("*/\n\n") + 4);
  EXPECT_EQ(body, package);
  EXPECT_NE(body.find("makeSortable: function(table)"), std::string::npos);
}

TEST(ReportResourcesTest, FilesBesideAPageGetTheResourcesAsTheyStand) {
  TempDirectory directory;
  WriteReportResourceFiles(directory.Path());
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.css"), LoadStyleSheet());
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.js"), LoadReportScript());
}

TEST(ReportResourcesTest, UnwritableDirectoryThrows) {
  TempDirectory directory;
  EXPECT_ANY_THROW(WriteReportResourceFiles(directory / L"missing/"));
}

}  // namespace
