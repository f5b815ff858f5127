// CTree: the tree over a list of test classes, built from the directory
// paths of the classes below their deepest common directory.
//
// Every case is one entry with a path (root name, then the directories from
// the common root on, then the case name as its last component). The entries
// are sorted by path and case name; a node is made for each run of equal
// components at one level, breadth-first within a parent and depth-first
// across parents, so that cases come out in depth-first order.
#include <algorithm>
#include <numeric>

#include "ZoTestSuiteTree.h"
#include "foundation/XbException.h"

namespace TestSuite {

// The component lists of the sorted entries. The classes of one directory
// share their path components; only the last component, the case name,
// belongs to the entry alone.
class CTree::CComponentLists {
 public:
  struct SEntry {
    unsigned int uiPath;      // index into the distinct paths
    unsigned int uiUnitTest;  // index of the class in the list
    unsigned int uiCase;      // index of the case in that class's Cases
    const CString* pCaseName;
  };

  XbArray<XbArray<CString>> paths;  // components of each distinct path
  XbArray<SEntry> entries;          // sorted by path, then case name

  unsigned int GetEntryCount() const { return entries.GetCount(); }
  unsigned int GetCount(unsigned int entry) const { return paths[entries[entry].uiPath].GetCount() + 1; }
  const CString& Get(unsigned int entry, unsigned int level) const {
    const SEntry& e = entries[entry];
    const XbArray<CString>& path = paths[e.uiPath];
    return level < path.GetCount() ? path[level] : *e.pCaseName;
  }
};

namespace {

using CComponentLists = CTree::CComponentLists;

bool lessUtf16(const CString& a, const CString& b) { return CString::CompareUtf16(a.Str(), b.Str()) < 0; }

// Length of the longest common prefix of all data directories, compared
// character by character and case-sensitively.
std::size_t commonPrefixLength(const XbArray<SUnitTest>& unitTests) {
  const std::wstring& first = unitTests[0].DataDir.Str();
  std::size_t length = first.size();
  for (const SUnitTest& unitTest : unitTests) {
    const std::wstring& dir = unitTest.DataDir.Str();
    const std::size_t limit = std::min(length, dir.size());
    std::size_t i = 0;
    while (i < limit && first[i] == dir[i]) ++i;
    length = i;
  }
  return length;
}

// The root is named after the deepest shared directory: the text between the
// last two separators of the prefix, or "-" where that is empty. `cut` is
// the position of the last separator, -1 if there is none.
CString rootName(const CString& prefix, int& cut) {
  cut = prefix.ReverseFind(L'/');
  if (cut < 0) return CString(L"-");
  const int previous = prefix.Left(cut).ReverseFind(L'/');
  const CString name = prefix.Mid(previous + 1, cut - previous - 1);
  return name.IsEmpty() ? CString(L"-") : name;
}

// Splits at '/', dropping empty components.
XbArray<CString> splitPath(const CString& path) {
  XbArray<CString> components;
  const std::wstring& text = path.Str();
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(L'/', start);
    if (end == std::wstring::npos) end = text.size();
    if (end > start) components.Add(CString(text.substr(start, end - start)));
    start = end + 1;
  }
  return components;
}

// The entries of one path: the cases of all classes in it, by case name.
void addEntriesOfPath(const XbArray<SUnitTest>& unitTests, const std::vector<unsigned int>& classes,
                      unsigned int uiPath, CComponentLists& lists) {
  const unsigned int uiFirst = lists.entries.GetCount();
  for (unsigned int uiUnitTest : classes) {
    const XbArray<SUnitTest::SCase>& cases = unitTests[uiUnitTest].Cases;
    for (unsigned int uiCase = 0; uiCase < cases.GetCount(); ++uiCase)
      lists.entries.Add({uiPath, uiUnitTest, uiCase, &cases[uiCase].Name});
  }
  std::sort(lists.entries.begin() + uiFirst, lists.entries.end(),
            [](const CComponentLists::SEntry& a, const CComponentLists::SEntry& b) {
              return lessUtf16(*a.pCaseName, *b.pCaseName);
            });
}

// The sorted entries of all cases: the classes ordered by their path text,
// classes of one path merged. Equivalent to sorting every case by path and
// then case name, without comparing a path once per case.
void makeEntries(const XbArray<SUnitTest>& unitTests, const CString& root, int cut, CComponentLists& lists) {
  XbArray<CString> pathTexts;
  for (const SUnitTest& unitTest : unitTests)
    pathTexts.Add(root + (cut < 0 ? unitTest.DataDir : unitTest.DataDir.Mid(cut)));
  std::vector<unsigned int> order(unitTests.GetCount());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(),
            [&pathTexts](unsigned int a, unsigned int b) { return lessUtf16(pathTexts[a], pathTexts[b]); });
  for (std::size_t i = 0; i < order.size();) {
    std::size_t j = i + 1;
    while (j < order.size() && pathTexts[order[j]] == pathTexts[order[i]]) ++j;
    const std::vector<unsigned int> classes(order.begin() + static_cast<std::ptrdiff_t>(i),
                                            order.begin() + static_cast<std::ptrdiff_t>(j));
    const unsigned int uiPath = lists.paths.Add(splitPath(pathTexts[order[i]]));
    addEntriesOfPath(unitTests, classes, uiPath, lists);
    i = j;
  }
}

}  // namespace

void CTree::Build(const XbArray<SUnitTest>& unitTests) {
  m_nodes.RemoveAll();
  m_cases.RemoveAll();
  m_unitTestNodes.RemoveAll();
  if (unitTests.IsEmpty()) return;

  int cut = -1;
  const CString root = rootName(unitTests[0].DataDir.Left(static_cast<int>(commonPrefixLength(unitTests))), cut);
  CComponentLists lists;
  makeEntries(unitTests, root, cut, lists);
  if (lists.entries.IsEmpty()) return;
  for (unsigned int entry = 0; entry < lists.GetEntryCount(); ++entry)
    if (!(lists.Get(entry, 0) == root)) XB_THROW("TestSuite::CTree::Build");

  SNode rootNode;
  rootNode.sName = root;
  rootNode.uiFirstChild = 1;
  m_nodes.Add(std::move(rootNode));
  buildRecursive(lists, SRange{0, lists.GetEntryCount()}, 1, 0);
  if (m_cases.GetCount() != lists.GetEntryCount()) XB_THROW("TestSuite::CTree::Build");

  // The cases still hold their entry's index: turn it into the class's case.
  for (unsigned int uiNode : m_unitTestNodes) {
    SNode& node = m_nodes[uiNode];
    node.uiUnitTest = lists.entries[m_cases[node.uiFirstCase].uiCase].uiUnitTest;
    const XbArray<SUnitTest::SCase>& cases = unitTests[node.uiUnitTest].Cases;
    for (unsigned int i = node.uiFirstCase; i < node.uiFirstCase + node.uiCaseCount; ++i) {
      SCase& treeCase = m_cases[i];
      treeCase.uiCase = lists.entries[treeCase.uiCase].uiCase;
      if (treeCase.uiCase >= cases.GetCount() || !(treeCase.sName == cases[treeCase.uiCase].Name))
        XB_THROW("TestSuite::CTree::Build");
    }
  }
}

void CTree::buildRecursive(const CComponentLists& paths, const SRange& range, unsigned int level, unsigned int node) {
  if (range.uiBegin >= paths.GetEntryCount()) return;
  const unsigned int last = paths.GetCount(range.uiBegin) - 1;
  if (level == last) {
    addClassCases(paths, range, level, node);
    return;
  }
  if (level > last) return;

  // Runs of equal component at this level: one child each.
  XbArray<SRange> runs;
  XbArray<CString> names;
  for (unsigned int i = range.uiBegin; i < range.uiEnd;) {
    const CString& name = paths.Get(i, level);
    unsigned int j = i + 1;
    for (; j < range.uiEnd; ++j) {
      if (j >= paths.GetEntryCount() || paths.GetCount(j) <= level) XB_THROW("TestSuite::CTree::buildRecursive");
      if (!(paths.Get(j, level) == name)) break;
    }
    runs.Add(SRange{i, j});
    names.Add(name);
    i = j;
  }

  const unsigned int uiFirstChild = m_nodes.GetCount();
  m_nodes[node].uiFirstChild = uiFirstChild;
  m_nodes[node].uiChildCount = runs.GetCount();
  for (const CString& name : names) {
    SNode child;
    child.sName = name;
    child.uiParent = node;
    m_nodes.Add(std::move(child));
  }
  for (unsigned int i = 0; i < runs.GetCount(); ++i) {
    buildRecursive(paths, runs[i], level + 1, uiFirstChild + i);
    m_nodes[node].uiCaseCount += m_nodes[uiFirstChild + i].uiCaseCount;
  }
}

// The node is a class: its cases are the entries whose case name stands at
// this level. Deeper entries of the range are skipped here, and Build then
// finds the case count short.
void CTree::addClassCases(const CComponentLists& paths, const SRange& range, unsigned int level, unsigned int node) {
  if (m_nodes[node].eType != UnitTest) {
    SNode& classNode = m_nodes[node];
    classNode.eType = UnitTest;
    classNode.uiFirstChild = sc_uiInvalid;
    classNode.uiFirstCase = m_cases.GetCount();
    classNode.uiChildCount = 0;
    classNode.uiCaseCount = 0;
    m_unitTestNodes.Add(node);
  }
  const unsigned int uiCount = paths.GetCount(range.uiBegin);
  for (unsigned int i = range.uiBegin; i < range.uiEnd; ++i) {
    if (paths.GetCount(i) != uiCount) continue;
    m_cases.Add(SCase{paths.Get(i, level), i, node});
    ++m_nodes[node].uiCaseCount;
  }
}

}  // namespace TestSuite
