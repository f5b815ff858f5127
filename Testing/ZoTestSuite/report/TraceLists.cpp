// The open list and the finished groups of the diff result trace.
#include "report/TraceLists.h"

#include <new>

namespace TestSuite::Report {

std::shared_ptr<XbPlexManager> COpenTraceList::MakePool() { return std::make_shared<XbPlexManager>(sizeof(SNode)); }

COpenTraceList::COpenTraceList(std::shared_ptr<XbPlexManager> pool) : m_pool(std::move(pool)) {}

COpenTraceList::~COpenTraceList() {
  while (m_pHead) remove(m_pHead);
}

void COpenTraceList::Append(STrace trace) {
  // The pool's slot is raw memory: the node is built in place and destroyed
  // by hand in remove().
  SNode* node = new (m_pool->Allocate()) SNode{std::move(trace), m_pTail, nullptr};
  if (m_pTail) m_pTail->pNext = node;
  else m_pHead = node;
  m_pTail = node;
  ++m_uiCount;
}

void COpenTraceList::remove(SNode* node) {
  if (node->pPrev) node->pPrev->pNext = node->pNext;
  else m_pHead = node->pNext;
  if (node->pNext) node->pNext->pPrev = node->pPrev;
  else m_pTail = node->pPrev;
  --m_uiCount;
  node->~SNode();
  m_pool->Free(node);
}

void CTraceGroups::Add(STrace trace) {
  unsigned int uiGroup = 0;
  if (!m_groupIndex.Lookup(trace.Class, uiGroup)) {
    uiGroup = m_groups.Add(XbArray<STrace>());
    m_groupIndex.SetAt(trace.Class, uiGroup);
  }
  m_groups[uiGroup].Add(std::move(trace));
  ++m_uiTraceCount;
}

}  // namespace TestSuite::Report
