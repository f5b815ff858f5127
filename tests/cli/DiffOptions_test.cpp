// The diff options of the front end: the mode they choose, the fields they
// fill, and the usage errors of a wrong number of reports.
#include "DiffOptions.h"

#include <gtest/gtest.h>

#include "CommandLine.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SCommandLine parse(std::vector<const char*> words) {
  words.insert(words.begin(), "ZoTestSuiteCLI");
  return ParseCommandLine(static_cast<int>(words.size()), words.data());
}

std::string usageError(std::vector<const char*> words) {
  try {
    parse(std::move(words));
  } catch (const CUsageError& error) { return error.what(); }
  return "no usage error";
}

TEST(DiffOptions, DiffNeedsNoDataDirectoryAndTakesTheTwoReportsInOrder) {
  const SCommandLine c = parse({"--diff", "old/A.xml", "new/B.xml"});
  EXPECT_EQ(c.eMode, EMode::DiffPage);
  ASSERT_EQ(c.setup.diffInputs.GetCount(), 2u);
  EXPECT_EQ(c.setup.diffInputs[0], L"old/A.xml");
  EXPECT_EQ(c.setup.diffInputs[1], L"new/B.xml");
  EXPECT_TRUE(c.setup.sDiffOutputPath.IsEmpty());
  EXPECT_TRUE(c.setup.bHtmlHideWarnings);
}

TEST(DiffOptions, OutputAndPageOptionsApplyToTheDiff) {
  const SCommandLine c = parse({"--diff", "A.xml", "B.xml", "--diff-output", "out/Grüße.html", "--open",
                                "--html-classes-only", "--show-warnings"});
  EXPECT_EQ(c.eMode, EMode::DiffPage);
  EXPECT_EQ(c.setup.sDiffOutputPath, L"out/Grüße.html");
  EXPECT_TRUE(c.setup.bOpenHtmlReport);
  EXPECT_TRUE(c.setup.bHtmlClassesOnly);
  EXPECT_FALSE(c.setup.bHtmlHideWarnings);
}

TEST(DiffOptions, DiffOutputAloneChangesNoMode) {
  const SCommandLine c = parse({"-d", "data", "--diff-output", "x.html"});
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_EQ(c.setup.sDiffOutputPath, L"x.html");
  EXPECT_TRUE(c.setup.diffInputs.IsEmpty());
}

TEST(DiffOptions, WrongNumberOfReportsIsAUsageError) {
  const std::string expected = "--diff: two reports are needed, the reference A and the report B compared with it";
  EXPECT_EQ(usageError({"--diff"}).rfind(expected + " (0 given)", 0), 0u);
  EXPECT_EQ(usageError({"--diff", "A.xml"}).rfind(expected + " (1 given)", 0), 0u);
  EXPECT_EQ(usageError({"--diff", "A.xml", "B.xml", "C.xml"}).rfind(expected + " (3 given)", 0), 0u);
  EXPECT_EQ(usageError({"--diff-output"}).find("--diff-output"), 0u) << usageError({"--diff-output"});
}

}  // namespace
