// The selection and filter stages of CollectUnitTests over real data trees:
// how a selection file and pattern filters combine, and what an unreadable
// selection file leaves.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "DiscoveryNames.h"
#include "UnitTestRecords.h"
#include "ZoTestSuiteTree.h"
#include "select_DataTree.h"
#include "services_COutRecorder.h"

using TestSuite::SCollectOptions;
using TestSuite::SUnitTest;
using TestSupport::Wildcard;

namespace {

// Alpha (a1 a2 a3) in "geo/", Beta (b1 b2) and Zulu (z1) below the root.
class CollectFilterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadSelectTestClasses(), "");
    m_tree.Class(L"geo/Alpha", {"a1", "a2", "a3"});
    m_tree.Class(L"Beta", {"b1", "b2"});
    m_tree.Class(L"Zulu", {"z1"});
  }
  CString Selection(const std::string& xml) const { return m_tree.File(L"selection.xml", xml); }
  // Every class and case of the result as "class:case".
  Names Keys(const SCollectOptions& options) const {
    Names keys;
    for (const SUnitTest& unitTest : TestSuite::CollectUnitTests(m_tree.Path(), options))
      for (const SUnitTest::SCase& testCase : unitTest.Cases)
        keys.push_back((unitTest.Name + L":" + testCase.Name).Str());
    return keys;
  }

  SelectDataTree m_tree;
  COutRecorder m_recorder;
};

const char* const c_sAlphaA2AndBeta =
    "<Config version=\"1.0\"><Selection default=\"none\">"
    "<UnitTest name=\"Alpha\" default=\"none\"><TestCase name=\"a2\" select=\"true\"/></UnitTest>"
    "<UnitTest name=\"Beta\" default=\"all\"></UnitTest></Selection></Config>";

}  // namespace

TEST_F(CollectFilterTest, UnreadableSelectionFilesWithoutFiltersEmptyTheList) {
  const std::string truncated = std::string(c_sAlphaA2AndBeta).substr(0, 90);
  for (const std::string& xml : {std::string("  \n"), truncated,
                                 std::string("<Config><Selection default=\"all\"><Klasse/></Selection></Config>"),
                                 std::string("<CONFIG><SELECTION DEFAULT=\"all\"><UNITTEST NAME=\"Beta\" "
                                             "DEFAULT=\"all\"/></SELECTION></CONFIG>")}) {
    SCollectOptions options;
    options.sSelectionFile = Selection(xml);
    EXPECT_TRUE(Keys(options).empty()) << xml;
  }
  SCollectOptions missing;
  missing.sSelectionFile = m_tree.Path() + L"fehlt.xml";
  EXPECT_TRUE(Keys(missing).empty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectFilterTest, SelectionSaysWhatRuns) {
  SCollectOptions options;
  options.sSelectionFile = Selection(c_sAlphaA2AndBeta);
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a2", L"Beta:b1", L"Beta:b2"}));
}

TEST_F(CollectFilterTest, InvertedSelectionRunsAllOthers) {
  SCollectOptions options;
  options.sSelectionFile = Selection(c_sAlphaA2AndBeta);
  options.eSelectionMode = 1;
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a1", L"Alpha:a3", L"Zulu:z1"}));
  options.eSelectionMode = 7;
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a1", L"Alpha:a3", L"Zulu:z1"}));
}

TEST_F(CollectFilterTest, SelectionsExcludeBeatsEveryFilter) {
  SCollectOptions options;
  options.sSelectionFile = Selection(c_sAlphaA2AndBeta);
  options.filters.Add(Wildcard(L"*", 0));
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a2", L"Beta:b1", L"Beta:b2"}));
}

TEST_F(CollectFilterTest, FilterExcludeBeatsSelectionsIncludeAndNeutralLeavesIt) {
  SCollectOptions options;
  options.sSelectionFile = Selection(c_sAlphaA2AndBeta);
  options.filters.Add(Wildcard(L"b2", 1));
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a2", L"Beta:b1"}));
}

TEST_F(CollectFilterTest, UnreadableSelectionWithFiltersLeavesTheFiltersAlone) {
  SCollectOptions options;
  options.sSelectionFile = Selection("");
  options.filters.Add(Wildcard(L"Beta", 0));
  EXPECT_EQ(Keys(options), (Names{L"Beta:b1", L"Beta:b2"}));
}

TEST_F(CollectFilterTest, FiltersSeeDirectoriesClassesCasesAndClassWithCase) {
  const auto keys = [this](std::initializer_list<TestSuite::SPatternFilter> filters, bool bFullMatch) {
    SCollectOptions options;
    for (const auto& filter : filters) options.filters.Add(filter);
    options.bFullMatch = bFullMatch;
    return Keys(options);
  };
  EXPECT_EQ(keys({Wildcard(L"geo", 0)}, true), (Names{L"Alpha:a1", L"Alpha:a2", L"Alpha:a3"}));
  EXPECT_EQ(keys({Wildcard(L"geo", 0), Wildcard(L"a2", 1)}, true), (Names{L"Alpha:a1", L"Alpha:a3"}));
  EXPECT_EQ(keys({Wildcard(L"Beta:b2", 0), Wildcard(L"z1", 0)}, true), (Names{L"Beta:b2", L"Zulu:z1"}));
  // With a full match "b" names nothing; without one "eta" is found inside "Beta".
  EXPECT_EQ(keys({Wildcard(L"b", 0)}, true), (Names{}));
  EXPECT_EQ(keys({Wildcard(L"eta", 0)}, false), (Names{L"Beta:b1", L"Beta:b2"}));
}

TEST_F(CollectFilterTest, FiltersSeeTheFirstContactsNameAndEmail) {
  m_tree.ExtraInfo(L"Beta",
                   "<ExtraInfo><Contact><Name>Bea Berg</Name><Email>bea@example.org</Email></Contact></ExtraInfo>");
  m_tree.ExtraInfo(L"Zulu",
                   "<ExtraInfo><Contact><Name>Zoe</Name></Contact>"
                   "<Contact><Name>Bea Berg</Name></Contact></ExtraInfo>");
  SCollectOptions options;
  options.filters.Add(Wildcard(L"Bea*", 0));
  options.bFullMatch = true;
  EXPECT_EQ(Keys(options), (Names{L"Beta:b1", L"Beta:b2"}));
  options.filters.Add(Wildcard(L"*@example.org", 1));
  EXPECT_TRUE(Keys(options).empty());
}

TEST_F(CollectFilterTest, SelectionAndFiltersComeBeforeTheCaseLimit) {
  SCollectOptions options;
  options.sSelectionFile = Selection(c_sAlphaA2AndBeta);
  options.uiCaseLimit = 2;
  EXPECT_EQ(Keys(options), (Names{L"Alpha:a2", L"Beta:b1"}));
}

TEST_F(CollectFilterTest, SelectionNamesClassesAndCasesWithBlanksUmlautsAndXmlSpecials) {
  m_tree.Class(L"Größe Prüfung", {"Fall <&> \"1\"", "Übergröße 'ß'", "anderer"});
  TestSuite::CSelectionStore::SData data;
  data.unitTests.Emplace().sName = L"Größe Prüfung";
  data.unitTests[0].cases.Add({L"Fall <&> \"1\"", true});
  data.unitTests[0].cases.Add({L"Übergröße 'ß'", true});
  const CString path = m_tree.Path() + L"auswahl.xml";
  TestSuite::CSelectionStore::Write(data, path);
  SCollectOptions options;
  options.sSelectionFile = path;
  EXPECT_EQ(Keys(options), (Names{L"Größe Prüfung:Fall <&> \"1\"", L"Größe Prüfung:Übergröße 'ß'"}));
}
