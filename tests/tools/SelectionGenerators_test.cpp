// The selection generators over written reports: the failed cases of one
// report, the changed cases between two under each filter, the derived file
// name, and what they leave alone.
#include "tools/SelectionGenerators.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;

using SRow = ReportTest::SCaseRow;
using ReportTest::MakeReportOfCases;

// The bytes of a selection that lists `classes`, each with its cases.
std::string listedSelection(const std::vector<std::pair<std::string, std::vector<std::string>>>& classes) {
  std::string text = "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<Config version=\"1.0\">\n";
  text += "\t<Selection default=\"none\">\n";
  for (const auto& [name, cases] : classes) {
    text += "\t\t<UnitTest name=\"" + name + "\" default=\"none\">\n";
    for (const std::string& testCase : cases) text += "\t\t\t<TestCase name=\"" + testCase + "\" select=\"true\"/>\n";
    text += "\t\t</UnitTest>\n";
  }
  return text + "\t</Selection>\n</Config>\n";
}

class SelectionGeneratorsTest : public ::testing::Test {
 protected:
  CString WriteReport(const wchar_t* name, const std::vector<SRow>& rows) {
    const CString path = m_dir / name;
    Report::WriteXmlReport(path, MakeReportOfCases(rows));
    return path;
  }
  // The diff selection of two reports, written to m_out.
  std::string DiffSelection(const std::vector<SRow>& first, const std::vector<SRow>& second,
                            SSetup::EDiffFilterMode mode) {
    ZoFileSystem::DeleteFile(m_out);
    m_setup.diffInputs.RemoveAll();
    m_setup.diffInputs.Add(WriteReport(L"first.xml", first));
    m_setup.diffInputs.Add(WriteReport(L"second.xml", second));
    m_setup.sDiffOutputPath = m_out;
    m_setup.oDiffFilterMode = mode;
    GenerateDiffSelection(m_setup);
    return TempDirectory::ReadBytes(m_out);
  }

  TempDirectory m_dir;
  SSetup m_setup;
  CString m_out = m_dir / L"out.xml";
};

// Failed cases of one report.

TEST_F(SelectionGeneratorsTest, FailedSelectionListsEveryFailureButNotCancelledInReportOrder) {
  const auto selection = CreateSelectionOfFailedCasesFromReportData(MakeReportOfCases({
      {L"Beta", L"b1", Run::eCaseError},
      {L"Alpha", L"a1", Run::eCaseOk},
      {L"Alpha", L"a2", Run::eCaseTimeout},
      {L"Beta", L"b2", Run::eCaseCanceled},
      {L"Beta", L"b3", Run::eCaseNotFound},
  }));
  ASSERT_NE(selection, nullptr);
  EXPECT_EQ(selection->eDefault, CSelectionStore::None);
  ASSERT_EQ(selection->unitTests.GetCount(), 2u);
  const auto& beta = selection->unitTests[0];
  EXPECT_EQ(beta.sName, L"Beta");
  EXPECT_EQ(beta.eDefault, CSelectionStore::None);
  ASSERT_EQ(beta.cases.GetCount(), 2u);
  EXPECT_EQ(beta.cases[0].sName, L"b1");
  EXPECT_TRUE(beta.cases[0].bSelect);
  EXPECT_EQ(beta.cases[1].sName, L"b3");
  EXPECT_EQ(selection->unitTests[1].sName, L"Alpha");
  ASSERT_EQ(selection->unitTests[1].cases.GetCount(), 1u);
  EXPECT_EQ(selection->unitTests[1].cases[0].sName, L"a2");
}

TEST_F(SelectionGeneratorsTest, FailedSelectionOfAnEmptyReportIsEmptyButNotNull) {
  const auto selection = CreateSelectionOfFailedCasesFromReportData(Report::SData());
  ASSERT_NE(selection, nullptr);
  EXPECT_EQ(selection->eDefault, CSelectionStore::None);
  EXPECT_TRUE(selection->unitTests.IsEmpty());
}

TEST_F(SelectionGeneratorsTest, ReportOfOnlyOkAndCancelledStillWritesAnEmptySelection) {
  m_setup.sSelectionSourceReport =
      WriteReport(L"report.xml", {{L"Alpha", L"a1", Run::eCaseOk}, {L"Alpha", L"a2", Run::eCaseCanceled}});
  m_setup.oXmlReport = m_out;
  GenerateSelectionFileFromReport(m_setup);
  EXPECT_EQ(TempDirectory::ReadBytes(m_out), listedSelection({}));
}

TEST_F(SelectionGeneratorsTest, FailedSelectionFileLeavesOutTheClassWithoutFailures) {
  m_setup.sSelectionSourceReport = WriteReport(L"report.xml", {
                                                                  {L"Alpha", L"a1", Run::eCaseOk},
                                                                  {L"Beta", L"b1", Run::eCaseError},
                                                                  {L"Alpha", L"a2", Run::eCaseOk},
                                                                  {L"Beta", L"b2", Run::eCaseUnknown},
                                                              });
  m_setup.oXmlReport = m_out;
  COutRecorder recorder;
  const SSelectionFileOutcome outcome = WriteSelectionOfFailedCases(m_setup);
  EXPECT_EQ(TempDirectory::ReadBytes(m_out), listedSelection({{"Beta", {"b1", "b2"}}}));
  EXPECT_TRUE(outcome.bLoaded);
  EXPECT_EQ(outcome.uiCaseCount, 2u);
  EXPECT_EQ(outcome.sPath, m_out);
  EXPECT_EQ(recorder.Text(), L"");
}

TEST_F(SelectionGeneratorsTest, FailedSelectionNeedsAnOutputPath) {
  m_setup.sSelectionSourceReport = WriteReport(L"report.xml", {{L"Alpha", L"a1", Run::eCaseError}});
  const SSelectionFileOutcome absent = WriteSelectionOfFailedCases(m_setup);
  m_setup.oXmlReport = CString();
  const SSelectionFileOutcome empty = WriteSelectionOfFailedCases(m_setup);
  EXPECT_TRUE(absent.bLoaded);
  EXPECT_TRUE(empty.bLoaded);
  EXPECT_EQ(absent.sPath, L"");
  EXPECT_EQ(empty.sPath, L"");
  EXPECT_EQ(ZoFileSystem::ListDirectory(m_dir.Path()).GetCount(), 1u) << "only the report itself";
}

TEST_F(SelectionGeneratorsTest, MissingSourceReportWritesNothingAndSaysNothing) {
  m_setup.sSelectionSourceReport = m_dir / L"missing.xml";
  m_setup.oXmlReport = m_out;
  COutRecorder recorder;
  EXPECT_FALSE(WriteSelectionOfFailedCases(m_setup).bLoaded);
  EXPECT_EQ(recorder.Text(), L"");
  EXPECT_FALSE(ZoFileSystem::Exists(m_out));
}

TEST_F(SelectionGeneratorsTest, SourceOfAnotherRootIsNamedByTheLoaderAndWritesNothing) {
  m_setup.sSelectionSourceReport = m_dir / L"selection.xml";
  TempDirectory::WriteBytes(m_setup.sSelectionSourceReport, listedSelection({{"Alpha", {"a1"}}}));
  m_setup.oXmlReport = m_out;
  COutRecorder recorder;
  GenerateSelectionFileFromReport(m_setup);
  EXPECT_EQ(recorder.Text(), L"Fehler in Config-File: XML-Syntax Fehler\n");
  EXPECT_FALSE(ZoFileSystem::Exists(m_out));
}

// Changed cases between two reports.

TEST_F(SelectionGeneratorsTest, OneInputAsksForTwoFilesAndWritesNothing) {
  m_setup.diffInputs.Add(WriteReport(L"a.xml", {{L"Alpha", L"a1", Run::eCaseError}}));
  m_setup.oDiffFilterMode = SSetup::eDiffAll;
  COutRecorder recorder;
  EXPECT_FALSE(WriteDiffSelection(m_setup).bLoaded);
  EXPECT_EQ(recorder.Text(), L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
  EXPECT_EQ(ZoFileSystem::ListDirectory(m_dir.Path()).GetCount(), 1u);
}

TEST_F(SelectionGeneratorsTest, ThreeInputsAskForTwoFilesAndWriteNothing) {
  const CString a = WriteReport(L"a.xml", {{L"Alpha", L"a1", Run::eCaseError}});
  const CString b = WriteReport(L"b.xml", {{L"Alpha", L"a1", Run::eCaseOk}});
  m_setup.diffInputs = {a, b, b};
  m_setup.oDiffFilterMode = SSetup::eDiffAll;
  COutRecorder recorder;
  GenerateDiffSelection(m_setup);
  EXPECT_EQ(recorder.Text(), L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
  EXPECT_EQ(ZoFileSystem::ListDirectory(m_dir.Path()).GetCount(), 2u);
}

TEST_F(SelectionGeneratorsTest, WithoutFilterModeNoInputIsLookedAt) {
  m_setup.diffInputs = {m_dir / L"missing.xml"};
  m_setup.sDiffOutputPath = m_out;
  COutRecorder recorder;
  EXPECT_FALSE(WriteDiffSelection(m_setup).bLoaded);
  EXPECT_EQ(recorder.Text(), L"");
  EXPECT_TRUE(ZoFileSystem::ListDirectory(m_dir.Path()).IsEmpty());
}

TEST_F(SelectionGeneratorsTest, IdenticalReportsWriteNoFileAndSayNothing) {
  const std::vector<SRow> rows = {{L"Alpha", L"a1", Run::eCaseError}, {L"Alpha", L"a2", Run::eCaseOk}};
  COutRecorder recorder;
  for (auto mode : {SSetup::eDiffAll, SSetup::eDiffOnlyFailed, SSetup::eDiffOnlySuccessful}) {
    EXPECT_EQ(DiffSelection(rows, rows, mode), "");
    EXPECT_FALSE(ZoFileSystem::Exists(m_out));
  }
  EXPECT_EQ(recorder.Text(), L"");
}

TEST_F(SelectionGeneratorsTest, OneFailureTurnedIntoAnotherCountsAsNowFailing) {
  const std::vector<SRow> first = {{L"Alpha", L"a1", Run::eCaseError}};
  const std::vector<SRow> second = {{L"Alpha", L"a1", Run::eCaseDifferent}};
  const std::string listed = listedSelection({{"Alpha", {"a1"}}});
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlyFailed), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlySuccessful), "");
}

TEST_F(SelectionGeneratorsTest, FixedCaseCountsAsNowSucceeding) {
  const std::vector<SRow> first = {{L"Alpha", L"a1", Run::eCaseError}};
  const std::vector<SRow> second = {{L"Alpha", L"a1", Run::eCaseOk}};
  const std::string listed = listedSelection({{"Alpha", {"a1"}}});
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlySuccessful), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlyFailed), "");
}

TEST_F(SelectionGeneratorsTest, CaseNewInTheSecondReportCountsAsChanged) {
  const std::vector<SRow> first = {{L"Alpha", L"a1", Run::eCaseOk}};
  const std::vector<SRow> second = {{L"Alpha", L"a1", Run::eCaseOk}, {L"Beta", L"b1", Run::eCaseOk}};
  const std::string listed = listedSelection({{"Beta", {"b1"}}});
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlySuccessful), listed);
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlyFailed), "");
}

TEST_F(SelectionGeneratorsTest, CaseOnlyInTheFirstReportIsNeverListed) {
  const std::vector<SRow> first = {{L"Alpha", L"gone", Run::eCaseError}, {L"Alpha", L"a1", Run::eCaseOk}};
  const std::vector<SRow> second = {{L"Alpha", L"a1", Run::eCaseOk}};
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll), "");
}

TEST_F(SelectionGeneratorsTest, CancelledIsOneResultAmongOthersInTheDiff) {
  // A report written from a run never holds CANCELED, but a file may.
  const std::vector<SRow> first = {{L"Alpha", L"a1", Run::eCaseOk}};
  const std::vector<SRow> second = {{L"Alpha", L"a1", Run::eCaseCanceled}};
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffOnlyFailed), listedSelection({{"Alpha", {"a1"}}}));
}

TEST_F(SelectionGeneratorsTest, LaterRowOfTheBaseCountsAndClassesFollowTheirFirstListedCase) {
  const std::vector<SRow> first = {
      {L"Alpha", L"a1", Run::eCaseOk},
      {L"Alpha", L"a1", Run::eCaseError},  // the later row is the base
      {L"Beta", L"b1", Run::eCaseOk},
      {L"Alpha", L"a2", Run::eCaseOk},
  };
  const std::vector<SRow> second = {
      {L"Beta", L"b1", Run::eCaseTimeout},
      {L"Alpha", L"a1", Run::eCaseOk},
      {L"Alpha", L"a2", Run::eCaseOk},
      {L"Beta", L"b2", Run::eCaseError},
  };
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll),
            listedSelection({{"Beta", {"b1", "b2"}}, {"Alpha", {"a1"}}}));
}

TEST_F(SelectionGeneratorsTest, ColonInANameDoesNotMergeTwoCases) {
  const std::vector<SRow> first = {{L"A:b", L"c", Run::eCaseError}};
  const std::vector<SRow> second = {{L"A", L"b:c", Run::eCaseError}};
  EXPECT_EQ(DiffSelection(first, second, SSetup::eDiffAll), listedSelection({{"A", {"b:c"}}}));
}

TEST_F(SelectionGeneratorsTest, WithoutOutputPathTheFileStandsBesideTheFirstReport) {
  m_dir.MakeDirectory(L"r");
  m_dir.MakeDirectory(L"s");
  m_setup.diffInputs.Add(WriteReport(L"r/a.xml", {{L"Alpha", L"a1", Run::eCaseOk}}));
  m_setup.diffInputs.Add(WriteReport(L"s/b.xml", {{L"Alpha", L"a1", Run::eCaseError}}));
  m_setup.oDiffFilterMode = SSetup::eDiffAll;
  const SSelectionFileOutcome outcome = WriteDiffSelection(m_setup);
  const CString expected = m_dir / L"r/DiffSelection-[a][b].xml";
  EXPECT_EQ(outcome.sPath, expected);
  EXPECT_EQ(outcome.uiCaseCount, 1u);
  EXPECT_EQ(TempDirectory::ReadBytes(expected), listedSelection({{"Alpha", {"a1"}}}));
  EXPECT_EQ(ZoFileSystem::ListDirectory(m_dir / L"s").GetCount(), 1u);
}

TEST_F(SelectionGeneratorsTest, DerivedNameKeepsDotsOfTheNameAndDropsOnlyTheExtension) {
  m_setup.diffInputs = {L"reports/Report-7.run.xml", L"other/Report-8"};
  EXPECT_EQ(GetDiffSelectionPath(m_setup), L"reports/DiffSelection-[Report-7.run][Report-8].xml");
  m_setup.sDiffOutputPath = L"x/chosen.sel";
  EXPECT_EQ(GetDiffSelectionPath(m_setup), L"x/chosen.sel");
}

}  // namespace
