// The sharding options of the front end: the part they put into the
// collection options, the run tag, the engines' variables behind "auto"
// (from a table, not the process), the usage errors, and the preparation
// of a run: the case times of --shard-times and Bazel's status file.
#include "ShardOptions.h"

#include <gtest/gtest.h>

#include <map>

#include "TempDirectory.h"
#include "cli_ParseWords.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportWriter.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using namespace TestSuite::CLI;
using CliParse::ParseWithData;
using CliParse::UsageError;

namespace {

FnGetVariable variables(std::map<std::string, std::string> table) {
  return [table](const char* name) -> std::optional<std::string> {
    const auto it = table.find(name);
    return it == table.end() ? std::nullopt : std::optional<std::string>(it->second);
  };
}

SCommandLine applyAuto(const std::map<std::string, std::string>& table, std::optional<unsigned int> oCount = {}) {
  SCommandLine commandLine;
  SShardOptionValues values;
  values.sShard = "auto";
  values.oCount = oCount;
  ApplyShardOptions(values, commandLine, variables(table));
  return commandLine;
}

std::string autoError(const std::map<std::string, std::string>& table, std::optional<unsigned int> oCount = {}) {
  try {
    applyAuto(table, oCount);
  } catch (const CUsageError& error) { return error.what(); }
  return std::string();
}

}  // namespace

TEST(ShardOptions, APartGivenAsIndexOverCount) {
  const SCommandLine c = ParseWithData({"--shard", "2/7"});
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_EQ(c.setup.collectOptions.shard.uiIndex, 2u);
  EXPECT_EQ(c.setup.collectOptions.shard.uiCount, 7u);
  EXPECT_FALSE(c.setup.collectOptions.shard.bByTimes);
  EXPECT_EQ(c.setup.sRunTag, L"shard 3 of 7");
  EXPECT_TRUE(IsSharded(c.setup));
}

TEST(ShardOptions, WithoutShardTheWholeSetAndNoTag) {
  const SCommandLine c = ParseWithData({});
  EXPECT_EQ(c.setup.collectOptions.shard.uiCount, 1u);
  EXPECT_EQ(c.setup.sRunTag, L"");
  EXPECT_FALSE(IsSharded(c.setup));
  EXPECT_FALSE(IsSharded(ParseWithData({"--shard", "0/1"}).setup));
}

TEST(ShardOptions, AGivenRunTagStays) {
  EXPECT_EQ(ParseWithData({"--shard", "0/2", "--run-tag", "nightly"}).setup.sRunTag, L"nightly");
  EXPECT_EQ(ParseWithData({"--run-tag", "nightly", "--shard", "1/2"}).setup.sRunTag, L"nightly");
}

TEST(ShardOptions, PartsThatDoNotExist) {
  EXPECT_EQ(UsageError({"--shard", "4/4"}), "--shard: '4/4' has no part 4: the parts of 4 are 0/4 to 3/4");
  EXPECT_EQ(UsageError({"--shard", "0/0"}), "--shard: '0/0' has no parts");
  EXPECT_EQ(UsageError({"--shard", "1"}), "--shard: '1' is neither I/N (part I of N, counted from 0) nor auto");
  EXPECT_EQ(UsageError({"--shard", "-1/4"}), "--shard: '-1/4' is neither I/N (part I of N, counted from 0) nor auto");
  EXPECT_EQ(UsageError({"--shard", "1/ 4"}), "--shard: '1/ 4' is neither I/N (part I of N, counted from 0) nor auto");
}

TEST(ShardOptions, TimesAndCountBelongToAShard) {
  EXPECT_EQ(UsageError({"--shard-times", "r.xml"}), "--shard-times needs --shard I/N or --shard auto");
  EXPECT_EQ(UsageError({"--shard-count", "3"}), "--shard-count goes with --shard auto");
  EXPECT_EQ(UsageError({"--shard", "1/3", "--shard-count", "3"}), "--shard-count goes with --shard auto");
  const SCommandLine c = ParseWithData({"--shard", "1/3", "--shard-times", "old/r.xml"});
  EXPECT_EQ(c.sShardTimesReport, L"old/r.xml");
}

TEST(ShardOptions, AutoTakesThePartFromTheEngine) {
  const SCommandLine gitlab = applyAuto({{"CI_NODE_INDEX", "2"}, {"CI_NODE_TOTAL", "4"}});
  EXPECT_EQ(gitlab.setup.collectOptions.shard.uiIndex, 1u);
  EXPECT_EQ(gitlab.setup.collectOptions.shard.uiCount, 4u);
  EXPECT_EQ(gitlab.setup.sRunTag, L"shard 2 of 4");
  EXPECT_EQ(gitlab.sShardStatusFile, L"");
  const SCommandLine bazel =
      applyAuto({{"TEST_SHARD_INDEX", "0"}, {"TEST_TOTAL_SHARDS", "3"}, {"TEST_SHARD_STATUS_FILE", "/tmp/status"}});
  EXPECT_EQ(bazel.setup.sRunTag, L"shard 1 of 3");
  EXPECT_EQ(bazel.sShardStatusFile, L"/tmp/status");
  const SCommandLine kubernetes = applyAuto({{"JOB_COMPLETION_INDEX", "5"}}, 6);
  EXPECT_EQ(kubernetes.setup.collectOptions.shard.uiIndex, 5u);
  EXPECT_EQ(kubernetes.setup.collectOptions.shard.uiCount, 6u);
}

TEST(ShardOptions, AutoWithoutAnEngineOrOutOfRangeIsAUsageError) {
  EXPECT_NE(autoError({}).find("--shard auto: none of the CI engines' variables is set"), std::string::npos);
  EXPECT_EQ(autoError({{"CI_NODE_INDEX", "5"}, {"CI_NODE_TOTAL", "4"}}),
            "--shard auto: CI_NODE_INDEX=5 is outside 1 to 4 (GitLab counts from 1)");
  EXPECT_EQ(autoError({{"JOB_COMPLETION_INDEX", "0"}}),
            "--shard auto: JOB_COMPLETION_INDEX is set (Kubernetes): --shard-count N must give the number of parts");
}

TEST(ShardOptions, MergeAndShardExcludeEachOther) {
  EXPECT_EQ(UsageError({"--merge-reports", "o.xml", "a.xml", "--shard", "0/2"}, false),
            "--merge-reports and --shard exclude each other");
}

TEST(ShardOptions, PrepareLoadsTheTimesAndMakesTheStatusFile) {
  TempDirectory directory;
  Report::SData report;
  Report::SCaseData& row = report.Cases.Emplace();
  row.ClassName = L"Beta";
  row.CaseName = L"b1";
  row.Time = 2.5;
  Report::WriteXmlReport(directory / L"times.xml", report);
  SCommandLine commandLine = ParseWithData({"--shard", "0/2", "--shard-times", "x"});
  commandLine.sShardTimesReport = directory / L"times.xml";
  commandLine.sShardStatusFile = directory / L"status";
  ASSERT_TRUE(PrepareShard(commandLine));
  EXPECT_TRUE(commandLine.setup.collectOptions.shard.bByTimes);
  EXPECT_DOUBLE_EQ(*commandLine.setup.collectOptions.shard.caseTimes.Find(L"Beta:b1"), 2.5);
  EXPECT_TRUE(ZoFileSystem::Exists(directory / L"status"));
}

TEST(ShardOptions, PrepareRefusesAMissingReportAndAStatusFileThatCannotBeMade) {
  TempDirectory directory;
  COutRecorder recorder;
  SCommandLine missing = ParseWithData({"--shard", "0/2"});
  missing.sShardTimesReport = directory / L"none.xml";
  EXPECT_FALSE(PrepareShard(missing));
  SCommandLine status = ParseWithData({"--shard", "0/2"});
  status.sShardStatusFile = directory / L"no/such/status";
  EXPECT_FALSE(PrepareShard(status));
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0].sText, FormatString(L"Fehler: Datei %s existiert nicht.\n", directory / L"none.xml"));
  EXPECT_EQ(messages[1].sText,
            FormatString(L"Fehler: Die Statusdatei %s (TEST_SHARD_STATUS_FILE) konnte nicht angelegt werden.\n",
                         directory / L"no/such/status"));
  EXPECT_EQ(messages[1].color, ZoColorRGBA::c_RED);
}
