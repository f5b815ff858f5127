// Malformed input of every kind must end in an error code or a tree, never
// in a crash; an error above 1 always comes with the empty node.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "TempDirectory.h"
#include "services/xml/XMLNode.h"

using namespace TestSuite;

namespace {

const char* const c_valid =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>\n"
    "<?xml-stylesheet type=\"text/xsl\" href=\"ZoTestSuiteReport.xsl\"?>\n"
    "<!DOCTYPE testsuite>\n"
    "<testsuite name=\"ZoTestSuite\" tests=\"2\" errors=\"0\" failures=\"1\" skip=\"0\">\n"
    "\t<!-- a comment -->\n"
    "\t<testcase id=\"1\" classname=\"CTest\" name=\"a &amp; b &#228;\">\n"
    "\t\t<time>0.5</time>\n"
    "\t\t<result type=\"DIFFERENT\" warning=\"true\">\n"
    "\t\t\t<dump type=\"error\">x &lt; y &#x41; \xC3\xA4 \xE4 done</dump>\n"
    "\t\t</result>\n"
    "\t\t<failure message=\"\" type='Zeitlimit \xFC"
    "berschritten'></failure>\n"
    "\t\t<![CDATA[ <raw> ]]><PRE> pre </PRE><Script> s </Script>\n"
    "\t\t<flag single unquoted=value/>\n"
    "\t</testcase>\n"
    "</testsuite>\n";

// Looks at everything in the tree, so that every stored text is read.
std::size_t walk(const XMLNode& node, int depth = 0) {
  std::size_t sum = node.getName() ? std::string(node.getName()).size() : 0;
  for (int i = 0; i < node.nText(); ++i) sum += std::string(node.getText(i)).size();
  for (int i = 0; i < node.nClear(); ++i) sum += std::string(node.getClear(i)).size();
  sum += static_cast<std::size_t>(node.nAttribute());
  for (int i = 0; i < node.getChildCount() && depth < 64; ++i) {
    const XMLNode child = node.getChildNode(i);
    EXPECT_EQ(child.getParentNode().getName(), node.getName());
    sum += walk(child, depth + 1);
  }
  return sum;
}

void check(const std::string& text, const char* firstTag) {
  XMLResults results;
  const XMLNode node = XMLNode::parseString(text.c_str(), firstTag, &results);
  if (results.error > eXMLErrorMissingEndTag) {
    ASSERT_TRUE(node.isEmpty()) << "error " << results.error << " for: " << text;
  } else {
    ASSERT_FALSE(node.isEmpty()) << text;
    walk(node);
  }
  const bool positioned =
      results.error != eXMLErrorNone && results.error != eXMLErrorFirstTagNotFound && results.error != eXMLErrorEmpty;
  if (positioned) {
    ASSERT_GE(results.nLine, 1) << text;
    ASSERT_GE(results.nColumn, 1) << text;
  } else {
    ASSERT_EQ(results.nLine, 0) << text;
    ASSERT_EQ(results.nColumn, 0) << text;
  }
}

void checkBoth(const std::string& text) {
  check(text, nullptr);
  check(text, "testcase");
}

}  // namespace

TEST(XMLParserRobustness, ValidDocumentParses) {
  XMLResults results;
  const XMLNode suite = XMLNode::parseString(c_valid, "testsuite", &results);
  ASSERT_EQ(results.error, eXMLErrorNone);
  EXPECT_STREQ(suite.getChildNode("testcase").getAttribute("name"), "a & b \xE4");
  EXPECT_GT(walk(suite), 100u);
}

TEST(XMLParserRobustness, EveryTruncationOfAValidDocument) {
  const std::string valid = c_valid;
  for (std::size_t length = 0; length <= valid.size(); ++length) checkBoth(valid.substr(0, length));
}

TEST(XMLParserRobustness, RandomMutationsOfAValidDocument) {
  const std::string valid = c_valid;
  const std::string alphabet = "<>/?!=\"'&#;x[]- \n\t\xC3\xE4\xF0\xFF\x80";
  std::mt19937 random(20240611u);
  for (int round = 0; round < 2500; ++round) {
    std::string text = valid;
    const int edits = 1 + static_cast<int>(random() % 6);
    for (int e = 0; e < edits && !text.empty(); ++e) {
      const std::size_t at = random() % text.size();
      const char ch = (random() % 2) ? alphabet[random() % alphabet.size()] : static_cast<char>(random() % 255 + 1);
      switch (random() % 3) {
        case 0: text[at] = ch; break;
        case 1: text.insert(at, 1, ch); break;
        default: text.erase(at, 1 + random() % 8); break;
      }
    }
    checkBoth(text);
  }
}

TEST(XMLParserRobustness, RandomBytes) {
  const std::string alphabet = "<>/?!=\"'&#;ab \n\xC3\xE4";
  std::mt19937 random(77u);
  for (int round = 0; round < 1500; ++round) {
    std::string text(random() % 120, ' ');
    const bool structured = round % 2 == 0;
    for (char& ch : text) {
      ch = structured ? alphabet[random() % alphabet.size()] : static_cast<char>(random() % 255 + 1);
    }
    checkBoth(text);
  }
}

TEST(XMLParserRobustness, MalformedFilesIncludingWideOnes) {
  TempDirectory dir;
  const CString path = dir / L"fuzz.xml";
  std::mt19937 random(5u);
  const std::string valid = c_valid;
  for (int round = 0; round < 150; ++round) {
    std::string bytes = valid.substr(0, random() % valid.size());
    if (round % 3 == 1) bytes = std::string("\xFF\xFE", 2) + bytes;  // claims to be UTF-16
    if (round % 3 == 2) {
      std::string wide;
      for (char ch : bytes) wide += std::string{ch, static_cast<char>(random() % 4 == 0 ? random() % 256 : 0)};
      bytes = wide;
    }
    TempDirectory::WriteBytes(path, bytes);
    XMLResults results;
    const XMLNode node = XMLNode::parseFile(path, round % 2 ? "testsuite" : nullptr, &results);
    if (results.error > eXMLErrorMissingEndTag) {
      ASSERT_TRUE(node.isEmpty()) << round;
    } else {
      walk(node);
    }
  }
}
