// The overview page of a report archive: its folders, both tables newest
// first, the cells, the bar, and what a second update writes.
#include "report/ArchiveOverview.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "GoldenFile.h"
#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report_ArchiveFixture.h"
#include "report_Fixtures.h"

namespace {

using namespace TestSuite::Report;
using namespace ReportTest;

// The hand-written reports of tests/report/data/archive in a scratch
// archive: a full one, a partial one, one tagged "Nightly run", one whose
// name begins with a lower-case r, and a last full one.
void copyFixedArchive(const TempDirectory& dir) {
  std::filesystem::copy(ZO_SOURCE_DIR "/tests/report/data/archive", dir.Path().ToUtf8());
}

std::string overviewOf(const TempDirectory& dir) { return ReadBytes(dir / L"html/index.html"); }

// The text between the two table headings, or behind the second.
std::string fullTable(const std::string& page) {
  const std::size_t begin = page.find("<h2>Full Reports</h2>");
  return page.substr(begin, page.find("<h2>All Reports</h2>") - begin);
}
std::string allTable(const std::string& page) { return page.substr(page.find("<h2>All Reports</h2>")); }

TEST(ArchiveOverview, TheOverviewOfAFixedArchiveIsAsItWas) {
  TempDirectory dir;
  copyFixedArchive(dir);
  WriteArchiveOverview(dir.Path());
  std::string page = overviewOf(dir);
  const std::string path = dir.Path().ToUtf8();
  for (std::size_t at = page.find(path); at != std::string::npos; at = page.find(path))
    page.replace(at, path.size(), "<ARCHIVE>/");
  TestSupport::ExpectGoldenFile("report/golden/ArchiveOverview.html", page);
}

TEST(ArchiveOverview, AnEmptyArchiveHasBothTablesWithTheirHeadsOnlyAndBothFolders) {
  TempDirectory dir;
  WriteArchiveOverview(dir.Path());
  EXPECT_TRUE(ZoFileSystem::IsDirectory(dir / L"html"));
  EXPECT_TRUE(ZoFileSystem::IsDirectory(dir / L"html/diff"));
  const std::string page = overviewOf(dir);
  EXPECT_EQ(CountOf(page, "<table id=\"overview\">"), 2u);
  EXPECT_EQ(CountOf(page, "<tr>"), 3u);  // the directory line and the two head rows
  EXPECT_EQ(CountOf(page, "<th>"), 14u);
  EXPECT_TRUE(Contains(page, "\t\t\t\t<td>Directory:</td>\n\t\t\t\t<td>" + dir.Path().ToUtf8() + "</td>\n"));
  EXPECT_TRUE(Contains(page, "\t</body>\n</html>\n"));
}

TEST(ArchiveOverview, TheFullTableHasTheBarUnderASecondSuccessfulCasesHeading) {
  TempDirectory dir;
  WriteArchiveOverview(dir.Path());
  const std::string page = overviewOf(dir);
  EXPECT_EQ(CountOf(fullTable(page), "<th>Successful Cases</th>"), 2u);
  EXPECT_EQ(CountOf(allTable(page), "<th>Successful Cases</th>"), 1u);
  EXPECT_TRUE(Contains(allTable(page), "<th>Run Tag</th>"));
  EXPECT_FALSE(Contains(fullTable(page), "<th>Run Tag</th>"));
}

TEST(ArchiveOverview, NewestFirstWithTagsAndOnlyFullReportsInTheFullTable) {
  TempDirectory dir;
  copyFixedArchive(dir);
  WriteArchiveOverview(dir.Path());
  const std::string page = overviewOf(dir);
  const std::string full = fullTable(page), all = allTable(page);
  EXPECT_LT(full.find("<td>104</td>"), full.find("<td>102</td>"));
  EXPECT_LT(full.find("<td>102</td>"), full.find("<td>100</td>"));
  EXPECT_FALSE(Contains(full, "<td>101</td>"));
  EXPECT_LT(all.find("<td>102</td>"), all.find("<td>101</td>"));
  EXPECT_TRUE(Contains(all, "<td>101</td>\n\t\t\t\t<td>Part</td>"));
  EXPECT_TRUE(Contains(all, "<td>102</td>\n\t\t\t\t<td>Full</td>"));
  EXPECT_TRUE(Contains(all, "<a href=\"Report-102-[2026.11.03-22.00.00]-T[Nightly run].html\">Report</a>"));
  // report-103 begins with a lower-case r: it is no archived report.
  EXPECT_FALSE(Contains(page, "103"));
  EXPECT_FALSE(ZoFileSystem::Exists(dir / L"html/report-103-[2026.11.04-22.00.00].html"));
}

TEST(ArchiveOverview, SharesAreInPerCentWithTwoDecimalsAndTheBarIsFiveHundredPixelsWide) {
  TempDirectory dir;
  WriteArchivedReport(dir.Path(), L"Report-1-[2026.11.01-22.00.00].xml",
                      MakeArchivedReport(1, 2, L"2026-11-01 22:00:00", true));
  WriteArchiveOverview(dir.Path());
  const std::string page = overviewOf(dir);
  EXPECT_TRUE(Contains(page,
                       "<td>50.00% (1/2)</td>\n\t\t\t\t<td>50.00% (2/4)</td>\n\t\t\t\t<td>\n"
                       "\t\t\t\t\t<div class=\"ok\" style=\"width:250px\">&nbsp;</div>\n"
                       "\t\t\t\t\t<div class=\"error\" style=\"width:250px\">&nbsp;</div>\n\t\t\t\t</td>\n"))
      << page;
  TempDirectory third;
  WriteArchivedReport(third.Path(), L"Report-1-[2026.11.01-22.00.00].xml",
                      MakeArchivedReport(1, 2, L"2026-11-01 22:00:00"));
  WriteArchiveOverview(third.Path());
  const std::string thirds = overviewOf(third);
  EXPECT_TRUE(Contains(thirds, "<td>33.33% (1/3)</td>")) << thirds;
  EXPECT_TRUE(Contains(thirds, "style=\"width:166px\"")) << thirds;
  EXPECT_TRUE(Contains(thirds, "style=\"width:334px\"")) << thirds;
}

TEST(ArchiveOverview, ZeroCasesAreNotGuarded) {
  TempDirectory dir;
  WriteArchivedReport(dir.Path(), L"Report-1-[2026.11.01-22.00.00].xml", MakeArchivedReport(0, 0, L"2026-11-01"));
  WriteArchiveOverview(dir.Path());
  const std::string page = overviewOf(dir);
  EXPECT_TRUE(Contains(page, "nan% (0/0)</td>")) << page;
  EXPECT_TRUE(Contains(page, "<div class=\"ok\" style=\"width:0px\">")) << page;
  EXPECT_TRUE(Contains(page, "<div class=\"error\" style=\"width:500px\">")) << page;
}

TEST(ArchiveOverview, ASecondUpdateWithNothingNewWritesTheOverviewAndNoOtherFile) {
  TempDirectory dir;
  copyFixedArchive(dir);
  WriteArchiveOverview(dir.Path());
  AgeFiles(dir.Path());
  const auto before = SnapshotFiles(dir.Path());
  WriteArchiveOverview(dir.Path());
  const auto after = SnapshotFiles(dir.Path());
  ASSERT_EQ(before.size(), after.size());
  std::size_t pages = 0;
  for (const auto& [name, stamp] : before) {
    ASSERT_TRUE(after.count(name)) << name;
    if (name == "html/index.html") {
      EXPECT_NE(after.at(name).iModified, stamp.iModified);
      EXPECT_EQ(after.at(name).sBytes, stamp.sBytes);
    } else {
      EXPECT_EQ(after.at(name), stamp) << name << " was written again";
      pages += name.rfind("html/", 0) == 0 ? 1 : 0;
    }
  }
  // Four report pages, four diff pages, and the style and script beside
  // both kinds of page.
  EXPECT_EQ(pages, 12u);
}

TEST(ArchiveOverview, ADeletedPageIsMadeAgain) {
  TempDirectory dir;
  copyFixedArchive(dir);
  WriteArchiveOverview(dir.Path());
  const CString page = dir / L"html/Report-101-[2026.11.03-12.00.00]-T[Part].html";
  const std::string bytes = ReadBytes(page);
  ASSERT_TRUE(ZoFileSystem::DeleteFileW(page));
  WriteArchiveOverview(dir.Path());
  EXPECT_EQ(ReadBytes(page), bytes);
}

TEST(ArchiveOverview, ADirectoryThatDoesNotExistIsScannedAsEmptyAndThrowsOnTheHtmlFolder) {
  TempDirectory dir;
  const CString missing = dir / L"missing";
  EXPECT_EQ(ScanArchive(missing).GetCount(), 0u);
  try {
    WriteArchiveOverview(missing);
    FAIL() << "no exception";
  } catch (const std::filesystem::filesystem_error& error) {
    EXPECT_TRUE(Contains(error.what(), "create_directory(p): invalid argument")) << error.what();
    EXPECT_EQ(error.path1().string(), (missing + L"/html").ToUtf8());
    EXPECT_EQ(error.code(), std::make_error_code(std::errc::invalid_argument));
  }
  EXPECT_FALSE(ZoFileSystem::Exists(missing));
}

TEST(ArchiveOverview, ADiffFolderThatCannotBeMadeThrowsAfterTheHtmlFolder) {
  TempDirectory dir;
  dir.MakeDirectory(L"html");
  dir.WriteFile(L"html/diff", "a file where the folder should be");
  EXPECT_THROW(WriteArchiveOverview(dir.Path()), std::filesystem::filesystem_error);
  EXPECT_FALSE(ZoFileSystem::Exists(dir / L"html/index.html"));
}

}  // namespace
