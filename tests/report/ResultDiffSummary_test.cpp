// The ResultDiffSummary file: the revisions in full and through "%d", the
// contact lines, nothing escaped, and a target that cannot be written.
#include "report/ResultDiffSummary.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report_Fixtures.h"

namespace TestSuite::Report {
namespace {

STrace trace(const wchar_t* className, const wchar_t* caseName, std::optional<SRevisionResult> before,
             SRevisionResult after) {
  return STrace{className, caseName, before, after};
}

TEST(ResultDiffSummary, RevisionElementsHaveAllBitsAndResultLinesTheLowThirtyTwoSigned) {
  TempDirectory dir;
  CTraceGroups groups;
  const std::uint64_t big = 0x1'8000'0005ull;  // low 32 bits: 0x80000005
  groups.Add(trace(L"Mesh", L"torus", SRevisionResult{big, true}, SRevisionResult{big + 1, false}));
  SData end = ReportTest::MakeEmptyReport();
  ASSERT_TRUE(WriteResultDiffSummary(dir / L"s.xml", big, 0xFFFFFFFFFFFFFFFFull, groups, end));
  EXPECT_EQ(TempDirectory::ReadBytes(dir / L"s.xml"),
            "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<ResultDiffSummary>\n"
            "\t<BeginRevision>6442450949</BeginRevision>\n"
            "\t<EndRevision>18446744073709551615</EndRevision>\n"
            "\t<UnitTest name=\"Mesh\">\n"
            "\t\t<TestCase name=\"torus\">\n"
            "\t\t\t<ResultBefore succeeded=\"true\" revision=\"-2147483643\"/>\n"
            "\t\t\t<ResultAfter succeeded=\"false\" revision=\"-2147483642\"/>\n"
            "\t\t</TestCase>\n"
            "\t</UnitTest>\n"
            "</ResultDiffSummary>\n");
}

TEST(ResultDiffSummary, ContactsComeFromTheEndReportAndNothingIsEscaped) {
  TempDirectory dir;
  CTraceGroups groups;
  groups.Add(trace(L"Geo<metry>", L"a & \"b\"", std::nullopt, SRevisionResult{3, true}));
  groups.Add(trace(L"Io", L"step", std::nullopt, SRevisionResult{3, false}));
  SData end = ReportTest::MakeEmptyReport();
  SClassData& row = ReportTest::AddClass(end, L"Geo<metry>", 1, 0, 0, 0);
  row.ContactName = L"Jörg & Anna";
  row.ContactEMail = L"geo@example.com";
  ASSERT_TRUE(WriteResultDiffSummary(dir / L"s.xml", 1, 3, groups, end));
  const std::string text = TempDirectory::ReadBytes(dir / L"s.xml");
  EXPECT_TRUE(ReportTest::Contains(text,
                                   "\t<UnitTest name=\"Geo<metry>\">\n"
                                   "\t\t<ContactName>J\xF6rg & Anna</ContactName>\n"
                                   "\t\t<ContactEMail>geo@example.com</ContactEMail>\n"
                                   "\t\t<TestCase name=\"a & \"b\"\">\n"))
      << text;
  // Io has no row in the end report: no contact lines at all.
  EXPECT_TRUE(ReportTest::Contains(text, "\t<UnitTest name=\"Io\">\n\t\t<TestCase name=\"step\">\n")) << text;
  EXPECT_EQ(ReportTest::CountOf(text, "<Contact"), 2u);
}

TEST(ResultDiffSummary, ATargetThatCannotBeMadeGivesFalse) {
  TempDirectory dir;
  CTraceGroups groups;
  EXPECT_FALSE(WriteResultDiffSummary(dir / L"missing/s.xml", 1, 2, groups, ReportTest::MakeEmptyReport()));
}

}  // namespace
}  // namespace TestSuite::Report
