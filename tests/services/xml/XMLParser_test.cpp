// The parser through XMLNode::parseString: tree shape, result rules, and
// every error with its line and column.
#include "services/xml/XMLParser.h"

#include <gtest/gtest.h>

#include <string>

#include "services/xml/XMLNode.h"

using namespace TestSuite;

namespace {

std::string str(const char* text) { return text ? std::string(text) : std::string("<null>"); }

struct SOutcome {
  XMLNode node;
  XMLResults results;
};

SOutcome parse(const char* text, const char* firstTag = nullptr) {
  SOutcome outcome;
  outcome.node = XMLNode::parseString(text, firstTag, &outcome.results);
  return outcome;
}

void expectError(const char* text, XMLError error, int line, int column, const char* firstTag = nullptr) {
  const SOutcome outcome = parse(text, firstTag);
  EXPECT_EQ(outcome.results.error, error) << text;
  EXPECT_EQ(outcome.results.nLine, line) << text;
  EXPECT_EQ(outcome.results.nColumn, column) << text;
  if (error > eXMLErrorMissingEndTag) { EXPECT_TRUE(outcome.node.isEmpty()) << text; }
}

}  // namespace

TEST(XMLParser, FirstTagIsFoundThroughADeclaration) {
  const SOutcome outcome = parse("<?xml version=\"1.0\"?>\n<Config><a>1</a></Config>", "config");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  EXPECT_EQ(str(outcome.node.getName()), "Config");
  EXPECT_EQ(str(outcome.node.getChildNode("a").getText(0)), "1");
}

TEST(XMLParser, FirstTagIsFoundThroughNestedDeclarations) {
  const char* text =
      "<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>\n"
      "<?xml-stylesheet type=\"text/xsl\" href=\"ZoTestSuiteReport.xsl\"?>\n"
      "<testsuite name=\"ZoTestSuite\"><RunInfo/></testsuite>\n";
  const SOutcome outcome = parse(text, "testsuite");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  EXPECT_EQ(str(outcome.node.getAttribute("name")), "ZoTestSuite");
  EXPECT_EQ(outcome.node.getChildCount("RunInfo"), 1);
}

TEST(XMLParser, DeclarationsStayOpenAndHoldWhatFollows) {
  const SOutcome outcome = parse("<?xml version=\"1.0\" encoding='x'?><!-- c --><a/><b/>");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  const XMLNode& declaration = outcome.node;  // the only child of the root took its place
  EXPECT_TRUE(declaration.isDeclaration());
  EXPECT_EQ(str(declaration.getName()), "xml");
  EXPECT_EQ(declaration.nAttribute(), 2);  // the trailing "?" is no attribute
  EXPECT_EQ(str(declaration.getAttribute("encoding")), "x");
  EXPECT_EQ(declaration.getChildCount(), 2);
  EXPECT_EQ(declaration.nClear(), 1);
  EXPECT_EQ(str(declaration.getChildNode(1).getName()), "b");
}

TEST(XMLParser, DeclarationDropsTrailingQuestionMarks) {
  EXPECT_EQ(str(parse("<?xml v=1.0?>").node.getAttribute("v")), "1.0");
  EXPECT_EQ(str(parse("<?pi?>").node.getName()), "pi");
  const SOutcome flag = parse("<?pi flag?>");
  EXPECT_EQ(flag.node.nAttribute(), 1);
  EXPECT_EQ(flag.node.getAttribute("flag"), nullptr);
  EXPECT_EQ(str(parse("<a v=1.0?/>").node.getAttribute("v")), "1.0?");  // elements keep it
}

TEST(XMLParser, FirstTagMissingIsFirstTagNotFoundWithoutPosition) {
  expectError("<?xml version=\"1.0\"?>\n<a><b/></a>", eXMLErrorFirstTagNotFound, 0, 0, "b");
  expectError("<a>\n<b>text</a>", eXMLErrorFirstTagNotFound, 0, 0, "c");  // error 1 becomes 13
}

TEST(XMLParser, RootNameEqualToFirstTagIsTheResult) {
  const SOutcome outcome = parse("<A><a/></A>", "a");
  EXPECT_EQ(str(outcome.node.getName()), "A");
}

TEST(XMLParser, RootWithOneChildGivesWayToIt) {
  const SOutcome outcome = parse("  <a>x</a>\n");
  EXPECT_EQ(str(outcome.node.getName()), "a");
  EXPECT_TRUE(outcome.node.getParentNode().isEmpty());
}

TEST(XMLParser, RootWithMoreThanOneChildOrAnythingElseStays) {
  const SOutcome two = parse("<a/><b/>");
  EXPECT_EQ(two.node.getName(), nullptr);
  EXPECT_EQ(two.node.getChildCount(), 2);
  const SOutcome comment = parse("<!-- note --><a/>");
  EXPECT_EQ(comment.node.getName(), nullptr);
  EXPECT_EQ(str(comment.node.getClear(0)), " note ");
  const SOutcome text = parse("lead <a/>");
  EXPECT_EQ(text.node.getName(), nullptr);
  EXPECT_EQ(str(text.node.getText(0)), "lead");
  EXPECT_EQ(str(parse("<a/><b/>", "B").node.getName()), "b");
}

TEST(XMLParser, TextCommentTextGivesTwoTextsAndOneClear) {
  const SOutcome outcome = parse("<a> first part <!-- a comment --> second\tpart \r\n</a>");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  EXPECT_EQ(outcome.node.nText(), 2);
  EXPECT_EQ(str(outcome.node.getText(0)), "first part");
  EXPECT_EQ(str(outcome.node.getText(1)), "second\tpart");
  EXPECT_EQ(outcome.node.nClear(), 1);
  EXPECT_EQ(str(outcome.node.getClear(0)), " a comment ");
}

TEST(XMLParser, WhiteSpaceOnlyElementHasNoText) {
  const SOutcome outcome = parse("<a> \t\r\n <b>\n</b> </a>");
  EXPECT_EQ(outcome.node.nText(), 0);
  EXPECT_EQ(outcome.node.getText(0), nullptr);
  EXPECT_EQ(outcome.node.getChildNode("b").getText(0), nullptr);
}

TEST(XMLParser, TextsAroundChildrenAreSeparateRuns) {
  const SOutcome outcome = parse("<a>one<b/>two \"quoted > text\" = x<c/>three</a>");
  EXPECT_EQ(outcome.node.nText(), 3);
  EXPECT_EQ(str(outcome.node.getText(1)), "two \"quoted > text\" = x");
  EXPECT_EQ(str(outcome.node.getText(2)), "three");
}

TEST(XMLParser, ClearTagsAreOpaqueAndKeptVerbatim) {
  const SOutcome outcome = parse(
      "<a><![CDATA[<x> &bogus; ]]><PRE> <b>&amp;</b> </PRE><Script>if (a < b) {}</Script>"
      "<!-- &lt; --><!DOCTYPE a SYSTEM \"a.dtd\">tail</a>");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  const XMLNode& a = outcome.node;
  EXPECT_EQ(a.getChildCount(), 0);
  EXPECT_EQ(a.nText(), 1);
  EXPECT_EQ(str(a.getText(0)), "tail");  // CDATA is not text
  ASSERT_EQ(a.nClear(), 5);
  EXPECT_EQ(str(a.getClear(0)), "<x> &bogus; ");
  EXPECT_EQ(str(a.getClear(1)), " <b>&amp;</b> ");
  EXPECT_EQ(str(a.getClear(2)), "if (a < b) {}");
  EXPECT_EQ(str(a.getClear(3)), " &lt; ");
  EXPECT_EQ(str(a.getClear(4)), " a SYSTEM \"a.dtd\"");
}

TEST(XMLParser, ClearOpeningIgnoresCaseClosingDoesNot) {
  const SOutcome outcome = parse("<a><![cdata[x]]><pre>y</PRE><sCRIPT>z</Script></a>");
  ASSERT_EQ(outcome.results.error, eXMLErrorNone);
  EXPECT_EQ(outcome.node.nClear(), 3);
  EXPECT_EQ(str(outcome.node.getClear(1)), "y");
  // The closing text must match exactly: "</pre>" does not end "<PRE>".
  expectError("<a>\n<PRE>y</pre></a>", eXMLErrorUnmatchedEndClearTag, 2, 1);
}

TEST(XMLParser, CloseTagMatchesWithoutRegardToCase) {
  const SOutcome outcome = parse("<Alpha><beta></BETA></alpha >");
  EXPECT_EQ(outcome.results.error, eXMLErrorNone);
  EXPECT_EQ(str(outcome.node.getChildNode(0).getName()), "beta");
}

TEST(XMLParser, CloseTagFitsOverTheElementNameUpToASlash) {
  // The element's name is compared over its own length; the close tag's name
  // may go on behind a "/".
  const SOutcome outcome = parse("<a><b></b/x></a>");
  EXPECT_EQ(outcome.results.error, eXMLErrorNone);
  // A longer close name does not fit: "</bc>" passes "b" and closes "bc".
  const SOutcome longer = parse("<bc><b></bc>");
  EXPECT_EQ(longer.results.error, eXMLErrorMissingEndTag);
  EXPECT_EQ(str(longer.node.getChildNode(0).getName()), "b");
}

TEST(XMLParser, UnclosedInnerElementIsEndedByItsParentsCloseTag) {
  const SOutcome outcome = parse("<a>\n<b>text</a>");
  EXPECT_EQ(outcome.results.error, eXMLErrorMissingEndTag);
  EXPECT_EQ(outcome.results.nLine, 2);
  EXPECT_EQ(outcome.results.nColumn, 12);  // behind "</a>"
  ASSERT_FALSE(outcome.node.isEmpty());    // the tree is kept and complete
  EXPECT_EQ(str(outcome.node.getName()), "a");
  EXPECT_EQ(str(outcome.node.getChildNode("b").getText(0)), "text");
}

TEST(XMLParser, UnclosedElementsStillAllowLaterSiblings) {
  const SOutcome outcome = parse("<r><a><b></a><c>1</c></r>", "r");
  EXPECT_EQ(outcome.results.error, eXMLErrorMissingEndTag);
  EXPECT_EQ(outcome.results.nColumn, 14);  // behind "</a>", the close tag that did not fit
  EXPECT_EQ(outcome.node.getChildCount(), 2);
  EXPECT_EQ(str(outcome.node.getChildNode("c").getText(0)), "1");
}

TEST(XMLParser, MissingEndTagAtEndOfInputIsBehindTheLastCompleteTag) {
  expectError("<a>\n <b/>\n text", eXMLErrorMissingEndTag, 2, 6);
  expectError("<a x='1'", eXMLErrorMissingEndTag, 1, 1);
  const SOutcome outcome = parse("<a>\n <b/>\n text");
  EXPECT_EQ(str(outcome.node.getText(0)), "text");
  EXPECT_EQ(outcome.node.getChildCount(), 1);
}

TEST(XMLParser, OpenDeclarationAtEndOfInputIsNoError) {
  EXPECT_EQ(parse("<?xml version='1.0'?>").results.error, eXMLErrorNone);
}

TEST(XMLParser, MissingTagNameForATagWithoutName) {
  expectError("<a>\n  <>\n</a>", eXMLErrorMissingTagName, 2, 4);
  expectError("<a><", eXMLErrorMissingTagName, 1, 5);
  expectError("<a><?=x?>", eXMLErrorMissingTagName, 1, 6);
}

TEST(XMLParser, MissingEndTagNameForACloseTagWithoutNameOrEnd) {
  expectError("<a></>", eXMLErrorMissingEndTagName, 1, 6);
  expectError("<a>\n</a b>", eXMLErrorMissingEndTagName, 2, 5);
  expectError("<a></a", eXMLErrorMissingEndTagName, 1, 7);
}

TEST(XMLParser, UnmatchedEndTagForACloseTagWithoutOpenElement) {
  expectError("<a/>\n</b>", eXMLErrorUnmatchedEndTag, 2, 1);
  expectError("<a>\n  <b></c>", eXMLErrorUnmatchedEndTag, 2, 6);  // passes b and a, then the root
}

TEST(XMLParser, UnmatchedEndClearTagForAClearWithoutClosing) {
  expectError("<a>\n <!-- open\n</a>", eXMLErrorUnmatchedEndClearTag, 2, 2);
  expectError("<![CDATA[x]>", eXMLErrorUnmatchedEndClearTag, 1, 1);
}

TEST(XMLParser, UnexpectedTokenInATag) {
  expectError("<a b=>", eXMLErrorUnexpectedToken, 1, 6);
  expectError("<a\n \"x\">", eXMLErrorUnexpectedToken, 2, 2);
  expectError("<a b <c>", eXMLErrorUnexpectedToken, 1, 6);
  expectError("<a = b>", eXMLErrorUnexpectedToken, 1, 4);
  expectError("<a b=<!-- x -->>", eXMLErrorUnexpectedToken, 1, 6);
}

TEST(XMLParser, UnknownCharacterEntityInTextOrAttribute) {
  expectError("<a>\n x &bogus; y</a>", eXMLErrorUnknownCharacterEntity, 2, 4);
  expectError("<a v=\"&zz;\"/>", eXMLErrorUnknownCharacterEntity, 1, 7);
  expectError("<a v=x&#65/>", eXMLErrorUnknownCharacterEntity, 1, 7);  // without ";"
}

TEST(XMLParser, ColumnsCountCharactersNotBytes) {
  // "ä" and "ö" are two bytes each in UTF-8 and one column each.
  expectError("<a>\xC3\xA4\xC3\xB6 &x;</a>", eXMLErrorUnknownCharacterEntity, 1, 7);
  expectError("\xE2\x82\xAC\n\xF0\x9F\x98\x80<a>&x;", eXMLErrorUnknownCharacterEntity, 2, 5);
}

TEST(XMLParser, LatinOneLettersOfAnEightBitTextStandForThemselves) {
  // "\xE4" looks like the lead byte of a three-byte UTF-8 sequence, but no
  // continuation byte follows: it is one letter and leaves "</" alone.
  const SOutcome latin = parse("<a t=\"Tag\xE4\">caf\xE9</a>");
  EXPECT_EQ(latin.results.error, eXMLErrorNone);
  EXPECT_EQ(str(latin.node.getText(0)), "caf\xE9");
  EXPECT_EQ(str(latin.node.getAttribute("t")), "Tag\xE4");
  const SOutcome plain = parse("<a>\xFC</a>");
  EXPECT_EQ(plain.results.error, eXMLErrorNone);
  EXPECT_EQ(str(plain.node.getText(0)), "\xFC");
}

TEST(XMLParser, ErrorAboveOneDropsTheTree) {
  const SOutcome outcome = parse("<a><b>ok</b><c>&nope;</c></a>");
  EXPECT_EQ(outcome.results.error, eXMLErrorUnknownCharacterEntity);
  EXPECT_TRUE(outcome.node.isEmpty());
}

TEST(XMLParser, DeepNestingNeedsNoRecursion) {
  constexpr int c_depth = 200000;
  std::string text;
  for (int i = 0; i < c_depth; ++i) text += "<e>";
  text += "deep";
  for (int i = 0; i < c_depth; ++i) text += "</e>";
  XMLResults results;
  XMLNode node = XMLNode::parseString(text.c_str(), nullptr, &results);
  ASSERT_EQ(results.error, eXMLErrorNone);
  int depth = 1;
  while (node.getChildCount() == 1) {
    node = node.getChildNode(0);
    ++depth;
  }
  EXPECT_EQ(depth, c_depth);
  EXPECT_EQ(str(node.getText(0)), "deep");
}

TEST(XMLParser, ManyChildrenKeepTheirOrder) {
  std::string text = "<r>";
  for (int i = 0; i < 5000; ++i) text += "<c n='" + std::to_string(i) + "'>t" + std::to_string(i) + "</c>";
  text += "</r>";
  const SOutcome outcome = parse(text.c_str());
  ASSERT_EQ(outcome.node.getChildCount(), 5000);
  EXPECT_EQ(str(outcome.node.getChildNode(4321).getAttribute("n")), "4321");
  EXPECT_EQ(str(outcome.node.getChildNode(4999).getText(0)), "t4999");
}
