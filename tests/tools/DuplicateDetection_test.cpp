// RunDuplicateDetection over real data trees: the lines it prints for each
// action, what it deletes and what it leaves.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "ZoTestSuite.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUnitTest.h"
#include "services_COutRecorder.h"
#include "tools_DuplicateTree.h"

using TestSuite::CEnvironment;
using TestSuite::SSetup;

// A class of one case whose second listing runs `s_fnSecondListing`: the
// duplicate detection lists every class once while collecting and once
// while examining, and examines the classes in name order, so a hook here
// acts between the examination of the classes before it and the actions.
class ToolsLateChange : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ToolsLateChange)

 public:
  static inline int s_iListings = 0;
  static inline std::function<void()> s_fnSecondListing;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"eins");
    if (++s_iListings == 2 && s_fnSecondListing) s_fnSecondListing();
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(ToolsLateChange, ZoUnitTest);

namespace {

class DuplicateDetectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadDuplicateTestClasses(), "");
    m_setup.sDataDir = m_tree.Path() + L"data";
    ToolsLateChange::s_iListings = 0;
    ToolsLateChange::s_fnSecondListing = nullptr;
  }
  CString Detect(std::optional<TestSuite::EDuplicateAction> action) {
    m_setup.oDuplicateAction = action;
    m_recorder.Clear();
    TestSuite::RunDuplicateDetection(m_setup, m_env);
    return m_recorder.Text();
  }
  CString Closing(unsigned int classes, unsigned int redundant) const {
    return FormatString(
        L"Durchsuchtes Datenverzeichnis: %s\nGefundene Unittest-Klassen: %u\n"
        L"Redundante Datensätze darin: %u\n",
        m_setup.sDataDir, classes, redundant);
  }
  // data/CliScripted: a b c d e, with a=c=e and b=d; data/x/CliSecond: a b
  // equal, and equal to CliScripted's a; data/Alpha, not file-based, with
  // two equal files. Written in listing order, so the first listed file of
  // a set is the oldest or as old as the others.
  void MakeTree() {
    for (const auto& [name, bytes] :
         {std::pair{L"a.case", "eins"}, std::pair{L"b.case", "zwei"}, std::pair{L"c.case", "eins"},
          std::pair{L"d.case", "zwei"}, std::pair{L"e.case", "eins"}})
      m_tree.Write(CString(L"data/CliScripted/") + name, bytes);
    m_tree.Write(L"data/x/CliSecond/a.case", "eins");
    m_tree.Write(L"data/x/CliSecond/b.case", "eins");
    m_tree.Write(L"data/Alpha/cases.txt", "a1\n");
    m_tree.Write(L"data/Alpha/p.case", "gleich");
    m_tree.Write(L"data/Alpha/q.case", "gleich");
  }
  bool Exists(const wchar_t* relative) const { return ZoFileSystem::Exists(m_tree.Path() + relative); }

  DuplicateTree m_tree;
  SSetup m_setup;
  COutRecorder m_recorder;
  CEnvironment m_env;
};

const wchar_t* const c_sChecks = L"Check: Alpha\nCheck: CliScripted\nCheck: CliSecond\n\n";

}  // namespace

TEST_F(DuplicateDetectionTest, WithoutAnActionOnlyTheChecksAndAnEmptyLineArePrinted) {
  MakeTree();
  EXPECT_EQ(Detect(std::nullopt), c_sChecks);
  EXPECT_TRUE(Exists(L"data/CliScripted/c.case"));
}

TEST_F(DuplicateDetectionTest, ListingShowsEverySetOfEveryClassAndDeletesNothing) {
  MakeTree();
  EXPECT_EQ(Detect(TestSuite::eListDuplicates),
            c_sChecks +
                CString(L"CliScripted\n"
                        L"  Duplikat-Set (1/2):\n    a.case\n    c.case\n    e.case\n"
                        L"  Duplikat-Set (2/2):\n    b.case\n    d.case\n\n"
                        L"CliSecond\n"
                        L"  Duplikat-Set (1/1):\n    a.case\n    b.case\n\n") +
                Closing(3, 4));
  for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"})
    EXPECT_TRUE(Exists((CString(L"data/CliScripted/") + name + L".case").Str().c_str())) << name;
}

TEST_F(DuplicateDetectionTest, DeletingKeepsTheFirstOfEachSetAndReadsTheSameTotalsAsListing) {
  MakeTree();
  EXPECT_EQ(Detect(TestSuite::eDeleteDuplicates),
            c_sChecks +
                CString(L"CliScripted\n"
                        L"  Duplikat-Set (1/2):\n    a.case... [KEEP]\n    c.case... [DELETED]\n"
                        L"    e.case... [DELETED]\n"
                        L"  Duplikat-Set (2/2):\n    b.case... [KEEP]\n    d.case... [DELETED]\n\n"
                        L"CliSecond\n"
                        L"  Duplikat-Set (1/1):\n    a.case... [KEEP]\n    b.case... [DELETED]\n\n") +
                Closing(3, 4));
  EXPECT_TRUE(Exists(L"data/CliScripted/a.case"));
  EXPECT_TRUE(Exists(L"data/CliScripted/b.case"));
  EXPECT_FALSE(Exists(L"data/CliScripted/c.case"));
  EXPECT_FALSE(Exists(L"data/CliScripted/d.case"));
  EXPECT_FALSE(Exists(L"data/CliScripted/e.case"));
  EXPECT_TRUE(Exists(L"data/x/CliSecond/a.case"));
  EXPECT_FALSE(Exists(L"data/x/CliSecond/b.case"));
  EXPECT_TRUE(Exists(L"data/Alpha/q.case"));
  EXPECT_EQ(Detect(TestSuite::eListDuplicates), c_sChecks + Closing(3, 0));
}

TEST_F(DuplicateDetectionTest, TheOlderFileIsKeptAndTheYoungerDeletedWhateverTheListingOrder) {
  const CString older = m_tree.Write(L"data/CliScripted/z.case", "gleich");
  m_tree.WriteYounger(L"data/CliScripted/a.case", "gleich", older);
  EXPECT_EQ(Detect(TestSuite::eDeleteDuplicates),
            L"Check: CliScripted\n\nCliScripted\n  Duplikat-Set (1/1):\n    z.case... [KEEP]\n"
            L"    a.case... [DELETED]\n\n" +
                Closing(1, 1));
  EXPECT_TRUE(Exists(L"data/CliScripted/z.case"));
  EXPECT_FALSE(Exists(L"data/CliScripted/a.case"));
}

TEST_F(DuplicateDetectionTest, OfThreeFilesOfOneSecondTheFirstIsKeptAndTheOthersGoInListingOrder) {
  m_tree.WriteInOneSecond(
      {{L"data/CliScripted/c.case", "x"}, {L"data/CliScripted/b.case", "x"}, {L"data/CliScripted/a.case", "x"}});
  EXPECT_EQ(Detect(TestSuite::eDeleteDuplicates),
            L"Check: CliScripted\n\nCliScripted\n  Duplikat-Set (1/1):\n    a.case... [KEEP]\n"
            L"    b.case... [DELETED]\n    c.case... [DELETED]\n\n" +
                Closing(1, 2));
}

TEST_F(DuplicateDetectionTest, AnUnknownActionPrintsTheHeadersOfTheSetsButNotTheirFiles) {
  MakeTree();
  EXPECT_EQ(Detect(static_cast<TestSuite::EDuplicateAction>(7)),
            c_sChecks +
                CString(L"CliScripted\n  Duplikat-Set (1/2):\n  Duplikat-Set (2/2):\n\n"
                        L"CliSecond\n  Duplikat-Set (1/1):\n\n") +
                Closing(3, 4));
  EXPECT_TRUE(Exists(L"data/CliScripted/c.case"));
}

TEST_F(DuplicateDetectionTest, ATreeWithoutDuplicatesPrintsTheClosingLinesWithZero) {
  m_tree.Write(L"data/CliScripted/a.case", "eins");
  m_tree.Write(L"data/CliScripted/b.case", "zwei");
  m_tree.Write(L"data/Alpha/cases.txt", "a1\n");
  EXPECT_EQ(Detect(TestSuite::eListDuplicates), L"Check: Alpha\nCheck: CliScripted\n\n" + Closing(2, 0));
}

TEST_F(DuplicateDetectionTest, AnEmptyTreePrintsAnEmptyLineAndZeros) {
  m_tree.Write(L"data/leer.txt", "");
  EXPECT_EQ(Detect(TestSuite::eDeleteDuplicates), L"\n" + Closing(0, 0));
}

TEST_F(DuplicateDetectionTest, AFailedDeletionIsReportedAndTheRestGoesOn) {
  MakeTree();
  m_tree.Write(L"data/ToolsLateChange/leer.txt", "");
  // After all file-based classes were examined: c.case becomes a directory,
  // which no unlink removes.
  ToolsLateChange::s_fnSecondListing = [this] {
    const std::filesystem::path path = (m_tree.Path() + L"data/CliScripted/c.case").ToUtf8();
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
  };
  EXPECT_EQ(Detect(TestSuite::eDeleteDuplicates),
            L"Check: Alpha\nCheck: CliScripted\nCheck: CliSecond\nCheck: ToolsLateChange\n\n"
            L"CliScripted\n  Duplikat-Set (1/2):\n    a.case... [KEEP]\n"
            L"Fehler während Löschen von Datei " +
                m_tree.Path() +
                L"data/CliScripted//c.case\n    e.case... [DELETED]\n"
                L"  Duplikat-Set (2/2):\n    b.case... [KEEP]\n    d.case... [DELETED]\n\n"
                L"CliSecond\n  Duplikat-Set (1/1):\n    a.case... [KEEP]\n    b.case... [DELETED]\n\n" +
                Closing(4, 4));
  EXPECT_EQ(ToolsLateChange::s_iListings, 2);
  EXPECT_FALSE(Exists(L"data/CliScripted/e.case"));
}

TEST_F(DuplicateDetectionTest, TheSameContentInTwoClassesFormsNoSet) {
  m_tree.Write(L"data/CliScripted/a.case", "gleich");
  m_tree.Write(L"data/CliSecond/a.case", "gleich");
  EXPECT_EQ(Detect(TestSuite::eListDuplicates), L"Check: CliScripted\nCheck: CliSecond\n\n" + Closing(2, 0));
}

TEST_F(DuplicateDetectionTest, SelectionAndFiltersNarrowTheClassesThatAreExamined) {
  MakeTree();
  TestSuite::SPatternFilter filter;
  filter.regex = std::wregex(L"CliScripted");
  m_setup.collectOptions.filters.Add(filter);
  EXPECT_EQ(Detect(TestSuite::eListDuplicates),
            L"Check: CliScripted\n\nCliScripted\n"
            L"  Duplikat-Set (1/2):\n    a.case\n    c.case\n    e.case\n"
            L"  Duplikat-Set (2/2):\n    b.case\n    d.case\n\n" +
                Closing(1, 3));
}
