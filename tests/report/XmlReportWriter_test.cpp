// The XML report: its fixed form (golden file) and the rules of its blocks.
#include "report/XmlReportWriter.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/platform/FailureInjection.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

std::string writeReport(const SData& data) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  WriteXmlReport(path, data);
  return ReadBytes(path);
}

// The lines from the one equal to `first` up to the one equal to `last`.
std::vector<std::string> block(const std::string& text, const std::string& first, const std::string& last) {
  std::vector<std::string> lines;
  bool inside = false;
  for (const std::string& line : SplitLines(text)) {
    if (line == first) inside = true;
    if (inside) lines.push_back(line);
    if (inside && line == last) break;
  }
  return lines;
}

TEST(XmlReportWriterTest, FixedReportMatchesTheGoldenFile) {
  ExpectGoldenBytes("Report.xml", writeReport(MakeFixedReport()));
}

TEST(XmlReportWriterTest, TimeOutOfAllOnesIsWrittenAsMinusOne) {
  SData data = MakeEmptyReport();
  data.TimeOut = 0xFFFFFFFF;
  EXPECT_NE(writeReport(data).find("\n\t\t<TimeOut>-1</TimeOut>\n"), std::string::npos);
  data.TimeOut = 30;
  EXPECT_NE(writeReport(data).find("\n\t\t<TimeOut>30</TimeOut>\n"), std::string::npos);
}

TEST(XmlReportWriterTest, TheSeedOfAShuffledRunFollowsTheTimeOutAndIsLeftOutWithoutOne) {
  SData data = MakeEmptyReport();
  data.TimeOut = 30;
  data.ShuffleSeed = 42;
  EXPECT_NE(writeReport(data).find("\n\t\t<TimeOut>30</TimeOut>\n\t\t<ShuffleSeed>42</ShuffleSeed>\n\t</RunInfo>\n"),
            std::string::npos);
  data.ShuffleSeed.reset();
  EXPECT_EQ(writeReport(data).find("ShuffleSeed"), std::string::npos);
}

TEST(XmlReportWriterTest, WithoutBuildInformationOnlyTheConfigurationIsInBuildInfo) {
  const std::vector<std::string> expected = {
      "\t<BuildInfo>", "\t\t<BuildConfiguration>Release x64</BuildConfiguration>", "\t</BuildInfo>"};
  EXPECT_EQ(block(writeReport(MakeEmptyReport()), "\t<BuildInfo>", "\t</BuildInfo>"), expected);
}

TEST(XmlReportWriterTest, OnlySvnInformationGivesTheSixSvnElements) {
  SData data = MakeEmptyReport();
  data.SvnInfo = MakeFixedReport().SvnInfo;
  const std::string text = writeReport(data);
  EXPECT_EQ(block(text, "\t<BuildInfo>", "\t</BuildInfo>").size(), 9u);
  EXPECT_NE(text.find("\t\t<SvnURL>svn://vcs.example/zo/trunk</SvnURL>\n"), std::string::npos);
  EXPECT_EQ(text.find("Pscm"), std::string::npos);
  EXPECT_EQ(text.find(">trunk<"), std::string::npos);                 // Path is not written
  EXPECT_EQ(text.find(">svn://vcs.example/zo<"), std::string::npos);  // nor RepositoryRoot
}

TEST(XmlReportWriterTest, FailureGroupHasFailureErrorGroupHasErrorOkHasNeither) {
  SData data = MakeEmptyReport();
  AddCase(data, 0, L"C", L"failed", Run::eCaseError);
  AddCase(data, 1, L"C", L"timeout", Run::eCaseTimeout);
  AddCase(data, 2, L"C", L"ok", Run::eCaseOk);
  const std::string text = writeReport(data);
  const std::vector<std::string> failed =
      block(text, "\t<testcase id=\"0\" classname=\"C\" name=\"failed\">", "\t</testcase>");
  ASSERT_EQ(failed.size(), 8u);
  EXPECT_EQ(failed[4], "\t\t<result type=\"ERROR\">");
  EXPECT_EQ(failed[6], "\t\t<failure message=\"\" type=\"Fehler\"></failure>");
  const std::vector<std::string> timeout =
      block(text, "\t<testcase id=\"1\" classname=\"C\" name=\"timeout\">", "\t</testcase>");
  ASSERT_EQ(timeout.size(), 8u);
  EXPECT_EQ(timeout[6],
            "\t\t<error message=\"\" type=\"Zeitlimit \xFC"
            "berschritten\"></error>");
  const std::vector<std::string> ok = block(text, "\t<testcase id=\"2\" classname=\"C\" name=\"ok\">", "\t</testcase>");
  EXPECT_EQ(ok.size(), 7u);
  EXPECT_EQ(CountOf(text, "<failure "), 1u);
  EXPECT_EQ(CountOf(text, "<error "), 1u);
}

TEST(XmlReportWriterTest, WarningOfAPassingCaseMarksTheResultOnly) {
  SData data = MakeEmptyReport();
  AddCase(data, 0, L"C", L"warned", Run::eCaseOk, true);
  data.CasesTotal = 1;
  data.Successful = 1;
  data.Warnings = 1;
  const std::string text = writeReport(data);
  EXPECT_NE(text.find("\t\t<result type=\"OK\" warning=\"true\">\n"), std::string::npos);
  EXPECT_EQ(text.find("<failure"), std::string::npos);
  EXPECT_NE(text.find("\t\t<Successful>1</Successful>\n"), std::string::npos);
}

TEST(XmlReportWriterTest, CaseWithoutOutputHasAnEmptyResultOnTwoLines) {
  SData data = MakeEmptyReport();
  AddCase(data, 7, L"C", L"quiet", Run::eCaseOk);
  EXPECT_NE(writeReport(data).find("\t\t<result type=\"OK\">\n\t\t</result>\n"), std::string::npos);
}

TEST(XmlReportWriterTest, DumpsAreWrittenAsTheyStandWithTheirKind) {
  SData data = MakeEmptyReport();
  SCaseData& row = AddCase(data, 0, L"C", L"dumps", Run::eCaseError);
  row.Dumps.Add(SDump{true, L"a &amp; b"});
  row.Dumps.Add(SDump{false, L"..."});
  EXPECT_NE(writeReport(data).find("\t\t<result type=\"ERROR\">\n\t\t\t<dump type=\"error\">a &amp; b</dump>\n"
                                   "\t\t\t<dump type=\"info\">...</dump>\n\t\t</result>\n"),
            std::string::npos);
}

TEST(XmlReportWriterTest, CountOfTestcasesEqualsTestsAndClassesWithoutCasesAreWritten) {
  const std::string text = writeReport(MakeFixedReport());
  EXPECT_NE(text.find("<testsuite name=\"ZoTestSuite\" tests=\"5\" errors=\"1\" failures=\"1\" skip=\"0\">"),
            std::string::npos);
  EXPECT_EQ(CountOf(text, "\t<testcase "), 5u);
  EXPECT_EQ(CountOf(text, "id=\"3\""), 0u);  // the cancelled row
  const std::vector<std::string> empty = block(text, "\t\t<Class Name=\"Empty\">", "\t\t</Class>");
  ASSERT_EQ(empty.size(), 8u);
  EXPECT_EQ(empty[1], "\t\t\t<CasesTotal>0</CasesTotal>");
}

TEST(XmlReportWriterTest, CaseNameIsEscapedClassNameIsNot) {
  SData data = MakeEmptyReport();
  AddCase(data, 0, L"A&B", L"x \"y\" ä", Run::eCaseOk);
  EXPECT_NE(writeReport(data).find("<testcase id=\"0\" classname=\"A&B\" name=\"x &quot;y&quot; &#228;\">"),
            std::string::npos);
}

TEST(XmlReportWriterTest, FileIsLatin1WithLineFeeds) {
  SData data = MakeEmptyReport();
  data.MachineName = L"Maschine-\u00e9";
  const std::string text = writeReport(data);
  EXPECT_NE(text.find("<MachineName>Maschine-\xE9</MachineName>\n"), std::string::npos);
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>\n"
                       "<?xml-stylesheet type=\"text/xsl\" href=\"ZoTestSuiteReport.xsl\"?>\n",
                       0),
            0u);
  EXPECT_EQ(text.substr(text.size() - 13), "</testsuite>\n");
}

TEST(XmlReportWriterTest, EmptyPathWritesNothing) {
  COutRecorder recorder;
  WriteXmlReport(CString(), MakeEmptyReport());
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

TEST(XmlReportWriterTest, UnwritablePathPrintsOneLineAndReturns) {
  TempDirectory directory;
  const CString path = directory / L"missing/report.xml";
  COutRecorder recorder;
  WriteXmlReport(path, MakeEmptyReport());
  EXPECT_EQ(recorder.Text(), L"XML-Report " + path + L" konnte nicht erzeugt werden.\n");
}

TEST(XmlReportWriterTest, FullDiskPrintsOneLine) {
  COutRecorder recorder;
  WriteXmlReport(L"/dev/full", MakeFixedReport());
  EXPECT_EQ(recorder.Text(), L"XML-Report /dev/full konnte nicht erzeugt werden.\n");
}

TEST(XmlReportWriterTest, ExistingFileIsReplaced) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  TempDirectory::WriteBytes(path, std::string(100000, 'x'));
  WriteXmlReport(path, MakeEmptyReport());
  EXPECT_EQ(ReadBytes(path).find('x' + std::string(10, 'x')), std::string::npos);
}

// A report that cannot be opened leaves the file of an earlier run as it
// was; one whose writing fails half-way says so.
TEST(XmlReportWriterTest, AFailedOpenSaysSoAndLeavesTheEarlierReport) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  TempDirectory::WriteBytes(path, "earlier");
  COutRecorder recorder;
  {
    ZoPlatform::FailureInjection::CScopedFailure failure(ZoPlatform::FailureInjection::EOperation::eFileOpen);
    WriteXmlReport(path, MakeFixedReport());
  }
  EXPECT_EQ(recorder.Text(), L"XML-Report " + path + L" konnte nicht erzeugt werden.\n");
  EXPECT_EQ(ReadBytes(path), "earlier");
}

TEST(XmlReportWriterTest, AFailedWriteSaysSo) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  COutRecorder recorder;
  {
    ZoPlatform::FailureInjection::CScopedFailure failure(ZoPlatform::FailureInjection::EOperation::eFileWrite);
    WriteXmlReport(path, MakeFixedReport());
  }
  EXPECT_EQ(recorder.Text(), L"XML-Report " + path + L" konnte nicht erzeugt werden.\n");
}

}  // namespace
