// End-to-end: the time summary and the duplicate detection through the real
// front end, on data trees in temporary directories with the scripted test
// classes, and what the front end does with bad input for them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "CliRunner.h"
#include "TempDirectory.h"

using CliTest::ExpectGolden;
using CliTest::Normalize;
using CliTest::RunCli;
using CliTest::SCliResult;

namespace fs = std::filesystem;

namespace {

const char* const c_sLibrary = "cli_ScriptedClasses";

std::string dataDir(const TempDirectory& root) { return root.Path().ToUtf8() + "data"; }

bool exists(const TempDirectory& root, const wchar_t* relative) { return fs::exists((root / relative).ToUtf8()); }

// Every entry below the root, for checks that nothing was written.
std::vector<std::string> listing(const TempDirectory& root) {
  std::vector<std::string> entries;
  for (const auto& entry : fs::recursive_directory_iterator(root.Path().ToUtf8()))
    entries.push_back(entry.path().string());
  std::sort(entries.begin(), entries.end());
  return entries;
}

// data/CliScripted       a_pass.case b_fail.case c_info.case
// data/group/CliSecond   x.case y.case
// data/quiet/CliVanishing
void makeTimedTree(const TempDirectory& root) {
  root.MakeDirectory(L"data/CliScripted");
  root.WriteFile(L"data/CliScripted/a_pass.case", "pass");
  root.WriteFile(L"data/CliScripted/b_fail.case", "fail");
  root.WriteFile(L"data/CliScripted/c_info.case", "info Zeit");
  root.MakeDirectory(L"data/group/CliSecond");
  root.WriteFile(L"data/group/CliSecond/x.case", "pass");
  root.WriteFile(L"data/group/CliSecond/y.case", "pass");
  root.MakeDirectory(L"data/quiet/CliVanishing");
}

// Replaces the time of every case of the report by the one that `seconds`
// gives its name (0 for the others), so that the summary is the same in
// every run.
void fixTimes(const std::string& report, const std::map<std::string, std::string>& seconds) {
  const std::string text = CliTest::ReadText(report);
  static const std::regex time(R"re((name="([^"]*)">\s*<time>)[^<]*(</time>))re");
  std::string fixed;
  auto last = text.cbegin();
  for (std::sregex_iterator it(text.begin(), text.end(), time), end; it != end; ++it) {
    const auto found = seconds.find((*it)[2]);
    fixed.append(last, (*it)[0].first).append((*it)[1]);
    fixed += found == seconds.end() ? "0.000000" : found->second;
    fixed += (*it)[3];
    last = (*it)[0].second;
  }
  fixed.append(last, text.cend());
  TempDirectory::WriteBytes(CString::FromUtf8(report), fixed);
}

}  // namespace

TEST(ToolModesCli, TimeSummaryOfARealRunOverItsTree) {
  TempDirectory root;
  makeTimedTree(root);
  const std::string report = root.Path().ToUtf8() + "Report.xml";
  const SCliResult run = RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--xml", report, "--no-color"});
  ASSERT_EQ(run.iExitCode, 1) << run.sStdout << run.sStderr;

  // The run's own times: whatever they are, every line has the form.
  const SCliResult raw = RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--time-summary", report, "-v"});
  EXPECT_EQ(raw.iExitCode, 0);
  EXPECT_EQ(raw.sStderr, "");
  static const std::regex lines(R"(( +\[[0-9]{2,}:[0-5][0-9]:[0-5][0-9]\.[0-9]{3}\]  [^\n]+\n)+)");
  EXPECT_TRUE(std::regex_match(raw.sStdout, lines)) << raw.sStdout;
  EXPECT_TRUE(std::regex_search(raw.sStdout, std::regex(R"(^ \[[^\n]*\]  data\n)"))) << raw.sStdout;

  fixTimes(report, {{"a_pass.case", "1.500000"},
                    {"b_fail.case", "3600.250000"},
                    {"c_info.case", "0.000400"},
                    {"x.case", "62.125000"}});
  const SCliResult summary = RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--time-summary", report});
  EXPECT_EQ(summary.iExitCode, 0);
  ExpectGolden("time_summary.txt", summary.sStdout);
  const SCliResult verbose = RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--time-summary", report, "-v"});
  EXPECT_EQ(verbose.iExitCode, 0);
  ExpectGolden("time_summary_verbose.txt", verbose.sStdout);
}

TEST(ToolModesCli, TimeSummaryOfAReportThatCannotBeReadIsAUsageError) {
  TempDirectory root;
  makeTimedTree(root);
  const auto before = listing(root);
  const SCliResult missing =
      RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--time-summary", root.Path().ToUtf8() + "fehlt.xml"});
  EXPECT_EQ(missing.iExitCode, 2);
  EXPECT_EQ(missing.sStdout, "");
  EXPECT_NE(missing.sStderr.find("--time-summary: '" + root.Path().ToUtf8() + "fehlt.xml' cannot be read"),
            std::string::npos)
      << missing.sStderr;
  const SCliResult directory = RunCli({"-d", dataDir(root), "--time-summary", dataDir(root)});
  EXPECT_EQ(directory.iExitCode, 2);
  EXPECT_EQ(listing(root), before);
}

TEST(ToolModesCli, TimeSummaryOfABrokenReportGetsTheLoadersMessageOnly) {
  TempDirectory root;
  makeTimedTree(root);
  root.WriteFile(L"Kaputt.xml", "<testsuite><testcase name=\"a\">");
  const auto before = listing(root);
  const SCliResult result =
      RunCli({"-d", dataDir(root), "--dll", c_sLibrary, "--time-summary", root.Path().ToUtf8() + "Kaputt.xml"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: XML-Syntax Fehler\n");
  EXPECT_EQ(listing(root), before);
}

namespace {

// data/CliScripted: a b c d e with a=c and b=d; data/g/CliSecond: x y
// equal, and equal to a; data/CliVanishing, which is not file-based. The
// files are written in listing order, so the first of a set is kept.
void makeDuplicateTree(const TempDirectory& root) {
  root.MakeDirectory(L"data/CliScripted");
  for (const auto& [name, script] :
       {std::pair{L"a.case", "pass"}, std::pair{L"b.case", "fail"}, std::pair{L"c.case", "pass"},
        std::pair{L"d.case", "fail"}, std::pair{L"e.case", "pass\n"}})
    root.WriteFile(CString(L"data/CliScripted/") + name, script);
  root.MakeDirectory(L"data/g/CliSecond");
  root.WriteFile(L"data/g/CliSecond/x.case", "pass");
  root.WriteFile(L"data/g/CliSecond/y.case", "pass");
  root.MakeDirectory(L"data/CliVanishing");
}

SCliResult detect(const TempDirectory& root, std::vector<std::string> action) {
  std::vector<std::string> arguments = {"-d", dataDir(root), "--dll", c_sLibrary, "--duplicates"};
  arguments.insert(arguments.end(), action.begin(), action.end());
  return RunCli(arguments);
}

}  // namespace

TEST(ToolModesCli, DuplicatesListedOfARealTree) {
  TempDirectory root;
  makeDuplicateTree(root);
  const SCliResult result = detect(root, {"list"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStderr, "");
  ExpectGolden("duplicates_list.txt", Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}));
  EXPECT_TRUE(exists(root, L"data/CliScripted/c.case"));
  EXPECT_TRUE(exists(root, L"data/g/CliSecond/y.case"));
}

TEST(ToolModesCli, DuplicatesWithoutAnActionOnlyNameTheClasses) {
  TempDirectory root;
  makeDuplicateTree(root);
  const SCliResult result = detect(root, {});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout, "Check: CliScripted\nCheck: CliSecond\nCheck: CliVanishing\n\n");
  EXPECT_TRUE(exists(root, L"data/CliScripted/c.case"));
}

TEST(ToolModesCli, DuplicatesDeletedLeaveTheKeepersAndAreGoneTheNextTime) {
  TempDirectory root;
  makeDuplicateTree(root);
  const SCliResult result = detect(root, {"delete"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}),
            "Check: CliScripted\nCheck: CliSecond\nCheck: CliVanishing\n\n"
            "CliScripted\n  Duplikat-Set (1/2):\n    a.case... [KEEP]\n    c.case... [DELETED]\n"
            "  Duplikat-Set (2/2):\n    b.case... [KEEP]\n    d.case... [DELETED]\n\n"
            "CliSecond\n  Duplikat-Set (1/1):\n    x.case... [KEEP]\n    y.case... [DELETED]\n\n"
            "Durchsuchtes Datenverzeichnis: <DATA>\nGefundene Unittest-Klassen: 3\nRedundante Datensätze darin: 3\n");
  for (const wchar_t* kept :
       {L"data/CliScripted/a.case", L"data/CliScripted/b.case", L"data/CliScripted/e.case", L"data/g/CliSecond/x.case"})
    EXPECT_TRUE(exists(root, kept)) << CString(kept).ToUtf8();
  for (const wchar_t* gone : {L"data/CliScripted/c.case", L"data/CliScripted/d.case", L"data/g/CliSecond/y.case"})
    EXPECT_FALSE(exists(root, gone)) << CString(gone).ToUtf8();
  const SCliResult again = detect(root, {"list"});
  EXPECT_NE(again.sStdout.find("\n\nDurchsuchtes Datenverzeichnis: "), std::string::npos) << again.sStdout;
  EXPECT_NE(again.sStdout.find("Redundante Datensätze darin: 0\n"), std::string::npos) << again.sStdout;
}

TEST(ToolModesCli, AWrongActionIsAUsageErrorAndDeletesNothing) {
  TempDirectory root;
  makeDuplicateTree(root);
  const auto before = listing(root);
  const SCliResult result = detect(root, {"remove"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "");
  EXPECT_NE(result.sStderr.find("--duplicates: remove not in {list,delete}"), std::string::npos) << result.sStderr;
  EXPECT_EQ(listing(root), before);
  const SCliResult both = RunCli({"-d", dataDir(root), "--duplicates", "delete", "--query"});
  EXPECT_EQ(both.iExitCode, 2);
  EXPECT_EQ(listing(root), before);
}
