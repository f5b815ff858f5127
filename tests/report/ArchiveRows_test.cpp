// The lines of the archive overview and the pages behind them: diff links
// between neighbours and between full reports, partial reports, the plain
// parse of reports whose pages exist, and reports that do not load.
#include "report/ArchiveRows.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report_ArchiveFixture.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite::Report;
using namespace ReportTest;

const wchar_t* const c_first = L"Report-1-[2026.11.01-22.00.00].xml";
const wchar_t* const c_part = L"Report-2-[2026.11.02-12.00.00]-T[Part].xml";
const wchar_t* const c_second = L"Report-3-[2026.11.02-22.00.00].xml";

class ArchiveRowsTest : public ::testing::Test {
 protected:
  void SetUp() override { m_dir.MakeDirectory(L"html/diff"); }
  void Write(const wchar_t* name, const SData& data) { WriteArchivedReport(m_dir.Path(), name, data); }
  SArchiveRows Update() { return UpdateArchivePages(ScanArchive(m_dir.Path()), m_dir / L"html/"); }
  std::string Page(const wchar_t* relative) const { return ReadBytes(m_dir / relative); }

  TempDirectory m_dir;
};

TEST_F(ArchiveRowsTest, AFirstReportHasNoDiffLinksAndASecondFullReportHasBoth) {
  Write(c_first, MakeArchivedReport(2, 1, L"2026-11-01 22:00:00"));
  Write(c_second, MakeArchivedReport(3, 0, L"2026-11-02 22:00:00"));
  const SArchiveRows rows = Update();
  ASSERT_EQ(rows.all.GetCount(), 2u);
  ASSERT_EQ(rows.full.GetCount(), 2u);
  EXPECT_TRUE(rows.all[0].diffToPrevious.IsEmpty());
  EXPECT_TRUE(rows.all[0].diffToPreviousFull.IsEmpty());
  const CString link = L"diff/Report-1-[2026.11.01-22.00.00]-vs-Report-3-[2026.11.02-22.00.00].html";
  EXPECT_EQ(rows.all[1].diffToPrevious, link);
  EXPECT_EQ(rows.full[1].diffToPreviousFull, link);
  EXPECT_EQ(rows.all[1].reportLink, CString(L"Report-3-[2026.11.02-22.00.00].html"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"html/Report-1-[2026.11.01-22.00.00].html"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"html/" + link));
}

TEST_F(ArchiveRowsTest, TheFiguresComeFromTheReport) {
  Write(c_first, MakeArchivedReport(2, 1, L"2026-11-01 22:00:00", true));
  const SArchiveRow row = Update().all[0];
  EXPECT_EQ(row.revision, 1u);
  EXPECT_FALSE(row.isPart);
  EXPECT_EQ(row.date, CString(L"2026-11-01 22:00:00"));
  EXPECT_EQ(row.successfulCases, 3u);
  EXPECT_EQ(row.casesTotal, 4u);
  EXPECT_EQ(row.successfulClasses, 1u);
  EXPECT_EQ(row.classesTotal, 2u);
}

// The partial run lacks the class Extra: against it the second full run's
// page ignores the one-sided class, against the first full run it shows it.
TEST_F(ArchiveRowsTest, APartialReportBetweenTwoFullOnesIsSkippedByTheFullDiffOnly) {
  Write(c_first, MakeArchivedReport(3, 0, L"2026-11-01 22:00:00"));
  Write(c_part, MakeArchivedReport(1, 0, L"2026-11-02 12:00:00"));
  Write(c_second, MakeArchivedReport(3, 0, L"2026-11-02 22:00:00", true));
  const SArchiveRows rows = Update();
  ASSERT_EQ(rows.all.GetCount(), 3u);
  ASSERT_EQ(rows.full.GetCount(), 2u);
  EXPECT_TRUE(rows.all[1].isPart);
  EXPECT_EQ(rows.full[1].revision, 3u);
  const CString toPart = L"diff/Report-2-[2026.11.02-12.00.00]-T[Part]-vs-Report-3-[2026.11.02-22.00.00].html";
  const CString toFull = L"diff/Report-1-[2026.11.01-22.00.00]-vs-Report-3-[2026.11.02-22.00.00].html";
  EXPECT_EQ(rows.all[2].diffToPrevious, toPart);
  EXPECT_EQ(rows.all[2].diffToPreviousFull, toFull);
  EXPECT_EQ(rows.full[1].diffToPreviousFull, toFull);
  // The partial report's own row has no link to a full report.
  EXPECT_TRUE(rows.all[1].diffToPreviousFull.IsEmpty());
  EXPECT_FALSE(Contains(Page(CString(L"html/") + toPart), "<td>Extra</td>"));
  EXPECT_TRUE(Contains(Page(CString(L"html/") + toFull), "<td>Extra</td>"));
}

TEST_F(ArchiveRowsTest, OnlyTheTagPartMakesAReportPartial) {
  Write(c_part, MakeArchivedReport(1, 0, L"2026-11-02 12:00:00"));
  Write(L"Report-3-[2026.11.02-22.00.00]-T[part].xml", MakeArchivedReport(1, 0, L"2026-11-02 22:00:00"));
  Write(L"Report-4-[2026.11.03-22.00.00]-T[Part ].xml", MakeArchivedReport(1, 0, L"2026-11-03 22:00:00"));
  const SArchiveRows rows = Update();
  ASSERT_EQ(rows.all.GetCount(), 3u);
  EXPECT_TRUE(rows.all[0].isPart);
  EXPECT_FALSE(rows.all[1].isPart);
  EXPECT_FALSE(rows.all[2].isPart);
  ASSERT_EQ(rows.full.GetCount(), 2u);
  EXPECT_EQ(rows.full[0].revision, 3u);
  EXPECT_TRUE(rows.full[0].diffToPreviousFull.IsEmpty());
}

// A page that exists keeps the report from being loaded: its figures come
// from a plain parse, which takes a file that the loader refuses (here one
// cut short after its statistics) and prints nothing.
TEST_F(ArchiveRowsTest, WithItsPagesMadeAReportIsOnlyParsedForItsFigures) {
  Write(c_first, MakeArchivedReport(2, 1, L"2026-11-01 22:00:00"));
  Update();
  const std::string whole = ReadBytes(m_dir / c_first);
  const std::size_t cut = whole.find("<testcase");
  ASSERT_NE(cut, std::string::npos);
  TempDirectory::WriteBytes(m_dir / c_first, whole.substr(0, cut));
  COutRecorder recorder;
  const SArchiveRow row = Update().all[0];
  EXPECT_EQ(recorder.Text(), CString());
  EXPECT_EQ(row.date, CString(L"2026-11-01 22:00:00"));
  EXPECT_EQ(row.successfulCases, 2u);
  EXPECT_EQ(row.casesTotal, 3u);
  EXPECT_EQ(row.successfulClasses, 0u);
  EXPECT_EQ(row.classesTotal, 1u);
}

TEST_F(ArchiveRowsTest, AReportThatCannotBeLoadedGivesAnEmptyPageAndTheUpdateGoesOn) {
  Write(c_first, MakeArchivedReport(2, 1, L"2026-11-01 22:00:00"));
  TempDirectory::WriteBytes(m_dir / c_part, "<testsuite><Statistics>");
  TempDirectory::WriteBytes(m_dir / c_second, "");
  COutRecorder recorder;
  const SArchiveRows rows = Update();
  ASSERT_EQ(rows.all.GetCount(), 3u);
  EXPECT_EQ(rows.all[1].casesTotal, 0u);
  EXPECT_TRUE(rows.all[1].date.IsEmpty());
  EXPECT_EQ(rows.all[2].casesTotal, 0u);
  const std::string page = Page(L"html/Report-2-[2026.11.02-12.00.00]-T[Part].html");
  EXPECT_TRUE(Contains(page, "0/0 = 0.00%")) << page;
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"html/Report-3-[2026.11.02-22.00.00].html"));
  // Diff pages need cases on both sides: none is made, the links stand.
  EXPECT_FALSE(rows.all[2].diffToPrevious.IsEmpty());
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"html/" + rows.all[2].diffToPrevious));
}

// Each load of a broken report says so once: one line per broken report
// shows that the page and both diff pages shared one load of it.
TEST_F(ArchiveRowsTest, EachReportIsLoadedAtMostOncePerUpdate) {
  Write(c_first, MakeArchivedReport(2, 1, L"2026-11-01 22:00:00"));
  TempDirectory::WriteBytes(m_dir / c_second, "<nichts/>");
  const CString line = L"Fehler in Config-File: XML-Syntax Fehler\n";
  {
    COutRecorder recorder;
    Update();  // page, diff to the neighbour and diff to the previous full report
    EXPECT_EQ(recorder.Text(), line);
  }
  COutRecorder recorder;
  Update();  // the page exists; both diff pages are still missing
  EXPECT_EQ(recorder.Text(), line);
}

}  // namespace
