// XMLTokenizer: splits the narrow text of an XML document into the tokens
// of the XML reader.
//
// White space between tokens is skipped. At each token the clear tags are
// tried first, in the order of c_XMLClearTags and without regard to case.
// Otherwise the first character decides: a quote starts a quoted string, "<"
// a tag, "</" a close tag, "<?" a declaration, "/>" ends an empty element,
// ">" ends a tag, "=" stands for itself. Anything else is plain text up to
// white space, "<", "=", ">" or "/>". A quote without its partner before the
// next "<" or the end of input is an ordinary character of plain text.
// Scanning looks at single bytes: every delimiter is ASCII, and a character
// never takes an ASCII byte along (see XMLCharacters.h), so each token ends
// where stepping by characters would end it.
#pragma once

#include <cstddef>

#include "services/xml/XMLCharacters.h"

namespace TestSuite {

enum class EXMLToken {
  End,             // the terminating zero
  Text,            // plain text
  QuotedText,      // a quoted string, quotes included
  TagStart,        // "<"
  CloseTag,        // "</"
  Declaration,     // "<?"
  ShortHandClose,  // "/>"
  TagEnd,          // ">"
  Equals,          // "="
  Clear,           // the opening text of a clear tag
};

struct SXMLToken {
  EXMLToken eType = EXMLToken::End;
  std::size_t uiStart = 0;   // offset of the first byte
  std::size_t uiLength = 0;  // bytes, quotes or opening text included
  int iClear = -1;           // index in c_XMLClearTags for EXMLToken::Clear
};

// Content between the opening and the first exact occurrence of the closing
// text is taken verbatim.
struct SXMLClearTag {
  const char* sOpen;
  const char* sClose;
  std::size_t uiOpenLength;
  std::size_t uiCloseLength;
};

inline constexpr int c_iXMLClearTagCount = 5;
extern const SXMLClearTag c_XMLClearTags[c_iXMLClearTagCount];

class CXMLTokenizer {
 public:
  explicit CXMLTokenizer(const char* sText);

  const char* Text() const { return m_sText; }
  std::size_t Position() const { return m_uiPosition; }
  void SetPosition(std::size_t uiPosition) { m_uiPosition = uiPosition; }

  // Skips white space and reads the next token; the position moves behind
  // it. At the end of input the token is End and the position stays.
  SXMLToken Next();

  void SkipWhite() {
    while (XMLIsWhite(m_sText[m_uiPosition])) ++m_uiPosition;
  }

  // Moves from the position to the next "<" or the end of input and
  // returns the new position.
  std::size_t ScanToTag();

  // The clear tag whose opening stands at `uiAt`, or -1.
  int MatchClear(std::size_t uiAt) const;

 private:
  std::size_t scanPlain(std::size_t uiFrom) const;
  SXMLToken readQuoted(std::size_t uiStart);
  SXMLToken readTag(std::size_t uiStart);

  const char* m_sText;
  std::size_t m_uiLength;  // up to the terminating zero
  std::size_t m_uiPosition = 0;
};

}  // namespace TestSuite
