// The filter table: one include, exclude or neutral per case of a CTree,
// found by a walk from the root in which the deepest level that says
// something wins, and the purge of a class list by such a table.
#include <utility>
#include <vector>

#include "ZoTestSuiteTree.h"

namespace TestSuite {
namespace {

// Replaces `result` by what a filter said, unless it said nothing.
void replaceUnlessNeutral(EFilterResult& result, EFilterResult eSaid) {
  if (eSaid != FilterNeutral) result = eSaid;
}

struct SWalk {
  const XbArray<SUnitTest>& unitTests;
  const CTree& tree;
  const SFilterFunctions& functions;
  XbArray<EFilterResult>& table;

  void classNode(const CTree::SNode& node, EFilterResult eResult) const {
    if (functions.classFilter) replaceUnlessNeutral(eResult, functions.classFilter(node.sName));
    const XbArray<SUnitTest::SContact>& contacts = unitTests[node.uiUnitTest].Contacts;
    if (functions.contactFilter && !contacts.IsEmpty()) {
      replaceUnlessNeutral(eResult, functions.contactFilter(contacts[0].Name));
      replaceUnlessNeutral(eResult, functions.contactFilter(contacts[0].Email));
    }
    for (unsigned int i = node.uiFirstCase; i < node.uiFirstCase + node.uiCaseCount; ++i) {
      EFilterResult eCase = eResult;
      const CString& caseName = tree.GetCase(i).sName;
      if (functions.caseFilter) replaceUnlessNeutral(eCase, functions.caseFilter(caseName));
      if (functions.classCaseFilter) replaceUnlessNeutral(eCase, functions.classCaseFilter(node.sName, caseName));
      table[i] = eCase;
    }
  }

  void walk(unsigned int uiNode, EFilterResult eResult) const {
    const CTree::SNode& node = tree.GetNode(uiNode);
    if (functions.nodeFilter) replaceUnlessNeutral(eResult, functions.nodeFilter(node.sName));
    if (node.eType == CTree::UnitTest) {
      classNode(node, eResult);
      return;
    }
    for (unsigned int i = 0; i < node.uiChildCount; ++i) walk(node.uiFirstChild + i, eResult);
  }
};

}  // namespace

XbArray<EFilterResult> ComputeFilterTable(const XbArray<SUnitTest>& unitTests, const CTree& tree,
                                          const SFilterFunctions& functions) {
  XbArray<EFilterResult> table;
  table.Std().assign(tree.GetCaseCount(), FilterInclude);
  if (tree.GetNodeCount() == 0) return table;
  const SWalk walk{unitTests, tree, functions, table};
  walk.walk(0, FilterNeutral);
  return table;
}

void PurgeTestCases(XbArray<SUnitTest>& unitTests, const CTree& tree, XbArray<EFilterResult> table, bool bKeepNeutral) {
  XbArray<SUnitTest> old;
  std::swap(old, unitTests);

  // One flag per case of the old list, at its class's offset.
  std::vector<unsigned int> offsets(old.GetCount() + 1, 0);
  for (unsigned int i = 0; i < old.GetCount(); ++i) offsets[i + 1] = offsets[i] + old[i].Cases.GetCount();
  std::vector<char> kept(offsets.back(), 0);
  for (unsigned int i = 0; i < table.GetCount(); ++i) {
    if (table[i] != FilterInclude && !(table[i] == FilterNeutral && bKeepNeutral)) continue;
    const CTree::SCase& treeCase = tree.GetCase(i);
    kept[offsets[tree.GetNode(treeCase.uiNode).uiUnitTest] + treeCase.uiCase] = 1;
  }
  table.RemoveAll();

  for (unsigned int i = 0; i < old.GetCount(); ++i) {
    SUnitTest& oldClass = old[i];
    SUnitTest* pNewClass = nullptr;
    for (unsigned int j = 0; j < oldClass.Cases.GetCount(); ++j) {
      if (!kept[offsets[i] + j]) continue;
      if (!pNewClass) {
        pNewClass = &unitTests.Emplace();
        pNewClass->Name = oldClass.Name;
        pNewClass->DataDir = oldClass.DataDir;
        pNewClass->Contacts = oldClass.Contacts;
      }
      pNewClass->Cases.Add(std::move(oldClass.Cases[j]));
    }
  }
}

}  // namespace TestSuite
