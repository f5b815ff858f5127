// XMLNode: the small, tolerant XML reader through which the system reads
// all its XML files. A whole file is parsed into a tree of
// reference-counted nodes; every failed look-up gives the empty node, on
// which every operation is safe and yields nothing.
//
// Texts are narrow: the bytes of the file, UTF-8 passed through, entities
// and numeric references decoded (a reference becomes one byte, the low
// eight bits of its value); the wide look-ups widen them by the document's
// declared encoding. Names are compared without regard to ASCII
// case. The reader checks little beyond the balance of tags; it does not
// validate and knows no namespaces. Declarations ("<?" ... "?>") have no
// close tag and hold what follows them as their children. Comments, CDATA,
// DOCTYPE, "<PRE>" and "<Script>" blocks are clears: kept verbatim, apart
// from the texts.
//
// Reference counts are not atomic and parses must not overlap: a tree
// belongs to one thread.
#pragma once

#include "foundation/CString.h"

namespace TestSuite {

enum XMLError {
  eXMLErrorNone = 0,
  eXMLErrorMissingEndTag = 1,
  eXMLErrorEmpty = 2,
  eXMLErrorMissingTagName = 4,
  eXMLErrorMissingEndTagName = 5,
  eXMLErrorUnmatchedEndTag = 7,
  eXMLErrorUnmatchedEndClearTag = 8,
  eXMLErrorUnexpectedToken = 9,
  eXMLErrorNoXMLTagFound = 11,
  eXMLErrorCannotOpenWriteFile = 12,  // the file cannot be opened
  eXMLErrorFirstTagNotFound = 13,
  eXMLErrorUnknownCharacterEntity = 14,
  eXMLErrorCharConversionError = 15,
};

// Line and column count from 1 in the parsed text (behind a byte-order
// mark; for a UTF-16 file in its UTF-8 conversion), by characters. For
// error 1 they name the end of the last complete tag, for other parse
// errors the first byte of the fault. Errors found before a parse (2, 11,
// 12, 15) and error 13 have line and column 0, as has success.
struct XMLResults {
  XMLError error = eXMLErrorNone;
  int nLine = 0;
  int nColumn = 0;
};

struct XMLNodeData;

class XMLNode {
 public:
  XMLNode() = default;  // the empty node
  XMLNode(const XMLNode& other);
  XMLNode& operator=(const XMLNode& other);
  ~XMLNode();

  // Reads and parses a whole file; UTF-16 files (with a byte-order mark,
  // or recognised by their zero bytes) are converted to UTF-8. The result
  // is the document: its only element if there is just one, else a root
  // without name. `firstTag`, if given, is searched for (also inside
  // declarations) and becomes the result. Never throws for bad input: the
  // error is reported in `results`, if given. With error 1 the tree is
  // returned; with any other error the empty node.
  static XMLNode parseFile(const wchar_t* path, const char* firstTag = nullptr, XMLResults* results = nullptr);
  // The same on zero-terminated text already in memory (UTF-8 or 8-bit):
  // null is error 11, an empty text error 2.
  static XMLNode parseString(const char* text, const char* firstTag = nullptr, XMLResults* results = nullptr);

  bool isEmpty() const { return m_data == nullptr; }
  const char* getName() const;  // null on the empty node and the document root
  // The index-th run of text, trimmed at its end; an element holding only
  // white space has none.
  const char* getText(int index = 0) const;  // null if there is no such text
  int nText() const;
  int nClear() const;
  const char* getClear(int index = 0) const;  // content of a clear tag (comment, CDATA …)
  int getChildCount() const;
  int getChildCount(const char* name) const;
  XMLNode getChildNode(int index) const;
  XMLNode getChildNode(const char* name, int index) const;
  // The next child of that name from *position on; *position is then set
  // behind it. A failed search leaves *position alone.
  XMLNode getChildNode(const char* name, int* position = nullptr) const;
  // The value (null for an attribute without "=", and when absent), with
  // the same iteration as getChildNode.
  const char* getAttribute(const char* name, int* position = nullptr) const;
  int nAttribute() const;

  // The same texts widened as the document's declared encoding says: a
  // document declared ISO-8859-1 (or another one-byte code page) one byte
  // per character; UTF-8 or no declaration as UTF-8 where the bytes form
  // it and byte by byte as ISO-8859-1 where they do not. Empty where the
  // narrow look-up gives null.
  CString getWideText(int index = 0) const { return widen(getText(index)); }
  CString getWideAttribute(const char* name, int* position = nullptr) const {
    return widen(getAttribute(name, position));
  }
  CString widen(const char* text) const;
  bool isDeclaration() const;
  XMLNode getParentNode() const;

 private:
  explicit XMLNode(XMLNodeData* data) : m_data(data) {}
  friend class CXMLParser;
  XMLNodeData* m_data = nullptr;
};

}  // namespace TestSuite
