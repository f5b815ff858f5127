// The options of the tool modes as ParseCommandLine puts them into the
// setup: the mode, the report of the time summary, the action of the
// duplicate detection, and the usage errors for what cannot work.
#include "ToolOptions.h"

#include <gtest/gtest.h>

#include <vector>

#include "CommandLine.h"
#include "SpecialFiles.h"
#include "TempDirectory.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

using CliParse::ParseWithData;
using CliParse::UsageError;

TEST(ToolOptions, WithoutThemNoToolModeIsChosen) {
  const SCommandLine c = ParseWithData({});
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_TRUE(c.setup.sTimeSummaryReport.IsEmpty());
  EXPECT_FALSE(c.setup.oDuplicateAction.has_value());
}

TEST(ToolOptions, TimeSummaryTakesAReadableReportAndKeepsTheVerboseSwitch) {
  TempDirectory dir;
  dir.WriteFile(L"Report.xml", "<testsuite/>");
  const std::string report = (dir / L"Report.xml").ToUtf8();
  const SCommandLine c = ParseWithData({"--time-summary", report.c_str(), "-v"});
  EXPECT_EQ(c.eMode, EMode::TimeSummary);
  EXPECT_EQ(c.setup.sTimeSummaryReport, dir / L"Report.xml");
  EXPECT_TRUE(c.setup.run.bShowThreadInfo);
  EXPECT_FALSE(c.setup.oDuplicateAction.has_value());
}

TEST(ToolOptions, TimeSummaryOfWhatCannotBeReadAsAFileIsAUsageError) {
  TempDirectory dir;
  const std::string missing = (dir / L"fehlt.xml").ToUtf8();
  EXPECT_EQ(UsageError({"--time-summary", missing.c_str()}),
            "--time-summary: '" + missing + "' cannot be read as a file");
  const std::string directory = dir.Path().ToUtf8();
  EXPECT_NE(UsageError({"--time-summary", directory.c_str()}), "");
  const std::string fifo = (dir / L"fifo").ToUtf8();
  ASSERT_TRUE(MakeFifo(fifo));
  EXPECT_NE(UsageError({"--time-summary", fifo.c_str()}), "");
  EXPECT_NE(UsageError({"--time-summary"}), "");
}

TEST(ToolOptions, DuplicatesWithoutAValueOnlyCounts) {
  const SCommandLine c = ParseWithData({"--duplicates"});
  EXPECT_EQ(c.eMode, EMode::Duplicates);
  EXPECT_FALSE(c.setup.oDuplicateAction.has_value());
}

TEST(ToolOptions, DuplicatesListOrDelete) {
  const SCommandLine list = ParseWithData({"--duplicates", "list"});
  EXPECT_EQ(list.eMode, EMode::Duplicates);
  EXPECT_EQ(list.setup.oDuplicateAction, eListDuplicates);
  const SCommandLine erase = ParseWithData({"--duplicates=delete"});
  EXPECT_EQ(erase.eMode, EMode::Duplicates);
  EXPECT_EQ(erase.setup.oDuplicateAction, eDeleteDuplicates);
}

TEST(ToolOptions, DuplicatesBeforeAnotherOptionTakesNoValueFromIt) {
  const std::vector<const char*> words = {"ZoTestSuiteCLI", "--duplicates", "-d", "data"};
  const SCommandLine c = ParseCommandLine(static_cast<int>(words.size()), words.data());
  EXPECT_EQ(c.eMode, EMode::Duplicates);
  EXPECT_FALSE(c.setup.oDuplicateAction.has_value());
  EXPECT_EQ(c.setup.sDataDir, CString(L"data"));
}

TEST(ToolOptions, AnotherActionIsAUsageError) {
  EXPECT_NE(UsageError({"--duplicates", "remove"}).find("remove"), std::string::npos);
  EXPECT_NE(UsageError({"--duplicates", "LIST"}), "");
}

TEST(ToolOptions, AToolModeExcludesEveryOtherMode) {
  TempDirectory dir;
  dir.WriteFile(L"Report.xml", "<testsuite/>");
  const std::string report = (dir / L"Report.xml").ToUtf8();
  EXPECT_EQ(UsageError({"--time-summary", report.c_str(), "--duplicates"}),
            "--time-summary and --duplicates exclude each other");
  EXPECT_EQ(UsageError({"--duplicates", "list", "--query"}), "--duplicates and --query exclude each other");
  EXPECT_EQ(UsageError({"--list-disabled", "--duplicates"}), "--duplicates and --list-disabled exclude each other");
  EXPECT_EQ(UsageError({"--time-summary", report.c_str(), "--recreate"}),
            "--time-summary and --recreate exclude each other");
}

TEST(ToolOptions, ToolModesNeedTheDataDirectory) {
  const std::vector<const char*> words = {"ZoTestSuiteCLI", "--duplicates", "list"};
  EXPECT_THROW(ParseCommandLine(static_cast<int>(words.size()), words.data()), CUsageError);
}

TEST(ToolOptions, HelpDescribesBoth) {
  const SCommandLine c = ParseWithData({"--help"});
  EXPECT_NE(c.sHelpText.find("--time-summary REPORT.xml"), std::string::npos) << c.sHelpText;
  EXPECT_NE(c.sHelpText.find("--duplicates [list|delete]"), std::string::npos) << c.sHelpText;
  EXPECT_NE(c.sHelpText.find("Tool modes"), std::string::npos);
}
