#include "services/xml/XMLCharacters.h"

#include <gtest/gtest.h>

using namespace TestSuite;

TEST(XMLCharacters, LeadByteTable) {
  EXPECT_EQ(c_XMLCharLength[0x00], 0);
  EXPECT_EQ(c_XMLCharLength[0x41], 1);
  EXPECT_EQ(c_XMLCharLength[0x80], 1);
  EXPECT_EQ(c_XMLCharLength[0xC1], 1);
  EXPECT_EQ(c_XMLCharLength[0xC2], 2);
  EXPECT_EQ(c_XMLCharLength[0xDF], 2);
  EXPECT_EQ(c_XMLCharLength[0xE0], 3);
  EXPECT_EQ(c_XMLCharLength[0xEF], 3);
  EXPECT_EQ(c_XMLCharLength[0xF0], 4);
  EXPECT_EQ(c_XMLCharLength[0xF4], 4);
  EXPECT_EQ(c_XMLCharLength[0xF5], 1);
  EXPECT_EQ(c_XMLCharLength[0xFF], 1);
}

TEST(XMLCharacters, CharacterNeverReachesBeyondTheTerminator) {
  EXPECT_EQ(XMLCharLength("\xE4"), 1u);
  EXPECT_EQ(XMLCharLength("\xF0\x9F"), 2u);
  EXPECT_EQ(XMLCharLength("\xF0\x9F\x98\x80"), 4u);
  EXPECT_EQ(XMLCharLength("\xE4<a"), 1u);
  EXPECT_EQ(XMLCharLength(""), 0u);
}

TEST(XMLCharacters, ALeadByteTakesAlongOnlyContinuationBytes) {
  EXPECT_EQ(XMLCharLength("\xC3\xA9<"), 2u);  // UTF-8 "é"
  EXPECT_EQ(XMLCharLength("\xE9<"), 1u);      // Latin-1 "é" before a delimiter
  EXPECT_EQ(XMLCharLength("\xE9\""), 1u);
  EXPECT_EQ(XMLCharLength("\xDF>"), 1u);      // Latin-1 "ß"
  EXPECT_EQ(XMLCharLength("\xE2\x82<"), 2u);  // a cut sequence ends at the delimiter
  EXPECT_EQ(XMLCharLength("\xF0\x9F\x98"
                          "A"),
            3u);
}

TEST(XMLCharacters, NamesCompareWithoutCase) {
  EXPECT_TRUE(XMLNamesEqual("TestCase", "testcase"));
  EXPECT_FALSE(XMLNamesEqual("testcase", "testcases"));
  EXPECT_FALSE(XMLNamesEqual("testcases", "testcase"));
  EXPECT_FALSE(XMLNamesEqual(nullptr, "a"));
  EXPECT_FALSE(XMLNamesEqual("a", nullptr));
  EXPECT_TRUE(XMLNamesEqual("", ""));
  EXPECT_FALSE(XMLNamesEqual("\xC4", "\xE4"));  // only ASCII letters fold
  EXPECT_TRUE(XMLPrefixEqual("<PRE>", "<pre>x", 5));
  EXPECT_FALSE(XMLPrefixEqual("<PRE>", "<pr", 5));
}

TEST(XMLCharacters, PositionCountsLinesAndCharacters) {
  int line = 0;
  int column = 0;
  XMLComputePosition("ab\ncd", 0, &line, &column);
  EXPECT_EQ(line, 1);
  EXPECT_EQ(column, 1);
  XMLComputePosition("ab\ncd", 4, &line, &column);
  EXPECT_EQ(line, 2);
  EXPECT_EQ(column, 2);
  XMLComputePosition(
      "\xC3\xA4\r\n\xE2\x82\xAC"
      "x",
      7, &line, &column);
  EXPECT_EQ(line, 2);
  EXPECT_EQ(column, 2);                          // the carriage return counts as a column, the euro sign as one
  XMLComputePosition("ab", 99, &line, &column);  // stops at the end of the text
  EXPECT_EQ(column, 3);
}

TEST(XMLCharacters, OneByteEncodingsAreThoseOfTheIso8859AndLatinFamilies) {
  EXPECT_TRUE(XMLDeclaresSingleByteEncoding("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>"));
  EXPECT_TRUE(XMLDeclaresSingleByteEncoding("\n <?XML version='1.0' encoding = 'latin1' ?><a/>"));
  EXPECT_TRUE(XMLDeclaresSingleByteEncoding("<?xml encoding=\"windows-1252\"?>"));
  EXPECT_FALSE(XMLDeclaresSingleByteEncoding("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>"));
  EXPECT_FALSE(XMLDeclaresSingleByteEncoding("<?xml version=\"1.0\"?><a encoding=\"ISO-8859-1\"/>"));
  EXPECT_FALSE(XMLDeclaresSingleByteEncoding("<a encoding=\"ISO-8859-1\"/>"));
  EXPECT_FALSE(XMLDeclaresSingleByteEncoding("<?xml encoding=\"ISO-8859-1\""));  // never closed
  EXPECT_FALSE(XMLDeclaresSingleByteEncoding(""));
}
