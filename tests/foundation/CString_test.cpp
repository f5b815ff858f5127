#include "foundation/CString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

// Switches the C library's locale for one test and back.
class CScopedCLocale {
 public:
  explicit CScopedCLocale(const char* name) : m_sPrevious(std::setlocale(LC_ALL, nullptr)) {
    m_bActive = std::setlocale(LC_ALL, name) != nullptr;
  }
  ~CScopedCLocale() { std::setlocale(LC_ALL, m_sPrevious.c_str()); }
  bool IsActive() const { return m_bActive; }

 private:
  std::string m_sPrevious;
  bool m_bActive = false;
};

}  // namespace

TEST(CString, TokenizeSkipsEmptyLinesAndStepsBeyondTheEnd) {
  const CString text(L"a\n\nb\nc");
  int pos = 0;
  EXPECT_EQ(text.Tokenize(L"\n", pos), CString(L"a"));
  EXPECT_EQ(pos, 2);
  EXPECT_EQ(text.Tokenize(L"\n", pos), CString(L"b"));
  EXPECT_EQ(pos, 5);
  EXPECT_EQ(text.Tokenize(L"\n", pos), CString(L"c"));
  EXPECT_EQ(pos, 7);  // one beyond the length
  EXPECT_EQ(text.Tokenize(L"\n", pos), CString());
  EXPECT_EQ(pos, -1);
}

TEST(CString, TokenizeEdgeCases) {
  int pos = 0;
  EXPECT_EQ(CString().Tokenize(L";", pos), CString());
  EXPECT_EQ(pos, -1);
  pos = 0;
  EXPECT_EQ(CString(L";;;").Tokenize(L";", pos), CString());  // delimiters only
  EXPECT_EQ(pos, -1);
  pos = 0;
  EXPECT_EQ(CString(L";; a;b").Tokenize(L"; ", pos), CString(L"a"));  // any delimiter of the set
  EXPECT_EQ(pos, 5);
  EXPECT_EQ(CString(L";; a;b").Tokenize(L"; ", pos), CString(L"b"));
  EXPECT_EQ(pos, 7);
  pos = 0;
  EXPECT_EQ(CString(L"whole").Tokenize(L",", pos), CString(L"whole"));
  EXPECT_EQ(pos, 6);
  pos = 9;  // beyond the end
  EXPECT_EQ(CString(L"abc").Tokenize(L",", pos), CString());
  EXPECT_EQ(pos, -1);
  pos = -1;  // after the last token, it stays done
  EXPECT_EQ(CString(L"abc").Tokenize(L",", pos), CString());
  EXPECT_EQ(pos, -1);
  // Without delimiters the rest is the token and the position stays.
  pos = 1;
  EXPECT_EQ(CString(L"abc").Tokenize(L"", pos), CString(L"bc"));
  EXPECT_EQ(pos, 1);
  pos = 3;
  EXPECT_EQ(CString(L"abc").Tokenize(nullptr, pos), CString());
  EXPECT_EQ(pos, -1);
}

TEST(CString, LeftRightMidClampTheirArguments) {
  const CString s(L"abcdef");
  EXPECT_EQ(s.Left(2), CString(L"ab"));
  EXPECT_EQ(s.Left(0), CString());
  EXPECT_EQ(s.Left(-1), CString());
  EXPECT_EQ(s.Left(100), s);
  EXPECT_EQ(s.Right(2), CString(L"ef"));
  EXPECT_EQ(s.Right(-3), CString());
  EXPECT_EQ(s.Right(100), s);
  EXPECT_EQ(s.Mid(2), CString(L"cdef"));
  EXPECT_EQ(s.Mid(-3), s);
  EXPECT_EQ(s.Mid(6), CString());
  EXPECT_EQ(s.Mid(100), CString());
  EXPECT_EQ(s.Mid(1, 2), CString(L"bc"));
  EXPECT_EQ(s.Mid(4, 100), CString(L"ef"));
  EXPECT_EQ(s.Mid(1, -1), CString());
  EXPECT_EQ(s.Mid(-2, 3), CString(L"abc"));
  EXPECT_EQ(CString().Mid(0, 5), CString());
}

TEST(CString, FindAndReverseFind) {
  const CString s(L"a.b.c");
  EXPECT_EQ(s.Find(L'.'), 1);
  EXPECT_EQ(s.Find(L'.', 2), 3);
  EXPECT_EQ(s.Find(L'.', 4), -1);
  EXPECT_EQ(s.Find(L'x'), -1);
  EXPECT_EQ(s.Find(L'a', -1), -1);
  EXPECT_EQ(s.Find(L'a', 99), -1);
  EXPECT_EQ(s.Find(L"b.c"), 2);
  EXPECT_EQ(s.Find(L".", 2), 3);
  EXPECT_EQ(s.Find(L"c.", 0), -1);
  EXPECT_EQ(s.Find(L"", 2), 2);  // the empty text is found where the search starts
  EXPECT_EQ(s.Find(L"a", 6), -1);
  EXPECT_EQ(s.Find(static_cast<const wchar_t*>(nullptr)), -1);
  EXPECT_EQ(s.ReverseFind(L'.'), 3);
  EXPECT_EQ(s.ReverseFind(L'x'), -1);
  EXPECT_EQ(CString().ReverseFind(L'x'), -1);
}

TEST(CString, ReplaceRemoveInsertDelete) {
  CString s(L"aaa");
  EXPECT_EQ(s.Replace(L"aa", L"b"), 1);  // left to right, without overlap
  EXPECT_EQ(s, CString(L"ba"));
  s = L"a-a";
  EXPECT_EQ(s.Replace(L"a", L"aa"), 2);  // the replacement is not searched again
  EXPECT_EQ(s, CString(L"aa-aa"));
  EXPECT_EQ(s.Replace(L"-", L""), 1);
  EXPECT_EQ(s, CString(L"aaaa"));
  EXPECT_EQ(s.Replace(L"", L"x"), 0);
  EXPECT_EQ(s.Replace(L"zz", L"x"), 0);
  EXPECT_EQ(s, CString(L"aaaa"));
  EXPECT_EQ(s.Replace(L'a', L'b'), 4);
  EXPECT_EQ(s, CString(L"bbbb"));
  s = L"x\\y\\z";
  EXPECT_EQ(s.Remove(L'\\'), 2);
  EXPECT_EQ(s, CString(L"xyz"));
  EXPECT_EQ(s.Insert(1, L"--"), 5);
  EXPECT_EQ(s, CString(L"x--yz"));
  EXPECT_EQ(s.Insert(99, L"!"), 6);  // beyond the end: appended
  EXPECT_EQ(s, CString(L"x--yz!"));
  EXPECT_EQ(s.Delete(1, 2), 4);
  EXPECT_EQ(s, CString(L"xyz!"));
  EXPECT_EQ(s.Delete(2, 99), 2);
  EXPECT_EQ(s, CString(L"xy"));
  EXPECT_EQ(s.Delete(5), 2);
  EXPECT_EQ(s, CString(L"xy"));
  EXPECT_EQ(s.Delete(1, 0), 2);
  EXPECT_EQ(s.Delete(-3, 1), 1);  // a negative start counts from the beginning
  EXPECT_EQ(s, CString(L"y"));
  EXPECT_EQ(s.Insert(-2, L"<"), 2);
  EXPECT_EQ(s, CString(L"<y"));
}

TEST(CString, TrimRemovesWhiteSpaceOrTheGivenCharacters) {
  CString s(L" \t\r\n x y \r\n");
  EXPECT_EQ(s.Trim(), CString(L"x y"));
  s = L"  left";
  EXPECT_EQ(s.TrimRight(), CString(L"  left"));
  EXPECT_EQ(s.TrimLeft(), CString(L"left"));
  s = L"right  ";
  EXPECT_EQ(s.TrimRight(), CString(L"right"));
  s = L" \t ";
  EXPECT_EQ(s.Trim(), CString());
  s = L"\"quoted\"";
  EXPECT_EQ(s.Trim(L"\""), CString(L"quoted"));
  s = L"--a-b--";
  EXPECT_EQ(CString(s).TrimLeft(L"-"), CString(L"a-b--"));
  EXPECT_EQ(CString(s).TrimRight(L"-"), CString(L"--a-b"));
  EXPECT_EQ(CString(s).Trim(L"-ab"), CString());
}

TEST(CString, MakeLowerAndUpper) {
  CString s(L"AbC-12_Z");
  EXPECT_EQ(s.MakeLower(), CString(L"abc-12_z"));
  EXPECT_EQ(s.MakeUpper(), CString(L"ABC-12_Z"));
  const CScopedCLocale locale("C.UTF-8");
  if (!locale.IsActive()) GTEST_SKIP() << "no C.UTF-8 locale on this machine";
  // Beyond ASCII the C library's locale decides, as it does for towlower.
  s = L"\u00C4\u00D6\u00DC";
  EXPECT_EQ(s.MakeLower(), CString(L"\u00E4\u00F6\u00FC"));
}

TEST(CString, CompareOrdersByUtf16CodeUnits) {
  // U+10000 is D800 DC00 in UTF-16: after U+D7FF, before U+E000.
  EXPECT_LT(CString(L"\U0000D7FF").Compare(L"\U00010000"), 0);
  EXPECT_GT(CString(L"\U0000E000").Compare(L"\U00010000"), 0);
  EXPECT_GT(CString(L"\U0000FFFF").Compare(L"\U00010000"), 0);  // unlike UTF-32 order
  EXPECT_LT(CString(L"\U00010000").Compare(L"\U00010001"), 0);  // same lead unit
  EXPECT_LT(CString(L"\U00010000").Compare(L"\U00010400"), 0);  // next lead unit
  EXPECT_GT(CString(L"\U0010FFFF").Compare(L"\U00010000"), 0);
  EXPECT_LT(CString(L"ab").Compare(L"abc"), 0);
  EXPECT_EQ(CString(L"abc").Compare(L"abc"), 0);
  EXPECT_LT(CString(L"B").Compare(L"a"), 0);  // case counts
  EXPECT_GT(CString(L"a").Compare(nullptr), 0);
  EXPECT_EQ(CString().Compare(L""), 0);
  EXPECT_TRUE(CString(L"\U00010000") < CString(L"\U0000FFFF"));
  std::vector<CString> sorted{L"\U0000FFFF", L"\U00010000", L"\U0000E000", L"z"};
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, (std::vector<CString>{L"z", L"\U00010000", L"\U0000E000", L"\U0000FFFF"}));
}

TEST(CString, CompareNoCaseIgnoresAsciiCase) {
  EXPECT_EQ(CString(L"ABC").CompareNoCase(L"abc"), 0);
  EXPECT_LT(CString(L"abc").CompareNoCase(L"ABD"), 0);
  EXPECT_GT(CString(L"b").CompareNoCase(L"A"), 0);
  EXPECT_LT(CString(L"B").CompareNoCase(L"c"), 0);
  EXPECT_LT(CString(L"ab").CompareNoCase(L"AB\U00010000"), 0);
}

TEST(CString, EightBitTextIsUtf8WhereItFormsUtf8ElseLatin1) {
  EXPECT_EQ(CString("\xC3\xA4"), CString(L"\u00E4"));
  EXPECT_EQ(CString("\xE4"), CString(L"\u00E4"));
  // An ill-formed byte is its Latin-1 letter; the UTF-8 around it stays UTF-8.
  EXPECT_EQ(CString("a\xE4\xC3\xA4"), CString(L"a\u00E4\u00E4"));
  EXPECT_EQ(CString("caf\xC3\xA9 \xE9<"), CString(L"caf\u00E9 \u00E9<"));
  EXPECT_EQ(CString("\xF0\x9F\x98\x80"), CString(L"\U0001F600"));
  EXPECT_EQ(CString("\xC0\xAF"), CString(L"\u00C0\u00AF"));                      // overlong
  EXPECT_EQ(CString("\xED\xA0\x80"), CString(L"\u00ED\u00A0\u0080"));            // a surrogate
  EXPECT_EQ(CString("\xF4\x90\x80\x80"), CString(L"\u00F4\u0090\u0080\u0080"));  // beyond U+10FFFF
  EXPECT_EQ(CString("\xC3"), CString(L"\u00C3"));                                // cut short
  EXPECT_EQ(CString(static_cast<const char*>(nullptr)), CString());
  EXPECT_EQ(CString(std::string_view("a\0b", 3)).GetLength(), 3);
  EXPECT_EQ(CString::FromUtf8("\xE2\x82\xAC"), CString(L"\u20AC"));
  EXPECT_EQ(CString::FromUtf8("a\xFF"), CString(L"a\uFFFD"));
  EXPECT_EQ(CString::FromLatin1("\xC3\xA4"), CString(L"\u00C3\u00A4"));
}

TEST(CString, ToUtf8AndToLatin1) {
  EXPECT_EQ(CString(L"a\u00E4\u20AC\U0001F600").ToUtf8(), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(CString(std::wstring(1, static_cast<wchar_t>(0xD800))).ToUtf8(), "\xEF\xBF\xBD");
  EXPECT_EQ(CString(L"a\u00E4\u00FF\u0100\u20AC\U0001F600").ToLatin1(), "a\xE4\xFF???");
  for (const char* text : {"plain", "\xC3\xA4\xE2\x82\xAC"}) EXPECT_EQ(CString(text).ToUtf8(), text);
  EXPECT_EQ(CString::FromLatin1("\xE4\xFF").ToLatin1(), "\xE4\xFF");
}

TEST(CString, ConstructionAndAccess) {
  EXPECT_EQ(CString(L'x', 3), CString(L"xxx"));
  EXPECT_EQ(CString(L'x', -1), CString());
  EXPECT_EQ(CString(L"abcdef", 2), CString(L"ab"));
  EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), CString());
  CString s(L"abc");
  EXPECT_EQ(s.GetAt(1), L'b');
  EXPECT_EQ(s[2], L'c');
  s.SetAt(0, L'X');
  EXPECT_EQ(s, CString(L"Xbc"));
  EXPECT_THROW(s.GetAt(3), std::out_of_range);
  EXPECT_EQ(s + L"!" + CString(L"?") + L'.', CString(L"Xbc!?."));
  EXPECT_EQ(L">" + s, CString(L">Xbc"));
  s += L'1';
  s += L"2";
  s += CString(L"3");
  EXPECT_EQ(s, CString(L"Xbc123"));
  EXPECT_TRUE(s == L"Xbc123");
  EXPECT_FALSE(s.IsEmpty());
  s.Empty();
  EXPECT_TRUE(s.IsEmpty());
  EXPECT_EQ(s.GetLength(), 0);
  const std::unordered_set<CString> set{CString(L"a"), CString(L"a"), CString(L"b")};
  EXPECT_EQ(set.size(), 2u);
}

TEST(CString, FormatBasics) {
  EXPECT_EQ(FormatString(L"%s:%s", CString(L"A"), L"b"), CString(L"A:b"));
  EXPECT_EQ(FormatString(L"%03i|%-4s|%4.2f|%%", 7, L"x", 3.14159), CString(L"007|x   |3.14|%"));
  EXPECT_EQ(FormatString(L"%d", 0x1'0000'0005LL), CString(L"5"));
  EXPECT_EQ(FormatString(L"%d", 0x80000000u), CString(L"-2147483648"));
  EXPECT_EQ(FormatString(L"%I64u", ~0ULL), CString(L"18446744073709551615"));
  EXPECT_EQ(FormatString(L"%S", "\xC3\xA4"), CString(L"\u00E4"));
}
