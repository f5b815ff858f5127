// The HTML report: its fixed form (golden file), the sections that depend on
// the results, and the two files beside the page.
#include "report/HtmlReportWriter.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report/ReportResources.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

std::string writePage(const SData& data, bool omitCaseTable = false, bool hideWarnings = true) {
  TempDirectory directory;
  const CString path = directory / L"report.html";
  WriteHtmlReport(path, data, omitCaseTable, hideWarnings);
  return ReadBytes(path);
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A run whose every case passed, one of them with a warning.
SData passingRunWithWarning() {
  SData data = MakeEmptyReport();
  AddClass(data, L"Clean", 1, 0, 0, 0);
  AddClass(data, L"Warned", 1, 0, 0, 1);
  AddCase(data, 0, L"Clean", L"a", Run::eCaseOk);
  AddCase(data, 1, L"Warned", L"b", Run::eCaseOk, true);
  data.ClassesTotal = 2;
  data.ClassesSuccessful = 2;
  data.ClassesNotClean = 1;
  data.CasesTotal = 2;
  data.Successful = 2;
  data.Warnings = 1;
  return data;
}

TEST(HtmlReportWriterTest, FixedReportMatchesTheGoldenFile) {
  ExpectGoldenBytes("Report.html", writePage(MakeFixedReport(), false, false));
}

TEST(HtmlReportWriterTest, TheSeedOfAShuffledRunIsARowOfTheSetupOnlyWhenThereIsOne) {
  SData data = MakeEmptyReport();
  data.ShuffleSeed = 42;
  EXPECT_TRUE(contains(writePage(data), "Shuffle Seed:"));
  EXPECT_TRUE(contains(writePage(data), ">42<"));
  data.ShuffleSeed.reset();
  EXPECT_FALSE(contains(writePage(data), "Shuffle Seed:"));
}

TEST(HtmlReportWriterTest, ZeroClassesGiveARateOfZero) {
  const std::string page = writePage(MakeEmptyReport());
  EXPECT_TRUE(contains(page, "\t\t\t\t<td>Successful Classes / Total Classes:</td>\n\t\t\t\t<td>0/0 = 0.00%</td>\n"));
  EXPECT_TRUE(contains(page, "\t\t\t\t<td>Successful Cases / Total Cases:</td>\n\t\t\t\t<td>0/0 = 0.00%</td>\n"));
}

TEST(HtmlReportWriterTest, RateIsWorkedOutInSinglePrecision) {
  SData data = MakeEmptyReport();
  data.CasesTotal = 3;
  data.Successful = 2;
  data.ClassesTotal = 7;
  data.ClassesSuccessful = 7;
  const std::string page = writePage(data);
  EXPECT_TRUE(contains(page, "<td>2/3 = 66.67%</td>"));
  EXPECT_TRUE(contains(page, "<td>7/7 = 100.00%</td>"));
}

TEST(HtmlReportWriterTest, AllPassedWithoutWarningsHasNoClassSummary) {
  SData data = passingRunWithWarning();
  data.Classes[1].Warnings = 0;
  data.Cases[1].Warning = false;
  data.ClassesNotClean = 0;
  data.Warnings = 0;
  EXPECT_FALSE(contains(writePage(data, false, false), "Class Summary"));
}

TEST(HtmlReportWriterTest, WarningsShownListOnlyTheClassesWithWarnings) {
  const std::string page = writePage(passingRunWithWarning(), false, false);
  EXPECT_TRUE(contains(page, "\t\t<h2>Class Summary</h2>\n\t\t<table id=\"testclasses\">\n"));
  EXPECT_TRUE(contains(page, "\t\t\t<tr class=\"warning\">\n\t\t\t\t<td>Warned</td>\n"));
  EXPECT_FALSE(contains(page, "<td>Clean</td>\n\t\t\t\t<td>1</td>"));
  EXPECT_EQ(CountOf(page, "<tr class=\"warning\">"), 2u);  // the class and its case
}

TEST(HtmlReportWriterTest, WarningsHiddenLeaveOutTheSectionAndColourNothing) {
  const std::string page = writePage(passingRunWithWarning(), false, true);
  EXPECT_FALSE(contains(page, "Class Summary"));
  EXPECT_FALSE(contains(page, "class=\"warning\""));
  EXPECT_EQ(CountOf(page, "<tr class=\"ok\">"), 2u);
}

TEST(HtmlReportWriterTest, ReportLoadedFromXmlShowsNoSummaryForWarningsAlone) {
  TempDirectory directory;
  WriteXmlReport(directory / L"report.xml", passingRunWithWarning());
  SData loaded;
  ASSERT_TRUE(LoadReportDataFromXMLFile(directory / L"report.xml", loaded));
  EXPECT_EQ(loaded.ClassesNotClean, 0u);
  const std::string page = writePage(loaded, false, false);
  EXPECT_FALSE(contains(page, "Class Summary"));
  EXPECT_EQ(CountOf(page, "<tr class=\"warning\">"), 1u);  // the case row still shows it
}

TEST(HtmlReportWriterTest, ClassWithAnErrorAndAFailureCountsTwoAndIsAnError) {
  SData data = MakeEmptyReport();
  AddClass(data, L"Mixed", 3, 1, 1, 0);
  data.ClassesTotal = 1;
  EXPECT_TRUE(contains(writePage(data),
                       "\t\t\t<tr class=\"error\">\n\t\t\t\t<td>Mixed</td>\n\t\t\t\t<td>3</td>\n"
                       "\t\t\t\t<td>2</td>\n\t\t\t\t<td>0</td>\n\t\t\t\t<td></td>\n\t\t\t</tr>\n"));
}

TEST(HtmlReportWriterTest, TimeOutOfAllOnesShowsADash) {
  SData data = MakeEmptyReport();
  EXPECT_TRUE(contains(writePage(data), "<td>Testcase Time Out (sec.):</td>\n\t\t\t\t<td>-</td>\n"));
  data.TimeOut = 12;
  EXPECT_TRUE(contains(writePage(data), "<td>Testcase Time Out (sec.):</td>\n\t\t\t\t<td>12</td>\n"));
}

TEST(HtmlReportWriterTest, ContactWithAddressButNoNameShowsTheAddress) {
  const std::string page = writePage(MakeFixedReport());
  EXPECT_TRUE(contains(page, "<td><a href=\"mailto:import@example.com\">import@example.com</a></td>"));
  EXPECT_TRUE(contains(page, "<td><a href=\"mailto:anna@example.com\">Anna M\xFCller</a></td>"));
}

TEST(HtmlReportWriterTest, CaseTableCountsRowsNotIdsAndShowsDumpsOnOneLine) {
  const std::string page = writePage(MakeFixedReport());
  EXPECT_TRUE(
      contains(page, "\t\t\t<tr class=\"ok\">\n\t\t\t\t<td>3</td>\n\t\t\t\t<td>Mesh</td>\n\t\t\t\t<td>torus</td>\n"));
  EXPECT_TRUE(
      contains(page, "\t\t\t\t<td>Abweichung bei &lt;node 3&gt;: &#246;ffnen<br/>second line<br/>...<br/></td>\n"));
  EXPECT_TRUE(contains(page, "<td>cube &amp; sphere</td>"));
  EXPECT_TRUE(contains(page, "<td>Speicherleck von 256 Bytes detektiert.</td>"));
}

TEST(HtmlReportWriterTest, CaseTableCanBeOmittedAndTheNeighbourFilesAreWrittenAllTheSame) {
  TempDirectory directory;
  TempDirectory::WriteBytes(directory / L"ZoTestSuite.css", "old");
  WriteHtmlReport(directory / L"page.html", MakeFixedReport(), true, true);
  const std::string page = ReadBytes(directory / L"page.html");
  EXPECT_FALSE(contains(page, "Testcases"));
  EXPECT_TRUE(contains(page, "Class Summary"));
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.css"), LoadStyleSheet());
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.js"), LoadReportScript());
}

TEST(HtmlReportWriterTest, HeadEmbedsTheStyleSheetLineByLineAndLinksBothFiles) {
  const std::string page = writePage(MakeEmptyReport());
  EXPECT_EQ(page.rfind("<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" "
                       "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd\">\n"
                       "<html xmlns=\"http://www.w3.org/1999/xhtml\">\n\t<head>\n"
                       "\t\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\"/>\n"
                       "\t\t<title>ZoTestSuite Report</title>\n\t\t<style type=\"text/css\">\n"
                       "\t\t\t/* Standardschriftart des gesamten Dokuments */\n",
                       0),
            0u);
  EXPECT_TRUE(contains(page, "\t\t\ttr.ok { color:green; }\n"));
  EXPECT_TRUE(contains(page,
                       "\t\t</style>\n\t\t<link rel=\"stylesheet\" type=\"text/css\" href=\"ZoTestSuite.css\"/>\n"
                       "\t\t<script src=\"ZoTestSuite.js\" type=\"text/javascript\"></script>\n"
                       "\t</head>\n\t<body>\n"));
  EXPECT_FALSE(contains(page, "\r"));
  EXPECT_FALSE(contains(page, "\t\t\t\n"));  // the empty lines of the style sheet vanished
  EXPECT_EQ(page.substr(page.size() - 17), "\t</body>\n</html>\n");
}

TEST(HtmlReportWriterTest, HeadWithoutEmbeddedStyleHasAnEmptyStyleElement) {
  XbStreamWriteASCIIStringT<CString> text;
  Utils::CMarkupWriter writer(text);
  WriteHtmlHead(writer, false);
  EXPECT_NE(text.GetString().Find(L"\t\t<style type=\"text/css\">\n\t\t</style>\n"), -1);
  EXPECT_EQ(writer.GetDepth(), 1u);
}

TEST(HtmlReportWriterTest, TableRowHasTwoCellsAsTheyStand) {
  XbStreamWriteASCIIStringT<CString> text;
  Utils::CMarkupWriter writer(text);
  WriteHtmlTableRow(writer, L"A<b>:", L"x & y");
  EXPECT_EQ(text.GetString(), L"<tr>\n\t<td>A<b>:</td>\n\t<td>x & y</td>\n</tr>\n");
}

TEST(HtmlReportWriterTest, BuildTableHasTheRowsOfTheBuildInformationThatExists) {
  const std::string page = writePage(MakeFixedReport());
  EXPECT_TRUE(contains(page, "<td>SVN Revision</td>\n\t\t\t\t<td>1234</td>"));
  EXPECT_TRUE(contains(page, "<td>PSCM Changeset:</td>\n\t\t\t\t<td>4711</td>"));
  const std::string empty = writePage(MakeEmptyReport());
  EXPECT_FALSE(contains(empty, "SVN"));
  EXPECT_FALSE(contains(empty, "PSCM"));
}

TEST(HtmlReportWriterTest, EmptyPathWritesNothingAndUnwritablePathPrintsOneLine) {
  TempDirectory directory;
  COutRecorder recorder;
  WriteHtmlReport(CString(), MakeEmptyReport(), false, true);
  EXPECT_TRUE(recorder.Text().IsEmpty());
  const CString path = directory / L"missing/page.html";
  WriteHtmlReport(path, MakeEmptyReport(), false, true);
  EXPECT_EQ(recorder.Text(), L"HTML-Report " + path + L" konnte nicht erzeugt werden.\n");
}

}  // namespace

TEST(HtmlReportWriterTest, FullDiskPrintsOneLine) {
  COutRecorder recorder;
  WriteHtmlReport(L"/dev/full", MakeFixedReport(), false, true);
  EXPECT_EQ(recorder.Text(), L"HTML-Report /dev/full konnte nicht erzeugt werden.\n");
}
