#include "services/xml/XMLTokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace TestSuite;

namespace {

// Every token of `text` as "Type:text".
std::vector<std::string> tokens(const char* text) {
  static const char* const c_names[] = {"End",  "Text",  "Quoted", "Tag",    "Close",
                                        "Decl", "Short", "TagEnd", "Equals", "Clear"};
  CXMLTokenizer tokenizer(text);
  std::vector<std::string> result;
  for (;;) {
    const SXMLToken token = tokenizer.Next();
    if (token.eType == EXMLToken::End) return result;
    result.push_back(std::string(c_names[static_cast<int>(token.eType)]) + ":" +
                     std::string(text + token.uiStart, token.uiLength));
  }
}

using Tokens = std::vector<std::string>;

}  // namespace

TEST(XMLTokenizer, TagsAttributesAndEnds) {
  EXPECT_EQ(tokens("<a b = \"1\" c='2'/>"), (Tokens{"Tag:<", "Text:a", "Text:b", "Equals:=", "Quoted:\"1\"", "Text:c",
                                                    "Equals:=", "Quoted:'2'", "Short:/>"}));
  EXPECT_EQ(tokens("</a>\n<?xml v=1?>"), (Tokens{"Close:</", "Text:a", "TagEnd:>", "Decl:<?", "Text:xml", "Text:v",
                                                 "Equals:=", "Text:1?", "TagEnd:>"}));
}

TEST(XMLTokenizer, PlainTextEndsAtWhiteSpaceAndDelimiters) {
  EXPECT_EQ(tokens("a/b c=d>e/>f\tg<h"), (Tokens{"Text:a/b", "Text:c", "Equals:=", "Text:d", "TagEnd:>", "Text:e",
                                                 "Short:/>", "Text:f", "Text:g", "Tag:<", "Text:h"}));
  EXPECT_EQ(tokens("/x"), (Tokens{"Text:/x"}));
}

TEST(XMLTokenizer, QuoteWithoutPartnerIsAnOrdinaryCharacter) {
  EXPECT_EQ(tokens("'abc <d"), (Tokens{"Text:'abc", "Tag:<", "Text:d"}));
  EXPECT_EQ(tokens("\"x>y"), (Tokens{"Text:\"x", "TagEnd:>", "Text:y"}));
  EXPECT_EQ(tokens("'"), (Tokens{"Text:'"}));
  EXPECT_EQ(tokens("a\"b\""), (Tokens{"Text:a\"b\""}));  // a quote inside plain text
  EXPECT_EQ(tokens("\"a b>\"x"), (Tokens{"Quoted:\"a b>\"", "Text:x"}));
}

TEST(XMLTokenizer, ClearTagsComeFirstInTableOrder) {
  EXPECT_EQ(tokens("<!--x"), (Tokens{"Clear:<!--", "Text:x"}));
  EXPECT_EQ(tokens("<![cdata["), (Tokens{"Clear:<![cdata["}));
  EXPECT_EQ(tokens("<pre>"), (Tokens{"Clear:<pre>"}));
  EXPECT_EQ(tokens("<SCRIPT>"), (Tokens{"Clear:<SCRIPT>"}));
  EXPECT_EQ(tokens("<!doctype"), (Tokens{"Clear:<!doctype"}));
  EXPECT_EQ(tokens("<prex>"), (Tokens{"Tag:<", "Text:prex", "TagEnd:>"}));
  CXMLTokenizer tokenizer("<!-- <![CDATA[");
  EXPECT_EQ(tokenizer.MatchClear(0), 3);
  EXPECT_EQ(tokenizer.MatchClear(5), 0);
  EXPECT_EQ(tokenizer.MatchClear(1), -1);
}

TEST(XMLTokenizer, ALeadByteNeverTakesADelimiterAlong) {
  EXPECT_EQ(tokens("\xE4<a b"), (Tokens{"Text:\xE4", "Tag:<", "Text:a", "Text:b"}));
  EXPECT_EQ(tokens("\xC3\xA4<a"), (Tokens{"Text:\xC3\xA4", "Tag:<", "Text:a"}));
  CXMLTokenizer tokenizer("x \xE4<a <b");
  EXPECT_EQ(tokenizer.ScanToTag(), 3u);
  EXPECT_EQ(tokenizer.Position(), 3u);
}

TEST(XMLTokenizer, EndOfInputKeepsThePosition) {
  CXMLTokenizer tokenizer("a  ");
  tokenizer.Next();
  const SXMLToken end = tokenizer.Next();
  EXPECT_EQ(end.eType, EXMLToken::End);
  EXPECT_EQ(end.uiStart, 3u);
  EXPECT_EQ(tokenizer.Next().uiStart, 3u);
}
