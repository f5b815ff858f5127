// The report diff page: its fixed form for two records that reach every row
// state and judgement (golden files), the sections that depend on the data,
// the rows of three cells, and what is written beside the page or not at all.
#include "report/ReportDiffWriter.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/ReportResources.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

void addTimedCase(SData& data, unsigned int id, const wchar_t* className, const wchar_t* caseName,
                  Run::ECaseResult result, bool warning, double time, std::uint64_t memory) {
  SCaseData& row = AddCase(data, id, className, caseName, result, warning);
  row.Time = time;
  row.Memory = memory;
}

// The reference: build information on both sides, classes and cases for
// every judgement of the two tables.
SData makeReferenceA() {
  SData a = MakeFixedReport();
  a.Classes.RemoveAll();
  a.Cases.RemoveAll();
  AddClass(a, L"Anim", 2, 2, 0, 1).ContactEMail = L"anim@example.com";
  AddClass(a, L"Boolean", 2, 0, 0, 0);
  AddClass(a, L"Curve", 2, 0, 0, 2);
  AddClass(a, L"Dxf", 2, 0, 0, 0);
  AddClass(a, L"Extrude", 3, 1, 0, 0);
  AddClass(a, L"Fillet", 1, 0, 0, 0);
  SClassData& gone = AddClass(a, L"Gone", 1, 0, 0, 0);
  gone.ContactName = L"Jörg Bäcker";
  gone.ContactEMail = L"joerg@example.com";
  addTimedCase(a, 0, L"Anim", L"run", Run::eCaseError, false, 2.0, 4000);
  addTimedCase(a, 1, L"Anim", L"walk", Run::eCaseOk, true, 1.0, 1000);
  a.Cases.Last().MemoryDelta = 64;
  a.Cases.Last().Message = MakeLeakMessage(64);
  addTimedCase(a, 2, L"Boolean", L"cut", Run::eCaseOk, false, 0.5, 2000);
  addTimedCase(a, 3, L"Boolean", L"join", Run::eCaseError, false, 0.25, 2000);
  addTimedCase(a, 4, L"Curve", L"arc", Run::eCaseOk, false, 0.125, 1000);
  addTimedCase(a, 5, L"Curve", L"line", Run::eCaseOk, false, 0.0, 0);
  addTimedCase(a, 6, L"Dxf", L"a & <b>", Run::eCaseOk, false, 1.0, 3000);
  addTimedCase(a, 8, L"Gone", L"old", Run::eCaseOk, false, 0.75, 1500);
  return a;
}

SData makeTestB() {
  SData b = MakeFixedReport();
  b.Classes.RemoveAll();
  b.Cases.RemoveAll();
  b.SvnInfo->Revision = L"1240";
  b.PscmInfo->Changeset = L"4712";
  b.MachineName = L"BUILD-08";
  b.ThreadCount = 8;
  b.TimeOut = 0xFFFFFFFF;
  b.ClassesSuccessful = 2;
  b.Successful = 2;
  b.Failures = 3;
  b.Errors = 0;
  b.Warnings = 1;
  b.DateBegin = L"2021-05-05 12:34:56";
  b.DateEnd = L"2021-05-05 12:35:10";
  b.TimeTotal = 15.5;
  b.MemoryMax = 13000;
  AddClass(b, L"Anim", 2, 1, 0, 0).ContactEMail = L"anim@example.com";
  AddClass(b, L"Boolean", 2, 1, 1, 0);
  AddClass(b, L"Curve", 2, 0, 0, 1);
  AddClass(b, L"Dxf", 2, 0, 0, 1);
  AddClass(b, L"Extrude", 4, 1, 0, 0);
  AddClass(b, L"Fillet", 1, 0, 0, 0);
  AddClass(b, L"New", 1, 1, 0, 0).ContactName = L"Nobody";
  AddClass(b, L"NewClean", 1, 0, 0, 0).ContactEMail = L"clean@example.com";
  AddClass(b, L"NewWarned", 1, 0, 0, 1);
  addTimedCase(b, 0, L"Anim", L"run", Run::eCaseOk, false, 1.0, 5000);
  addTimedCase(b, 1, L"Anim", L"walk", Run::eCaseOk, false, 1.5, 1000);
  addTimedCase(b, 2, L"Boolean", L"cut", Run::eCaseTimeout, false, 30.0, 2000);
  addTimedCase(b, 3, L"Boolean", L"join", Run::eCaseDifferent, false, 0.25, 2500);
  addTimedCase(b, 4, L"Curve", L"arc", Run::eCaseOk, true, 0.125, 1000);
  b.Cases.Last().MemoryDelta = -8;
  b.Cases.Last().Message = MakeLeakMessage(-8);
  addTimedCase(b, 5, L"Curve", L"line", Run::eCaseOk, false, 0.5, 100);
  addTimedCase(b, 6, L"Dxf", L"a & <b>", Run::eCaseOk, false, 1.0, 3000);
  addTimedCase(b, 7, L"New", L"fresh", Run::eCaseException, false, 0.5, 700);
  addTimedCase(b, 8, L"NewClean", L"ok", Run::eCaseOk, false, 0.5, 700);
  addTimedCase(b, 9, L"NewWarned", L"w", Run::eCaseOk, true, 0.5, 700);
  return b;
}

std::string writeDiff(const SData& a, const SData& b, bool ignoreOneSided, bool omitCaseTable, bool hideWarnings) {
  TempDirectory directory;
  const CString path = directory / L"diff.html";
  WriteReportDiff(path, L"/reports/A.xml", L"/reports/B.xml", a, b, ignoreOneSided, omitCaseTable, hideWarnings);
  return ReadBytes(path);
}

TEST(ReportDiffWriterTest, FixedPairWithWarningsShownMatchesTheGoldenFile) {
  ExpectGoldenBytes("Diff.html", writeDiff(makeReferenceA(), makeTestB(), false, false, false));
}

TEST(ReportDiffWriterTest, FixedPairWithWarningsHiddenMatchesTheGoldenFile) {
  ExpectGoldenBytes("Diff-HiddenWarnings.html", writeDiff(makeReferenceA(), makeTestB(), false, false, true));
}

TEST(ReportDiffWriterTest, IdenticalReportsHaveNoClassDiffAndOnlyPlainCaseRows) {
  const SData report = MakeFixedReport();
  const std::string page = writeDiff(report, report, false, false, false);
  EXPECT_FALSE(Contains(page, "Class Diff"));
  EXPECT_TRUE(Contains(page, "<h2>Case Diff</h2>"));
  EXPECT_FALSE(Contains(page, "class=\"diff\""));
  EXPECT_FALSE(Contains(page, "class=\"worse\""));
  EXPECT_FALSE(Contains(page, "class=\"better\""));
  EXPECT_EQ(CountOf(page, "<td>1.000000</td>"), 2 * report.Cases.GetCount());
}

TEST(ReportDiffWriterTest, NoCasesOrNoClassesOnEitherSideLeaveNoFile) {
  TempDirectory directory;
  COutRecorder recorder;
  const SData full = MakeFixedReport();
  SData noCases = MakeFixedReport();
  noCases.Cases.RemoveAll();
  SData noClasses = MakeFixedReport();
  noClasses.Classes.RemoveAll();
  const std::pair<const SData*, const SData*> pairs[] = {
      {&noCases, &noCases}, {&noCases, &full}, {&full, &noCases}, {&noClasses, &full}, {&full, &noClasses}};
  for (const auto& [a, b] : pairs) WriteReportDiff(directory / L"diff.html", L"a", L"b", *a, *b, false, false, true);
  EXPECT_FALSE(ZoFileSystem::Exists(directory / L"diff.html"));
  EXPECT_FALSE(ZoFileSystem::Exists(directory / L"ZoTestSuite.css"));
  WriteReportDiff(CString(), L"a", L"b", full, full, false, false, true);
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

TEST(ReportDiffWriterTest, MemoryOfZeroInAShowsARatioOfZero) {
  SData a = MakeEmptyReport();
  AddClass(a, L"C", 1, 0, 0, 0);
  addTimedCase(a, 0, L"C", L"x", Run::eCaseOk, false, 1.0, 0);
  SData b = a;
  b.Cases[0].Memory = 100;
  const std::string page = writeDiff(a, b, false, false, true);
  EXPECT_TRUE(Contains(page,
                       "\t\t\t\t<td>0</td>\n\t\t\t\t<td>100</td>\n\t\t\t\t<td>0.000000</td>\n"
                       "\t\t\t\t<td>Ok</td>\n"));
}

TEST(ReportDiffWriterTest, PageEndsAfterItsLastTableWithoutClosingBodyOrHtml) {
  const std::string page = writeDiff(makeReferenceA(), makeTestB(), false, false, true);
  EXPECT_FALSE(Contains(page, "</body>"));
  EXPECT_FALSE(Contains(page, "</html>"));
  EXPECT_EQ(page.substr(page.size() - 11), "\t\t</table>\n");
  EXPECT_TRUE(Contains(page, "\t\t<title>ZoTestSuite Report</title>\n"));
  EXPECT_TRUE(Contains(page, "\t<body>\n\t\t<h1>ZoTestSuite Report Diff</h1>\n"));
}

TEST(ReportDiffWriterTest, WithoutCaseTableTheFilesBesideAreWrittenAllTheSame) {
  TempDirectory directory;
  WriteReportDiff(directory / L"diff.html", L"a", L"b", makeReferenceA(), makeTestB(), false, true, true);
  const std::string page = ReadBytes(directory / L"diff.html");
  EXPECT_TRUE(Contains(page, "<h2>Class Diff</h2>"));
  EXPECT_FALSE(Contains(page, "Case Diff"));
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.css"), LoadStyleSheet());
  EXPECT_EQ(ReadBytes(directory / L"ZoTestSuite.js"), LoadReportScript());
}

TEST(ReportDiffWriterTest, UnwritablePathPrintsOneLineAndReturns) {
  TempDirectory directory;
  COutRecorder recorder;
  const CString path = directory / L"missing/diff.html";
  WriteReportDiff(path, L"a", L"b", makeReferenceA(), makeTestB(), false, false, true);
  EXPECT_EQ(recorder.Text(), L"HTML-Report " + path + L" konnte nicht erzeugt werden.\n");
  EXPECT_FALSE(ZoFileSystem::Exists(path));
}

TEST(ReportDiffWriterTest, RatesOfAnEmptyTotalAreNotGuarded) {
  SData a = makeReferenceA();
  a.ClassesTotal = 0;
  a.ClassesSuccessful = 0;
  const std::string page = writeDiff(a, makeTestB(), false, false, true);
  const std::size_t row = page.find("<td>Successful Classes / Total Classes:</td>");
  ASSERT_NE(row, std::string::npos);
  const std::string cellA = page.substr(row, page.find("</td>", page.find("<td>0/0", row)) - row);
  EXPECT_TRUE(Contains(cellA, "<td>0/0 = ")) << cellA;
  EXPECT_TRUE(Contains(cellA, "nan%")) << cellA;  // no number, where the plain report says 0.00%
  // A rate that is no number is neither higher nor lower.
  EXPECT_EQ(page.rfind("<tr>", row), page.rfind("<tr", row));
}

TEST(ReportDiffWriterTest, BuildRowsOnlyForInformationOfBothSides) {
  SData a = makeReferenceA();
  SData b = makeTestB();
  b.SvnInfo.reset();
  const std::string page = writeDiff(a, b, false, false, true);
  EXPECT_FALSE(Contains(page, "SVN"));
  EXPECT_TRUE(Contains(page, "<td>PSCM Changeset:</td>\n\t\t\t\t<td>4711</td>\n\t\t\t\t<td>4712</td>"));
  a.PscmInfo.reset();
  EXPECT_FALSE(Contains(writeDiff(a, b, false, false, true), "PSCM"));
  EXPECT_FALSE(Contains(writeDiff(makeReferenceA(), makeTestB(), false, false, true), "Last Changed Date"));
}

TEST(ReportDiffWriterTest, RowFamilyFormatsTheTwoValues) {
  XbStreamWriteASCIIStringT<CString> text;
  Utils::CMarkupWriter writer(text);
  WriteDiffRowUInt(writer, L"U:", 4000000000u, 7, eDiffNone);
  WriteDiffRowDouble(writer, L"D:", 0.5, 2.0, eDiffDifferent);
  WriteDiffRowUInt64(writer, L"L:", 18446744073709551615ull, 0, eDiffWorse);
  WriteDiffRowText(writer, L"T:", L"a<b>", L"&", eDiffBetter);
  EXPECT_EQ(text.GetString(),
            L"<tr>\n\t<td>U:</td>\n\t<td>4000000000</td>\n\t<td>7</td>\n</tr>\n"
            L"<tr class=\"diff\">\n\t<td>D:</td>\n\t<td>0.500000</td>\n\t<td>2.000000</td>\n</tr>\n"
            L"<tr class=\"worse\">\n\t<td>L:</td>\n\t<td>18446744073709551615</td>\n\t<td>0</td>\n</tr>\n"
            L"<tr class=\"better\">\n\t<td>T:</td>\n\t<td>a<b></td>\n\t<td>&</td>\n</tr>\n");
}

}  // namespace
