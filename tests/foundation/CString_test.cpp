#include "foundation/CString.h"

#include <gtest/gtest.h>

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

TEST(CString, CompareOrdersByUtf16CodeUnits) {
  // U+10000 is D800 DC00 in UTF-16: after U+D7FF, before U+E000.
  EXPECT_LT(CString(L"\U0000D7FF").Compare(L"\U00010000"), 0);
  EXPECT_GT(CString(L"\U0000E000").Compare(L"\U00010000"), 0);
  EXPECT_LT(CString(L"ab").Compare(L"abc"), 0);
  EXPECT_EQ(CString(L"abc").Compare(L"abc"), 0);
}

TEST(CString, FormatBasics) {
  EXPECT_EQ(FormatString(L"%s:%s", CString(L"A"), L"b"), CString(L"A:b"));
  EXPECT_EQ(FormatString(L"%03i|%-4s|%4.2f|%%", 7, L"x", 3.14159), CString(L"007|x   |3.14|%"));
  EXPECT_EQ(FormatString(L"%d", 0x1'0000'0005LL), CString(L"5"));
  EXPECT_EQ(FormatString(L"%d", 0x80000000u), CString(L"-2147483648"));
  EXPECT_EQ(FormatString(L"%I64u", ~0ULL), CString(L"18446744073709551615"));
  EXPECT_EQ(FormatString(L"%S", "\xC3\xA4"), CString(L"\u00E4"));
}
