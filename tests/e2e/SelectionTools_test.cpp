// End-to-end: selections made from the reports of two real runs whose
// results change in between (a case breaks, one is fixed, one times out, one
// gains and one loses a leak warning, one is removed, two are added): the
// diff selection under each filter, the selection of failed cases that a
// third run executes exactly, the re-run of failed cases in one step, and
// the refusals of bad input. The front end is a private copy whose
// ZoTestSuiteEnvironment.conf names cli_ScriptedClasses, so that the case
// that times out can run in a child process.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <set>

#include "CliRunner.h"
#include "HeapInterception.h"
#include "IsolationCli.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"
#include "services/platform/HeapHooks.h"

namespace fs = std::filesystem;
using CliTest::ExpectGolden;
using CliTest::ReadText;
using CliTest::SCliResult;

namespace {

// The case that hangs runs in a child with a limit of its own; all others
// run in process without one.
const char* const c_szExtraInfo =
    "<ExtraInfo><TestCase name=\"d_hangs.case\"><External>true</External>"
    "<TimeOutSec>3</TimeOutSec></TestCase></ExtraInfo>";

struct SScript {
  const wchar_t* sName;
  const char* sFirst;   // nullptr: not in the first run
  const char* sSecond;  // nullptr: not in the second run
};

const SScript c_scripts[] = {
    {L"a_steady.case", "pass", "pass"},    {L"b_breaks.case", "pass", "fail"},    {L"c_fixed.case", "fail", "pass"},
    {L"d_hangs.case", "pass", "sleep 60"}, {L"e_warns.case", "pass", "leak 100"}, {L"f_calms.case", "leak 100", "pass"},
    {L"g_removed.case", "fail", nullptr},  {L"h_added.case", nullptr, "fail"},    {L"i_added.case", nullptr, "pass"},
    {L"j_still.case", "fail", "fail"},
};

// The names of the cases that a run executed, from its case lines.
std::set<std::string> casesRun(const std::string& output) {
  static const std::regex line("(^|\n)\t([a-z_]+\\.case)\\.\\.\\. ");
  std::set<std::string> names;
  for (std::sregex_iterator it(output.begin(), output.end(), line), end; it != end; ++it) names.insert((*it)[2]);
  return names;
}

class SelectionTools : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_frontEnd = std::make_unique<CPrivateFrontEnd>(std::vector<std::string>{"cli_ScriptedClasses"});
    s_root = std::make_unique<TempDirectory>();
    s_root->MakeDirectory(L"data/CliScripted");
    s_root->MakeDirectory(L"reports");
    s_root->WriteFile(L"data/CliScripted/#ExtraInfo.xml", c_szExtraInfo);
    s_first = runWith(&SScript::sFirst, "first.xml");
    s_second = runWith(&SScript::sSecond, "second.xml");
  }
  static void TearDownTestSuite() {
    s_root.reset();
    s_frontEnd.reset();
  }

  // Writes the scripts of one run into the tree and runs it with an XML report.
  static SCliResult runWith(const char* SScript::*script, const char* report) {
    for (const SScript& entry : c_scripts) {
      const CString name = CString(L"data/CliScripted/") + entry.sName;
      if (entry.*script) s_root->WriteFile(name, entry.*script);
      else fs::remove(Path(name.ToUtf8()));
    }
    return Run({"-d", Data(), "--track-heap", "--no-times", "--xml", Path(std::string("reports/") + report)});
  }

  static SCliResult Run(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
    arguments.insert(arguments.begin(), "--no-color");
    arguments.insert(arguments.begin(), s_frontEnd->Program());
    arguments.insert(arguments.begin(), environment.begin(), environment.end());
    return CliTest::RunProgram("env", arguments, 120);
  }
  static std::string Path(const std::string& name) { return s_root->Path().ToUtf8() + name; }
  static std::string Data() { return Path("data"); }
  static std::string First() { return Path("reports/first.xml"); }
  static std::string Second() { return Path("reports/second.xml"); }
  // The entries of the reports directory.
  static std::set<std::string> Reports() {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(Path("reports"))) names.insert(entry.path().filename().string());
    return names;
  }
  static void Remove(const std::string& name) { fs::remove(Path(name)); }

  static std::unique_ptr<CPrivateFrontEnd> s_frontEnd;
  static std::unique_ptr<TempDirectory> s_root;
  static SCliResult s_first, s_second;
};

std::unique_ptr<CPrivateFrontEnd> SelectionTools::s_frontEnd;
std::unique_ptr<TempDirectory> SelectionTools::s_root;
SCliResult SelectionTools::s_first, SelectionTools::s_second;

}  // namespace

TEST_F(SelectionTools, TheTwoRunsGiveTheResultsTheDiffsAreMadeOf) {
  ASSERT_FALSE(s_first.bTimedOut);
  ASSERT_FALSE(s_second.bTimedOut);
  EXPECT_EQ(s_first.iExitCode, 1) << s_first.sStderr;
  EXPECT_EQ(s_second.iExitCode, 1) << s_second.sStderr;
  EXPECT_NE(s_second.sStdout.find("\td_hangs.case... FEHLER (Ausführung nach Erreichen des Zeitlimits abgebrochen.)"),
            std::string::npos)
      << s_second.sStdout;
  if (TestSuite::HeapHooks::IsAvailable()) {  // a sanitizer's allocator is not tracked
    EXPECT_NE(s_first.sStdout.find("\tf_calms.case... WARNUNG"), std::string::npos) << s_first.sStdout;
    EXPECT_NE(s_second.sStdout.find("\te_warns.case... WARNUNG"), std::string::npos) << s_second.sStdout;
  }
  EXPECT_EQ(casesRun(s_first.sStdout).size(), 8u);
  EXPECT_EQ(casesRun(s_second.sStdout).size(), 9u);
}

TEST_F(SelectionTools, DiffSelectionOfEachFilter) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const std::pair<const char*, const char*> filters[] = {
      {"all", "selection_diff_all.xml"},
      {"failed", "selection_diff_failed.xml"},
      {"successful", "selection_diff_successful.xml"},
  };
  for (const auto& [filter, golden] : filters) {
    SCOPED_TRACE(filter);
    const std::string out = Path(std::string("reports/") + filter + ".sel.xml");
    const SCliResult result =
        Run({"--diff-selection", First(), Second(), "--diff-filter", filter, "--diff-output", out});
    EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
    EXPECT_EQ(result.sStderr, "");
    EXPECT_EQ(result.sStdout.rfind("Auswahldatei geschrieben: " + out + " (Testfälle: ", 0), 0u) << result.sStdout;
    ExpectGolden(golden, ReadText(out));
    Remove(std::string("reports/") + filter + ".sel.xml");
  }
}

TEST_F(SelectionTools, DiffSelectionWithoutFilterOrOutputListsAllBesideTheFirstReport) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  const SCliResult result = Run({"--diff-selection", First(), Second()});
  EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
  const std::string derived = Path("reports/DiffSelection-[first][second].xml");
  EXPECT_EQ(result.sStdout, "Auswahldatei geschrieben: " + derived + " (Testfälle: 5)\n");
  ExpectGolden("selection_diff_all.xml", ReadText(derived));
  Remove("reports/DiffSelection-[first][second].xml");
}

TEST_F(SelectionTools, DiffSelectionOfAReportWithItselfWritesNothing) {
  const SCliResult result = Run({"--diff-selection", First(), First()});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout, "Keine geänderten Testfälle: keine Auswahldatei geschrieben.\n");
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, FailedSelectionRunsExactlyTheFailedCasesInAThirdRun) {
  const std::string selection = Path("reports/failed.sel.xml");
  const SCliResult written = Run({"--failed-selection", Second(), selection});
  EXPECT_EQ(written.iExitCode, 0) << written.sStderr;
  EXPECT_EQ(written.sStdout, "Auswahldatei geschrieben: " + selection + " (Testfälle: 4)\n");
  ExpectGolden("selection_failed.xml", ReadText(selection));

  const SCliResult third = Run({"-d", Data(), "--no-times", "--select", selection});
  EXPECT_EQ(third.iExitCode, 1);
  EXPECT_EQ(casesRun(third.sStdout),
            (std::set<std::string>{"b_breaks.case", "d_hangs.case", "h_added.case", "j_still.case"}));
  Remove("reports/failed.sel.xml");
}

TEST_F(SelectionTools, RerunFailedDoesTheSameInOneStepAndLeavesNoFileBehind) {
  TempDirectory temporary;
  const SCliResult result =
      Run({"-d", Data(), "--no-times", "--rerun-failed", Second()}, {"TMPDIR=" + temporary.Path().ToUtf8()});
  EXPECT_EQ(result.iExitCode, 1) << result.sStderr;
  EXPECT_EQ(casesRun(result.sStdout),
            (std::set<std::string>{"b_breaks.case", "d_hangs.case", "h_added.case", "j_still.case"}));
  ExpectGolden("rerun_failed.txt", CliTest::Normalize(result.sStdout, {{Second(), "<REPORT>"}}));
  for (const auto& entry : fs::directory_iterator(temporary.Path().ToUtf8())) ADD_FAILURE() << entry.path();
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, RerunFailedWithoutFailuresSaysSoAndRunsNothing) {
  const std::string passed = Path("reports/passed.xml");
  const std::string selection = Path("reports/steady.sel.xml");
  TempDirectory::WriteBytes(CString::FromUtf8(selection),
                            "<?xml version=\"1.0\"?><Config version=\"1.0\"><Selection default=\"none\">"
                            "<UnitTest name=\"CliScripted\" default=\"none\">"
                            "<TestCase name=\"a_steady.case\" select=\"true\"/></UnitTest></Selection></Config>");
  ASSERT_EQ(Run({"-d", Data(), "--select", selection, "--xml", passed}).iExitCode, 0);
  const SCliResult result = Run({"-d", Data(), "--rerun-failed", passed});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout, "Keine fehlgeschlagenen Testfälle in " + passed + ".\n");
  Remove("reports/passed.xml");
  Remove("reports/steady.sel.xml");
}

// Bad input: the system's message, no crash, nothing written.

TEST_F(SelectionTools, MissingReport) {
  const std::string missing = Path("reports/missing.xml");
  const SCliResult diff = Run({"--diff-selection", First(), missing});
  EXPECT_EQ(diff.iExitCode, 2);
  EXPECT_EQ(diff.sStdout, "Fehler Diff: Datei " + missing + " existiert nicht.\n");
  const SCliResult failed = Run({"--failed-selection", missing, Path("reports/out.xml")});
  EXPECT_EQ(failed.iExitCode, 2);
  EXPECT_EQ(failed.sStdout, "Fehler: Datei " + missing + " existiert nicht.\n");
  const SCliResult rerun = Run({"-d", Data(), "--rerun-failed", missing});
  EXPECT_EQ(rerun.iExitCode, 2);
  EXPECT_EQ(rerun.sStdout, "Fehler: Datei " + missing + " existiert nicht.\n");
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, EmptyFileAndReportOfAnotherRoot) {
  const std::string empty = Path("empty.xml");
  const std::string other = Path("other.xml");
  TempDirectory::WriteBytes(CString::FromUtf8(empty), "");
  TempDirectory::WriteBytes(CString::FromUtf8(other), "<?xml version=\"1.0\"?><Config version=\"1.0\"/>");
  for (const std::string& bad : {empty, other}) {
    SCOPED_TRACE(bad);
    const SCliResult diff = Run({"--diff-selection", bad, Second()});
    EXPECT_EQ(diff.iExitCode, 2);
    EXPECT_EQ(diff.sStdout, "Fehler in Config-File: XML-Syntax Fehler\nFehler Diff: Daten der Datei " + bad +
                                " konnten nicht geladen werden.\n");
    const std::string loadFailure =
        "Fehler in Config-File: XML-Syntax Fehler\nFehler: Daten der Datei " + bad + " konnten nicht geladen werden.\n";
    const SCliResult failed = Run({"--failed-selection", bad, Path("reports/out.xml")});
    EXPECT_EQ(failed.iExitCode, 2);
    EXPECT_EQ(failed.sStdout, loadFailure);
    const SCliResult rerun = Run({"-d", Data(), "--rerun-failed", bad});
    EXPECT_EQ(rerun.iExitCode, 2);
    EXPECT_EQ(rerun.sStdout, loadFailure);
  }
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, OneInputOnlyAndThreeInputs) {
  const std::string expected = "Fehler Diff: Es müssen zwei Dateien angegeben werden.\n";
  const SCliResult one = Run({"--diff-selection", First()});
  EXPECT_EQ(one.iExitCode, 2);
  EXPECT_EQ(one.sStdout, expected);
  const SCliResult three = Run({"--diff-selection", First(), Second(), First()});
  EXPECT_EQ(three.iExitCode, 2);
  EXPECT_EQ(three.sStdout, expected);
  const SCliResult failed = Run({"--failed-selection", Second()});
  EXPECT_EQ(failed.iExitCode, 2);
  EXPECT_NE(failed.sStderr.find("--failed-selection"), std::string::npos) << failed.sStderr;
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, OutputInADirectoryThatDoesNotExist) {
  const std::string directory = Path("nowhere/");
  const SCliResult diff = Run({"--diff-selection", First(), Second(), "--diff-output", directory + "out.xml"});
  EXPECT_EQ(diff.iExitCode, 2);
  EXPECT_EQ(diff.sStdout, "Fehler: Verzeichnis " + directory + " existiert nicht.\n");
  const SCliResult failed = Run({"--failed-selection", Second(), directory + "out.xml"});
  EXPECT_EQ(failed.iExitCode, 2);
  EXPECT_EQ(failed.sStdout, "Fehler: Verzeichnis " + directory + " existiert nicht.\n");
  EXPECT_FALSE(fs::exists(directory));
}

TEST_F(SelectionTools, OutputThatIsADirectoryIsRefused) {
  const std::string directory = Path("reports");
  const SCliResult diff = Run({"--diff-selection", First(), Second(), "--diff-output", directory});
  EXPECT_EQ(diff.iExitCode, 2);
  EXPECT_EQ(diff.sStdout, "Fehler: " + directory + " ist ein Verzeichnis, keine Datei.\n");
  const SCliResult failed = Run({"--failed-selection", Second(), directory});
  EXPECT_EQ(failed.iExitCode, 2);
  EXPECT_EQ(failed.sStdout, "Fehler: " + directory + " ist ein Verzeichnis, keine Datei.\n");
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, OutputThatWouldReplaceAnInputIsRefused) {
  const std::string before = ReadText(Second());
  const SCliResult diff = Run({"--diff-selection", First(), Second(), "--diff-output", Second()});
  EXPECT_EQ(diff.iExitCode, 2);
  EXPECT_EQ(diff.sStdout, "Fehler: Die Auswahldatei " + Second() + " würde eine Eingabe überschreiben.\n");
  const SCliResult failed = Run({"--failed-selection", Second(), Second()});
  EXPECT_EQ(failed.iExitCode, 2);
  EXPECT_EQ(ReadText(Second()), before);
}

TEST_F(SelectionTools, UnknownFilterWordIsAUsageError) {
  const SCliResult result = Run({"--diff-selection", First(), Second(), "--diff-filter", "broken"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_NE(result.sStderr.find("--diff-filter"), std::string::npos) << result.sStderr;
  EXPECT_EQ(result.sStdout, "");
  EXPECT_EQ(Reports(), (std::set<std::string>{"first.xml", "second.xml"}));
}

TEST_F(SelectionTools, RerunInAnotherDataDirectoryWarnsAndRunsWhatMatches) {
  TempDirectory other;
  other.MakeDirectory(L"CliScripted");
  other.WriteFile(L"CliScripted/b_breaks.case", "pass");
  other.WriteFile(L"CliScripted/z_other.case", "fail");
  const std::string otherData = other.Path().ToUtf8() + "CliScripted";
  const SCliResult result = Run({"-d", otherData, "--no-times", "--rerun-failed", Second()});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_NE(result.sStdout.find("Warnung: Der Report stammt aus dem Datenverzeichnis " + Data() + ".\n"),
            std::string::npos)
      << result.sStdout;
  EXPECT_EQ(casesRun(result.sStdout), (std::set<std::string>{"b_breaks.case"})) << result.sStdout;
}
