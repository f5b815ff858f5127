// The trace option as ParseCommandLine puts it into the setup: the mode,
// the absolute inputs, the filter and its default, and the usage errors.
#include "TraceOptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "CommandLine.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SCommandLine parse(std::vector<const char*> words) { return CliParse::Parse(std::move(words)); }
std::string usageError(std::vector<const char*> words) { return CliParse::UsageError(std::move(words), false); }

TEST(TraceOptions, NeedsNoDataDirectoryMakesBothInputsAbsoluteAndFiltersAllByDefault) {
  const SCommandLine c = parse({"--trace", "archive/A.xml", "/archive/./B.xml"});
  EXPECT_EQ(c.eMode, EMode::Trace);
  ASSERT_EQ(c.setup.diffInputs.GetCount(), 2u);
  const std::string cwd = std::filesystem::current_path().string();
  EXPECT_EQ(c.setup.diffInputs[0].ToUtf8(), cwd + "/archive/A.xml");
  EXPECT_EQ(c.setup.diffInputs[1], L"/archive/B.xml");
  ASSERT_TRUE(c.setup.oDiffFilterMode.has_value());
  EXPECT_EQ(*c.setup.oDiffFilterMode, SSetup::eDiffAll);
  EXPECT_TRUE(c.setup.sDiffOutputPath.IsEmpty());
}

TEST(TraceOptions, TakesTheSharedFilterAndOutput) {
  const SCommandLine c =
      parse({"--trace", "/a/A.xml", "/a/B.xml", "--diff-filter", "failed", "--diff-output", "/o/t.xml"});
  EXPECT_EQ(*c.setup.oDiffFilterMode, SSetup::eDiffOnlyFailed);
  EXPECT_EQ(c.setup.sDiffOutputPath, L"/o/t.xml");
  EXPECT_EQ(*parse({"--trace", "/a", "/b", "--diff-filter", "successful"}).setup.oDiffFilterMode,
            SSetup::eDiffOnlySuccessful);
}

TEST(TraceOptions, NeedsExactlyTwoReports) {
  EXPECT_NE(usageError({"--trace", "a.xml"}).find("--trace: two reports of one archive are needed (1 given)"),
            std::string::npos);
  EXPECT_NE(usageError({"--trace", "a.xml", "b.xml", "c.xml"}).find("(3 given)"), std::string::npos);
  EXPECT_NE(usageError({"--trace"}).find("(0 given)"), std::string::npos);
}

TEST(TraceOptions, ExcludesTheOtherDiffModes) {
  EXPECT_EQ(usageError({"--trace", "a.xml", "b.xml", "--diff", "a.xml", "b.xml"}),
            "--trace, --diff and --diff-selection exclude each other");
  EXPECT_EQ(usageError({"--trace", "a.xml", "b.xml", "--diff-selection", "a.xml", "b.xml"}),
            "--trace, --diff and --diff-selection exclude each other");
}

TEST(TraceOptions, AnUnknownFilterWordIsRefused) {
  EXPECT_NE(usageError({"--trace", "a.xml", "b.xml", "--diff-filter", "broken"}).find("--diff-filter"),
            std::string::npos);
}

}  // namespace
