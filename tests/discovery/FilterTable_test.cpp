// ComputeFilterTable and PurgeTestCases over hand-made class lists: which
// level of the tree decides for a case, and what the purge keeps.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "DiscoveryNames.h"
#include "UnitTestRecords.h"
#include "ZoTestSuiteTree.h"

using TestSuite::CTree;
using TestSuite::EFilterResult;
using TestSuite::FilterExclude;
using TestSuite::FilterInclude;
using TestSuite::FilterNeutral;
using TestSuite::SFilterFunctions;
using TestSuite::SPatternFilter;
using TestSuite::SUnitTest;
using TestSupport::MakeClass;
using TestSupport::Wildcard;

namespace {

using Results = std::vector<EFilterResult>;

// The five slots as collection fills them from a pattern list.
SFilterFunctions PatternFunctions(const XbArray<SPatternFilter>& filters, bool bFullMatch) {
  const auto apply = [filters, bFullMatch](const CString& text) {
    return TestSuite::ApplyMultiplePatternFilters(text, filters, bFullMatch);
  };
  SFilterFunctions functions;
  functions.nodeFilter = apply;
  functions.classFilter = apply;
  functions.caseFilter = apply;
  functions.classCaseFilter = [apply](const CString& className, const CString& caseName) {
    return apply(className + L":" + caseName);
  };
  functions.contactFilter = apply;
  return functions;
}

// A fixed answer for one name, neutral for all others.
auto Says(const wchar_t* name, EFilterResult eResult) {
  return [name = CString(name), eResult](const CString& text) { return text == name ? eResult : FilterNeutral; };
}

// /D/Data/Geo/{Mesh, Torus}, /D/Data/Raster: root Data.
class FilterTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_unitTests = {MakeClass(L"Mesh", L"/D/Data/Geo/Mesh/", {L"m2", L"m1"}),
                   MakeClass(L"Raster", L"/D/Data/Raster/", {L"r1"}),
                   MakeClass(L"Torus", L"/D/Data/Geo/Torus/", {L"t1", L"t2"})};
    m_tree.Build(m_unitTests);
  }
  Results Table(const SFilterFunctions& functions) const {
    return TestSuite::ComputeFilterTable(m_unitTests, m_tree, functions).Std();
  }
  // The results in the order of the tree's cases: m1 m2 t1 t2 r1.
  Names TreeCases() const {
    Names names;
    for (unsigned int i = 0; i < m_tree.GetCaseCount(); ++i) names.push_back(m_tree.GetCase(i).sName.Str());
    return names;
  }

  XbArray<SUnitTest> m_unitTests;
  CTree m_tree;
};

const EFilterResult I = FilterInclude, X = FilterExclude, N = FilterNeutral;

}  // namespace

TEST_F(FilterTableTest, TreeCasesAreInDepthFirstOrder) {
  EXPECT_EQ(TreeCases(), (Names{L"m1", L"m2", L"t1", L"t2", L"r1"}));
}

TEST_F(FilterTableTest, NoFunctionsLeaveEveryCaseNeutral) {
  EXPECT_EQ(Table(SFilterFunctions()), (Results{N, N, N, N, N}));
}

TEST_F(FilterTableTest, IncludeOfEverythingThenExcludeOfADirectoryExcludesNothing) {
  // The directory says exclude, but at its classes only the include matches.
  const SFilterFunctions functions = PatternFunctions({Wildcard(L"*", 0), Wildcard(L"Geo", 1)}, true);
  EXPECT_EQ(Table(functions), (Results{I, I, I, I, I}));
}

TEST_F(FilterTableTest, ExcludedDirectoryWithAnIncludedCaseKeepsTheCase) {
  const SFilterFunctions functions = PatternFunctions({Wildcard(L"Geo", 1), Wildcard(L"t2", 0)}, true);
  EXPECT_EQ(Table(functions), (Results{X, X, X, I, N}));
}

TEST_F(FilterTableTest, ExcludingClassBetweenNeutralDirectoryAndNeutralCase) {
  SFilterFunctions functions;
  functions.classFilter = Says(L"Torus", FilterExclude);
  functions.nodeFilter = Says(L"Nothing", FilterInclude);
  functions.caseFilter = Says(L"Nothing", FilterInclude);
  EXPECT_EQ(Table(functions), (Results{N, N, X, X, N}));
}

TEST_F(FilterTableTest, ContactEmailIsAskedAfterItsName) {
  m_unitTests[0].Contacts.Add({L"Anna", L"anna@example.org", L"Pflege"});
  SFilterFunctions functions;
  functions.contactFilter = [](const CString& text) {
    if (text == L"anna@example.org") return FilterInclude;
    return text == L"Anna" ? FilterExclude : FilterNeutral;
  };
  EXPECT_EQ(Table(functions), (Results{I, I, N, N, N}));
}

TEST_F(FilterTableTest, OnlyTheFirstContactIsAsked) {
  m_unitTests[2].Contacts.Add({L"Bert", L"", L""});
  m_unitTests[2].Contacts.Add({L"Carla", L"carla@example.org", L""});
  std::vector<std::wstring> asked;
  SFilterFunctions functions;
  functions.contactFilter = [&asked](const CString& text) {
    asked.push_back(text.Str());
    return text == L"Carla" ? FilterInclude : FilterExclude;
  };
  EXPECT_EQ(Table(functions), (Results{N, N, X, X, N}));
  EXPECT_EQ(asked, (std::vector<std::wstring>{L"Bert", L""}));
}

TEST_F(FilterTableTest, NodeFilterIsAskedForEveryNodeAndClassFilterForClassesOnly) {
  std::vector<std::wstring> nodes, classes;
  SFilterFunctions functions;
  functions.nodeFilter = [&nodes](const CString& name) {
    nodes.push_back(name.Str());
    return FilterNeutral;
  };
  functions.classFilter = [&classes](const CString& name) {
    classes.push_back(name.Str());
    return FilterNeutral;
  };
  Table(functions);
  EXPECT_EQ(nodes, (std::vector<std::wstring>{L"Data", L"Geo", L"Mesh", L"Torus", L"Raster"}));
  EXPECT_EQ(classes, (std::vector<std::wstring>{L"Mesh", L"Torus", L"Raster"}));
}

TEST_F(FilterTableTest, AtOneLevelTheLaterSlotWins) {
  SFilterFunctions functions;
  // On a class node: the node filter, then the class filter.
  functions.nodeFilter = Says(L"Mesh", FilterInclude);
  functions.classFilter = Says(L"Mesh", FilterExclude);
  // For a case: its name, then class and case together.
  functions.caseFilter = Says(L"t1", FilterExclude);
  functions.classCaseFilter = [](const CString& className, const CString& caseName) {
    return className == L"Torus" && caseName == L"t1" ? FilterInclude : FilterNeutral;
  };
  EXPECT_EQ(Table(functions), (Results{X, X, I, N, N}));
}

TEST(FilterTableEmptyTest, TreeWithoutNodesGivesAnEmptyTable) {
  const XbArray<SUnitTest> unitTests{MakeClass(L"A", L"/D/A/", {})};
  CTree tree;
  tree.Build(unitTests);
  SFilterFunctions functions;
  functions.nodeFilter = [](const CString&) { return FilterInclude; };
  EXPECT_TRUE(TestSuite::ComputeFilterTable(unitTests, tree, functions).IsEmpty());
}

TEST_F(FilterTableTest, PurgeOfAllNeutralKeepsAllOrNothing) {
  XbArray<SUnitTest> kept = m_unitTests;
  TestSuite::PurgeTestCases(kept, m_tree, XbArray<EFilterResult>(std::vector<EFilterResult>(5, N)), true);
  EXPECT_EQ(ClassNames(kept), (Names{L"Mesh", L"Raster", L"Torus"}));
  EXPECT_EQ(CaseNames(kept[0]), (Names{L"m2", L"m1"}));

  XbArray<SUnitTest> dropped = m_unitTests;
  TestSuite::PurgeTestCases(dropped, m_tree, XbArray<EFilterResult>(std::vector<EFilterResult>(5, N)), false);
  EXPECT_TRUE(dropped.IsEmpty());
}

TEST_F(FilterTableTest, PurgeKeepsAClassWithItsOneKeptCaseAndItsContacts) {
  m_unitTests[2].Contacts.Add({L"Bert", L"bert@example.org", L"Pflege"});
  m_unitTests[2].Cases[1].Params.SetAt(L"TimeOutSec", XbVariant(std::uint32_t{4}));
  TestSuite::PurgeTestCases(m_unitTests, m_tree, XbArray<EFilterResult>{X, X, X, I, X}, false);
  ASSERT_EQ(ClassNames(m_unitTests), (Names{L"Torus"}));
  EXPECT_EQ(m_unitTests[0].DataDir, L"/D/Data/Geo/Torus/");
  EXPECT_EQ(CaseNames(m_unitTests[0]), (Names{L"t2"}));
  ASSERT_EQ(m_unitTests[0].Contacts.GetCount(), 1u);
  EXPECT_EQ(m_unitTests[0].Contacts[0].Email, L"bert@example.org");
  EXPECT_EQ(m_unitTests[0].Cases[0].Params.Find(L"TimeOutSec")->GetUInt32(), 4u);
}

TEST_F(FilterTableTest, PurgeKeepsTheOrderOfTheListNotThatOfTheTree) {
  // Tree order m1 m2 t1 t2 r1; list order Mesh(m2 m1), Raster, Torus.
  TestSuite::PurgeTestCases(m_unitTests, m_tree, XbArray<EFilterResult>{I, I, N, I, I}, true);
  ASSERT_EQ(ClassNames(m_unitTests), (Names{L"Mesh", L"Raster", L"Torus"}));
  EXPECT_EQ(CaseNames(m_unitTests[0]), (Names{L"m2", L"m1"}));
  EXPECT_EQ(CaseNames(m_unitTests[2]), (Names{L"t1", L"t2"}));
}

TEST_F(FilterTableTest, PurgeDropsExcludedCasesWhateverTheNeutralFlag) {
  TestSuite::PurgeTestCases(m_unitTests, m_tree, XbArray<EFilterResult>{X, I, N, X, X}, true);
  ASSERT_EQ(ClassNames(m_unitTests), (Names{L"Mesh", L"Torus"}));
  EXPECT_EQ(CaseNames(m_unitTests[0]), (Names{L"m2"}));
  EXPECT_EQ(CaseNames(m_unitTests[1]), (Names{L"t1"}));
}
