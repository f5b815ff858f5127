// report_ArchiveFixture: small archived reports written into a scratch
// archive, and the snapshot of every file of an archive that shows which
// files an update wrote.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "TempDirectory.h"
#include "report/ReportData.h"

namespace ReportTest {

// A report of one class, "Geometry", whose cases are named c0, c1, ...: the
// first `successful` pass, the next `failed` differ, then with
// `withExtraClass` a class "Extra" of one passing case. Begins at `date`
// (report form).
TestSuite::Report::SData MakeArchivedReport(unsigned int successful, unsigned int failed, const wchar_t* date,
                                            bool withExtraClass = false);

// Writes `data` as `fileName` into `directory` and gives the path.
CString WriteArchivedReport(const CString& directory, const wchar_t* fileName, const TestSuite::Report::SData& data);

// What shows a write of a file: its modification time (nanoseconds) and
// its bytes.
struct SFileStamp {
  std::int64_t iModified = 0;
  std::string sBytes;
  bool operator==(const SFileStamp& other) const = default;
};

// Every regular file below `directory`, by path relative to it.
std::map<std::string, SFileStamp> SnapshotFiles(const CString& directory);

// Sets the modification time of every file below `directory` to a fixed
// time long past, so that any later write shows.
void AgeFiles(const CString& directory);

}  // namespace ReportTest
