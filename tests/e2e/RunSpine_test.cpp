// End-to-end: the real front end runs a data tree made in a temporary
// directory with the scripted test classes.
#include <gtest/gtest.h>

#include "CliRunner.h"
#include "HeapInterception.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"

using CliTest::ExpectGolden;
using CliTest::Normalize;
using CliTest::RunCli;

namespace {

// data/CliScripted with one case of every kind, data/group/CliSecond with
// one passing case, data/CliVanishing whose second case disappears between
// discovery and run, and a directory that is no class.
void makeTree(const TempDirectory& root) {
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a_pass.case", "pass"},
                                   {"b_fail.case", "fail"},
                                   {"c_throw.case", "throw"},
                                   {"d_dataerror.case", "dataerror"},
                                   {"e_different.case", "different"},
                                   {"f_result9.case", "result 9"},
                                   {"g_leak.case", "leak 100"},
                                   {"h_info.case", "info Grüße"}});
  TestSupport::WriteScriptedClass(root, L"data/group/CliSecond", {{"x.case", "pass"}});
  root.MakeDirectory(L"data/CliVanishing");
  root.MakeDirectory(L"data/notes");
}

std::string dataDir(const TempDirectory& root) { return root.Path().ToUtf8() + "data"; }

}  // namespace

TEST(RunSpine, ConsoleTextExitStatusAndLogFile) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  TempDirectory root;
  makeTree(root);
  const std::string log = root.Path().ToUtf8() + "run.log";
  const auto result = RunCli({"-d", dataDir(root), "--dll", "cli_ScriptedClasses", "--track-heap", "--log-file", log});
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 1);
  EXPECT_EQ(result.sStderr, "");
  ExpectGolden("run_spine.txt", Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}));
  EXPECT_EQ(CliTest::ReadText(log), result.sStdout);
}

TEST(RunSpine, RepetitionsStartTimesAndNoTimes) {
  TempDirectory root;
  root.MakeDirectory(L"CliSecond");
  root.WriteFile(L"CliSecond/one.case", "pass");
  const auto result = RunCli({"-d", root.Path().ToUtf8() + "CliSecond", "--dll", "cli_ScriptedClasses", "-r", "2",
                              "--no-times", "--record-start-time", "-v"});
  EXPECT_EQ(result.iExitCode, 0);
  ExpectGolden("run_repeat.txt", Normalize(result.sStdout));
}

TEST(RunSpine, AllPassedExitsZero) {
  TempDirectory root;
  root.MakeDirectory(L"CliScripted");
  root.WriteFile(L"CliScripted/ok.case", "pass");
  const auto result = RunCli({"-d", root.Path().ToUtf8(), "--dll", "cli_ScriptedClasses"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_NE(result.sStdout.find("\tok.case... OK ["), std::string::npos);
}

TEST(RunSpine, NoTestAtAllSaysSoAndExitsFive) {
  TempDirectory root;
  const auto result = RunCli({"-d", root.Path().ToUtf8(), "--dll", "cli_ScriptedClasses"});
  EXPECT_EQ(result.iExitCode, 5);
  const std::string path = root.Path().ToUtf8();
  EXPECT_EQ(Normalize(result.sStdout, {{path.substr(0, path.size() - 1), "<DATA>"}}),
            "Keine Testfälle gefunden in <DATA>.\n");
}

TEST(RunSpine, AnEmptyRunPassesWithAllowEmpty) {
  TempDirectory root;
  const auto result = RunCli({"-d", root.Path().ToUtf8(), "--dll", "cli_ScriptedClasses", "--allow-empty"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_NE(result.sStdout.find("Keine Testfälle gefunden"), std::string::npos);
}

TEST(RunSpine, NoLibraryLoadedFindsNothingAndSaysHowToLoadOne) {
  TempDirectory root;
  root.MakeDirectory(L"CliScripted");
  root.WriteFile(L"CliScripted/ok.case", "pass");
  const auto result = RunCli({"-d", root.Path().ToUtf8(), "--dll", "NoSuchLibrary"});
  EXPECT_EQ(result.iExitCode, 5);
  EXPECT_NE(result.sStdout.find("Keine Testfälle gefunden"), std::string::npos);
  EXPECT_NE(result.sStdout.find("Hinweis: Keine Testbibliothek geladen; --dll NAME"), std::string::npos)
      << result.sStdout;
}

TEST(RunSpine, ADataDirectoryThatCannotBeReadIsAUsageError) {
  TempDirectory root;
  root.WriteFile(L"file.txt", "x");
  for (const std::string& path : {root.Path().ToUtf8() + "missing", root.Path().ToUtf8() + "file.txt"}) {
    const auto result = RunCli({"-d", path, "--dll", "cli_ScriptedClasses"});
    EXPECT_EQ(result.iExitCode, 2) << path;
    EXPECT_EQ(result.sStdout, "") << path;
    EXPECT_NE(result.sStderr.find("-d: '" + path + "' is no readable directory"), std::string::npos) << result.sStderr;
  }
}

TEST(RunSpine, UsageErrorsExitTwoAndNameTheOption) {
  const auto unknown = RunCli({"--no-such-option"});
  EXPECT_EQ(unknown.iExitCode, 2);
  EXPECT_NE(unknown.sStderr.find("--no-such-option"), std::string::npos);
  const auto badNumber = RunCli({"-d", "/tmp", "-r", "many"});
  EXPECT_EQ(badNumber.iExitCode, 2);
  EXPECT_NE(badNumber.sStderr.find("-r"), std::string::npos);
  const auto noData = RunCli({"--track-heap"});
  EXPECT_EQ(noData.iExitCode, 2);
  EXPECT_NE(noData.sStderr.find("-d"), std::string::npos);
  EXPECT_EQ(noData.sStdout, "");
}

TEST(RunSpine, HelpListsEveryOptionAndVersionNamesTheRevision) {
  const auto help = RunCli({"--help"});
  EXPECT_EQ(help.iExitCode, 0);
  for (const char* option : {"--data-dir",     "--repeat",       "--case-limit",       "--thread-info",
                             "--track-heap",   "--dump-leaks",   "--no-leak-warnings", "--observe-id",
                             "--observe-size", "--debug-option", "--no-assert-dialog", "--record-start-time",
                             "--no-times",     "--dll",          "--log-file",         "--run-tag",
                             "--recreate",     "--version",      "--retries",          "--max-failures",
                             "--shuffle"})
    EXPECT_NE(help.sStdout.find(option), std::string::npos) << option;
  const auto version = RunCli({"--version"});
  EXPECT_EQ(version.iExitCode, 0);
  EXPECT_EQ(version.sStdout.rfind("ZoTestSuiteCLI 1.0.0 (revision ", 0), 0u);
}

TEST(RunSpine, LibrariesOfDllReachTheChildProcesses) {
  TempDirectory root;
  root.MakeDirectory(L"CliScripted");
  root.WriteFile(L"CliScripted/ok.case", "pass");
  const auto result = RunCli({"-d", root.Path().ToUtf8(), "--dll", "cli_ScriptedClasses", "-x", "--no-times"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout.find("CliScripted\n\tok.case... OK\n"), 0u) << result.sStdout;
}
