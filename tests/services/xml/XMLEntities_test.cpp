#include "services/xml/XMLEntities.h"

#include <gtest/gtest.h>

#include <string>

#include "services/xml/XMLNode.h"

using namespace TestSuite;

namespace {

// The decoded text, or "error@" and the offset of the bad "&".
std::string decode(const std::string& source) {
  std::string target(source.size(), '\0');
  std::size_t result = 0;
  if (!XMLDecodeEntities(source.data(), source.size(), target.data(), &result)) {
    return "error@" + std::to_string(result);
  }
  return target.substr(0, result);
}

}  // namespace

TEST(XMLEntities, NamedEntitiesInAnyCase) {
  EXPECT_EQ(decode("a&amp;b&lt;c&gt;d&quot;e&apos;f"), "a&b<c>d\"e'f");
  EXPECT_EQ(decode("&AMP;&Lt;&gT;&QUOT;&aPoS;"), "&<>\"'");
}

TEST(XMLEntities, Decimal65And321GiveTheSameByte) {
  EXPECT_EQ(decode("&#65;"), "A");
  EXPECT_EQ(decode("&#321;"), "A");  // 321 = 256 + 65: only the low eight bits count
  const XMLNode node = XMLNode::parseString("<a v='&#321;'>&#65;&#321;</a>");
  EXPECT_STREQ(node.getText(0), "AA");
  EXPECT_STREQ(node.getAttribute("v"), "A");
}

TEST(XMLEntities, HexadecimalWithEitherX) {
  EXPECT_EQ(decode("&#x41;&#X61;&#x3c;&#x141;"), "Aa<A");
  EXPECT_EQ(decode("&#xfF;"), "\xFF");
}

TEST(XMLEntities, NumericValueIsStoredAsOneByteNotAsUtf8) {
  EXPECT_EQ(decode("&#228;"), "\xE4");
  EXPECT_EQ(decode("&#x20AC;"), "\xAC");
}

TEST(XMLEntities, UnknownOrMalformedEntitiesAreErrors) {
  EXPECT_EQ(decode("ab&bogus;"), "error@2");
  EXPECT_EQ(decode("&amp"), "error@0");  // no ";"
  EXPECT_EQ(decode("x&#65"), "error@1");
  EXPECT_EQ(decode("&#;"), "error@0");
  EXPECT_EQ(decode("&#x;"), "error@0");
  EXPECT_EQ(decode("&#6a;"), "error@0");
  EXPECT_EQ(decode("&#xg;"), "error@0");
  EXPECT_EQ(decode("&"), "error@0");
  EXPECT_EQ(decode("&amp;&nbsp;"), "error@5");
}

TEST(XMLEntities, UnknownNameGivesUnknownCharacterEntityInTextAndAttribute) {
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseString("<a>&copy;</a>", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorUnknownCharacterEntity);
  EXPECT_TRUE(XMLNode::parseString("<a v='&copy;'/>", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorUnknownCharacterEntity);
}

TEST(XMLEntities, MultiByteCharactersAreCopiedThrough) {
  EXPECT_EQ(decode("\xC3\xA4&amp;\xE2\x82\xAC"), "\xC3\xA4&\xE2\x82\xAC");
  EXPECT_EQ(decode("plain text"), "plain text");
  EXPECT_EQ(decode(""), "");
}

TEST(XMLEntities, ALatin1LetterBeforeAnAmpersandLeavesTheEntity) {
  EXPECT_EQ(decode("caf\xE9&amp;\xE4&lt;"), "caf\xE9&\xE4<");
}
