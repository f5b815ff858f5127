// The renaming of a report directory into the archive's scheme: names by
// revision, date and tag; nothing deleted, nothing overwritten; the
// overview rebuilt; the error of a rename that fails.
#include "report/ArchiveNormalizer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/ArchiveOverview.h"
#include "report_ArchiveFixture.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

SData withChangeset(SData data, const wchar_t* changeset) {
  data.PscmInfo = std::make_shared<SPscmInfo>(SPscmInfo{L"", L"zo", L"main", changeset, L"", L""});
  return data;
}

std::set<std::string> namesIn(const CString& directory) {
  std::set<std::string> names;
  for (const ZoFileSystem::SEntry& entry : ZoFileSystem::ListDirectory(directory))
    names.insert(entry.sName.ToUtf8() + (entry.bDirectory ? "/" : ""));
  return names;
}

TEST(ArchiveNormalizer, RenamesReportsByRevisionDateAndTagAndWritesTheOverview) {
  TempDirectory dir;
  SData tagged = withChangeset(MakeArchivedReport(2, 0, L"2026-11-02 22:00:00"), L"12");
  tagged.RunTag = L"Part";
  WriteArchivedReport(dir.Path(), L"monday.xml",
                      withChangeset(MakeArchivedReport(1, 1, L"2026-11-01 22:00:00"), L"11"));
  WriteArchivedReport(dir.Path(), L"tuesday.xml", tagged);
  NormalizeArchiveDir(dir.Path());
  EXPECT_EQ(namesIn(dir.Path()), (std::set<std::string>{"Report-11-[2026.11.01-22.00.00].xml",
                                                        "Report-12-[2026.11.02-22.00.00]-T[Part].xml", "html/"}));
  const std::string overview = ReadBytes(dir / L"html/index.html");
  EXPECT_TRUE(Contains(overview, "<td><a href=\"Report-12-[2026.11.02-22.00.00]-T[Part].html\">Report</a></td>"));
  EXPECT_TRUE(Contains(overview, "<td>Part</td>"));
}

TEST(ArchiveNormalizer, AChangesetWithLettersBehindItsDigitsGivesTheNumberOfTheDigits) {
  TempDirectory dir;
  WriteArchivedReport(dir.Path(), L"r.xml",
                      withChangeset(MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"), L"4711abc"));
  NormalizeArchiveDir(dir.Path());
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"Report-4711-[2026.11.01-22.00.00].xml"));
  EXPECT_TRUE(Contains(ReadBytes(dir / L"html/index.html"), "<td>4711</td>"));
}

TEST(ArchiveNormalizer, ReportsWithoutRevisionOrThatDoNotLoadKeepTheirNames) {
  TempDirectory dir;
  WriteArchivedReport(dir.Path(), L"no-revision.xml", MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"));
  WriteArchivedReport(dir.Path(), L"letters.xml",
                      withChangeset(MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"), L"abc"));
  dir.WriteFile(L"broken.xml", "<testsuite>");
  dir.WriteFile(L"notes.txt", "keep");
  COutRecorder recorder;
  NormalizeArchiveDir(dir.Path());
  EXPECT_EQ(namesIn(dir.Path()),
            (std::set<std::string>{"no-revision.xml", "letters.xml", "broken.xml", "notes.txt", "html/"}));
}

// Two reports with one name: the first renamed keeps the name, the other
// keeps its own; a report already under its proper name stays as it is.
TEST(ArchiveNormalizer, NeverOverwritesAndNeverDeletes) {
  TempDirectory dir;
  const SData report = withChangeset(MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"), L"7");
  WriteArchivedReport(dir.Path(), L"a.xml", report);
  WriteArchivedReport(dir.Path(), L"b.xml", report);
  WriteArchivedReport(dir.Path(), L"Report-8-[2026.11.02-22.00.00].xml",
                      withChangeset(MakeArchivedReport(2, 0, L"2026-11-02 22:00:00"), L"8"));
  const std::string proper = ReadBytes(dir / L"Report-8-[2026.11.02-22.00.00].xml");
  NormalizeArchiveDir(dir.Path());
  const std::set<std::string> names = namesIn(dir.Path());
  EXPECT_EQ(names.size(), 4u);
  EXPECT_TRUE(names.count("Report-7-[2026.11.01-22.00.00].xml"));
  EXPECT_TRUE(names.count("a.xml") + names.count("b.xml") == 1);
  EXPECT_EQ(ReadBytes(dir / L"Report-8-[2026.11.02-22.00.00].xml"), proper);
}

// Pages of the old names stay, unlinked; the new names get new pages.
TEST(ArchiveNormalizer, PagesOfOldNamesStay) {
  TempDirectory dir;
  WriteArchivedReport(dir.Path(), L"Report-5-[old].xml",
                      withChangeset(MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"), L"5"));
  WriteArchiveOverview(dir.Path());  // the archive as it was, with a page of the old name
  ASSERT_TRUE(ZoFileSystem::Exists(dir / L"html/Report-5-[old].html"));
  NormalizeArchiveDir(dir.Path());
  EXPECT_FALSE(ZoFileSystem::Exists(dir / L"Report-5-[old].xml"));
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"Report-5-[2026.11.01-22.00.00].xml"));
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"html/Report-5-[old].html"));
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"html/Report-5-[2026.11.01-22.00.00].html"));
}

// A run tag with a '/' names a file in a directory that does not exist.
TEST(ArchiveNormalizer, ARenameThatFailsThrowsTheFileSystemError) {
  TempDirectory dir;
  SData report = withChangeset(MakeArchivedReport(1, 0, L"2026-11-01 22:00:00"), L"9");
  report.RunTag = L"a/b";
  WriteArchivedReport(dir.Path(), L"r.xml", report);
  try {
    NormalizeArchiveDir(dir.Path());
    FAIL() << "no exception";
  } catch (const std::filesystem::filesystem_error& error) {
    EXPECT_TRUE(Contains(error.what(), "rename(p1, p2): invalid arguments")) << error.what();
    EXPECT_EQ(error.path1().string(), (dir / L"r.xml").ToUtf8());
    EXPECT_EQ(error.path2().string(), (dir / L"Report-9-[2026.11.01-22.00.00]-T[a/b].xml").ToUtf8());
  }
  EXPECT_TRUE(ZoFileSystem::Exists(dir / L"r.xml"));
}

TEST(ArchiveNormalizer, ADirectoryThatDoesNotExistThrowsFromTheOverview) {
  TempDirectory dir;
  try {
    NormalizeArchiveDir(dir / L"missing");
    FAIL() << "no exception";
  } catch (const std::filesystem::filesystem_error& error) {
    EXPECT_TRUE(Contains(error.what(), "create_directory(p): invalid argument")) << error.what();
  }
  EXPECT_FALSE(ZoFileSystem::Exists(dir / L"missing"));
}

}  // namespace
