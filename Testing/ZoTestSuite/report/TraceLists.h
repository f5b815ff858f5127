// TraceLists: the record of one case traced back through an archive, and the
// two places where such a trace lives: the open list while the walk still
// looks for the revision where the case changed, and the groups of finished
// traces, one group per class.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/CString.h"
#include "foundation/XbArray.h"
#include "foundation/XbMap.h"
#include "foundation/XbPlexManager.h"

namespace TestSuite::Report {

struct SRevisionResult {
  std::uint64_t Revision = 0;
  bool Succeeded = false;  // the case's ResultType was 0
};

struct STrace {
  CString Class;
  CString Case;
  // The newest revision at which the case had the other outcome; empty
  // until the walk finds it.
  std::optional<SRevisionResult> Before;
  // The oldest revision known to have the outcome of the end report, in an
  // unbroken line back from the end.
  SRevisionResult After;
};

// The open traces in the order they were made. A doubly linked list whose
// nodes come from a slot pool that the list shares; a walk can take traces
// out of it as it passes them.
class COpenTraceList {
 public:
  // A pool whose slots fit the list's nodes.
  static std::shared_ptr<XbPlexManager> MakePool();

  explicit COpenTraceList(std::shared_ptr<XbPlexManager> pool = MakePool());
  ~COpenTraceList();
  COpenTraceList(const COpenTraceList&) = delete;
  COpenTraceList& operator=(const COpenTraceList&) = delete;

  void Append(STrace trace);
  unsigned int GetCount() const { return m_uiCount; }
  bool IsEmpty() const { return m_uiCount == 0; }

  // Calls fn(STrace&) for every trace in list order; a trace for which fn
  // returns true leaves the list (fn may have moved it away). fn must not
  // change the list itself.
  template <typename TFn>
  void RemoveIf(TFn&& fn) {
    for (SNode* node = m_pHead; node;) {
      SNode* next = node->pNext;
      if (fn(node->trace)) remove(node);
      node = next;
    }
  }

 private:
  struct SNode {
    STrace trace;
    SNode* pPrev = nullptr;
    SNode* pNext = nullptr;
  };

  void remove(SNode* node);

  std::shared_ptr<XbPlexManager> m_pool;
  SNode* m_pHead = nullptr;
  SNode* m_pTail = nullptr;
  unsigned int m_uiCount = 0;
};

// Finished traces, grouped by class name. A group is made when the first
// trace of its class finishes, so groups stand in the order of first
// finishing and the traces of a group in their order of finishing.
class CTraceGroups {
 public:
  void Add(STrace trace);
  const XbArray<XbArray<STrace>>& GetGroups() const { return m_groups; }
  unsigned int GetTraceCount() const { return m_uiTraceCount; }

 private:
  XbArray<XbArray<STrace>> m_groups;
  XbMap<CString, unsigned int> m_groupIndex;  // class name to group
  unsigned int m_uiTraceCount = 0;
};

}  // namespace TestSuite::Report
