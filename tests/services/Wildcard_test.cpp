// CWildcard: the iterative matcher agrees with the wildcard's expression on
// every pattern and text of a table, refuses what the expression compiler
// refuses, and matches very long names and patterns without a crash.
#include "services/Wildcard.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "services/Utils.h"

using namespace TestSuite;
using Utils::CWildcard;

namespace {

const wchar_t* const c_patterns[] = {L"",     L"*",       L"?",       L"a*",   L"*a",       L"a?c",        L"*b*",
                                     L"a**b", L"K/F:1",   L"^.$|",    L"a\\b", L"a{2}",     L"a{2,}",      L"a{1,3}",
                                     L"?{2}", L"x{0}y",   L"a{2}{3}", L"*{2}", L"ab{0,}",   L"(a|b)",      L"[ab]+",
                                     L"a}",   L"Klasse*", L"*.case",  L"?*?",  L"a{2,}{2}", L"c_a{1,2}{2}"};
const wchar_t* const c_texts[] = {L"",         L"a",      L"aa",   L"aaa",  L"aaaaaa", L"abc",    L"ab",    L"b",
                                  L"xaybz",    L"K/F:1",  L"^.$|", L"a\\b", L"y",      L"a}",     L"(a|b)", L"[ab]+",
                                  L"KLASSE:x", L"f.case", L"a\nb", L"\n",   L"c_aaa",  L"c_aaaa", L"abbb",  L"a\rb"};

}  // namespace

TEST(Wildcard, AgreesWithItsExpressionOnEveryPatternAndText) {
  for (const wchar_t* pattern : c_patterns) {
    for (const bool bCaseSensitive : {true, false}) {
      const std::wregex expression = Utils::GenerateWildcardRegex(pattern, bCaseSensitive);
      const CWildcard wildcard(pattern, bCaseSensitive);
      for (const wchar_t* text : c_texts) {
        EXPECT_EQ(wildcard.Match(text, true), std::regex_match(text, expression))
            << CString(pattern).ToUtf8() << " / " << CString(text).ToUtf8();
        EXPECT_EQ(wildcard.Match(text, false), std::regex_search(text, expression))
            << CString(pattern).ToUtf8() << " / " << CString(text).ToUtf8() << " (search)";
      }
    }
  }
}

TEST(Wildcard, RefusesWhatTheExpressionCompilerRefuses) {
  for (const wchar_t* pattern : {L"c_{", L"{2}", L"a{,2}", L"a{2,1}", L"a{}", L"a{1,2", L"a{ 2}"}) {
    EXPECT_THROW(Utils::GenerateWildcardRegex(pattern, true), std::regex_error) << CString(pattern).ToUtf8();
    EXPECT_THROW(CWildcard(pattern, true), std::regex_error) << CString(pattern).ToUtf8();
  }
}

TEST(Wildcard, RefusesARepetitionBeyondItsItemLimitInsteadOfExpandingIt) {
  EXPECT_THROW(CWildcard(L"a{99999999999}", true), std::regex_error);
  EXPECT_THROW(CWildcard(L"a{1000}{1000}{1000}", true), std::regex_error);
}

TEST(Wildcard, RefusesARepetitionOfARepetitionWhoseCountsLeaveGaps) {
  // a{2}{1,2} is "aa" or "aaaa", never "aaa": no single range says it.
  EXPECT_THROW(CWildcard(L"a{2}{1,2}", true), std::regex_error);
}

TEST(Wildcard, ADefaultWildcardMatchesNothing) {
  const CWildcard wildcard;
  EXPECT_FALSE(wildcard.Match(L"", true));
  EXPECT_FALSE(wildcard.Match(L"a", false));
}

TEST(Wildcard, StarAndQuestionMarkDoNotCrossALineEnd) {
  const CWildcard wildcard(L"a*b", true);
  EXPECT_FALSE(wildcard.Match(L"a\nb", true));
  EXPECT_FALSE(
      wildcard.Match(L"a\x2028"
                     L"b",
                     true));
  EXPECT_TRUE(wildcard.Match(L"x\na-b", false));  // a search begins again behind it
}

TEST(Wildcard, AThirtyThousandCharacterNameMatchesAStar) {
  const std::wstring name(30000, L'n');
  EXPECT_TRUE(CWildcard(L"*", false).Match(name, true));
  EXPECT_TRUE(CWildcard(L"n*n", false).Match(name, true));
  EXPECT_FALSE(CWildcard(L"*x", false).Match(name, true));
  EXPECT_TRUE(CWildcard(L"*", false).Match(name, false));
}

TEST(Wildcard, ANinetyThousandCharacterPatternMatchesWithoutRecursion) {
  const std::wstring pattern = std::wstring(45000, L'a') + L"*z" + std::wstring(44997, L'b') + L"?";
  ASSERT_EQ(pattern.size(), 90000u);
  const std::wstring name = std::wstring(45000, L'a') + L"xyz" + std::wstring(44997, L'b') + L"c";
  const CWildcard wildcard(pattern, true);
  EXPECT_TRUE(wildcard.Match(name, true));
  EXPECT_FALSE(wildcard.Match(name.substr(0, name.size() - 2), true));
  EXPECT_FALSE(wildcard.Match(L"a short case name", false));
}
