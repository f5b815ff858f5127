#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "services/Utils.h"

using namespace TestSuite;

namespace {

// The element <v> of a small document; the text given goes between its tags.
XMLNode element(const std::string& content) { return XMLNode::parseString(("<v>" + content + "</v>").c_str(), "v"); }

XMLNode emptyElement() { return XMLNode::parseString("<v/>", "v"); }

bool readBool(const std::string& content, bool initial) {
  bool value = initial;
  Utils::GetBool(element(content), value);
  return value;
}

unsigned int readUInt32(const std::string& content, unsigned int initial = 77) {
  unsigned int value = initial;
  Utils::GetUInt32(element(content), value);
  return value;
}

std::uint64_t readUInt64(const std::string& content, std::uint64_t initial = 77) {
  std::uint64_t value = initial;
  Utils::GetUInt64(element(content), value);
  return value;
}

}  // namespace

TEST(UtilsXmlValue, TheTestDocumentsAreRead) {
  ASSERT_FALSE(element("x").isEmpty());
  ASSERT_STREQ(element("x").getText(0), "x");
}

TEST(UtilsXmlValue, GetBoolReadsExactlyTrueAndFalse) {
  EXPECT_TRUE(readBool("true", false));
  EXPECT_FALSE(readBool("false", true));
}

TEST(UtilsXmlValue, GetBoolWithUpperCaseOrADigitLeavesTheTarget) {
  EXPECT_FALSE(readBool("TRUE", false));
  EXPECT_TRUE(readBool("False", true));
  EXPECT_FALSE(readBool("1", false));
  EXPECT_TRUE(readBool("0", true));
  EXPECT_FALSE(readBool("truex", false));
}

TEST(UtilsXmlValue, GetBoolWithoutTextLeavesTheTarget) {
  bool value = true;
  Utils::GetBool(emptyElement(), value);
  EXPECT_TRUE(value);
  Utils::GetBool(XMLNode(), value);
  EXPECT_TRUE(value);
}

TEST(UtilsXmlValue, GetUInt32WithDigitsFollowedByLettersStoresTheDigits) {
  EXPECT_EQ(readUInt32("123abc"), 123u);
  EXPECT_EQ(readUInt32("42 7"), 42u);
}

TEST(UtilsXmlValue, GetUInt32WithLettersAloneStoresZero) { EXPECT_EQ(readUInt32("abc"), 0u); }

TEST(UtilsXmlValue, GetUInt32SkipsLeadingBlanksAndTakesAPlus) {
  // The reader trims blanks from texts; character references keep them.
  ASSERT_STREQ(element("&#32;&#9;15").getText(0), " \t15");
  EXPECT_EQ(readUInt32("&#32;&#9;15"), 15u);
  EXPECT_EQ(readUInt32("+8"), 8u);
}

TEST(UtilsXmlValue, GetUInt32NegatesALeadingMinusInUnsignedArithmetic) {
  EXPECT_EQ(readUInt32("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(readUInt32("-2"), 0xFFFFFFFEu);
  EXPECT_EQ(readUInt32("&#32;-3"), 0xFFFFFFFDu);
}

TEST(UtilsXmlValue, GetUInt32OutOfRangeStoresTheLargestValue) {
  // A time limit of 2^32 seconds must not become a limit of 0 seconds.
  EXPECT_EQ(readUInt32("4294967295"), 0xFFFFFFFFu);
  EXPECT_EQ(readUInt32("4294967296"), 0xFFFFFFFFu);
  EXPECT_EQ(readUInt32("4294967301"), 0xFFFFFFFFu);
  EXPECT_EQ(readUInt32("99999999999999999999"), 0xFFFFFFFFu);
  EXPECT_EQ(readUInt32("-4294967296"), 0xFFFFFFFFu);
}

TEST(UtilsXmlValue, GetUInt32WithoutTextLeavesTheTarget) {
  unsigned int value = 9;
  Utils::GetUInt32(emptyElement(), value);
  EXPECT_EQ(value, 9u);
}

TEST(UtilsXmlValue, GetUInt64ReadsTheWholeRange) {
  EXPECT_EQ(readUInt64("18446744073709551615"), UINT64_MAX);
  EXPECT_EQ(readUInt64("18446744073709551616"), UINT64_MAX);  // out of range
  EXPECT_EQ(readUInt64("-1"), UINT64_MAX);
  EXPECT_EQ(readUInt64("&#32;12x"), 12u);
  EXPECT_EQ(readUInt64("x"), 0u);
}

TEST(UtilsXmlValue, GetUInt64OptionalWithAnEmptyElementResetsWhileGetUInt64KeepsItsTarget) {
  std::optional<std::uint64_t> optional = 5;
  Utils::GetUInt64Optional(emptyElement(), optional);
  EXPECT_FALSE(optional.has_value());
  optional = 5;
  Utils::GetUInt64Optional(element(""), optional);
  EXPECT_FALSE(optional.has_value());

  std::uint64_t plain = 5;
  Utils::GetUInt64(emptyElement(), plain);
  EXPECT_EQ(plain, 5u);
  Utils::GetUInt64(element(""), plain);
  EXPECT_EQ(plain, 5u);
}

TEST(UtilsXmlValue, GetUInt64OptionalWithoutANodeResets) {
  std::optional<std::uint64_t> optional = 5;
  Utils::GetUInt64Optional(XMLNode(), optional);
  EXPECT_FALSE(optional.has_value());
}

TEST(UtilsXmlValue, GetUInt64OptionalEngagesWithTheParsedValue) {
  std::optional<std::uint64_t> optional;
  Utils::GetUInt64Optional(element("12345678901"), optional);
  ASSERT_TRUE(optional.has_value());
  EXPECT_EQ(*optional, 12345678901u);
  Utils::GetUInt64Optional(element("keine Zahl"), optional);
  ASSERT_TRUE(optional.has_value());
  EXPECT_EQ(*optional, 0u);
}

TEST(UtilsXmlValue, ParseDoubleReadsAPointAsTheDecimalSeparator) {
  EXPECT_EQ(Utils::ParseDouble("1.234568"), 1.234568);
  EXPECT_EQ(Utils::ParseDouble(" +2.5e3x"), 2500.0);
  EXPECT_EQ(Utils::ParseDouble("-0.25"), -0.25);
  EXPECT_EQ(Utils::ParseDouble("1,5"), 1.0);  // a comma ends the number
  EXPECT_EQ(Utils::ParseDouble("abc"), 0.0);
  EXPECT_EQ(Utils::ParseDouble(""), 0.0);
  EXPECT_EQ(Utils::ParseDouble(nullptr), 0.0);
}
