// The part of a sharded run from the variables of each CI engine, read
// through a table of variables instead of the process's environment: the
// pairs, their order, the engines' index bases, and every refusal.
#include "discovery/ShardEngines.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "TempDirectory.h"

using TestSuite::ReadEngineShard;
using TestSuite::SEngineShard;

namespace {

using Variables = std::map<std::string, std::string>;

SEngineShard read(const Variables& variables, std::optional<unsigned int> oCount = std::nullopt) {
  return ReadEngineShard(
      [&variables](const char* name) -> std::optional<std::string> {
        const auto it = variables.find(name);
        if (it == variables.end()) return std::nullopt;
        return it->second;
      },
      oCount);
}

void expectPart(const SEngineShard& shard, unsigned int index, unsigned int count, const wchar_t* engine) {
  EXPECT_EQ(shard.sError, "");
  EXPECT_EQ(shard.uiIndex, index);
  EXPECT_EQ(shard.uiCount, count);
  EXPECT_EQ(shard.sEngine, engine);
}

void expectError(const SEngineShard& shard, const std::string& text) {
  EXPECT_NE(shard.sError.find(text), std::string::npos) << shard.sError;
  EXPECT_EQ(shard.sError.rfind("--shard auto: ", 0), 0u) << shard.sError;
}

}  // namespace

TEST(ShardEngines, EachEngineWithItsIndexBase) {
  expectPart(read({{"TEST_SHARD_INDEX", "0"}, {"TEST_TOTAL_SHARDS", "4"}}), 0, 4, L"Bazel");
  expectPart(read({{"TEST_SHARD_INDEX", "3"}, {"TEST_TOTAL_SHARDS", "4"}}), 3, 4, L"Bazel");
  expectPart(read({{"CI_NODE_INDEX", "1"}, {"CI_NODE_TOTAL", "4"}}), 0, 4, L"GitLab");
  expectPart(read({{"CI_NODE_INDEX", "4"}, {"CI_NODE_TOTAL", "4"}}), 3, 4, L"GitLab");
  expectPart(read({{"CIRCLE_NODE_INDEX", "0"}, {"CIRCLE_NODE_TOTAL", "3"}}), 0, 3, L"CircleCI");
  expectPart(read({{"CIRCLE_NODE_INDEX", "2"}, {"CIRCLE_NODE_TOTAL", "3"}}), 2, 3, L"CircleCI");
  expectPart(read({{"BUILDKITE_PARALLEL_JOB", "0"}, {"BUILDKITE_PARALLEL_JOB_COUNT", "7"}}), 0, 7, L"Buildkite");
  expectPart(read({{"BUILDKITE_PARALLEL_JOB", "6"}, {"BUILDKITE_PARALLEL_JOB_COUNT", "7"}}), 6, 7, L"Buildkite");
  expectPart(read({{"JOB_COMPLETION_INDEX", "0"}}, 5), 0, 5, L"Kubernetes");
  expectPart(read({{"JOB_COMPLETION_INDEX", "4"}}, 5), 4, 5, L"Kubernetes");
}

TEST(ShardEngines, IndexesOutsideTheParts) {
  expectError(read({{"TEST_SHARD_INDEX", "4"}, {"TEST_TOTAL_SHARDS", "4"}}), "TEST_SHARD_INDEX=4 is outside 0 to 3");
  expectError(read({{"CI_NODE_INDEX", "0"}, {"CI_NODE_TOTAL", "4"}}), "CI_NODE_INDEX=0 is outside 1 to 4");
  expectError(read({{"CI_NODE_INDEX", "5"}, {"CI_NODE_TOTAL", "4"}}), "(GitLab counts from 1)");
  expectError(read({{"CIRCLE_NODE_INDEX", "3"}, {"CIRCLE_NODE_TOTAL", "3"}}), "CIRCLE_NODE_INDEX=3 is outside 0 to 2");
  expectError(read({{"BUILDKITE_PARALLEL_JOB", "7"}, {"BUILDKITE_PARALLEL_JOB_COUNT", "7"}}),
              "BUILDKITE_PARALLEL_JOB=7 is outside 0 to 6");
  expectError(read({{"JOB_COMPLETION_INDEX", "5"}}, 5), "JOB_COMPLETION_INDEX=5 is outside 0 to 4");
  expectError(read({{"TEST_SHARD_INDEX", "0"}, {"TEST_TOTAL_SHARDS", "0"}}), "TEST_TOTAL_SHARDS=0 gives no parts");
  expectError(read({{"JOB_COMPLETION_INDEX", "0"}}, 0), "--shard-count 0 gives no parts");
}

TEST(ShardEngines, ValuesThatAreNoNumbers) {
  expectError(read({{"TEST_SHARD_INDEX", "-1"}, {"TEST_TOTAL_SHARDS", "4"}}), "TEST_SHARD_INDEX='-1' is no index");
  expectError(read({{"CI_NODE_INDEX", "2"}, {"CI_NODE_TOTAL", "four"}}), "CI_NODE_TOTAL='four' is no number");
  expectError(read({{"CIRCLE_NODE_INDEX", " 1"}, {"CIRCLE_NODE_TOTAL", "3"}}), "is no index");
  expectError(read({{"BUILDKITE_PARALLEL_JOB", "99999999999"}, {"BUILDKITE_PARALLEL_JOB_COUNT", "7"}}), "is no index");
}

TEST(ShardEngines, TheFirstPairThatIsSetWins) {
  expectPart(
      read({{"TEST_SHARD_INDEX", "1"}, {"TEST_TOTAL_SHARDS", "2"}, {"CI_NODE_INDEX", "3"}, {"CI_NODE_TOTAL", "3"}}), 1,
      2, L"Bazel");
  // GitLab sets CI_NODE_TOTAL in every job, CI_NODE_INDEX only in parallel
  // ones: half a pair does not count, and neither does an empty value.
  expectPart(read({{"CI_NODE_TOTAL", "1"}, {"CIRCLE_NODE_INDEX", "1"}, {"CIRCLE_NODE_TOTAL", "2"}}), 1, 2, L"CircleCI");
  expectPart(
      read({{"TEST_SHARD_INDEX", ""}, {"TEST_TOTAL_SHARDS", "4"}, {"CI_NODE_INDEX", "2"}, {"CI_NODE_TOTAL", "2"}}), 1,
      2, L"GitLab");
  expectPart(
      read({{"JOB_COMPLETION_INDEX", "1"}, {"BUILDKITE_PARALLEL_JOB", "0"}, {"BUILDKITE_PARALLEL_JOB_COUNT", "2"}}, 2),
      0, 2, L"Buildkite");
}

TEST(ShardEngines, NoneSetNamesThePairsItLooksFor) {
  const SEngineShard shard = read({{"CI_NODE_TOTAL", "1"}});
  expectError(shard, "none of the CI engines' variables is set");
  for (const char* name : {"TEST_SHARD_INDEX", "CI_NODE_INDEX", "CIRCLE_NODE_INDEX", "BUILDKITE_PARALLEL_JOB",
                           "JOB_COMPLETION_INDEX", "--shard-count"})
    EXPECT_NE(shard.sError.find(name), std::string::npos) << name;
}

TEST(ShardEngines, KubernetesNeedsTheCountAndOthersMustAgreeWithIt) {
  expectError(read({{"JOB_COMPLETION_INDEX", "1"}}), "--shard-count N must give the number of parts");
  expectError(read({{"CI_NODE_INDEX", "1"}, {"CI_NODE_TOTAL", "4"}}, 3),
              "--shard-count 3 disagrees with CI_NODE_TOTAL=4");
  expectPart(read({{"CI_NODE_INDEX", "1"}, {"CI_NODE_TOTAL", "4"}}, 4), 0, 4, L"GitLab");
}

TEST(ShardEngines, BazelsStatusFileComesWithBazelsPairOnly) {
  EXPECT_EQ(
      read({{"TEST_SHARD_INDEX", "0"}, {"TEST_TOTAL_SHARDS", "2"}, {"TEST_SHARD_STATUS_FILE", "/tmp/s"}}).sStatusFile,
      L"/tmp/s");
  EXPECT_EQ(read({{"TEST_SHARD_INDEX", "0"}, {"TEST_TOTAL_SHARDS", "2"}}).sStatusFile, L"");
  EXPECT_EQ(read({{"CI_NODE_INDEX", "1"}, {"CI_NODE_TOTAL", "2"}, {"TEST_SHARD_STATUS_FILE", "/tmp/s"}}).sStatusFile,
            L"");
}

TEST(ShardEngines, TouchMakesTheStatusFileAndLeavesAnExistingOne) {
  TempDirectory directory;
  const CString path = directory / L"status";
  ASSERT_TRUE(TestSuite::TouchShardStatusFile(path));
  EXPECT_EQ(TempDirectory::ReadBytes(path), "");
  directory.WriteFile(L"status", "kept");
  ASSERT_TRUE(TestSuite::TouchShardStatusFile(path));
  EXPECT_EQ(TempDirectory::ReadBytes(path), "kept");
  EXPECT_FALSE(TestSuite::TouchShardStatusFile(directory / L"missing/status"));
}

TEST(ShardEngines, TheProcessVariablesAreReadAsTheyAre) {
  const std::optional<std::string> path = TestSuite::GetProcessVariables()("PATH");
  ASSERT_TRUE(path.has_value());
  EXPECT_FALSE(path->empty());
  EXPECT_FALSE(TestSuite::GetProcessVariables()("ZO_SHARD_TEST_UNSET_VARIABLE").has_value());
}
