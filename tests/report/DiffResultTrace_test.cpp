// The diff result trace over small archives written for each test: which
// cases are traced, where the walk finds their change, when it stops, and
// what it refuses; and the summary of a fixed archive as a golden file.
#include "report/DiffResultTrace.h"

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

class DiffResultTraceTest : public ::testing::Test {
 protected:
  // Files a report of `rows` in the archive under the name of `revision`.
  CString Archive(unsigned long long revision, const std::vector<SRow>& rows) {
    const CString path = FormatString(L"%sReport-%I64u-[2021.05.04-12.34.56].xml", m_dir.Path(), revision);
    Report::WriteXmlReport(path, ReportTest::MakeReportOfCases(rows));
    return path;
  }
  std::string Trace(const CString& a, const CString& b, SSetup::EDiffFilterMode mode = SSetup::eDiffAll) {
    ZoFileSystem::DeleteFile(m_out);
    m_outcome = Report::TraceDiffResults(mode, a, b, m_out);
    return TempDirectory::ReadBytes(m_out);
  }

  TempDirectory m_dir;
  TempDirectory m_outDir;
  CString m_out = m_outDir / L"trace.xml";
  Report::STraceOutcome m_outcome;
};

const std::string c_sHead = "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<ResultDiffSummary>\n";

std::string revisions(const char* begin, const char* end) {
  return c_sHead + "\t<BeginRevision>" + begin + "</BeginRevision>\n\t<EndRevision>" + end + "</EndRevision>\n";
}

std::string oneCase(const std::string& className, const std::string& caseName, const std::string& results) {
  return "\t<UnitTest name=\"" + className + "\">\n\t\t<TestCase name=\"" + caseName + "\">\n" + results +
         "\t\t</TestCase>\n\t</UnitTest>\n";
}

std::string before(const char* succeeded, const char* revision) {
  return std::string("\t\t\t<ResultBefore succeeded=\"") + succeeded + "\" revision=\"" + revision + "\"/>\n";
}

std::string after(const char* succeeded, const char* revision) {
  return std::string("\t\t\t<ResultAfter succeeded=\"") + succeeded + "\" revision=\"" + revision + "\"/>\n";
}

const std::string c_sTail = "</ResultDiffSummary>\n";

TEST_F(DiffResultTraceTest, NeighboursReadOnlyTheBeginReportAgain) {
  const CString a = Archive(7, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = Archive(8, {{L"Mesh", L"torus", Run::eCaseError}});
  EXPECT_EQ(Trace(a, b),
            revisions("7", "8") + oneCase("Mesh", "torus", before("true", "7") + after("false", "8")) + c_sTail);
  EXPECT_TRUE(m_outcome.bWritten);
  EXPECT_EQ(m_outcome.uiTraceCount, 1u);
  EXPECT_EQ(m_outcome.uiReportsWalked, 1u);
}

TEST_F(DiffResultTraceTest, TheChangeIsTheNewestRevisionWithTheOtherOutcome) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  Archive(10, {{L"Mesh", L"torus", Run::eCaseDifferent}});
  const CString b = Archive(20, {{L"Mesh", L"torus", Run::eCaseError}});
  EXPECT_EQ(Trace(a, b),
            revisions("5", "20") + oneCase("Mesh", "torus", before("true", "5") + after("false", "10")) + c_sTail);
}

TEST_F(DiffResultTraceTest, ACaseMissingInTheMiddleIsPassedOver) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  Archive(10, {{L"Mesh", L"plane", Run::eCaseOk}});
  const CString b = Archive(20, {{L"Mesh", L"torus", Run::eCaseError}});
  EXPECT_EQ(Trace(a, b),
            revisions("5", "20") + oneCase("Mesh", "torus", before("true", "5") + after("false", "20")) + c_sTail);
  EXPECT_EQ(m_outcome.uiReportsWalked, 2u);
}

TEST_F(DiffResultTraceTest, ACaseNewInTheEndReportHasNoBefore) {
  const CString a = Archive(5, {{L"Mesh", L"plane", Run::eCaseOk}});
  Archive(10, {{L"Mesh", L"plane", Run::eCaseOk}});
  const CString b = Archive(20, {{L"Mesh", L"plane", Run::eCaseOk}, {L"Mesh", L"torus", Run::eCaseOk}});
  EXPECT_EQ(Trace(a, b), revisions("5", "20") + oneCase("Mesh", "torus", after("true", "20")) + c_sTail);
}

TEST_F(DiffResultTraceTest, FromErrorToTimeoutIsTracedButFindsNoBefore) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseError}});
  Archive(10, {{L"Mesh", L"torus", Run::eCaseTimeout}});
  const CString b = Archive(20, {{L"Mesh", L"torus", Run::eCaseTimeout}});
  EXPECT_EQ(Trace(a, b), revisions("5", "20") + oneCase("Mesh", "torus", after("false", "5")) + c_sTail);
}

TEST_F(DiffResultTraceTest, TheFiltersChooseByTheResultOfTheEndReport) {
  const CString a = Archive(5, {{L"Mesh", L"fixed", Run::eCaseError}, {L"Mesh", L"broke", Run::eCaseOk}});
  const CString b = Archive(6, {{L"Mesh", L"fixed", Run::eCaseOk}, {L"Mesh", L"broke", Run::eCaseException}});
  EXPECT_EQ(Trace(a, b, SSetup::eDiffOnlyFailed),
            revisions("5", "6") + oneCase("Mesh", "broke", before("true", "5") + after("false", "6")) + c_sTail);
  EXPECT_EQ(Trace(a, b, SSetup::eDiffOnlySuccessful),
            revisions("5", "6") + oneCase("Mesh", "fixed", before("false", "5") + after("true", "6")) + c_sTail);
}

TEST_F(DiffResultTraceTest, SwappedArgumentsGiveTheSameContent) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}, {L"Io", L"step", Run::eCaseError}});
  Archive(10, {{L"Mesh", L"torus", Run::eCaseError}, {L"Io", L"step", Run::eCaseOk}});
  const CString b = Archive(20, {{L"Mesh", L"torus", Run::eCaseError}, {L"Io", L"step", Run::eCaseOk}});
  const std::string forward = Trace(a, b);
  EXPECT_NE(forward.find("<UnitTest name=\"Io\">"), std::string::npos);
  EXPECT_EQ(Trace(b, a), forward);
}

TEST_F(DiffResultTraceTest, TheWalkStopsWhenNoTraceIsOpen) {
  const CString a = Archive(1, {{L"Mesh", L"torus", Run::eCaseOk}});
  Archive(2, {{L"Mesh", L"torus", Run::eCaseOk}});
  Archive(3, {{L"Mesh", L"torus", Run::eCaseOk}});
  Archive(4, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = Archive(5, {{L"Mesh", L"torus", Run::eCaseError}});
  EXPECT_EQ(Trace(a, b),
            revisions("1", "5") + oneCase("Mesh", "torus", before("true", "4") + after("false", "5")) + c_sTail);
  EXPECT_EQ(m_outcome.uiReportsWalked, 1u);
}

TEST_F(DiffResultTraceTest, GroupsStandInTheOrderOfFirstFinishing) {
  const CString a = Archive(1, {{L"A", L"a1", Run::eCaseOk}, {L"B", L"b1", Run::eCaseOk}, {L"A", L"a2", Run::eCaseOk}});
  Archive(2, {{L"A", L"a1", Run::eCaseOk}, {L"B", L"b1", Run::eCaseError}, {L"A", L"a2", Run::eCaseError}});
  const CString b =
      Archive(3, {{L"A", L"a1", Run::eCaseError}, {L"B", L"b1", Run::eCaseError}, {L"A", L"a2", Run::eCaseError}});
  const std::string text = Trace(a, b);
  // a1 finishes at revision 2, b1 and a2 at revision 1: A's group is made
  // first and a2 stands behind a1 in it.
  const auto groupA = text.find("<UnitTest name=\"A\">");
  const auto groupB = text.find("<UnitTest name=\"B\">");
  ASSERT_NE(groupA, std::string::npos);
  ASSERT_NE(groupB, std::string::npos);
  EXPECT_LT(groupA, groupB);
  EXPECT_LT(text.find("\"a1\""), text.find("\"a2\""));
  EXPECT_LT(text.find("\"a2\""), groupB);
  EXPECT_EQ(ReportTest::CountOf(text, "<UnitTest "), 2u);
}

TEST_F(DiffResultTraceTest, TheSameReportTwiceStopsWithTheSecondMessage) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  COutRecorder recorder;
  Trace(a, a);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler: die beiden Eingabe-XMLs müssen sich unterscheiden.\n"));
  EXPECT_FALSE(ZoFileSystem::Exists(m_out));
}

TEST_F(DiffResultTraceTest, AReportOutsideTheFirstOnesDirectoryStopsWithTheFirstMessage) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  TempDirectory elsewhere;
  const CString b = elsewhere / L"Report-6-[2021.05.04-12.34.56].xml";
  Report::WriteXmlReport(b, ReportTest::MakeEmptyReport());
  COutRecorder recorder;
  Trace(a, b);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler: Eingabe-XMLs sind keine gültigen Archivreport-XMLs.\n"));
  EXPECT_FALSE(ZoFileSystem::Exists(m_out));
}

TEST_F(DiffResultTraceTest, APathSpelledOtherwiseThanTheScanIsNoArchiveReport) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = Archive(6, {{L"Mesh", L"torus", Run::eCaseOk}});
  m_dir.MakeDirectory(L"sub");
  const CString detour = m_dir.Path() + L"sub/../Report-6-[2021.05.04-12.34.56].xml";
  ASSERT_TRUE(ZoFileSystem::Exists(detour));
  COutRecorder recorder;
  Trace(a, detour);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler: Eingabe-XMLs sind keine gültigen Archivreport-XMLs.\n"));
  EXPECT_EQ(Trace(a, b), revisions("5", "6") + c_sTail);
}

TEST_F(DiffResultTraceTest, NoChangedCaseGivesOnlyTheRevisions) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = Archive(6, {{L"Mesh", L"torus", Run::eCaseOk}});
  EXPECT_EQ(Trace(a, b), revisions("5", "6") + c_sTail);
  EXPECT_EQ(m_outcome.uiReportsWalked, 0u);
}

TEST_F(DiffResultTraceTest, AnEndReportThatDoesNotLoadWritesNothing) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = m_dir / L"Report-6-[2021.05.04-12.34.56].xml";
  TempDirectory::WriteBytes(b, "<testsuite><unclosed");
  COutRecorder recorder;
  Trace(a, b);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler in Config-File: XML-Syntax Fehler\n"));
  EXPECT_FALSE(ZoFileSystem::Exists(m_out));
}

TEST_F(DiffResultTraceTest, ASummaryThatCannotBeWrittenEndsQuietly) {
  const CString a = Archive(5, {{L"Mesh", L"torus", Run::eCaseOk}});
  const CString b = Archive(6, {{L"Mesh", L"torus", Run::eCaseError}});
  COutRecorder recorder;
  m_outcome = Report::TraceDiffResults(SSetup::eDiffAll, a, b, m_outDir / L"missing/trace.xml");
  EXPECT_FALSE(m_outcome.bWritten);
  EXPECT_EQ(m_outcome.uiTraceCount, 1u);
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

// The archive of tests/report/data/trace_archive: a partial report in
// between, one that does not load, a class without a row in the end report,
// a case name with an ampersand, and an end revision beyond 32 bits.
TEST(DiffResultTraceArchive, SummaryOfTheFixedArchive) {
  const CString archive = CString::FromUtf8(ZO_SOURCE_DIR "/tests/report/data/trace_archive/");
  TempDirectory out;
  COutRecorder recorder;
  const Report::STraceOutcome outcome =
      Report::TraceDiffResults(SSetup::eDiffAll, archive + L"Report-4294967316-[2021.01.20-02.00.00].xml",
                               archive + L"Report-5-[2021.01.05-02.00.00].xml", out / L"trace.xml");
  EXPECT_TRUE(outcome.bWritten);
  EXPECT_EQ(outcome.uiTraceCount, 6u);
  EXPECT_EQ(outcome.uiReportsWalked, 4u);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler in Config-File: XML-Syntax Fehler\n"));
  ReportTest::ExpectGoldenBytes("ResultDiffSummary.xml", TempDirectory::ReadBytes(out / L"trace.xml"));
}

}  // namespace
