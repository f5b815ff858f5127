// The printf dialect of CString::Format, table by table: each row is the
// text the wide Windows C runtime prints for the same format and argument.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "foundation/CString.h"
#include "foundation/XbException.h"

namespace {

template <typename... Args>
void expectFormat(const wchar_t* expected, const wchar_t* format, const Args&... args) {
  SCOPED_TRACE(CString(format).ToUtf8());
  EXPECT_EQ(FormatString(format, args...).Str(), std::wstring(expected));
}

template <typename... Args>
void expectFormatThrows(const wchar_t* format, const Args&... args) {
  SCOPED_TRACE(CString(format).ToUtf8());
  EXPECT_THROW(FormatString(format, args...), XbException);
}

enum class EColour { eRed = 2 };

}  // namespace

TEST(CStringFormat, SignedDecimalWithFlagsWidthAndPrecision) {
  expectFormat(L"0", L"%d", 0);
  expectFormat(L"-42", L"%d", -42);
  expectFormat(L"42", L"%i", 42);
  expectFormat(L"   42", L"%5d", 42);
  expectFormat(L"42   |", L"%-5d|", 42);
  expectFormat(L"00042", L"%05d", 42);
  expectFormat(L"-0042", L"%05d", -42);
  expectFormat(L"+42", L"%+d", 42);
  expectFormat(L"-42", L"%+d", -42);
  expectFormat(L" 42", L"% d", 42);
  expectFormat(L"+42", L"%+ d", 42);     // '+' wins over ' '
  expectFormat(L"42   ", L"%-05d", 42);  // '-' wins over '0'
  expectFormat(L"+0042", L"%+05d", 42);
  expectFormat(L" 0007", L"% 05d", 7);
  expectFormat(L"007", L"%.3d", 7);
  expectFormat(L"+007", L"%+.3d", 7);
  expectFormat(L"    -007", L"%8.3d", -7);
  expectFormat(L"     007", L"%08.3d", 7);  // a precision switches '0' off
  expectFormat(L"42", L"%1d", 42);          // a width never cuts
}

TEST(CStringFormat, ZeroAtPrecisionZeroHasNoDigits) {
  expectFormat(L"[]", L"[%.0d]", 0);
  expectFormat(L"[]", L"[%.d]", 0);
  expectFormat(L"[   ]", L"[%3.0d]", 0);
  expectFormat(L"[+]", L"[%+.0d]", 0);
  expectFormat(L"[]", L"[%.0u]", 0u);
  expectFormat(L"[]", L"[%#.0x]", 0);
  expectFormat(L"[0]", L"[%#.0o]", 0);
  expectFormat(L"[]", L"[%.0hd]", 65536);  // zero after the 16-bit cut
  expectFormat(L"[5]", L"[%.0d]", 5);
}

TEST(CStringFormat, UnsignedOctalAndHexadecimal) {
  expectFormat(L"4294967295", L"%u", 4294967295u);
  expectFormat(L"10", L"%o", 8);
  expectFormat(L"010", L"%#o", 8);
  expectFormat(L"0", L"%#o", 0);
  expectFormat(L"  010", L"%#5o", 8);
  expectFormat(L"ff", L"%x", 255);
  expectFormat(L"FF", L"%X", 255);
  expectFormat(L"0xff", L"%#x", 255);
  expectFormat(L"0XFF", L"%#X", 255);
  expectFormat(L"0", L"%#x", 0);  // no prefix on zero
  expectFormat(L"000000ff", L"%08x", 255);
  expectFormat(L"0x0000ff", L"%#08x", 255);
  expectFormat(L"0ff", L"%.3x", 255);
  expectFormat(L"ff      |", L"%-8x|", 255);
  // The sign flags belong to signed conversions only.
  expectFormat(L"ff", L"%+x", 255);
  expectFormat(L"5", L"% u", 5u);
}

TEST(CStringFormat, LengthModifiersChooseTheIntegerSize) {
  expectFormat(L"4464", L"%hd", 70000);
  expectFormat(L"-32768", L"%hd", 32768);
  expectFormat(L"1", L"%hu", 65537);
  expectFormat(L"2345", L"%hx", 0x12345);
  expectFormat(L"-56", L"%hhd", 200);
  expectFormat(L"1", L"%hhu", 257);
  // long is 32 bits in this dialect.
  expectFormat(L"1", L"%ld", 0x1'0000'0001LL);
  expectFormat(L"4294967295", L"%lu", -1);
  expectFormat(L"ffffffff", L"%lx", -1LL);
  expectFormat(L"4294967297", L"%lld", 0x1'0000'0001LL);
  expectFormat(L"18446744073709551615", L"%llu", -1);
  expectFormat(L"ffffffffffffffff", L"%llx", -1LL);
  expectFormat(L"-9223372036854775808", L"%I64d", std::numeric_limits<std::int64_t>::min());
  expectFormat(L"9223372036854775807", L"%I64i", std::numeric_limits<std::int64_t>::max());
  expectFormat(L"18446744073709551615", L"%I64u", ~0ULL);
  expectFormat(L"FFFFFFFFFFFFFFFF", L"%I64X", ~0ULL);
  expectFormat(L"1777777777777777777777", L"%I64o", -1LL);
  expectFormat(L"1", L"%I32d", 0x1'0000'0001LL);
  expectFormat(L"4294967295", L"%I32u", -1);
  expectFormat(L"ffffffff", L"%I32x", -1LL);
  // I alone is the size of a pointer: 64 bits.
  expectFormat(L"4294967297", L"%Id", 0x1'0000'0001LL);
  expectFormat(L"18446744073709551615", L"%Iu", -1);
  expectFormat(L"100000000", L"%Ix", 0x1'0000'0000ULL);
  expectFormat(L"  0000000000000123", L"%18.16I64x", 0x123);
}

TEST(CStringFormat, ArgumentIsConvertedToTheTypeTheSpecifierNames) {
  expectFormat(L"5", L"%d", 0x1'0000'0005LL);            // low 32 bits
  expectFormat(L"-2147483648", L"%d", 0x1'8000'0000LL);  // low 32 bits as signed
  expectFormat(L"-2147483648", L"%d", 0x80000000u);
  expectFormat(L"-1", L"%d", 0xFFFFFFFFu);
  expectFormat(L"-1", L"%d", std::int64_t{-1});
  expectFormat(L"4294967295", L"%u", -1);
  expectFormat(L"4294967254", L"%u", -42);
  expectFormat(L"5", L"%u", 0x1'0000'0005ULL);
  expectFormat(L"ffffffff", L"%x", -1);
  expectFormat(L"18446744073709551615", L"%I64u", -1);  // sign-extended first
  expectFormat(L"2147483648", L"%I64d", 0x80000000u);
  expectFormat(L"1", L"%d", true);
  expectFormat(L"65", L"%d", 'A');
  expectFormat(L"2", L"%d", EColour::eRed);
  expectFormat(L"7", L"%d", static_cast<unsigned short>(7));
}

TEST(CStringFormat, Characters) {
  expectFormat(L"A", L"%c", L'A');
  expectFormat(L"A", L"%c", 'A');
  expectFormat(L"\u00E4", L"%c", L'\u00E4');
  expectFormat(L"\U0001F600", L"%c", static_cast<wchar_t>(0x1F600));
  expectFormat(L"    A|", L"%5c|", L'A');
  expectFormat(L"A  |", L"%-3c|", L'A');
  expectFormat(L"x", L"%lc", L'x');
  expectFormat(L"y", L"%wc", L'y');
  // %C and %hc take a narrow character: one byte, widened as ISO-8859-1.
  expectFormat(L"A", L"%C", 'A');
  expectFormat(L"\u00E4", L"%C", static_cast<char>(0xE4));
  expectFormat(L"\u00E4", L"%hc", static_cast<char>(0xE4));
  expectFormat(L"B", L"%hc", 0x142);  // only the low byte
  expectFormat(L"z", L"%lC", L'z');
}

TEST(CStringFormat, WideAndNarrowTexts) {
  const CString text(L"Text");
  expectFormat(L"Text", L"%s", text);
  expectFormat(L"abc", L"%s", L"abc");
  expectFormat(L"abc", L"%s", std::wstring(L"abc"));
  expectFormat(L"abc", L"%s", std::wstring_view(L"abc"));
  expectFormat(L"abc", L"%ls", L"abc");
  expectFormat(L"abc", L"%ws", L"abc");
  expectFormat(L"abc", L"%lS", L"abc");
  expectFormat(L"abc", L"%S", "abc");
  expectFormat(L"abc", L"%hs", "abc");
  expectFormat(L"abc", L"%hS", "abc");
  expectFormat(L"abc", L"%S", std::string("abc"));
  expectFormat(L"\u00E4\u20AC", L"%S", "\xC3\xA4\xE2\x82\xAC");  // UTF-8
  expectFormat(L"\uFFFD", L"%S", "\xE4");                        // not UTF-8: the replacement character
  expectFormat(L"      Text", L"%10s", text);
  expectFormat(L"Text      |", L"%-10s|", text);
  expectFormat(L"Te", L"%.2s", text);
  expectFormat(L"   Te", L"%5.2s", text);
  expectFormat(L"Text", L"%.9s", text);
  expectFormat(L"Tex", L"%.*s", 3, text);
  expectFormat(L"a", L"%+s", L"a");
  expectFormat(L"", L"%s", L"");
  expectFormat(L"a\u00E4\U0001F600", L"%s", L"a\u00E4\U0001F600");
  expectFormat(L"(null)", L"%s", nullptr);
  expectFormat(L"(null)", L"%s", static_cast<const wchar_t*>(nullptr));
  expectFormat(L"(null)", L"%S", static_cast<const char*>(nullptr));
}

TEST(CStringFormat, FloatingPoint) {
  expectFormat(L"3.141590", L"%f", 3.14159);
  expectFormat(L"3.14", L"%.2f", 3.14159);
  expectFormat(L"   3.142", L"%8.3f", 3.14159);
  expectFormat(L"3.14    |", L"%-8.2f|", 3.14159);
  expectFormat(L"+3.14   |", L"%-+8.2f|", 3.14159);
  expectFormat(L"-0003.14", L"%08.2f", -3.14159);
  expectFormat(L"+1.000000", L"%+f", 1.0);
  expectFormat(L" 1.000000", L"% f", 1.0);
  expectFormat(L"2", L"%.0f", 2.5);  // ties go to the even digit
  expectFormat(L"4", L"%.0f", 3.5);
  expectFormat(L"2.67", L"%.2f", 2.675);  // 2.675 is 2.67499999... in binary
  expectFormat(L"3.", L"%#.0f", 3.0);
  expectFormat(L"2", L"%.f", 2.4);
  expectFormat(L"1.500000", L"%F", 1.5);
  expectFormat(L"1.500000", L"%lf", 1.5);
  expectFormat(L"1.500000", L"%Lf", 1.5);
  expectFormat(L"1.500000", L"%f", 1.5f);
  expectFormat(L"100000000000000000000.00", L"%.2f", 1e20);
  expectFormat(L"inf", L"%f", std::numeric_limits<double>::infinity());
  expectFormat(L"-inf", L"%f", -std::numeric_limits<double>::infinity());
  expectFormat(L"INF", L"%F", std::numeric_limits<double>::infinity());
  expectFormat(L"nan", L"%f", std::numeric_limits<double>::quiet_NaN());
  expectFormat(L"1.234568e+04", L"%e", 12345.678);
  expectFormat(L"1.234568E+04", L"%E", 12345.678);
  expectFormat(L"1.23e-04", L"%.2e", 0.000123);
  expectFormat(L"0.000000e+00", L"%e", 0.0);
  expectFormat(L"  1.23e+04", L"%10.2e", 12345.678);
  expectFormat(L"1.000e+01", L"%.3e", 9.9996);
  expectFormat(L"1.000000e+100", L"%e", 1e100);
  expectFormat(L"0.0001", L"%g", 0.0001);
  expectFormat(L"1e-05", L"%g", 0.00001);
  expectFormat(L"1.23457e+08", L"%g", 123456789.0);
  expectFormat(L"100000", L"%g", 100000.0);
  expectFormat(L"1e+06", L"%g", 1e6);
  expectFormat(L"1E-10", L"%G", 1e-10);
  expectFormat(L"1.00000", L"%#g", 1.0);
  expectFormat(L"3.14", L"%.3g", 3.14159);
  expectFormat(L"     3.142|", L"%10.4g|", 3.14159265);
  expectFormat(L"0", L"%g", 0.0);
  expectFormat(L"0.1", L"%.10g", 0.1);
}

TEST(CStringFormat, PointersAreSixteenUpperCaseHexDigits) {
  const void* p = reinterpret_cast<const void*>(std::uintptr_t{0xABC123});
  expectFormat(L"0000000000ABC123", L"%p", p);
  expectFormat(L"0000000000000000", L"%p", nullptr);
  expectFormat(L"    0000000000ABC123", L"%20p", p);
  expectFormat(L"0000000000ABC123    |", L"%-20p|", p);
  expectFormat(L"00000000000000FF", L"%p", 255);  // an integer as an address
}

TEST(CStringFormat, StarTakesWidthAndPrecisionFromTheArguments) {
  expectFormat(L"   42", L"%*d", 5, 42);
  expectFormat(L"42   |", L"%-*d|", 5, 42);
  expectFormat(L"42   |", L"%*d|", -5, 42);  // a negative width left-justifies
  expectFormat(L"007", L"%.*d", 3, 7);
  expectFormat(L"7", L"%.*d", -1, 7);  // a negative precision is none
  expectFormat(L"   007", L"%*.*d", 6, 3, 7);
  expectFormat(L"  3.14", L"%*.*f", 6, 2, 3.14159);
  expectFormat(L"     x", L"%*s", 6u, L"x");
}

TEST(CStringFormat, PercentAndPlainText) {
  expectFormat(L"%", L"%%");
  expectFormat(L"100%", L"%d%%", 100);
  expectFormat(L"%d", L"%%d");
  expectFormat(L"no specifiers", L"no specifiers");
  expectFormat(L"", L"");
  expectFormat(L"\u00E4\t\n", L"\u00E4\t\n");
  expectFormat(L"1", L"%d", 1, 2, L"surplus");  // surplus arguments are not read
}

TEST(CStringFormat, KindMismatchesThrow) {
  expectFormatThrows(L"%d", L"text");
  expectFormatThrows(L"%d", CString(L"text"));
  expectFormatThrows(L"%u", "narrow");
  expectFormatThrows(L"%x", 1.5);
  expectFormatThrows(L"%d", 1.5);
  expectFormatThrows(L"%s", 42);
  expectFormatThrows(L"%S", 42);
  expectFormatThrows(L"%s", 1.5);
  expectFormatThrows(L"%s", "narrow");  // %s is wide
  expectFormatThrows(L"%S", L"wide");   // %S is narrow
  expectFormatThrows(L"%hs", L"wide");
  expectFormatThrows(L"%ls", "narrow");
  expectFormatThrows(L"%f", 1);
  expectFormatThrows(L"%e", L"text");
  expectFormatThrows(L"%c", L"text");
  expectFormatThrows(L"%c", 1.5);
  expectFormatThrows(L"%p", 1.5);
  expectFormatThrows(L"%p", L"text");
  expectFormatThrows(L"%*d", L"x", 5);
  expectFormatThrows(L"%.*f", 2.0, 1.0);
}

TEST(CStringFormat, MissingArgumentsAndBrokenSpecifiersThrow) {
  expectFormatThrows(L"%d");
  expectFormatThrows(L"%d %d", 1);
  expectFormatThrows(L"%*d", 5);
  expectFormatThrows(L"%n", 1);
  expectFormatThrows(L"abc%");
  expectFormatThrows(L"%-");
  expectFormatThrows(L"%5");
  expectFormatThrows(L"%.3");
  expectFormatThrows(L"%I64");
  expectFormatThrows(L"%ll");
  expectFormatThrows(L"%k", 1);
  expectFormatThrows(L"%5%", 1);
}

TEST(CStringFormat, AFailedFormatLeavesTheTextAsItWas) {
  CString s(L"keep");
  EXPECT_THROW(s.Format(L"%d", L"x"), XbException);
  EXPECT_EQ(s, CString(L"keep"));
  EXPECT_THROW(s.AppendFormat(L"-%d-%d", 1), XbException);
  EXPECT_EQ(s, CString(L"keep"));
  s.AppendFormat(L"-%d", 1);
  EXPECT_EQ(s, CString(L"keep-1"));
  s.Format(L"%s", L"new");
  EXPECT_EQ(s, CString(L"new"));
}

TEST(CStringFormat, FormatVTakesPackedArguments) {
  const CString text(L"x");
  const SFormatArg args[] = {SFormatArg::Make(7), SFormatArg::Make(text)};
  CString s;
  s.FormatV(L"%03d%s", FormatArgs(args));
  EXPECT_EQ(s, CString(L"007x"));
  EXPECT_THROW(s.FormatV(nullptr, FormatArgs(args)), XbException);
}
