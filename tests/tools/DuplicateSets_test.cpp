// FindDuplicateSets on real data directories: which files form sets, which
// one is kept, what is passed over and what is reported.
#include "tools/DuplicateSets.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "UnitTestRecords.h"
#include "services_COutRecorder.h"
#include "tools_DuplicateTree.h"

using TestSuite::FindDuplicateSets;
using TestSuite::SDuplicateFile;
using TestSuite::SDuplicateSet;

namespace {

class DuplicateSetsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(LoadDuplicateTestClasses(), ""); }

  TestSuite::SUnitTest Class(const wchar_t* name) const {
    return TestSupport::MakeClass(name, m_tree.Path() + name + L"/", {});
  }
  // Writes the files of a class in the order given.
  void Files(const wchar_t* className, std::initializer_list<std::pair<const wchar_t*, std::string>> files) const {
    for (const auto& [name, bytes] : files) m_tree.Write(CString(className) + L"/" + name, bytes);
  }
  // Each set as its file names, keeper first.
  static std::vector<std::vector<CString>> Names(const XbArray<SDuplicateSet>& sets) {
    std::vector<std::vector<CString>> names;
    for (const SDuplicateSet& set : sets) {
      names.emplace_back();
      for (const SDuplicateFile& file : set) names.back().push_back(file.sFile);
    }
    return names;
  }

  DuplicateTree m_tree;
  COutRecorder m_recorder;
};

using CNames = std::vector<std::vector<CString>>;

}  // namespace

TEST_F(DuplicateSetsTest, SetsFollowTheFirstListedFileAndKeepTheListingOrderBehindTheKeeper) {
  Files(L"CliScripted", {{L"a.case", "eins"},
                         {L"b.case", "zwei"},
                         {L"c.case", "eins"},
                         {L"d.case", "zwei"},
                         {L"e.case", "drei"},
                         {L"f.case", "eins"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 3u);
  EXPECT_EQ(Names(sets), (CNames{{L"a.case", L"c.case", L"f.case"}, {L"b.case", L"d.case"}}));
  EXPECT_EQ(m_recorder.Text(), L"");
}

TEST_F(DuplicateSetsTest, TheRecordsCarryClassFilePathChecksumAndCreationTime) {
  const CString first = m_tree.Write(L"CliScripted/a.case", "Inhalt");
  m_tree.Write(L"CliScripted/b.case", "Inhalt");
  XbArray<SDuplicateSet> sets;
  ASSERT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  const SDuplicateFile& keeper = sets[0][0];
  EXPECT_EQ(keeper.sClass, CString(L"CliScripted"));
  EXPECT_EQ(keeper.sFile, CString(L"a.case"));
  EXPECT_EQ(keeper.sPath, m_tree.Path() + L"CliScripted//a.case");
  EXPECT_EQ(keeper.checksum, ZoMurmurHash3::GetOptimizedChecksum128("Inhalt", 6, 0));
  EXPECT_EQ(keeper.sTime, DuplicateTree::TimeText(first));
  EXPECT_EQ(keeper.sTime.GetLength(), 19);
  EXPECT_EQ(keeper.sTime[4], L'.');
  EXPECT_EQ(keeper.sTime[10], L'-');
}

TEST_F(DuplicateSetsTest, TheOlderOfTwoEqualFilesIsKeptWhateverTheListingOrder) {
  const CString older = m_tree.Write(L"CliScripted/z.case", "gleich");
  m_tree.WriteYounger(L"CliScripted/a.case", "gleich", older);
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"z.case", L"a.case"}}));
}

TEST_F(DuplicateSetsTest, AmongFilesOfOneSecondTheFirstListedIsKept) {
  m_tree.WriteInOneSecond({{L"CliScripted/c.case", "x"}, {L"CliScripted/a.case", "x"}, {L"CliScripted/b.case", "x"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 2u);
  EXPECT_EQ(Names(sets), (CNames{{L"a.case", L"b.case", L"c.case"}}));
}

TEST_F(DuplicateSetsTest, TwoEmptyFilesAreDuplicates) {
  Files(L"CliScripted", {{L"a.case", ""}, {L"b.case", ""}, {L"c.case", "nicht leer"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"a.case", L"b.case"}}));
}

TEST_F(DuplicateSetsTest, FilesThatDifferOnlyInTheirLastByteAreNoDuplicates) {
  std::string bytes(100000, 'q');
  m_tree.Write(L"CliScripted/a.case", bytes);
  bytes.back() = 'r';
  m_tree.Write(L"CliScripted/b.case", bytes);
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 0u);
  EXPECT_TRUE(sets.IsEmpty());
}

TEST_F(DuplicateSetsTest, ALargerFileAfterASmallerOneIsReadWhole) {
  const std::string large(300000, 'x');
  Files(L"CliScripted",
        {{L"a.case", "kurz"}, {L"b.case", large + "Ende"}, {L"c.case", large + "Ende"}, {L"d.case", large + "ENDE"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"b.case", L"c.case"}}));
}

TEST_F(DuplicateSetsTest, AClassThatIsNotFileBasedHasNothingToCompare) {
  Files(L"Alpha", {{L"cases.txt", "a1\na2\n"}, {L"x.case", "gleich"}, {L"y.case", "gleich"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"Alpha"), sets), 0u);
  EXPECT_TRUE(sets.IsEmpty());
}

TEST_F(DuplicateSetsTest, AListedFileThatDoesNotExistIsPassedOverWithoutAWord) {
  Files(L"CliScripted", {{L"a.case", "gleich"}, {L"c.case", "gleich"}});
  m_tree.MakeDanglingLink(L"CliScripted/b.case");
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"a.case", L"c.case"}}));
  EXPECT_EQ(m_recorder.Text(), L"");
}

TEST_F(DuplicateSetsTest, AFileThatCannotBeReadIsReportedAndTheOthersGoOn) {
  Files(L"CliScripted", {{L"a.case", "gleich"}, {L"c.case", "gleich"}});
  ASSERT_FALSE(m_tree.MakeFifo(L"CliScripted/b.case").IsEmpty());
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"a.case", L"c.case"}}));
  EXPECT_EQ(m_recorder.Text(), L"Fehler während Einlesen von Datei " + m_tree.Path() + L"CliScripted//b.case\n");
}

TEST_F(DuplicateSetsTest, SetsAreAppendedBehindThoseAlreadyThere) {
  Files(L"CliScripted", {{L"a.case", "1"}, {L"b.case", "1"}});
  Files(L"CliSecond", {{L"a.case", "1"}, {L"b.case", "1"}});
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(FindDuplicateSets(Class(L"CliSecond"), sets), 1u);
  ASSERT_EQ(sets.GetCount(), 2u);
  EXPECT_EQ(sets[0][0].sClass, CString(L"CliScripted"));
  EXPECT_EQ(sets[1][0].sClass, CString(L"CliSecond"));
}

TEST_F(DuplicateSetsTest, FilesAbove4GiBArePassedOverWithoutAWord) {
  Files(L"CliScripted", {{L"a.case", ""}, {L"b.case", ""}, {L"c.case", "klein"}, {L"d.case", "klein"}});
  // Sparse: no disk space is taken, and nothing of them is read.
  for (const wchar_t* name : {L"a.case", L"b.case"})
    std::filesystem::resize_file((m_tree.Path() + L"CliScripted/" + name).ToUtf8(), 0x100000000ull);
  XbArray<SDuplicateSet> sets;
  EXPECT_EQ(FindDuplicateSets(Class(L"CliScripted"), sets), 1u);
  EXPECT_EQ(Names(sets), (CNames{{L"c.case", L"d.case"}}));
  EXPECT_EQ(m_recorder.Text(), L"");
}
