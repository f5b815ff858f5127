// The front end's dispatch, seen from outside: each mode of the command
// line reaches its entry function with the data directory made absolute,
// and the exit status tells how the run went.
#include "FrontEnd.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CliRunner.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"

using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

// "data/CliScripted" with the cases `cases` (name and script) below a
// scratch directory, in which the front end is started with "-d data/".
class FrontEndTest : public ::testing::Test {
 protected:
  void MakeCases(std::initializer_list<std::pair<const char*, const char*>> cases) {
    TestSupport::WriteScriptedClass(m_root, L"data/CliScripted", cases);
  }
  SCliResult Run(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
    arguments.insert(arguments.begin(), {"-d", "data/", "--dll", "cli_ScriptedClasses"});
    return RunCli(arguments, Root(), 120, environment);
  }
  // The scratch directory without its closing '/'.
  std::string Root() const {
    const std::string path = m_root.Path().ToUtf8();
    return path.substr(0, path.size() - 1);
  }
  std::string Normalize(const std::string& text) const { return CliTest::Normalize(text, {{Root(), "<ROOT>"}}); }

  TempDirectory m_root;
};

TEST_F(FrontEndTest, ARunThatPassesExitsZero) {
  MakeCases({{"a.case", "pass"}});
  const SCliResult result = Run({});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_NE(result.sStdout.find("\ta.case... OK ["), std::string::npos) << result.sStdout;
}

TEST_F(FrontEndTest, ARunWithAFailedCaseExitsOne) {
  MakeCases({{"a.case", "pass"}, {"b.case", "fail"}});
  const SCliResult result = Run({});
  EXPECT_EQ(result.iExitCode, 1);
  EXPECT_NE(result.sStdout.find("\tb.case... FEHLER"), std::string::npos) << result.sStdout;
}

TEST_F(FrontEndTest, NothingFoundNamesTheAbsoluteDataDirectoryAndExitsWithNoCases) {
  m_root.MakeDirectory(L"data");
  const SCliResult result = RunCli({"-d", "data//", "--dll", "cli_ScriptedClasses"}, Root());
  EXPECT_EQ(result.iExitCode, TestSuite::CLI::sc_iExitNoCases);
  EXPECT_EQ(Normalize(result.sStdout), "Keine Testfälle gefunden in <ROOT>/data.\n");
}

TEST_F(FrontEndTest, QueryListsWhatWouldRunWithoutRunningIt) {
  MakeCases({{"a.case", "fail"}});
  const SCliResult result = Run({"--query"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(Normalize(result.sStdout),
            "<ROOT>/data/CliScripted/\n    a.case\n\nDatenverzeichnis: <ROOT>/data\nKlassen: 1\nFälle: 1\n");
}

TEST_F(FrontEndTest, ListDisabledSeesTheClassesOfTheLibrariesOfTheCommandLine) {
  MakeCases({{"a.case", "fail"}});
  const SCliResult result = Run({"--list-disabled"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(Normalize(result.sStdout),
            "Durchsuchtes Datenverzeichnis: <ROOT>/data\n"
            "Klassen mit deaktivierten Fällen: 0 von 1\n"
            "Deaktivierte Fälle: 0 von 1\n");
}

TEST_F(FrontEndTest, RecreateRenewsInsteadOfRunning) {
  MakeCases({{"a.case", "fail"}});
  const SCliResult result = Run({"--recreate"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStdout,
            "CliScripted:\n\tSubtest 'a.case' hat keine erneuerbaren Daten.\n\n"
            "Neuerzeugen der Testfälle beendet.\n");
}

TEST_F(FrontEndTest, LibrariesOfTheCommandLineReachChildProcesses) {
  MakeCases({{"a.case", "pass"}});
  const SCliResult result = Run({"-x", "--no-times"});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_EQ(result.sStdout.rfind("CliScripted\n\ta.case... OK\n", 0), 0u) << result.sStdout;
}

TEST_F(FrontEndTest, WithoutATerminalTheOutputIsPlainText) {
  MakeCases({{"a.case", "pass"}, {"b.case", "fail"}});
  const SCliResult result = Run({});
  EXPECT_EQ(result.sStdout.find('\x1b'), std::string::npos) << result.sStdout;
}

TEST_F(FrontEndTest, TheLogFileReceivesWhatTheConsoleShows) {
  MakeCases({{"a.case", "pass"}});
  const SCliResult result = Run({"--log-file", Root() + "/run.log"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(CliTest::ReadText(Root() + "/run.log"), result.sStdout);
}

}  // namespace
