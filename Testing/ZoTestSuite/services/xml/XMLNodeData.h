// XMLNodeData: the shared, reference-counted data of one node of a parsed
// XML tree, together with all the texts it owns.
//
// A node and everything it owns live in one block of memory: the record,
// then its arrays, then its texts. The parser builds the block only once an
// element is complete, so every array is exactly as long as it needs to be
// and a node costs one allocation whatever it holds.
#pragma once

#include <cstddef>

namespace TestSuite {

struct XMLAttribute {
  const char* sName = nullptr;
  const char* sValue = nullptr;  // null for an attribute written without "="
};

// The verbatim content of a clear tag (comment, CDATA, DOCTYPE ...) with the
// texts that opened and closed it; the tag texts are static, not owned.
struct XMLClear {
  const char* sValue = nullptr;
  const char* sOpenTag = nullptr;
  const char* sCloseTag = nullptr;
};

struct XMLNodeData {
  const char* sName = nullptr;  // null for the document root
  int iChildCount = 0;
  int iTextCount = 0;
  int iClearCount = 0;
  int iAttributeCount = 0;
  bool bDeclaration = false;  // opened with "<?"
  // The document declares a one-byte encoding (ISO-8859-1): each byte of
  // its texts is one character.
  bool bLatin1 = false;
  // Plain pointer: a child does not keep its parent alive. It is reset to
  // null when the parent goes, so a detached node never points into freed
  // memory.
  XMLNodeData* pParent = nullptr;
  XMLNodeData** pChildren = nullptr;  // each holds one reference
  const char** pTexts = nullptr;
  XMLClear* pClears = nullptr;
  XMLAttribute* pAttributes = nullptr;
  int iRefCount = 1;
};

// The sizes of one node's block, for XMLNodeDataCreate.
struct SXMLNodeLayout {
  int iChildCount = 0;
  int iTextCount = 0;
  int iClearCount = 0;
  int iAttributeCount = 0;
  std::size_t uiTextBytes = 0;  // all texts of the node with their terminators
};

// Allocates one block for a node of that layout with its arrays wired up
// and the reference count at 1. `ppTextArea` receives where the texts go.
// Returns null if memory is exhausted.
XMLNodeData* XMLNodeDataCreate(const SXMLNodeLayout& layout, char** ppTextArea);

// Adds a reference.
inline void XMLNodeDataAddRef(XMLNodeData* pData) {
  if (pData) ++pData->iRefCount;
}

// Drops a reference; at zero the node goes, and with it every child whose
// last reference it held. Works without recursion, so trees of any depth
// can be released.
void XMLNodeDataRelease(XMLNodeData* pData);

}  // namespace TestSuite
