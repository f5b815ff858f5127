// The run-control options of the front end, parsed into the setup.
#include "RunControlOptions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SSetup parse(std::vector<const char*> words) { return CliParse::ParseWithData(std::move(words)).setup; }

}  // namespace

TEST(RunControlOptions, WithoutOptionsNothingIsRetriedLimitedOrShuffled) {
  const SSetup setup = parse({});
  EXPECT_EQ(setup.uiRetryCount, 0u);
  EXPECT_EQ(setup.uiMaxFailures, 0u);
  EXPECT_FALSE(setup.oShuffleSeed.has_value());
}

TEST(RunControlOptions, ValuesReachTheSetup) {
  const SSetup setup = parse({"--retries", "3", "--max-failures", "2", "--shuffle", "18446744073709551615"});
  EXPECT_EQ(setup.uiRetryCount, 3u);
  EXPECT_EQ(setup.uiMaxFailures, 2u);
  ASSERT_TRUE(setup.oShuffleSeed.has_value());
  EXPECT_EQ(*setup.oShuffleSeed, 18446744073709551615u);
}

TEST(RunControlOptions, ShuffleWithoutSeedDrawsOne) {
  const SSetup setup = parse({"--shuffle", "-w", "2"});
  ASSERT_TRUE(setup.oShuffleSeed.has_value());
  EXPECT_LT(*setup.oShuffleSeed, 1000000000u);
  EXPECT_TRUE(setup.run.bParallel);
}

TEST(RunControlOptions, BadValuesAreUsageErrors) {
  EXPECT_EQ(CliParse::UsageError({"--max-failures", "0"}), "--max-failures: N must be at least 1");
  EXPECT_NE(CliParse::UsageError({"--shuffle", "4x"}).find("'4x' is not a seed"), std::string::npos);
  EXPECT_NE(CliParse::UsageError({"--shuffle=18446744073709551616"}).find("is not a seed"), std::string::npos);
  EXPECT_NE(CliParse::UsageError({"--retries", "many"}), "");
}
