// The front end's main: a bad command line is named on standard error with
// a pointer to --help, help and version are printed without a run, and the
// German texts come out as UTF-8 whatever locale the caller had.
#include <gtest/gtest.h>

#include <string>

#include "CliRunner.h"
#include "CommandLine.h"
#include "FrontEnd.h"
#include "TempDirectory.h"

using CliTest::RunCli;
using namespace TestSuite::CLI;

namespace {

TEST(FrontEndMain, ABadCommandLineIsNamedWithAPointerToHelpAndExitsTwo) {
  const auto result = RunCli({"-d", "/tmp", "-r", "many"});
  EXPECT_EQ(result.iExitCode, sc_iExitUsage);
  EXPECT_EQ(result.sStdout, "");
  EXPECT_EQ(result.sStderr.rfind("ZoTestSuiteCLI: ", 0), 0u) << result.sStderr;
  const std::string tail = "\nRun with --help for the options.\n";
  ASSERT_GT(result.sStderr.size(), tail.size());
  EXPECT_EQ(result.sStderr.substr(result.sStderr.size() - tail.size()), tail);
}

TEST(FrontEndMain, HelpPrintsTheHelpTextOnlyAndExitsZero) {
  const char* words[] = {"ZoTestSuiteCLI", "--help"};
  const SCommandLine parsed = ParseCommandLine(2, words);
  const auto result = RunCli({"--help"});
  EXPECT_EQ(result.iExitCode, sc_iExitPassed);
  EXPECT_EQ(result.sStdout, parsed.sHelpText);
  EXPECT_EQ(result.sStderr, "");
}

TEST(FrontEndMain, VersionPrintsOneLineAndExitsZero) {
  const auto result = RunCli({"--version"});
  EXPECT_EQ(result.iExitCode, sc_iExitPassed);
  EXPECT_EQ(result.sStdout, GetVersionText() + "\n");
}

TEST(FrontEndMain, GermanTextsStayUtf8UnderThePlainCLocale) {
  TempDirectory root;
  const std::string data = root.Path().ToUtf8() + "leer";
  root.MakeDirectory(L"leer");
  for (const char* locale : {"LC_ALL=C", "LC_ALL=POSIX", "LC_ALL=C.UTF-8"}) {
    const auto result = RunCli({"-d", data, "--dll", "cli_ScriptedClasses", "--allow-empty"}, "", 120, {locale});
    EXPECT_EQ(result.sStdout, "Keine Testfälle gefunden in " + data + ".\n") << locale;
  }
}

}  // namespace
