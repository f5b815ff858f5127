// The archive-run option as ParseCommandLine puts it into the setup,
// together with the run options that it hands on.
#include "ArchiveRunOptions.h"

#include <gtest/gtest.h>

#include <vector>

#include "CommandLine.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SCommandLine parse(std::vector<const char*> words) { return CliParse::Parse(std::move(words)); }

TEST(ArchiveRunOptions, NeedsNoDataDirectoryAndKeepsTheWholeText) {
  const SCommandLine c = parse({"--archive-run", "C:/lists/runs.xml:Nightly"});
  EXPECT_EQ(c.eMode, EMode::ArchiveRun);
  EXPECT_EQ(c.setup.sArchiveRun, L"C:/lists/runs.xml:Nightly");
  EXPECT_FALSE(NeedsDataDirectory(c.eMode));
}

TEST(ArchiveRunOptions, TheRunOptionsBesideItStandInTheSetup) {
  const SCommandLine c = parse({"--archive-run", "runs.xml:Nightly", "-l", "-w", "3", "-v", "-r", "2", "-c", "7",
                                "--log-file", "/logs/n.log", "--run-tag", "Part"});
  EXPECT_TRUE(c.setup.run.bIsolated);
  EXPECT_TRUE(c.setup.run.bParallel);
  EXPECT_EQ(c.setup.run.uiThreadCount, 3u);
  EXPECT_TRUE(c.setup.run.bShowThreadInfo);
  EXPECT_EQ(c.setup.run.uiRepeatCount, 2u);
  EXPECT_EQ(c.setup.collectOptions.uiCaseLimit, 7u);
  ASSERT_TRUE(c.setup.oLogFile.has_value());
  EXPECT_EQ(*c.setup.oLogFile, L"/logs/n.log");
  EXPECT_EQ(c.setup.sRunTag, L"Part");
}

TEST(ArchiveRunOptions, WithoutItATestRunStillNeedsItsDataDirectory) {
  EXPECT_EQ(parse({"-d", "data"}).eMode, EMode::Run);
  EXPECT_TRUE(NeedsDataDirectory(EMode::Run));
  EXPECT_NE(CliParse::UsageError({"-l"}, false).find("-d: the data directory is missing"), std::string::npos);
}

}  // namespace
