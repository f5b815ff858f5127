// XMLNode: the small, tolerant XML reader through which the system reads
// all its XML files. A whole file is parsed into a tree of
// reference-counted nodes; every failed look-up gives the empty node, on
// which every operation is safe and yields nothing.
#pragma once

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

  // Reads and parses a whole file. `firstTag`, if given, is searched for
  // (also inside declarations) and becomes the result. Never throws for bad
  // input: the error is reported in `results` and the empty node returned.
  static XMLNode parseFile(const wchar_t* path, const char* firstTag = nullptr, XMLResults* results = nullptr);
  // The same on text already in memory (UTF-8 or 8-bit).
  static XMLNode parseString(const char* text, const char* firstTag = nullptr, XMLResults* results = nullptr);

  bool isEmpty() const { return m_data == nullptr; }
  const char* getName() const;          // null on the empty node and the document root
  const char* getText(int index = 0) const;  // null if there is no such text
  int nText() const;
  int nClear() const;
  const char* getClear(int index = 0) const;  // content of a clear tag (comment, CDATA …)
  int getChildCount() const;
  int getChildCount(const char* name) const;
  XMLNode getChildNode(int index) const;
  XMLNode getChildNode(const char* name, int index) const;
  XMLNode getChildNode(const char* name, int* position = nullptr) const;
  const char* getAttribute(const char* name, int* position = nullptr) const;
  int nAttribute() const;
  bool isDeclaration() const;
  XMLNode getParentNode() const;

 private:
  explicit XMLNode(XMLNodeData* data) : m_data(data) {}
  friend class CXMLParser;
  XMLNodeData* m_data = nullptr;
};

}  // namespace TestSuite
