// ApplyPatternFilter and ApplyMultiplePatternFilters: what one expression,
// or a list of them, says of a text.
#include <gtest/gtest.h>

#include <regex>

#include "UnitTestRecords.h"
#include "ZoTestSuiteTree.h"
#include "services/Utils.h"

using TestSuite::ApplyMultiplePatternFilters;
using TestSuite::ApplyPatternFilter;
using TestSuite::FilterExclude;
using TestSuite::FilterInclude;
using TestSuite::FilterNeutral;
using TestSuite::SPatternFilter;
using TestSupport::Wildcard;

namespace {

SPatternFilter Regex(const wchar_t* pattern, unsigned int eAction) {
  SPatternFilter filter;
  filter.sPattern = pattern;
  filter.regex = std::wregex(pattern, std::regex_constants::ECMAScript);
  filter.eAction = eAction;
  return filter;
}

}  // namespace

TEST(PatternFilterTest, MatchGivesTheActionAndNoMatchNeutral) {
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", Regex(L"Geo", 0), false), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", Regex(L"Geo", 1), false), FilterExclude);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", Regex(L"Geo", 7), false), FilterExclude);
  EXPECT_EQ(ApplyPatternFilter(L"Raster", Regex(L"Geo", 0), false), FilterNeutral);
  EXPECT_EQ(ApplyPatternFilter(L"Raster", Regex(L"Geo", 1), false), FilterNeutral);
}

TEST(PatternFilterTest, BeginningOfANameMatchesOnlyWithoutFullMatch) {
  const SPatternFilter filter = Wildcard(L"Geo", 0);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", filter, true), FilterNeutral);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", filter, false), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"Geo", filter, true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", Wildcard(L"Geo*", 0), true), FilterInclude);
}

TEST(PatternFilterTest, ExpressionNeverCompiledMatchesNothing) {
  const SPatternFilter filter;  // default: include, no expression
  for (bool bFullMatch : {false, true}) {
    EXPECT_EQ(ApplyPatternFilter(L"", filter, bFullMatch), FilterNeutral);
    EXPECT_EQ(ApplyPatternFilter(L"Geometry", filter, bFullMatch), FilterNeutral);
  }
}

TEST(PatternFilterTest, NoFiltersGiveNeutral) {
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Geometry", XbArray<SPatternFilter>(), false), FilterNeutral);
  EXPECT_EQ(ApplyMultiplePatternFilters(L"", XbArray<SPatternFilter>(), true), FilterNeutral);
}

TEST(PatternFilterTest, LastMatchingFilterDecides) {
  const XbArray<SPatternFilter> includeThenExclude{Wildcard(L"*", 0), Wildcard(L"Geo*", 1)};
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Geometry", includeThenExclude, true), FilterExclude);
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Raster", includeThenExclude, true), FilterInclude);

  // A later include takes back an earlier exclude.
  const XbArray<SPatternFilter> excludeThenInclude{Wildcard(L"*", 1), Wildcard(L"Geo*", 0)};
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Geometry", excludeThenInclude, true), FilterInclude);
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Raster", excludeThenInclude, true), FilterExclude);
}

TEST(PatternFilterTest, LaterFilterThatDoesNotMatchLeavesTheResult) {
  const XbArray<SPatternFilter> filters{Wildcard(L"Geo*", 1), Wildcard(L"Raster", 0), SPatternFilter()};
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Geometry", filters, true), FilterExclude);
  EXPECT_EQ(ApplyMultiplePatternFilters(L"Other", filters, true), FilterNeutral);
}

TEST(PatternFilterTest, WildcardWithEverySpecialCharacterMatchesThemLiterally) {
  // Every character that an expression gives a meaning to, apart from the
  // braces, stands for itself in a wildcard; '*' and '?' keep theirs.
  const SPatternFilter filter = Wildcard(L"a^b.c$d|e(f)g[h]i+j/k\\l*m?n", 0);
  EXPECT_EQ(ApplyPatternFilter(L"a^b.c$d|e(f)g[h]i+j/k\\l---mXn", filter, true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"a^bXc$d|e(f)g[h]i+j/k\\l---mXn", filter, true), FilterNeutral);
  EXPECT_EQ(ApplyPatternFilter(L"abc", filter, false), FilterNeutral);
}

TEST(PatternFilterTest, WildcardsIgnoreCaseAndTakeUmlautsBlanksAndXmlSpecials) {
  const SPatternFilter filter = Wildcard(L"GRöße pRüFUNG <&\"'>*", 0);
  EXPECT_EQ(ApplyPatternFilter(L"Größe Prüfung <&\"'> Fall", filter, true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"Grosse Prüfung <&\"'>", filter, true), FilterNeutral);
}

TEST(PatternFilterTest, ClassAndCaseJoinedByAColonAreOneText) {
  const SPatternFilter filter = Wildcard(L"Geometry:Torus*", 0);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry:Torus 2", filter, true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(L"Torus 2", filter, true), FilterNeutral);
}

// A wildcard is matched without a regular expression: a 30,000-character
// case name and a 90,000-character wildcard are ordinary input.
TEST(PatternFilterTest, AWildcardMatchesAThirtyThousandCharacterNameInFull) {
  const CString name = CString(L"Klasse:") + CString(L'n', 30000);
  EXPECT_EQ(ApplyPatternFilter(name, Wildcard(L"*", 0), true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(name, Wildcard(L"klasse:*N", 1), true), FilterExclude);
  EXPECT_EQ(ApplyPatternFilter(name, Wildcard(L"*x*", 0), false), FilterNeutral);
}

TEST(PatternFilterTest, ANinetyThousandCharacterWildcardMatchesAndMissesWithoutHarm) {
  const std::wstring pattern = std::wstring(89999, L'n') + L"*";
  const SPatternFilter filter = Wildcard(pattern.c_str(), 0);
  EXPECT_EQ(ApplyPatternFilter(CString(L'n', 90000), filter, true), FilterInclude);
  EXPECT_EQ(ApplyPatternFilter(CString(L'n', 30000), filter, true), FilterNeutral);
  EXPECT_EQ(ApplyPatternFilter(L"Geometry", filter, false), FilterNeutral);
}

// A regular expression of the user's is compiled bounded: a long text does
// not make its match recurse.
TEST(PatternFilterTest, ABoundedRegexMatchesAThirtyThousandCharacterName) {
  SPatternFilter filter;
  filter.regex = TestSuite::Utils::CompileBoundedRegex(L".*", true);
  EXPECT_EQ(ApplyPatternFilter(CString(L'n', 30000), filter, true), FilterInclude);
}
