// ArchiveScan: the reports of an archive directory, found by their file
// names alone ("Report-<revision>-[<date>]" with an optional "-T[<tag>]").
#pragma once

#include <cstdint>

#include "CString.h"
#include "XbArray.h"

namespace TestSuite::Report {

struct SArchiveEntry {
  CString path;  // full path of the XML file
  std::uint64_t revision = 0;
  CString date;  // file form, as MakeFileDate gives it
  CString tag;   // empty when the name has none
};

// The XML reports directly in `directory` (not below it) whose whole stem
// matches the archive pattern, sorted by revision, then by date text; the
// order of equal keys is not defined. A revision out of the 64-bit range
// leaves the file out. A missing or unreadable directory gives nothing.
XbArray<SArchiveEntry> ScanArchive(const CString& directory);

}  // namespace TestSuite::Report
