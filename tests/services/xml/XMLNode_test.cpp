#include "services/xml/XMLNode.h"

#include <gtest/gtest.h>

#include <string>

#include "TempDirectory.h"

using namespace TestSuite;

namespace {

XMLNode parse(const char* text, const char* firstTag = nullptr) {
  XMLResults results;
  XMLNode node = XMLNode::parseString(text, firstTag, &results);
  EXPECT_EQ(results.error, eXMLErrorNone) << text;
  return node;
}

std::string str(const char* text) { return text ? std::string(text) : std::string("<null>"); }

}  // namespace

TEST(XMLNode, EmptyNodeAnswersEveryOperationWithNothing) {
  const XMLNode empty;
  EXPECT_TRUE(empty.isEmpty());
  EXPECT_EQ(empty.getName(), nullptr);
  EXPECT_EQ(empty.getText(0), nullptr);
  EXPECT_EQ(empty.getClear(0), nullptr);
  EXPECT_EQ(empty.getChildCount(), 0);
  EXPECT_EQ(empty.getChildCount("a"), 0);
  EXPECT_EQ(empty.nText(), 0);
  EXPECT_EQ(empty.nClear(), 0);
  EXPECT_EQ(empty.nAttribute(), 0);
  EXPECT_FALSE(empty.isDeclaration());
  EXPECT_TRUE(empty.getChildNode(0).isEmpty());
  EXPECT_TRUE(empty.getChildNode("a", 0).isEmpty());
  int position = 3;
  EXPECT_TRUE(empty.getChildNode("a", &position).isEmpty());
  EXPECT_EQ(empty.getAttribute("a", &position), nullptr);
  EXPECT_EQ(position, 3);
  EXPECT_TRUE(empty.getParentNode().isEmpty());
}

TEST(XMLNode, ChildOfMissingChildIsEmptyAndNeedsNoChecks) {
  const XMLNode root = parse("<a><b>x</b></a>");
  const XMLNode missing = root.getChildNode("c").getChildNode("d", 0).getChildNode(2);
  EXPECT_TRUE(missing.isEmpty());
  EXPECT_EQ(missing.getName(), nullptr);
  EXPECT_EQ(missing.getText(0), nullptr);
  EXPECT_EQ(str(root.getChildNode("b").getText(0)), "x");
}

TEST(XMLNode, ChildOutOfRangeIsEmpty) {
  const XMLNode root = parse("<a><b/><c/></a>");
  EXPECT_EQ(root.getChildCount(), 2);
  EXPECT_TRUE(root.getChildNode(-1).isEmpty());
  EXPECT_TRUE(root.getChildNode(2).isEmpty());
  EXPECT_EQ(str(root.getChildNode(1).getName()), "c");
  EXPECT_TRUE(root.getChildNode("b", 1).isEmpty());
  EXPECT_TRUE(root.getChildNode("b", -1).isEmpty());
}

TEST(XMLNode, NamesAreFoundWithoutRegardToCase) {
  const XMLNode root = parse("<Root><Item ID='1'/><ITEM id='2'/><other/><item Id='3'/></Root>");
  EXPECT_EQ(root.getChildCount("item"), 3);
  EXPECT_EQ(root.getChildCount("ITEM"), 3);
  EXPECT_EQ(root.getChildCount("none"), 0);
  EXPECT_EQ(str(root.getChildNode("iTeM", 1).getAttribute("iD")), "2");
  EXPECT_EQ(str(root.getChildNode("item", 2).getAttribute("id")), "3");
  EXPECT_EQ(str(root.getChildNode("item", 2).getName()), "item");  // the name keeps its case
  EXPECT_EQ(str(root.getName()), "Root");
}

TEST(XMLNode, ChildIterationByPositionStepsBehindEachFind) {
  const XMLNode root = parse("<r><x n='1'/><y/><x n='2'/><y/><X n='3'/></r>");
  int position = 0;
  std::string found;
  for (XMLNode x = root.getChildNode("x", &position); !x.isEmpty(); x = root.getChildNode("x", &position)) {
    found += x.getAttribute("n");
    found += '@';
    found += std::to_string(position);
    found += ' ';
  }
  EXPECT_EQ(found, "1@1 2@3 3@5 ");
  EXPECT_EQ(position, 5);  // a failed search leaves the position alone

  position = 2;
  EXPECT_EQ(str(root.getChildNode("y", &position).getName()), "y");
  EXPECT_EQ(position, 4);
  EXPECT_EQ(str(root.getChildNode("x").getAttribute("n")), "1");  // no position: from the start
}

TEST(XMLNode, AttributeIterationByPosition) {
  const XMLNode node = parse("<a v='1' w='x' V='2' flag v=\"3\"/>");
  int position = 0;
  EXPECT_EQ(str(node.getAttribute("v", &position)), "1");
  EXPECT_EQ(position, 1);
  EXPECT_EQ(str(node.getAttribute("v", &position)), "2");
  EXPECT_EQ(position, 3);
  EXPECT_EQ(str(node.getAttribute("v", &position)), "3");
  EXPECT_EQ(position, 5);
  EXPECT_EQ(node.getAttribute("v", &position), nullptr);
  EXPECT_EQ(position, 5);
  EXPECT_EQ(node.nAttribute(), 5);
}

TEST(XMLNode, AttributesWithAndWithoutValuesQuotedAndUnquoted) {
  const XMLNode node = parse("<a one=\"1 1\" two='2' three=3 four four2 = \"x>y\" five/>");
  EXPECT_EQ(node.nAttribute(), 6);
  EXPECT_EQ(str(node.getAttribute("one")), "1 1");
  EXPECT_EQ(str(node.getAttribute("two")), "2");
  EXPECT_EQ(str(node.getAttribute("three")), "3");
  EXPECT_EQ(node.getAttribute("four"), nullptr);  // written without "=": no value
  EXPECT_EQ(str(node.getAttribute("four2")), "x>y");
  EXPECT_EQ(node.getAttribute("five"), nullptr);
  int position = 0;
  EXPECT_EQ(node.getAttribute("five", &position), nullptr);
  EXPECT_EQ(position, 6);  // found, although it has no value
  EXPECT_EQ(node.getAttribute("missing"), nullptr);
}

TEST(XMLNode, AttributeValuesAreDecodedNamesAreNot) {
  const XMLNode node = parse("<a t=\"&lt;&amp;&gt;\" u=&quot;x&apos; a&amp;b='1'/>");
  EXPECT_EQ(str(node.getAttribute("t")), "<&>");
  EXPECT_EQ(str(node.getAttribute("u")), "\"x'");
  EXPECT_EQ(str(node.getAttribute("a&amp;b")), "1");
}

TEST(XMLNode, CopiesShareTheDataAndChildrenOutliveTheirTree) {
  XMLNode child;
  {
    const XMLNode root = parse("<r><c>text</c></r>");
    child = root.getChildNode("c");
    EXPECT_EQ(str(child.getParentNode().getName()), "r");
    XMLNode copy = root;
    const XMLNode& same = copy;
    copy = same;  // self-assignment keeps the data
    EXPECT_EQ(str(copy.getName()), "r");
  }
  EXPECT_EQ(str(child.getText(0)), "text");
  EXPECT_TRUE(child.getParentNode().isEmpty());  // the parent has gone
}

TEST(XMLNode, ParentKeptAliveByAHandleStaysReachable) {
  XMLNode parent;
  XMLNode child;
  {
    const XMLNode root = parse("<r><p><c/></p></r>");
    parent = root.getChildNode("p");
    child = parent.getChildNode("c");
  }
  EXPECT_EQ(str(child.getParentNode().getName()), "p");
  EXPECT_EQ(child.getParentNode().getChildCount(), 1);
}

TEST(XMLNode, ParseStringWithoutTextIsNoXMLTagFound) {
  XMLResults results;
  results.nLine = 7;
  const XMLNode node = XMLNode::parseString(nullptr, nullptr, &results);
  EXPECT_TRUE(node.isEmpty());
  EXPECT_EQ(results.error, eXMLErrorNoXMLTagFound);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
}

TEST(XMLNode, ParseStringOfEmptyTextIsEmpty) {
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseString("", "a", &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorEmpty);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
}

TEST(XMLNode, NullResultsAreAllowed) {
  EXPECT_TRUE(XMLNode::parseString(nullptr).isEmpty());
  EXPECT_TRUE(XMLNode::parseString("<a>", "b").isEmpty());
  EXPECT_TRUE(XMLNode::parseFile(L"/nonexistent/zo/file.xml").isEmpty());
  EXPECT_EQ(str(XMLNode::parseString("<a/>").getName()), "a");
}

TEST(XMLNode, ResultsAreClearedBeforeAParse) {
  XMLResults results;
  results.error = eXMLErrorUnexpectedToken;
  results.nLine = 5;
  results.nColumn = 6;
  XMLNode::parseString("<a/>", nullptr, &results);
  EXPECT_EQ(results.error, eXMLErrorNone);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
}

TEST(XMLNode, ParseFileOfZeroBytesIsEmpty) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"empty.xml", "");
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseFile(dir / L"empty.xml", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorEmpty);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
}

TEST(XMLNode, ParseFileOfMissingFileIsCannotOpenWriteFile) {
  TempDirectory dir;
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseFile(dir / L"missing.xml", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorCannotOpenWriteFile);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
  EXPECT_TRUE(XMLNode::parseFile(dir.Path(), nullptr, &results).isEmpty());  // a directory
  EXPECT_EQ(results.error, eXMLErrorCannotOpenWriteFile);
  EXPECT_TRUE(XMLNode::parseFile(nullptr, nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorCannotOpenWriteFile);
}

TEST(XMLNode, ParseFileReadsTheWholeFileWithAWidePath) {
  TempDirectory dir;
  const CString path = dir / L"R\u00e9sum\u00e9 \u00fc.xml";
  TempDirectory::WriteBytes(path,
                            "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<testsuite tests=\"2\">\n"
                            "  <testcase name=\"a\"><time>1.5</time></testcase>\n"
                            "  <testcase name=\"b\"><time>2.5</time></testcase>\n</testsuite>\n");
  XMLResults results;
  const XMLNode suite = XMLNode::parseFile(path, "testsuite", &results);
  ASSERT_EQ(results.error, eXMLErrorNone);
  EXPECT_EQ(str(suite.getAttribute("tests")), "2");
  EXPECT_EQ(suite.getChildCount("testcase"), 2);
  EXPECT_EQ(str(suite.getChildNode("testcase", 1).getChildNode("time").getText(0)), "2.5");
}

TEST(XMLNode, ParseFileSkipsAUtf8Mark) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"bom.xml", "\xEF\xBB\xBF<a>\xC3\xA4</a>");
  XMLResults results;
  const XMLNode node = XMLNode::parseFile(dir / L"bom.xml", nullptr, &results);
  EXPECT_EQ(results.error, eXMLErrorNone);
  EXPECT_EQ(str(node.getName()), "a");
  EXPECT_EQ(str(node.getText(0)), "\xC3\xA4");
}

TEST(XMLNode, ParseStringSkipsAUtf8Mark) { EXPECT_EQ(str(parse("\xEF\xBB\xBF<a/>").getName()), "a"); }

// The declared encoding decides how texts widen.
TEST(XMLNode, ADocumentDeclaredIso88591WidensOneBytePerCharacter) {
  const XMLNode root = parse(
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<r a=\"\xC3\xA4\">caf\xE9 \xC3\xA4<c>&#228;</c></r>", "r");
  EXPECT_EQ(root.getWideText(0), CString(L"caf\u00E9 \u00C3\u00A4"));
  EXPECT_EQ(root.getWideAttribute("a"), CString(L"\u00C3\u00A4"));
  EXPECT_EQ(root.getChildNode("c", 0).getWideText(0), CString(L"\u00E4"));
  EXPECT_EQ(str(root.getText(0)), "caf\xE9 \xC3\xA4");  // the narrow text is the file's bytes
}

TEST(XMLNode, AnUndeclaredDocumentWidensUtf8AndEachStrayByteAsItsLatin1Letter) {
  const XMLNode root = parse("<r a=\"\xE4\">caf\xC3\xA9 \xE4</r>");
  EXPECT_EQ(root.getWideText(0), CString(L"caf\u00E9 \u00E4"));
  EXPECT_EQ(root.getWideAttribute("a"), CString(L"\u00E4"));
}

TEST(XMLNode, ADocumentDeclaredUtf8WidensAsUtf8) {
  const XMLNode root = parse("<?xml version='1.0' encoding='utf-8'?><r>\xC3\xA4</r>", "r");
  EXPECT_EQ(root.getWideText(0), CString(L"\u00E4"));
}

TEST(XMLNode, WideLookUpsOfWhatIsMissingAreEmpty) {
  const XMLNode root = parse("<r/>");
  EXPECT_TRUE(root.getWideText(0).IsEmpty());
  EXPECT_TRUE(root.getWideAttribute("a").IsEmpty());
  EXPECT_TRUE(XMLNode().getWideText(0).IsEmpty());
}
