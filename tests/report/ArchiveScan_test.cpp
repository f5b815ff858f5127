// Tests of the archive scan: which file names count and in what order.
#include "report/ArchiveScan.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"

namespace TestSuite::Report {
namespace {

std::wstring names(const XbArray<SArchiveEntry>& entries, const CString& base) {
  std::wstring text;
  for (const SArchiveEntry& entry : entries) {
    const CString path = entry.path;
    text += std::wstring(path.GetString()).substr(base.GetLength()) + L"|";
  }
  return text;
}

TEST(ArchiveScan, ListsMatchingReportsByRevisionThenDate) {
  TempDirectory dir;
  dir.WriteFile(L"Report-20-[2021.01.02-00.00.00].xml");
  dir.WriteFile(L"Report-5-[2021.01.03-00.00.00]-T[Part].xml");
  dir.WriteFile(L"Report-20-[2021.01.01-00.00.00]-T[Nightly run].xml");
  const XbArray<SArchiveEntry> entries = ScanArchive(dir.Path());
  EXPECT_EQ(names(entries, dir.Path()),
            L"Report-5-[2021.01.03-00.00.00]-T[Part].xml|Report-20-[2021.01.01-00.00.00]-T[Nightly run].xml|"
            L"Report-20-[2021.01.02-00.00.00].xml|");
  ASSERT_EQ(entries.GetCount(), 3u);
  EXPECT_EQ(entries[0].revision, 5u);
  EXPECT_EQ(entries[0].date, CString(L"2021.01.03-00.00.00"));
  EXPECT_EQ(entries[0].tag, CString(L"Part"));
  EXPECT_EQ(entries[1].tag, CString(L"Nightly run"));
  EXPECT_TRUE(entries[2].tag.IsEmpty());
}

TEST(ArchiveScan, TheWholeStemMustMatch) {
  TempDirectory dir;
  dir.WriteFile(L"report-1-[2021.01.01-00.00.00].xml");
  dir.WriteFile(L"xReport-1-[2021.01.01-00.00.00].xml");
  dir.WriteFile(L"Report-1-[2021.01.01-00.00.00]x.xml");
  dir.WriteFile(L"Report-1-[2021.01.01-00.00.00].XML");
  dir.WriteFile(L"Report-1-[2021.01.01-00.00.00].html");
  dir.MakeDirectory(L"Report-2-[2021.01.01-00.00.00].xml");
  dir.WriteFile(L"Report-3-[2021.01.01-00.00.00].xml");
  EXPECT_EQ(names(ScanArchive(dir.Path()), dir.Path()), L"Report-3-[2021.01.01-00.00.00].xml|");
}

TEST(ArchiveScan, ARevisionBeyondSixtyFourBitsLeavesTheFileOut) {
  TempDirectory dir;
  dir.WriteFile(L"Report-18446744073709551615-[d].xml");
  dir.WriteFile(L"Report-18446744073709551616-[d].xml");
  const XbArray<SArchiveEntry> entries = ScanArchive(dir.Path());
  ASSERT_EQ(entries.GetCount(), 1u);
  EXPECT_EQ(entries[0].revision, 18446744073709551615u);
}

TEST(ArchiveScan, AMissingDirectoryIsEmpty) {
  TempDirectory dir;
  EXPECT_EQ(ScanArchive(dir / L"missing").GetCount(), 0u);
  EXPECT_EQ(ScanArchive(dir.Path().Left(dir.Path().GetLength() - 1)).GetCount(), 0u);
}

}  // namespace
}  // namespace TestSuite::Report
