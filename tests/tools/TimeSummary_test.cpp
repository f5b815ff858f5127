// GenerateTimeSummary over real data trees and real XML reports: which
// lines it prints, their times, indents and order.
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "ZoTestSuite.h"
#include "report/XmlReportWriter.h"
#include "select_DataTree.h"
#include "services_COutRecorder.h"

using TestSuite::CEnvironment;
using TestSuite::SSetup;

namespace {

// One report row: class, case, seconds.
using CRow = std::tuple<const wchar_t*, const wchar_t*, double>;

class TimeSummaryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadSelectTestClasses(), "");
    m_setup.sDataDir = m_tree.Path() + L"data";
    m_setup.sTimeSummaryReport = m_reports / L"Report.xml";
  }
  void WriteReport(const std::vector<CRow>& rows) const {
    TestSuite::Report::SData data;
    for (const auto& [className, caseName, seconds] : rows) {
      TestSuite::Report::SCaseData& row = data.Cases.Emplace();
      row.Id = data.Cases.GetCount() - 1;
      row.ClassName = className;
      row.CaseName = caseName;
      row.Time = seconds;
    }
    TestSuite::Report::WriteXmlReport(m_setup.sTimeSummaryReport, data);
  }
  CString Summary(bool bVerbose = false) {
    m_setup.run.bShowThreadInfo = bVerbose;
    m_recorder.Clear();
    TestSuite::GenerateTimeSummary(m_setup, m_env);
    return m_recorder.Text();
  }
  // data/g1/Alpha (a1 a2 a3), data/g1/sub/Beta (b1), data/g2/Zulu (z1).
  void MakeTree() {
    m_tree.Class(L"data/g1/Alpha", {"a1", "a2", "a3"});
    m_tree.Class(L"data/g1/sub/Beta", {"b1"});
    m_tree.Class(L"data/g2/Zulu", {"z1"});
  }

  SelectDataTree m_tree;
  TempDirectory m_reports;
  SSetup m_setup;
  COutRecorder m_recorder;
  CEnvironment m_env;
};

}  // namespace

TEST_F(TimeSummaryTest, DirectoriesAndClassesCarryTheSumsOfTheirCasesThreeColumnsDeeperPerLevel) {
  MakeTree();
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a2", 2.5}, {L"Beta", L"b1", 0.25}, {L"Zulu", L"z1", 61.0}});
  EXPECT_EQ(Summary(),
            L" [00:01:04.750]  data\n"
            L"   [00:00:03.750]  g1\n"
            L"      [00:00:03.500]  Alpha\n"
            L"      [00:00:00.250]  sub\n"
            L"         [00:00:00.250]  Beta\n"
            L"   [00:01:01.000]  g2\n"
            L"      [00:01:01.000]  Zulu\n");
}

TEST_F(TimeSummaryTest, VerboseAddsTheCasesInTheClassesOwnOrderAndSkipsThoseWithoutTime) {
  m_tree.Class(L"data/Alpha", {"a3", "a1", "a2"});
  m_tree.Class(L"data/Beta", {"b1"});
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a3", 2.0}, {L"Beta", L"b1", 0.5}});
  EXPECT_EQ(Summary(true),
            L" [00:00:03.500]  data\n"
            L"   [00:00:03.000]  Alpha\n"
            L"      [00:00:02.000]  a3\n"
            L"      [00:00:01.000]  a1\n"
            L"   [00:00:00.500]  Beta\n"
            L"      [00:00:00.500]  b1\n");
}

TEST_F(TimeSummaryTest, ACaseThatTheReportDoesNotHoldLeavesTheSumOfItsClassAlone) {
  MakeTree();
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a2", 2.0}});
  const CString before = Summary();
  m_tree.Class(L"data/g1/Alpha", {"a1", "a2", "a3", "neu"});
  EXPECT_EQ(Summary(), before);
  EXPECT_NE(before.Find(L"   [00:00:03.000]  Alpha\n"), -1) << before.ToUtf8();
}

TEST_F(TimeSummaryTest, ADirectoryWithoutAnyTimedCasePrintsNoLineAndNeitherDoesAnythingBelowIt) {
  MakeTree();
  WriteReport({{L"Zulu", L"z1", 2.0}, {L"Beta", L"b1", 0.0}});
  EXPECT_EQ(Summary(true),
            L" [00:00:02.000]  data\n"
            L"   [00:00:02.000]  g2\n"
            L"      [00:00:02.000]  Zulu\n"
            L"         [00:00:02.000]  z1\n");
}

TEST_F(TimeSummaryTest, HoursMinutesSecondsAndMilliseconds) {
  m_tree.Class(L"data/Alpha", {"a1"});
  m_tree.Class(L"data/Beta", {"b1"});
  WriteReport({{L"Alpha", L"a1", 3723.004}, {L"Beta", L"b1", 360000.0}});
  EXPECT_EQ(Summary(),
            L" [101:02:03.004]  data\n"
            L"   [01:02:03.004]  Alpha\n"
            L"   [100:00:00.000]  Beta\n");
}

TEST_F(TimeSummaryTest, ARootThatIsAClassShowsItsNameAndItsCasesOnlyWhenVerbose) {
  m_tree.Class(L"data/Alpha", {"a2", "a1"});
  m_setup.sDataDir = m_tree.Path() + L"data/Alpha";
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a2", 0.002}});
  EXPECT_EQ(Summary(), L" [00:00:01.002]  Alpha\n");
  EXPECT_EQ(Summary(true), L" [00:00:01.002]  Alpha\n   [00:00:00.002]  a2\n   [00:00:01.000]  a1\n");
}

TEST_F(TimeSummaryTest, ASumAboveZeroButBelowOneMillisecondStillPrintsItsLine) {
  m_tree.Class(L"data/Alpha", {"a1"});
  m_tree.Class(L"data/Beta", {"b1"});
  WriteReport({{L"Alpha", L"a1", 0.0005}});
  EXPECT_EQ(Summary(), L" [00:00:00.000]  data\n   [00:00:00.000]  Alpha\n");
}

TEST_F(TimeSummaryTest, ALaterRowOfTheSameCaseOverwritesAnEarlierOne) {
  m_tree.Class(L"data/Alpha", {"a1"});
  WriteReport({{L"Alpha", L"a1", 5.0}, {L"Alpha", L"a1", 0.125}});
  EXPECT_EQ(Summary(), L" [00:00:00.125]  Alpha\n");
}

TEST_F(TimeSummaryTest, RowsOfAnotherClassOfTheSameCaseNameDoNotCount) {
  m_tree.Class(L"data/Alpha", {"x"});
  m_tree.Class(L"data/Beta", {"x"});
  WriteReport({{L"Beta", L"x", 1.0}, {L"Zulu", L"x", 7.0}});
  EXPECT_EQ(Summary(), L" [00:00:01.000]  data\n   [00:00:01.000]  Beta\n");
}

TEST_F(TimeSummaryTest, AnEmptyDataDirectoryPrintsNothing) {
  MakeTree();
  WriteReport({{L"Alpha", L"a1", 1.0}});
  m_setup.sDataDir.Empty();
  EXPECT_EQ(Summary(), L"");
}

TEST_F(TimeSummaryTest, AReportThatDoesNotExistPrintsNothing) {
  MakeTree();
  EXPECT_EQ(Summary(), L"");
}

TEST_F(TimeSummaryTest, AReportThatDoesNotParseGetsTheLoadersMessageAndNothingElse) {
  MakeTree();
  TempDirectory::WriteBytes(m_setup.sTimeSummaryReport, "<testsuite><testcase>");
  EXPECT_EQ(Summary(), L"Fehler in Config-File: XML-Syntax Fehler\n");
  TempDirectory::WriteBytes(m_setup.sTimeSummaryReport, "<?xml version=\"1.0\"?><Config/>");
  EXPECT_EQ(Summary(), L"Fehler in Config-File: XML-Syntax Fehler\n");
}

TEST_F(TimeSummaryTest, ATreeWithoutClassesPrintsNothing) {
  m_tree.Dir(L"data/leer");
  WriteReport({{L"Alpha", L"a1", 1.0}});
  EXPECT_EQ(Summary(true), L"");
}

TEST_F(TimeSummaryTest, ClassesOfTheLibrariesOfTheSetupAreFound) {
  m_tree.Dir(L"data/ApiLoadedTest");
  m_setup.dllFiles.Add(L"ApiTestLibrary");
  WriteReport({{L"ApiLoadedTest", L"passes", 1.0}, {L"ApiLoadedTest", L"fails", 0.5}});
  EXPECT_EQ(Summary(true), L" [00:00:01.500]  ApiLoadedTest\n   [00:00:01.000]  passes\n   [00:00:00.500]  fails\n");
}

TEST_F(TimeSummaryTest, AClassInTwoDirectoriesTakesTheTimesOfItsNameInBoth) {
  m_tree.Class(L"data/x/Alpha", {"a1", "a2"});
  m_tree.Class(L"data/y/Alpha", {"a2"});
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a2", 2.0}});
  EXPECT_EQ(Summary(true),
            L" [00:00:05.000]  data\n"
            L"   [00:00:03.000]  x\n"
            L"      [00:00:03.000]  Alpha\n"
            L"         [00:00:01.000]  a1\n"
            L"         [00:00:02.000]  a2\n"
            L"   [00:00:02.000]  y\n"
            L"      [00:00:02.000]  Alpha\n"
            L"         [00:00:02.000]  a2\n");
}

TEST_F(TimeSummaryTest, ACaseNameListedTwiceCountsTwice) {
  m_tree.Class(L"data/Alpha", {"a1", "a1", "a0"});
  WriteReport({{L"Alpha", L"a1", 1.0}, {L"Alpha", L"a0", 0.5}});
  EXPECT_EQ(Summary(true),
            L" [00:00:02.500]  Alpha\n   [00:00:01.000]  a1\n   [00:00:01.000]  a1\n   [00:00:00.500]  a0\n");
}
