// The options that choose what runs, as ParseCommandLine puts them into the
// setup: patterns in command-line order, compiled; the selection file; the
// two listing modes; usage errors for patterns that do not compile.
#include "SelectionOptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "CommandLine.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

using CliParse::ParseWithData;
using CliParse::UsageError;

TEST(SelectionOptions, DefaultsLeaveTheCollectionAsItIs) {
  const SCommandLine c = ParseWithData({});
  const SCollectOptions& options = c.setup.collectOptions;
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_TRUE(options.sSelectionFile.IsEmpty());
  EXPECT_EQ(options.eSelectionMode, 0u);
  EXPECT_TRUE(options.filters.IsEmpty());
  EXPECT_FALSE(options.bFullMatch);
  EXPECT_TRUE(options.bDropDisabled);
}

TEST(SelectionOptions, PatternsKeepTheirCommandLineOrderAcrossAllFourOptions) {
  const SCommandLine c = ParseWithData(
      {"--exclude", "b*", "--include-regex", "^a", "--include", "c?", "--exclude-regex", "d$", "--include", "Größe"});
  const XbArray<SPatternFilter>& filters = c.setup.collectOptions.filters;
  ASSERT_EQ(filters.GetCount(), 5u);
  const wchar_t* patterns[] = {L"b*", L"^a", L"c?", L"d$", L"Größe"};
  const unsigned int actions[] = {1, 0, 0, 1, 0};
  for (unsigned int i = 0; i < 5; ++i) {
    EXPECT_EQ(filters[i].sPattern, CString(patterns[i])) << i;
    EXPECT_EQ(filters[i].eAction, actions[i]) << i;
  }
}

TEST(SelectionOptions, WildcardsIgnoreCaseAndRegexesAreTakenAsWritten) {
  const SCommandLine c = ParseWithData({"--include", "geo*", "--include-regex", "^Geo.$"});
  const XbArray<SPatternFilter>& filters = c.setup.collectOptions.filters;
  ASSERT_EQ(filters.GetCount(), 2u);
  ASSERT_TRUE(filters[0].wildcard.has_value());
  EXPECT_TRUE(filters[0].wildcard->Match(L"GEOMETRY", true));
  EXPECT_FALSE(filters[0].wildcard->Match(L"xgeo", true));
  EXPECT_TRUE(std::regex_match(std::wstring(L"Geox"), filters[1].regex));
  EXPECT_FALSE(std::regex_match(std::wstring(L"geox"), filters[1].regex));
}

TEST(SelectionOptions, FlagsFillTheirFields) {
  const SCommandLine c =
      ParseWithData({"--full-match", "--keep-disabled", "--invert-selection", "--select", "/abs/sel.xml"});
  const SCollectOptions& options = c.setup.collectOptions;
  EXPECT_TRUE(options.bFullMatch);
  EXPECT_FALSE(options.bDropDisabled);
  EXPECT_EQ(options.eSelectionMode, 1u);
  EXPECT_EQ(options.sSelectionFile, CString(L"/abs/sel.xml"));
}

TEST(SelectionOptions, RelativeSelectionFileIsMadeAbsolute) {
  const SCommandLine c = ParseWithData({"--select", "sub/../sel.xml"});
  const std::string expected = (std::filesystem::current_path() / "sel.xml").string();
  EXPECT_EQ(c.setup.collectOptions.sSelectionFile, CString::FromUtf8(expected));
}

TEST(SelectionOptions, QueryAndListDisabledAreModes) {
  EXPECT_EQ(ParseWithData({"--query"}).eMode, EMode::Query);
  EXPECT_EQ(ParseWithData({"--list-disabled"}).eMode, EMode::ListDisabled);
  // Listing is read-only and goes before renewing reference data.
  EXPECT_EQ(ParseWithData({"--recreate", "--query"}).eMode, EMode::Query);
  EXPECT_NE(UsageError({"--query", "--list-disabled"}), "");
}

TEST(SelectionOptions, PatternThatDoesNotCompileNamesItselfAndTheCompilersMessage) {
  const std::string wildcard = UsageError({"--include", "ok", "--exclude", "a{"});
  EXPECT_EQ(wildcard.rfind("--exclude: 'a{' is no valid pattern: ", 0), 0u) << wildcard;
  EXPECT_GT(wildcard.size(), std::string("--exclude: 'a{' is no valid pattern: ").size());
  const std::string regex = UsageError({"--include-regex", "(x"});
  EXPECT_EQ(regex.rfind("--include-regex: '(x' is no valid pattern: ", 0), 0u) << regex;
  EXPECT_EQ(UsageError({"--exclude-regex", "[b-a]"}).rfind("--exclude-regex: '[b-a]'", 0), 0u);
}

TEST(SelectionOptions, PatternOptionsNeedAValue) {
  EXPECT_NE(UsageError({"--include"}), "");
  EXPECT_NE(UsageError({"--select"}), "");
}
