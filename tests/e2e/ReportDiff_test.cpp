// End-to-end: two runs of the real front end over a data tree whose cases
// change in between (fixed, broken, timed out, a warning gained and one
// lost, a case added and one removed), then --diff over their XML reports;
// and the command lines and inputs that must leave no page.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "CliRunner.h"
#include "HeapInterception.h"
#include "IsolationCli.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"

using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class ReportDiffE2E : public ::testing::Test {
 protected:
  // Runs in child processes need the classes in the front end's
  // ZoTestSuiteEnvironment.conf: a private copy of the front end has them.
  static void SetUpTestSuite() {
    s_frontEnd = std::make_unique<CPrivateFrontEnd>(std::vector<std::string>{"cli_ScriptedClasses"});
    s_root = std::make_unique<TempDirectory>();
    s_root->MakeDirectory(L"data/CliScripted");
    s_root->MakeDirectory(L"out");
    s_runA = runWith({{"a_same", "pass"},
                      {"b_fixed", "fail"},
                      {"c_broken", "pass"},
                      {"d_timeout", "pass"},
                      {"e_warned", "pass"},
                      {"f_unwarned", "leak 100"},
                      {"g_removed", "pass"},
                      {"i_changed", "fail"}},
                     "A.xml");
    std::filesystem::remove((s_root->Path() + L"data/CliScripted/g_removed.case").ToUtf8());
    s_runB = runWith({{"a_same", "pass"},
                      {"b_fixed", "pass"},
                      {"c_broken", "fail"},
                      {"d_timeout", "sleep 60"},
                      {"e_warned", "leak 100"},
                      {"f_unwarned", "pass"},
                      {"h_added", "pass"},
                      {"i_changed", "different"}},
                     "B.xml");
  }
  static void TearDownTestSuite() {
    s_root.reset();
    s_frontEnd.reset();
  }

  static SCliResult runWith(const std::vector<std::pair<std::string, std::string>>& cases, const char* report) {
    for (const auto& [name, script] : cases)
      s_root->WriteFile(CString::FromUtf8("data/CliScripted/" + name + ".case"), script);
    const std::vector<std::string> arguments = {
        "-d", s_root->Path().ToUtf8() + "data", "-x", "-t", "2", "--track-heap", "--no-color", "--xml", out(report)};
    CliTest::CCliProcess process(s_frontEnd->Program(), arguments);
    return process.Finish(240);
  }

  static std::string out(const std::string& name) { return s_root->Path().ToUtf8() + "out/" + name; }

  // Files in out/ besides the two reports.
  static std::vector<std::string> otherFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(out("")))
      if (entry.path().filename() != "A.xml" && entry.path().filename() != "B.xml")
        names.push_back(entry.path().filename().string());
    return names;
  }
  static void removeOtherFiles() {
    for (const std::string& name : otherFiles()) std::filesystem::remove(out(name));
  }

  static std::unique_ptr<CPrivateFrontEnd> s_frontEnd;
  static std::unique_ptr<TempDirectory> s_root;
  static SCliResult s_runA, s_runB;
};

std::unique_ptr<CPrivateFrontEnd> ReportDiffE2E::s_frontEnd;
std::unique_ptr<TempDirectory> ReportDiffE2E::s_root;
SCliResult ReportDiffE2E::s_runA, ReportDiffE2E::s_runB;

// The row of `caseName` in the case table of `page`, up to its first cells.
std::string rowOf(const std::string& page, const std::string& caseName) {
  const std::size_t cell = page.find("<td>CliScripted</td>\n\t\t\t\t<td>" + caseName + ".case</td>");
  if (cell == std::string::npos) return "(no row)";
  const std::size_t open = page.rfind("<tr", cell);
  return page.substr(open, page.find("</tr>", cell) - open);
}

TEST_F(ReportDiffE2E, DiffOfTwoRunsJudgesEveryChangedCase) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  ASSERT_FALSE(s_runA.bTimedOut || s_runB.bTimedOut);
  ASSERT_EQ(s_runA.iExitCode, 1) << s_runA.sStdout << s_runA.sStderr;
  ASSERT_EQ(s_runB.iExitCode, 1) << s_runB.sStdout << s_runB.sStderr;
  removeOtherFiles();
  const SCliResult diff = RunCli({"--diff", out("A.xml"), out("B.xml"), "--show-warnings"});
  EXPECT_EQ(diff.iExitCode, 0) << diff.sStderr;
  EXPECT_EQ(diff.sStdout, "");
  const std::string page = TempDirectory::ReadBytes(CString::FromUtf8(out("Diff-[A][B].html")));
  ASSERT_FALSE(page.empty());
  EXPECT_TRUE(contains(page, "<td>Data Source</td><td>" + out("A.xml") + "</td><td>" + out("B.xml") + "</td>"));
  EXPECT_EQ(rowOf(page, "a_same").rfind("<tr>\n\t\t\t\t<td></td>", 0), 0u) << rowOf(page, "a_same");
  EXPECT_EQ(rowOf(page, "b_fixed").rfind("<tr class=\"better\">\n\t\t\t\t<td>Improved</td>", 0), 0u);
  EXPECT_EQ(rowOf(page, "c_broken").rfind("<tr class=\"worse\">\n\t\t\t\t<td>Worse</td>", 0), 0u);
  EXPECT_EQ(rowOf(page, "d_timeout").rfind("<tr class=\"worse\">\n\t\t\t\t<td>Worse</td>", 0), 0u);
  EXPECT_TRUE(contains(rowOf(page, "d_timeout"),
                       "<td>Ok</td>\n\t\t\t\t<td>Zeitlimit \xFC"
                       "berschritten</td>"));
  EXPECT_EQ(rowOf(page, "e_warned").rfind("<tr class=\"worse\">\n\t\t\t\t<td>Worse</td>", 0), 0u);
  EXPECT_TRUE(contains(rowOf(page, "e_warned"), "<td>Speicherleck von 100 Bytes detektiert.</td>"));
  EXPECT_EQ(rowOf(page, "f_unwarned").rfind("<tr class=\"better\">\n\t\t\t\t<td>Improved</td>", 0), 0u);
  EXPECT_EQ(rowOf(page, "g_removed").rfind("<tr class=\"diff\">\n\t\t\t\t<td>Different</td>", 0), 0u);
  EXPECT_EQ(rowOf(page, "h_added").rfind("<tr class=\"diff\">\n\t\t\t\t<td>Different</td>", 0), 0u);
  EXPECT_EQ(rowOf(page, "i_changed").rfind("<tr class=\"diff\">\n\t\t\t\t<td>Different</td>", 0), 0u);
  // One failure before, three after: the class is worse.
  EXPECT_TRUE(contains(page,
                       "<tr class=\"worse\">\n\t\t\t\t<td>CliScripted</td>\n\t\t\t\t<td>8</td>\n"
                       "\t\t\t\t<td>8</td>\n\t\t\t\t<td>2</td>\n\t\t\t\t<td>3</td>\n"));
  EXPECT_TRUE(std::filesystem::exists(out("ZoTestSuite.css")));
  EXPECT_TRUE(std::filesystem::exists(out("ZoTestSuite.js")));
}

TEST_F(ReportDiffE2E, WarningsHiddenByDefaultAndOutputAndClassesOnlyApply) {
  removeOtherFiles();
  const SCliResult diff =
      RunCli({"--diff", out("A.xml"), out("B.xml"), "--diff-output", out("page.html"), "--html-classes-only"});
  EXPECT_EQ(diff.iExitCode, 0) << diff.sStderr;
  const std::string page = TempDirectory::ReadBytes(CString::FromUtf8(out("page.html")));
  EXPECT_TRUE(contains(page, "<h2>Class Diff</h2>"));
  EXPECT_FALSE(contains(page, "Case Diff"));
  EXPECT_FALSE(std::filesystem::exists(out("Diff-[A][B].html")));
  const SCliResult withCases = RunCli({"--diff", out("A.xml"), out("B.xml")});
  EXPECT_EQ(withCases.iExitCode, 0) << withCases.sStderr;
  const std::string full = TempDirectory::ReadBytes(CString::FromUtf8(out("Diff-[A][B].html")));
  EXPECT_EQ(rowOf(full, "e_warned").rfind("<tr>\n\t\t\t\t<td></td>", 0), 0u) << rowOf(full, "e_warned");
}

TEST_F(ReportDiffE2E, BadInputsAreSaidAndLeaveNothing) {
  removeOtherFiles();
  s_root->WriteFile(L"out/empty.xml", "");
  struct SBad {
    std::vector<std::string> arguments;
    int iExitCode;
    std::string sStdout, sStderrStart;
  };
  const std::string usage =
      "ZoTestSuiteCLI: --diff: two reports are needed, the reference A and the report B compared with it (";
  const SBad bad[] = {
      {{"--diff", out("A.xml"), out("none.xml")},
       0,
       "Fehler Diff: Datei " + out("none.xml") + " existiert nicht.\n",
       ""},
      {{"--diff", out("empty.xml"), out("B.xml")},
       0,
       "Fehler in Config-File: XML-Syntax Fehler\nFehler Diff: Daten der Datei " + out("empty.xml") +
           " konnten nicht geladen werden.\n",
       ""},
      {{"--diff", out("A.xml")}, 2, "", usage + "1 given)"},
      {{"--diff", out("A.xml"), out("B.xml"), out("B.xml")}, 2, "", usage + "3 given)"},
      {{"--diff", out("A.xml"), out("B.xml"), "--diff-output", out("no/such/dir/page.html")},
       0,
       "HTML-Report " + out("no/such/dir/page.html") + " konnte nicht erzeugt werden.\n",
       ""},
  };
  for (const SBad& run : bad) {
    SCOPED_TRACE(run.arguments.back());
    const SCliResult result = RunCli(run.arguments);
    EXPECT_FALSE(result.bSignaled || result.bTimedOut);
    EXPECT_EQ(result.iExitCode, run.iExitCode);
    EXPECT_EQ(result.sStdout, run.sStdout);
    EXPECT_EQ(result.sStderr.rfind(run.sStderrStart, 0), 0u) << result.sStderr;
    EXPECT_EQ(otherFiles(), std::vector<std::string>{"empty.xml"});
  }
}

}  // namespace
