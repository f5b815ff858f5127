// CTree over hand-made lists of test classes: the root, the directory and
// class nodes, the flat case index and the broken invariants.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "UnitTestRecords.h"
#include "ZoTestSuiteTree.h"
#include "foundation/XbException.h"

using TestSuite::CTree;
using TestSuite::SUnitTest;
using TestSupport::MakeClass;

namespace {

CTree Build(const XbArray<SUnitTest>& unitTests) {
  CTree tree;
  tree.Build(unitTests);
  return tree;
}

// The names of a node's children in order.
std::vector<std::wstring> Children(const CTree& tree, unsigned int node) {
  std::vector<std::wstring> names;
  const CTree::SNode& parent = tree.GetNode(node);
  for (unsigned int i = 0; i < parent.uiChildCount; ++i) {
    EXPECT_EQ(tree.GetNode(parent.uiFirstChild + i).uiParent, node);
    names.push_back(tree.GetNode(parent.uiFirstChild + i).sName.Str());
  }
  return names;
}

std::vector<std::wstring> CaseNames(const CTree& tree) {
  std::vector<std::wstring> names;
  for (unsigned int i = 0; i < tree.GetCaseCount(); ++i) names.push_back(tree.GetCase(i).sName.Str());
  return names;
}

// The invariants of a built tree that hold for every input.
void ExpectConsistent(const CTree& tree, const XbArray<SUnitTest>& unitTests) {
  unsigned int uiTotal = 0, uiClassCases = 0;
  for (const SUnitTest& unitTest : unitTests) uiTotal += unitTest.Cases.GetCount();
  for (unsigned int n = 0; n < tree.GetNodeCount(); ++n) {
    const CTree::SNode& node = tree.GetNode(n);
    if (node.eType == CTree::Directory) {
      EXPECT_EQ(node.uiUnitTest, CTree::sc_uiInvalid);
      EXPECT_EQ(node.uiFirstCase, CTree::sc_uiInvalid);
      unsigned int uiBelow = 0;
      for (unsigned int c = 0; c < node.uiChildCount; ++c) uiBelow += tree.GetNode(node.uiFirstChild + c).uiCaseCount;
      EXPECT_EQ(node.uiCaseCount, uiBelow);
      // Siblings are sorted as the paths are, with the separator behind each name.
      for (unsigned int c = 1; c < node.uiChildCount; ++c)
        EXPECT_LT(tree.GetNode(node.uiFirstChild + c - 1).sName + L"/",
                  tree.GetNode(node.uiFirstChild + c).sName + L"/");
      continue;
    }
    EXPECT_EQ(node.uiFirstChild, CTree::sc_uiInvalid);
    EXPECT_EQ(node.uiChildCount, 0u);
    uiClassCases += node.uiCaseCount;
    for (unsigned int i = node.uiFirstCase; i < node.uiFirstCase + node.uiCaseCount; ++i) {
      const CTree::SCase& treeCase = tree.GetCase(i);
      EXPECT_EQ(treeCase.uiNode, n);
      EXPECT_EQ(treeCase.sName, unitTests[node.uiUnitTest].Cases[treeCase.uiCase].Name);
    }
  }
  EXPECT_EQ(uiClassCases, tree.GetCaseCount());
  EXPECT_EQ(uiTotal, tree.GetCaseCount());
}

}  // namespace

TEST(TestTreeTest, OneClassIsTheRootItselfWithNoOtherNode) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/Data/Geo/A/", {L"c1", L"c2"})};
  const CTree tree = Build(unitTests);
  ASSERT_EQ(tree.GetNodeCount(), 1u);
  const CTree::SNode& root = tree.GetNode(0);
  EXPECT_EQ(root.eType, CTree::UnitTest);
  EXPECT_EQ(root.sName, L"A");
  EXPECT_EQ(root.uiUnitTest, 0u);
  EXPECT_EQ(root.uiParent, CTree::sc_uiInvalid);
  EXPECT_EQ(root.uiFirstChild, CTree::sc_uiInvalid);
  EXPECT_EQ(root.uiFirstCase, 0u);
  EXPECT_EQ(root.uiCaseCount, 2u);
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"c1", L"c2"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, TwoClassesInOneDirectoryGiveItAsRootWithTwoClassChildren) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"B", L"/D/Data/Geo/B/", {L"b1"}),
                                     MakeClass(L"A", L"/D/Data/Geo/A/", {L"a1", L"a2"})};
  const CTree tree = Build(unitTests);
  ASSERT_EQ(tree.GetNodeCount(), 3u);
  EXPECT_EQ(tree.GetNode(0).eType, CTree::Directory);
  EXPECT_EQ(tree.GetNode(0).sName, L"Geo");
  EXPECT_EQ(tree.GetNode(0).uiCaseCount, 3u);
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"A", L"B"}));
  EXPECT_EQ(tree.GetNode(1).eType, CTree::UnitTest);
  EXPECT_EQ(tree.GetNode(1).uiUnitTest, 1u);
  EXPECT_EQ(tree.GetNode(2).eType, CTree::UnitTest);
  EXPECT_EQ(tree.GetNode(2).uiUnitTest, 0u);
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"a1", L"a2", L"b1"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, CommonPrefixEndingInsideANameIsCutBackToTheSeparator) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"Foo", L"/D/Data/Foo/", {L"f"}),
                                     MakeClass(L"Foobar", L"/D/Data/Foobar/", {L"g"})};
  const CTree tree = Build(unitTests);
  ASSERT_EQ(tree.GetNodeCount(), 3u);
  EXPECT_EQ(tree.GetNode(0).sName, L"Data");
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"Foo", L"Foobar"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, NestedDirectoryBesideAClass) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"X", L"/D/Data/A/X/", {L"x1"}),
                                     MakeClass(L"B", L"/D/Data/B/", {L"b1"})};
  const CTree tree = Build(unitTests);
  ASSERT_EQ(tree.GetNodeCount(), 4u);
  EXPECT_EQ(tree.GetNode(0).sName, L"Data");
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"A", L"B"}));
  EXPECT_EQ(tree.GetNode(1).eType, CTree::Directory);
  EXPECT_EQ(tree.GetNode(2).eType, CTree::UnitTest);
  // Children of one parent first, then the next level: X is node 3.
  EXPECT_EQ(Children(tree, 1), (std::vector<std::wstring>{L"X"}));
  EXPECT_EQ(tree.GetNode(3).eType, CTree::UnitTest);
  EXPECT_EQ(tree.GetNode(3).uiUnitTest, 0u);
  // Cases in depth-first order: below A before B.
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"x1", L"b1"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, ClassesWithoutCommonPrefixMakeTheRootCheckThrow) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"C:/Data/A/", {L"a"}), MakeClass(L"B", L"D:/Data/B/", {L"b"})};
  CTree tree;
  try {
    tree.Build(unitTests);
    FAIL() << "no exception";
  } catch (const XbException& error) { EXPECT_STREQ(error.what(), "TestSuite::CTree::Build"); }
}

TEST(TestTreeTest, SharingOnlyTheFileSystemRootGivesTheRootNameDash) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/one/A/", {L"a"}), MakeClass(L"B", L"/two/B/", {L"b"})};
  const CTree tree = Build(unitTests);
  EXPECT_EQ(tree.GetNode(0).sName, L"-");
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"one", L"two"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, EmptyListAndClassesWithoutCasesGiveAnEmptyTree) {
  EXPECT_EQ(Build(XbArray<SUnitTest>()).GetNodeCount(), 0u);
  EXPECT_EQ(Build(XbArray<SUnitTest>()).GetCaseCount(), 0u);
  const CTree noCases = Build({MakeClass(L"A", L"/D/A/", {}), MakeClass(L"B", L"/D/B/", {})});
  EXPECT_EQ(noCases.GetNodeCount(), 0u);
  EXPECT_EQ(noCases.GetCaseCount(), 0u);
}

TEST(TestTreeTest, CasesComeOutSortedByNameAndStillLeadToTheirEntry) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/A/", {L"zeta", L"Beta", L"alpha", L"\U0001F600", L"\uFB00"})};
  const CTree tree = Build(unitTests);
  // By UTF-16 code units: capitals first, a surrogate pair before U+FB00.
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"Beta", L"alpha", L"zeta", L"\U0001F600", L"\uFB00"}));
  const unsigned int expected[] = {1, 2, 0, 3, 4};
  for (unsigned int i = 0; i < 5; ++i) EXPECT_EQ(tree.GetCase(i).uiCase, expected[i]) << i;
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, DirectoriesThatBeginAlikeDoNotMix) {
  // The separator behind a directory's name is part of its path: "Geo/"
  // sorts behind "Geo-x/" ('-' is below '/') and before "Geo2/", and the
  // entries of each directory stay together.
  const XbArray<SUnitTest> unitTests{MakeClass(L"P", L"/D/Geo/P/", {L"p"}), MakeClass(L"Q", L"/D/Geo2/Q/", {L"q"}),
                                     MakeClass(L"R", L"/D/Geo-x/R/", {L"r"}), MakeClass(L"S", L"/D/Geo/S/", {L"s"})};
  const CTree tree = Build(unitTests);
  EXPECT_EQ(tree.GetNode(0).sName, L"D");
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"Geo-x", L"Geo", L"Geo2"}));
  EXPECT_EQ(Children(tree, 2), (std::vector<std::wstring>{L"P", L"S"}));
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"r", L"p", L"s", L"q"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, DoubledSeparatorsAreHarmless) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/x//A/", {L"a"}), MakeClass(L"B", L"/D/x/B//", {L"b"})};
  const CTree tree = Build(unitTests);
  EXPECT_EQ(tree.GetNode(0).sName, L"x");
  EXPECT_EQ(Children(tree, 0), (std::vector<std::wstring>{L"A", L"B"}));
  ExpectConsistent(tree, unitTests);
}

TEST(TestTreeTest, ClassNestedInAnotherClassMakesTheCaseCountCheckThrow) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/A/", {L"a"}), MakeClass(L"X", L"/D/A/X/", {L"x"})};
  CTree tree;
  try {
    tree.Build(unitTests);
    FAIL() << "no exception";
  } catch (const XbException& error) { EXPECT_STREQ(error.what(), "TestSuite::CTree::Build"); }
}

TEST(TestTreeTest, TwoClassesOfOneDirectoryMergeIntoOneNode) {
  // Not made by a scan; a hand-made list may hold it. The merged node
  // belongs to the class of its first case, so the name check finds the
  // other class's cases wrong.
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/A/", {L"a1"}), MakeClass(L"A", L"/D/A/", {L"a0"})};
  EXPECT_THROW(Build(unitTests), XbException);
}

TEST(TestTreeTest, CopiesAndMovesKeepTheWholeTree) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/A/", {L"a"}), MakeClass(L"B", L"/D/B/", {L"b"})};
  const CTree tree = Build(unitTests);
  CTree copy(tree);
  CTree assigned;
  assigned = copy;
  const CTree moved(std::move(copy));
  for (const CTree* other : std::initializer_list<const CTree*>{&assigned, &moved}) {
    ASSERT_EQ(other->GetNodeCount(), tree.GetNodeCount());
    EXPECT_EQ(CaseNames(*other), CaseNames(tree));
    EXPECT_EQ(other->GetNode(2).sName, L"B");
  }
}

TEST(TestTreeTest, BuildReplacesTheWholeContent) {
  CTree tree = Build({MakeClass(L"A", L"/D/A/", {L"a"}), MakeClass(L"B", L"/D/B/", {L"b"})});
  tree.Build({MakeClass(L"C", L"/E/C/", {L"c1", L"c2", L"c3"})});
  EXPECT_EQ(tree.GetNodeCount(), 1u);
  EXPECT_EQ(CaseNames(tree), (std::vector<std::wstring>{L"c1", L"c2", L"c3"}));
  tree.Build({});
  EXPECT_EQ(tree.GetNodeCount(), 0u);
  EXPECT_EQ(tree.GetCaseCount(), 0u);
}
