// XMLNodeData: one block per node, released without recursion.
#include "services/xml/XMLNodeData.h"

#include <cstdlib>
#include <new>

namespace TestSuite {

XMLNodeData* XMLNodeDataCreate(const SXMLNodeLayout& layout, char** ppTextArea) {
  // Every part of the block is pointer-aligned: the arrays hold pointers
  // only, and the texts come last.
  const std::size_t uiBytes = sizeof(XMLNodeData) + sizeof(void*) * static_cast<std::size_t>(layout.iChildCount) +
                              sizeof(void*) * static_cast<std::size_t>(layout.iTextCount) +
                              sizeof(XMLClear) * static_cast<std::size_t>(layout.iClearCount) +
                              sizeof(XMLAttribute) * static_cast<std::size_t>(layout.iAttributeCount) +
                              layout.uiTextBytes;
  char* pBlock = static_cast<char*>(std::malloc(uiBytes));
  if (!pBlock) return nullptr;

  XMLNodeData* pData = new (pBlock) XMLNodeData();
  char* pNext = pBlock + sizeof(XMLNodeData);
  auto take = [&pNext](int count, std::size_t size) {
    char* p = count > 0 ? pNext : nullptr;
    pNext += size * static_cast<std::size_t>(count);
    return p;
  };
  pData->iChildCount = layout.iChildCount;
  pData->iTextCount = layout.iTextCount;
  pData->iClearCount = layout.iClearCount;
  pData->iAttributeCount = layout.iAttributeCount;
  pData->pChildren = reinterpret_cast<XMLNodeData**>(take(layout.iChildCount, sizeof(void*)));
  pData->pTexts = reinterpret_cast<const char**>(take(layout.iTextCount, sizeof(void*)));
  pData->pClears = reinterpret_cast<XMLClear*>(take(layout.iClearCount, sizeof(XMLClear)));
  pData->pAttributes = reinterpret_cast<XMLAttribute*>(take(layout.iAttributeCount, sizeof(XMLAttribute)));
  *ppTextArea = pNext;
  return pData;
}

void XMLNodeDataRelease(XMLNodeData* pData) {
  if (!pData || --pData->iRefCount > 0) return;
  // Nodes that reached zero are chained through their parent pointer, which
  // nobody can look at any more: a node without references has no observer.
  pData->pParent = nullptr;
  XMLNodeData* pPending = pData;
  while (pPending) {
    XMLNodeData* pNode = pPending;
    pPending = pNode->pParent;
    for (int i = 0; i < pNode->iChildCount; ++i) {
      XMLNodeData* pChild = pNode->pChildren[i];
      if (--pChild->iRefCount > 0) {
        pChild->pParent = nullptr;
      } else {
        pChild->pParent = pPending;
        pPending = pChild;
      }
    }
    pNode->~XMLNodeData();
    std::free(pNode);
  }
}

}  // namespace TestSuite
