// CXMLParser: turns the narrow text of one XML document into a tree of
// nodes and applies the reader's rules for the result.
//
// The parser works without recursion: the open elements are frames on a
// stack, and what an open element collects (children, texts, clears,
// attributes, and the bytes of its texts) waits on shared stacks until the
// element is complete. Then it becomes one node block of exactly the
// needed size, so parsing allocates once per element and never per
// character, and nesting depth is limited by memory only.
//
// Rules for the result, after the text is read:
// - if the document root has exactly one child and nothing else, that
//   child takes its place;
// - with error 0 or 1 and a first tag asked for, the result is the first
//   child of that name, searched through the children in order and
//   descending into declarations; if there is none, error 13 at line and
//   column 0;
// - with an error above 1 the tree is dropped and the empty node returned;
// - any error other than 13 gets the line and column of its offset: for
//   error 1 the end of the last complete tag, for the others the first byte
//   of what was wrong (for a fault at the end of input, its end).
#pragma once

#include <cstddef>

#include "services/xml/XMLNode.h"
#include "services/xml/XMLNodeData.h"
#include "services/xml/XMLParseStack.h"
#include "services/xml/XMLTokenizer.h"

namespace TestSuite {

class CXMLParser {
 public:
  // `sText` is zero-terminated and not null. `pResults`, if given, receives
  // the error with its line and column (both 0 without error).
  static XMLNode Parse(const char* sText, const char* sFirstTag, XMLResults* pResults);

 private:
  // One open element; offsets point into m_strings, marks into the stacks.
  struct SFrame {
    std::size_t uiStringMark = 0;
    std::size_t uiName = 0;
    std::size_t uiNameLength = 0;
    std::size_t uiChildMark = 0;
    std::size_t uiTextMark = 0;
    std::size_t uiClearMark = 0;
    std::size_t uiAttributeMark = 0;
    bool bDeclaration = false;
    bool bRoot = false;
  };
  struct SClearEntry {
    std::size_t uiValue;
    int iTag;
  };
  struct SAttributeEntry {
    std::size_t uiName;
    std::size_t uiValue;  // c_uiNoValue for an attribute without "="
  };
  enum class EAttribute { Name, Equals, Value };
  static constexpr std::size_t c_uiNoValue = ~std::size_t{0};

  explicit CXMLParser(const char* sText);
  ~CXMLParser();
  CXMLParser(const CXMLParser&) = delete;
  CXMLParser& operator=(const CXMLParser&) = delete;

  void run();
  XMLNodeData* finish();

  bool stepOutside();
  bool stepInside();
  bool inAttributeName(const SXMLToken& token);
  bool inAttributeEquals(const SXMLToken& token);
  bool inAttributeValue(const SXMLToken& token);
  bool addTextRun();
  bool readClear(const SXMLToken& token);
  bool openElement(const SXMLToken& token);
  bool closeTag(const SXMLToken& token);
  void endTag(const SXMLToken& token);
  void endOfInput();
  bool fail(XMLError eError, std::size_t uiOffset);
  void noteUnclosed();

  bool closeNameFits(const SFrame& frame, const char* sCloseName) const;
  bool endsWithQuestionMark(std::size_t uiStart, std::size_t uiLength) const;
  std::size_t storeRaw(const char* sSource, std::size_t uiLength);
  bool storeDecoded(std::size_t uiStart, std::size_t uiLength, std::size_t* puiOffset);
  void pushFrame(bool bDeclaration, std::size_t uiNameStart, std::size_t uiNameLength);
  void closeFrame();
  XMLNodeData* buildNode(const SFrame& frame);

  const char* m_sText;
  bool m_bSingleByte;  // every node of the document is marked with it
  CXMLTokenizer m_tokens;
  XMLError m_eError = eXMLErrorNone;
  std::size_t m_uiErrorOffset = 0;
  std::size_t m_uiLastTagEnd = 0;
  bool m_bInsideTag = false;
  EAttribute m_eAttribute = EAttribute::Name;
  SXMLToken m_pendingName;

  CXMLParseStack<SFrame> m_frames;
  CXMLParseStack<XMLNodeData*> m_children;  // each holds one reference
  CXMLParseStack<std::size_t> m_texts;
  CXMLParseStack<SClearEntry> m_clears;
  CXMLParseStack<SAttributeEntry> m_attributes;
  CXMLParseStack<char> m_strings;  // zero-terminated texts of the open elements
  XMLNodeData* m_pRoot = nullptr;
};

}  // namespace TestSuite
