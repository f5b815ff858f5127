// RunQueryMode and ListDisabledTestCases over real data trees: their
// listings line by line.
#include <gtest/gtest.h>

#include "ZoTestSuite.h"
#include "foundation/XbRTTI.h"
#include "select_DataTree.h"
#include "services_COutRecorder.h"

using TestSuite::CEnvironment;
using TestSuite::SSetup;

namespace {

class QueryModesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadSelectTestClasses(), "");
    m_setup.sDataDir = m_tree.Path();
  }
  CString Query() {
    m_recorder.Clear();
    TestSuite::RunQueryMode(m_setup, m_env);
    return m_recorder.Text();
  }
  CString ListDisabled() {
    m_recorder.Clear();
    TestSuite::ListDisabledTestCases(m_setup, m_env);
    return m_recorder.Text();
  }
  // "Alpha": a1 a2 a3 a4 a5 with a2 and a4 disabled, no contact;
  // "sub/Beta": b1 b2, b2 disabled, two contacts; "Zulu": z1, none disabled.
  void MakeTree() {
    m_alpha = m_tree.Class(L"Alpha", {"a1", "a2", "a3", "a4", "a5"});
    m_tree.ExtraInfo(L"Alpha",
                     "<ExtraInfo><TestCase name=\"a2\"><Enable>false</Enable></TestCase>"
                     "<TestCase name=\"a4\"><Enable>false</Enable></TestCase></ExtraInfo>");
    m_beta = m_tree.Class(L"sub/Beta", {"b1", "b2"});
    m_tree.ExtraInfo(L"sub/Beta",
                     "<ExtraInfo><Contact><Name>Bea</Name></Contact><Contact><Name>Zweite</Name>"
                     "</Contact><TestCase name=\"b2\"><Enable>false</Enable></TestCase></ExtraInfo>");
    m_zulu = m_tree.Class(L"Zulu", {"z1"});
  }

  SelectDataTree m_tree;
  SSetup m_setup;
  COutRecorder m_recorder;
  CEnvironment m_env;
  CString m_alpha, m_beta, m_zulu;
};

}  // namespace

TEST_F(QueryModesTest, QueryWithoutDataDirectoryPrintsNothingAfterLoadingTheLibraries) {
  m_setup.sDataDir.Empty();
  m_setup.dllFiles.Add(L"ApiTestLibrary");
  MakeTree();
  EXPECT_EQ(Query(), L"");
  EXPECT_NE(XbRTTI::Find(L"ApiLoadedTest"), nullptr);
}

TEST_F(QueryModesTest, QueryListsDirectoriesAndCasesWithoutTheDisabledOnes) {
  MakeTree();
  EXPECT_EQ(Query(), m_alpha + L"\n    a1\n    a3\n    a5\n\n" + m_beta + L"\n    b1\n\n" + m_zulu + L"\n    z1\n\n" +
                         L"Datenverzeichnis: " + m_tree.Path() + L"\nKlassen: 3\nFälle: 5\n");
}

TEST_F(QueryModesTest, QueryWithDisabledCasesKeptCountsThemToo) {
  MakeTree();
  m_setup.collectOptions.bDropDisabled = false;
  const CString text = Query();
  EXPECT_NE(text.Find(L"    a4\n"), -1);
  EXPECT_NE(text.Find(L"Klassen: 3\nFälle: 8\n"), -1);
}

TEST_F(QueryModesTest, QueryFollowsFiltersAndTheCaseLimit) {
  MakeTree();
  TestSuite::SPatternFilter filter;
  filter.regex = std::wregex(L"^a");
  m_setup.collectOptions.filters.Add(filter);
  m_setup.collectOptions.uiCaseLimit = 2;
  EXPECT_EQ(Query(), m_alpha + L"\n    a1\n    a3\n\nDatenverzeichnis: " + m_tree.Path() + L"\nKlassen: 1\nFälle: 2\n");
}

TEST_F(QueryModesTest, QueryOfAnEmptyTreeGivesTheClosingLinesWithZeros) {
  EXPECT_EQ(Query(), L"Datenverzeichnis: " + m_tree.Path() + L"\nKlassen: 0\nFälle: 0\n");
}

TEST_F(QueryModesTest, CollectionWarningsComeAheadOfTheListing) {
  m_zulu = m_tree.Class(L"Zulu", {"z1"});
  m_tree.ExtraInfo(L"Zulu", "<ExtraInfo><Zusatz/></ExtraInfo>");
  EXPECT_EQ(Query(), L"Warnung XML 'Zulu': Unbekanntes Element 'Zusatz'.\n" + m_zulu + L"\n    z1\n\n" +
                         L"Datenverzeichnis: " + m_tree.Path() + L"\nKlassen: 1\nFälle: 1\n");
  EXPECT_TRUE(m_recorder.Messages().front().bHasColor);
  EXPECT_FALSE(m_recorder.Messages().back().bHasColor);
}

TEST_F(QueryModesTest, ListDisabledShowsEachClassWithItsFirstContactOrUnbekannt) {
  MakeTree();
  EXPECT_EQ(ListDisabled(),
            L"Alpha (Unbekannt):\n    (1/2) a2\n    (2/2) a4\n\n"
            L"Beta (Bea):\n    (1/1) b2\n\n"
            L"Durchsuchtes Datenverzeichnis: " +
                m_tree.Path() + L"\nKlassen mit deaktivierten Fällen: 2 von 3\nDeaktivierte Fälle: 3 von 8\n");
}

TEST_F(QueryModesTest, ListDisabledWithNothingDisabledPrintsOnlyTheClosingLines) {
  m_tree.Class(L"Alpha", {"a1", "a2"});
  m_tree.Class(L"Zulu", {"z1"});
  EXPECT_EQ(ListDisabled(), L"Durchsuchtes Datenverzeichnis: " + m_tree.Path() +
                                L"\nKlassen mit deaktivierten Fällen: 0 von 2\nDeaktivierte Fälle: 0 von 3\n");
}

TEST_F(QueryModesTest, ListDisabledIsNarrowedBySelectionAndFilters) {
  MakeTree();
  TestSuite::SPatternFilter filter;
  filter.regex = std::wregex(L"Beta");
  m_setup.collectOptions.filters.Add(filter);
  EXPECT_EQ(ListDisabled(),
            L"Beta (Bea):\n    (1/1) b2\n\n"
            L"Durchsuchtes Datenverzeichnis: " +
                m_tree.Path() + L"\nKlassen mit deaktivierten Fällen: 1 von 1\nDeaktivierte Fälle: 1 von 2\n");
}

TEST_F(QueryModesTest, ListDisabledOfAnEmptyTreeGivesZeros) {
  EXPECT_EQ(ListDisabled(), L"Durchsuchtes Datenverzeichnis: " + m_tree.Path() +
                                L"\nKlassen mit deaktivierten Fällen: 0 von 0\nDeaktivierte Fälle: 0 von 0\n");
}
