// The option that normalizes a report archive: the mode and directory it
// sets, its usage errors, and the real front end on an archive directory
// that is there and on one that is not.
#include "NormalizeArchiveOptions.h"

#include <gtest/gtest.h>

#include "CliRunner.h"
#include "FrontEnd.h"
#include "TempDirectory.h"
#include "cli_ParseWords.h"
#include "foundation/ZoFileSystem.h"

using namespace TestSuite::CLI;
using CliParse::Parse;
using CliParse::UsageError;

namespace {

TEST(NormalizeArchiveOptions, NeedsNoDataDirectoryAndKeepsTheDirectoryAsGiven) {
  const SCommandLine c = Parse({"--normalize-archive", "reports/Grüße"});
  EXPECT_EQ(c.eMode, EMode::NormalizeArchive);
  EXPECT_EQ(c.sArchiveDirectory, CString(L"reports/Grüße"));
}

TEST(NormalizeArchiveOptions, AnEmptyDirectoryIsAUsageError) {
  EXPECT_EQ(UsageError({"--normalize-archive", ""}, false), "--normalize-archive: the archive directory is missing");
  EXPECT_NE(UsageError({"--normalize-archive"}, false), "");
}

TEST(NormalizeArchiveOptions, ExcludesTheOtherModes) {
  const std::string message = "--normalize-archive runs alone: it excludes the other modes";
  EXPECT_EQ(UsageError({"--normalize-archive", "a", "--diff", "A.xml", "B.xml"}, false), message);
  EXPECT_EQ(UsageError({"--normalize-archive", "a", "--query"}), message);
  EXPECT_EQ(UsageError({"--normalize-archive", "a", "--failed-selection", "r.xml", "s.xml"}, false), message);
}

TEST(NormalizeArchiveOptions, HelpListsTheOptionAndTheExitStatuses) {
  const SCommandLine c = Parse({"--help"});
  EXPECT_NE(c.sHelpText.find("--normalize-archive DIR"), std::string::npos);
  EXPECT_NE(c.sHelpText.find("3 an error left the harness"), std::string::npos) << c.sHelpText;
}

TEST(NormalizeArchiveOptions, TheFrontEndWritesTheOverviewAndSaysWhere) {
  TempDirectory dir;
  const std::string archive = dir.Path().ToUtf8() + "archive";
  dir.MakeDirectory(L"archive");
  const auto result = CliTest::RunCli({"--normalize-archive", archive});
  EXPECT_EQ(result.iExitCode, sc_iExitPassed) << result.sStderr;
  EXPECT_EQ(result.sStdout, "Archivübersicht geschrieben: " + archive + "/html/index.html\n");
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"archive/html/index.html"));
}

TEST(NormalizeArchiveOptions, ADirectoryThatDoesNotExistEndsWithStatusThreeAndTheFileSystemError) {
  TempDirectory dir;
  const std::string archive = dir.Path().ToUtf8() + "missing";
  const auto result = CliTest::RunCli({"--normalize-archive", archive});
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, sc_iExitInternal);
  EXPECT_EQ(result.sStdout, "");
  EXPECT_EQ(result.sStderr.rfind("ZoTestSuiteCLI: Fehler: ", 0), 0u) << result.sStderr;
  EXPECT_NE(result.sStderr.find("create_directory(p): invalid argument"), std::string::npos) << result.sStderr;
  EXPECT_NE(result.sStderr.find("[" + archive + "/html]"), std::string::npos) << result.sStderr;
  EXPECT_EQ(result.sStderr.find("interner Fehler"), std::string::npos);
  EXPECT_FALSE(ZoFileSystem::Exists(dir / L"missing"));
}

}  // namespace
