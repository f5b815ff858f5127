// The report-to-selection options as ParseCommandLine puts them into the
// setup: the modes they choose, the diff filter words and their default,
// and the usage errors.
#include "SelectionToolOptions.h"

#include <gtest/gtest.h>

#include <vector>

#include "CommandLine.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SCommandLine parse(std::vector<const char*> words) { return CliParse::Parse(std::move(words)); }
std::string usageError(std::vector<const char*> words) { return CliParse::UsageError(std::move(words), false); }

}  // namespace

TEST(SelectionToolOptions, NoneOfThemLeavesTheRunAsItIs) {
  const SCommandLine c = parse({"-d", "data"});
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_TRUE(c.setup.diffInputs.IsEmpty());
  EXPECT_FALSE(c.setup.oDiffFilterMode.has_value());
  EXPECT_TRUE(c.setup.sDiffOutputPath.IsEmpty());
  EXPECT_TRUE(c.setup.sSelectionSourceReport.IsEmpty());
  EXPECT_FALSE(c.setup.oXmlReport.has_value());
}

TEST(SelectionToolOptions, DiffSelectionNeedsNoDataDirectoryAndFiltersAllByDefault) {
  const SCommandLine c = parse({"--diff-selection", "a.xml", "b.xml"});
  EXPECT_EQ(c.eMode, EMode::DiffSelection);
  ASSERT_EQ(c.setup.diffInputs.GetCount(), 2u);
  EXPECT_EQ(c.setup.diffInputs[0], L"a.xml");
  EXPECT_EQ(c.setup.diffInputs[1], L"b.xml");
  ASSERT_TRUE(c.setup.oDiffFilterMode.has_value());
  EXPECT_EQ(*c.setup.oDiffFilterMode, SSetup::eDiffAll);
  EXPECT_TRUE(c.setup.sDiffOutputPath.IsEmpty());
}

TEST(SelectionToolOptions, FilterWordsAndOutput) {
  const std::pair<const char*, SSetup::EDiffFilterMode> words[] = {
      {"all", SSetup::eDiffAll}, {"failed", SSetup::eDiffOnlyFailed}, {"successful", SSetup::eDiffOnlySuccessful}};
  for (const auto& [word, mode] : words) {
    const SCommandLine c =
        parse({"--diff-selection", "a.xml", "b.xml", "--diff-filter", word, "--diff-output", "o.xml"});
    ASSERT_TRUE(c.setup.oDiffFilterMode.has_value()) << word;
    EXPECT_EQ(*c.setup.oDiffFilterMode, mode) << word;
    EXPECT_EQ(c.setup.sDiffOutputPath, L"o.xml");
  }
}

TEST(SelectionToolOptions, DiffSelectionKeepsAWrongNumberOfReportsForTheDiffsOwnMessage) {
  EXPECT_EQ(parse({"--diff-selection", "a.xml"}).setup.diffInputs.GetCount(), 1u);
  EXPECT_EQ(parse({"--diff-selection", "a.xml", "b.xml", "c.xml"}).setup.diffInputs.GetCount(), 3u);
}

TEST(SelectionToolOptions, UnknownFilterWordIsAUsageError) {
  EXPECT_NE(usageError({"--diff-selection", "a.xml", "b.xml", "--diff-filter", "Failed"}).find("--diff-filter"),
            std::string::npos);
}

TEST(SelectionToolOptions, FailedSelectionTakesTheReportAndTheFileToWrite) {
  const SCommandLine c = parse({"--failed-selection", "run.xml", "failed.xml"});
  EXPECT_EQ(c.eMode, EMode::FailedSelection);
  EXPECT_EQ(c.setup.sSelectionSourceReport, L"run.xml");
  ASSERT_TRUE(c.setup.oXmlReport.has_value());
  EXPECT_EQ(*c.setup.oXmlReport, L"failed.xml");
}

TEST(SelectionToolOptions, FailedSelectionWithOneValueIsAUsageError) {
  EXPECT_EQ(usageError({"--failed-selection", "run.xml"}),
            "--failed-selection needs two files: the report to read and the selection file to write");
  EXPECT_NE(usageError({"--failed-selection", "a.xml", "b.xml", "c.xml"}), "");
}

TEST(SelectionToolOptions, RerunFailedIsARunAndNeedsTheDataDirectory) {
  const SCommandLine c = parse({"-d", "data", "--rerun-failed", "run.xml", "-w", "2"});
  EXPECT_EQ(c.eMode, EMode::RerunFailed);
  EXPECT_EQ(c.setup.sSelectionSourceReport, L"run.xml");
  EXPECT_TRUE(c.setup.run.bParallel);
  EXPECT_NE(usageError({"--rerun-failed", "run.xml"}).find("-d"), std::string::npos);
}

TEST(SelectionToolOptions, TwoModesOrARerunWithASelectionAreUsageErrors) {
  const std::string both = "--diff-selection, --failed-selection and --rerun-failed exclude each other";
  EXPECT_EQ(usageError({"--diff-selection", "a.xml", "b.xml", "--failed-selection", "r.xml", "o.xml"}), both);
  EXPECT_EQ(usageError({"-d", "data", "--rerun-failed", "r.xml", "--failed-selection", "r.xml", "o.xml"}), both);
  EXPECT_EQ(usageError({"-d", "data", "--rerun-failed", "r.xml", "--select", "s.xml"}),
            "--rerun-failed and --select exclude each other");
  EXPECT_EQ(usageError({"-d", "data", "--rerun-failed", "r.xml", "--invert-selection"}),
            "--rerun-failed and --invert-selection exclude each other");
}

TEST(SelectionToolOptions, HelpListsThemUnderTheirOwnHeading) {
  const SCommandLine c = parse({"--help"});
  for (const char* word : {"Selections from reports", "--diff-selection", "--diff-output", "--diff-filter",
                           "--failed-selection", "--rerun-failed"})
    EXPECT_NE(c.sHelpText.find(word), std::string::npos) << word;
}
