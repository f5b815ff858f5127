// Discovery and selection: the records of discovered test classes, the
// options that steer collection, the pattern filters, the tree over the
// classes with the filter table indexed by its cases, and (through
// SelectionStore.h) the persisted selections.
#pragma once

#include <functional>
#include <optional>
#include <regex>

#include "discovery/SelectionStore.h"
#include "foundation/CString.h"
#include "foundation/XbArray.h"
#include "foundation/XbMap.h"
#include "foundation/XbVariant.h"
#include "services/Wildcard.h"

namespace TestSuite {

// One discovered test class, tied to one data directory.
struct SUnitTest {
  struct SContact {
    CString Name;
    CString Email;
    CString Role;
  };
  struct SCase {
    CString Name;                      // as the class's GetSubtestName gave it
    XbMap<CString, XbVariant> Params;  // only what "#ExtraInfo.xml" set
  };

  CString Name;     // class name = leaf name of the directory
  CString DataDir;  // full path, always ending in '/'
  XbArray<SContact> Contacts;
  XbArray<SCase> Cases;
};

// What a filter says of a name, of a case or of a whole level of the tree.
// Neutral means that nothing was said: the result of the level above stands.
enum EFilterResult : unsigned int { FilterInclude = 0, FilterExclude = 1, FilterNeutral = 2 };

// One element of a filter list.
// A wildcard matches through `wildcard`, iteratively; only a regular
// expression of the user's is held in `regex` (see
// Utils::CompileBoundedRegex).
struct SPatternFilter {
  CString sPattern;  // for people; matching reads only `wildcard` or `regex`
  std::wregex regex;
  unsigned int eAction = 0;                  // 0: a match includes; anything else: a match excludes
  std::optional<Utils::CWildcard> wildcard;  // when present, `regex` is not asked
};

// One of several disjoint parts of the cases, for a test set that is
// spread over machines. A count of 1 is the whole set.
struct SShard {
  unsigned int uiIndex = 0;  // counted from 0, below uiCount
  unsigned int uiCount = 1;
  // Balance the parts by `caseTimes` instead of placing each case by the
  // hash of its directory and key.
  bool bByTimes = false;
  XbMap<CString, double> caseTimes;  // key "%s:%s" of class and case -> seconds, of an earlier run
};

// How collection finds and narrows the test classes.
struct SCollectOptions {
  bool bDropDisabled = true;
  CString sSelectionFile;
  unsigned int eSelectionMode = 0;  // 0: the selection says what runs; else inverted
  XbArray<SPatternFilter> filters;
  bool bFullMatch = false;
  unsigned int uiCaseLimit = 0xFFFFFFFF;  // all ones: no limit
  SShard shard;                           // applied last, to what the case limit left
};

// The tree over a list of test classes: directories below the deepest
// directory that all classes share, the classes, and one flat index per case
// by which filter and time tables are indexed. The tree refers to the list
// by index only, so it stays valid as long as the list is not reordered.
class CTree {
 public:
  static constexpr unsigned int sc_uiInvalid = 0xFFFFFFFF;  // no such index

  enum ENodeType : unsigned int { Directory = 0, UnitTest = 1 };

  struct SNode {
    ENodeType eType = Directory;
    CString sName;                             // directory name, or class name
    unsigned int uiUnitTest = sc_uiInvalid;    // index into the list; Directory: invalid
    unsigned int uiParent = sc_uiInvalid;      // root: invalid
    unsigned int uiFirstChild = sc_uiInvalid;  // UnitTest: invalid
    unsigned int uiChildCount = 0;             // children stand side by side from uiFirstChild
    unsigned int uiFirstCase = sc_uiInvalid;   // Directory: invalid
    unsigned int uiCaseCount = 0;              // Directory: all cases below it
  };

  struct SCase {
    CString sName;
    unsigned int uiCase = sc_uiInvalid;  // index into Cases of its SUnitTest
    unsigned int uiNode = sc_uiInvalid;  // its UnitTest node
  };

  // A half-open range of the sorted case entries.
  struct SRange {
    unsigned int uiBegin = 0;
    unsigned int uiEnd = 0;
  };

  // Replaces the whole content by the tree over `unitTests`. Node 0 is the
  // root, a Directory unless the list holds a single class, which is then
  // the root itself. Children of a node are contiguous and sorted as their
  // paths are, by UTF-16 code units with the separator behind each name
  // ("Geo-x/" before "Geo/"); the cases of a class are contiguous and sorted
  // by name. An empty list, or one whose classes have no cases, gives an
  // empty tree.
  // Throws XbException on a broken invariant (classes without a common
  // root, a class directory nested in another), leaving a partial tree.
  void Build(const XbArray<SUnitTest>& unitTests);

  const SNode& GetNode(unsigned int index) const { return m_nodes[index]; }  // unchecked
  unsigned int GetNodeCount() const { return m_nodes.GetCount(); }
  const SCase& GetCase(unsigned int index) const { return m_cases[index]; }  // unchecked
  unsigned int GetCaseCount() const { return m_cases.GetCount(); }

  // The sorted case entries with their path components, as Build makes them.
  class CComponentLists;

 private:
  void buildRecursive(const CComponentLists& paths, const SRange& range, unsigned int level, unsigned int node);
  void addClassCases(const CComponentLists& paths, const SRange& range, unsigned int level, unsigned int node);

  XbArray<SNode> m_nodes;
  XbArray<SCase> m_cases;
  XbArray<unsigned int> m_unitTestNodes;
};

// The functions that a filter table asks, each optional; an empty slot is
// skipped. Each answers include, exclude or neutral.
struct SFilterFunctions {
  std::function<EFilterResult(const CString& nodeName)> nodeFilter;    // every node
  std::function<EFilterResult(const CString& className)> classFilter;  // every UnitTest node
  std::function<EFilterResult(const CString& caseName)> caseFilter;    // every case
  std::function<EFilterResult(const CString& className, const CString& caseName)> classCaseFilter;  // every case
  // The first contact's Name, then its Email, of every class with a contact.
  std::function<EFilterResult(const CString& text)> contactFilter;
};

// One text against one filter: with `bFullMatch` the whole text must match
// (std::regex_match), else a match anywhere inside it counts
// (std::regex_search). A match gives include or exclude after the filter's
// action; no match gives neutral. An expression never compiled matches
// nothing.
EFilterResult ApplyPatternFilter(const CString& text, const SPatternFilter& filter, bool bFullMatch);
// All filters in order, with no short cut: the last one that matches
// decides; none, or an empty list, gives neutral.
EFilterResult ApplyMultiplePatternFilters(const CString& text, const XbArray<SPatternFilter>& filters, bool bFullMatch);

// One result per case index of `tree`, built from `unitTests`: a walk from
// the root in which each level that says something other than neutral
// overrides what came from above (node, then class, then the first
// contact's Name and Email; per case its name, then class and case). A case
// that no level spoke of stays neutral. An empty tree gives an empty table.
XbArray<EFilterResult> ComputeFilterTable(const XbArray<SUnitTest>& unitTests, const CTree& tree,
                                          const SFilterFunctions& functions);

// Keeps the cases whose result is include, and, with `bKeepNeutral`, those
// that are neutral. Classes and cases keep the order of the list, not that
// of the tree; a class left without cases goes. `tree` must have been built
// from `unitTests` and no longer fits it afterwards; `table` has the tree's
// case count.
void PurgeTestCases(XbArray<SUnitTest>& unitTests, const CTree& tree, XbArray<EFilterResult> table, bool bKeepNeutral);

// Scans `dataDir` for test classes and their cases, applies each class's
// "#ExtraInfo.xml", drops disabled cases, applies selection and filters,
// cuts the list to the case limit and keeps the part `options.shard` of
// what is left. The test libraries must be loaded.
XbArray<SUnitTest> CollectUnitTests(const CString& dataDir, const SCollectOptions& options);

}  // namespace TestSuite
