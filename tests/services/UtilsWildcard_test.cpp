#include <gtest/gtest.h>

#include <regex>

#include "services/Utils.h"

using namespace TestSuite;

namespace {

bool matches(const wchar_t* wildcard, const wchar_t* text, bool caseSensitive = true) {
  return std::regex_match(text, Utils::GenerateWildcardRegex(wildcard, caseSensitive));
}

}  // namespace

TEST(UtilsWildcard, StarQuestionMarkAndFullStopTranslateToDotStarDotAndEscapedDot) {
  // "*?." is ".*.\." : any text, one character, a literal full stop.
  EXPECT_TRUE(matches(L"*?.", L"x."));
  EXPECT_TRUE(matches(L"*?.", L"abc.d."));
  EXPECT_FALSE(matches(L"*?.", L"."));   // '?' wants one character
  EXPECT_FALSE(matches(L"*?.", L"xy"));  // the full stop is literal
  EXPECT_FALSE(matches(L"*?.", L"x.y"));
}

TEST(UtilsWildcard, ABackslashMatchesALiteralBackslash) {
  EXPECT_TRUE(matches(L"a\\b", L"a\\b"));
  EXPECT_FALSE(matches(L"a\\b", L"ab"));
  EXPECT_TRUE(matches(L"\\d", L"\\d"));  // no character class
  EXPECT_FALSE(matches(L"\\d", L"5"));
}

TEST(UtilsWildcard, TheTenSpecialCharactersAreLiteral) {
  const wchar_t* special = L"^.$|()[]+/";
  EXPECT_TRUE(matches(special, special));
  EXPECT_FALSE(matches(L"a+", L"aa"));
  EXPECT_FALSE(matches(L"(a|b)", L"a"));
  EXPECT_FALSE(matches(L"[ab]", L"a"));
  EXPECT_TRUE(matches(L"K/F:1", L"K/F:1"));
}

TEST(UtilsWildcard, BracesKeepTheirRepetitionMeaning) {
  EXPECT_TRUE(matches(L"a{2}", L"aa"));
  EXPECT_FALSE(matches(L"a{2}", L"a{2}"));
}

TEST(UtilsWildcard, AnInvalidExpressionRaisesTheRegexError) {
  EXPECT_THROW(Utils::GenerateWildcardRegex(L"{", true), std::regex_error);
  EXPECT_THROW(Utils::GenerateWildcardRegex(L"a{2", false), std::regex_error);
}

TEST(UtilsWildcard, CaseSensitivityFollowsTheSecondArgument) {
  EXPECT_FALSE(matches(L"Klasse*", L"KLASSE:Fall", true));
  EXPECT_TRUE(matches(L"Klasse*", L"KLASSE:Fall", false));
  EXPECT_TRUE(matches(L"Klasse*", L"Klasse:Fall", true));
}

TEST(UtilsWildcard, TheExpressionIsNotAnchored) {
  const std::wregex expression = Utils::GenerateWildcardRegex(L"b?d", true);
  EXPECT_FALSE(std::regex_match(L"abcde", expression));
  EXPECT_TRUE(std::regex_search(L"abcde", expression));
}

TEST(UtilsWildcard, AnEmptyWildcardMatchesOnlyTheEmptyText) {
  EXPECT_TRUE(matches(L"", L""));
  EXPECT_FALSE(matches(L"", L"x"));
}

TEST(UtilsWildcard, ABoundedRegexRefusesTooDeepNestingAndTooLongPatterns) {
  const CString nested = CString(L'(', 20000) + L"a" + CString(L')', 20000);
  EXPECT_THROW(Utils::CompileBoundedRegex(nested, true), std::regex_error);
  EXPECT_THROW(Utils::CompileBoundedRegex(CString(L'a', 5000), true), std::regex_error);
  // Escaped parentheses and those of a character class are no groups.
  CString escaped;
  for (int i = 0; i < 150; ++i) escaped += L"\\(";
  EXPECT_NO_THROW(Utils::CompileBoundedRegex(escaped + L"[(((]", true));
  EXPECT_NO_THROW(Utils::CompileBoundedRegex(CString(L'(', 100) + L"a" + CString(L')', 100), true));
}

TEST(UtilsWildcard, ABoundedRegexMatchesAMillionCharactersWithoutRecursion) {
  const std::wregex expression = Utils::CompileBoundedRegex(L"x(a|b)*c", true);
  const std::wstring text = L"x" + std::wstring(1000000, L'a') + L"c";
  EXPECT_TRUE(std::regex_match(text, expression));
  EXPECT_TRUE(std::regex_search(L"..." + text, expression));
  EXPECT_FALSE(std::regex_match(text + L"d", expression));
}

TEST(UtilsWildcard, ABoundedRegexIgnoresCaseOnlyWhenAsked) {
  EXPECT_TRUE(std::regex_match(std::wstring(L"GEO"), Utils::CompileBoundedRegex(L"geo", false)));
  EXPECT_FALSE(std::regex_match(std::wstring(L"GEO"), Utils::CompileBoundedRegex(L"geo", true)));
}
