// ArchiveRows: the lines of an archive's overview, one per archived report,
// and the update that makes the pages behind them: the HTML report of each
// report and the diff pages between neighbours, each made only once.
#pragma once

#include <cstdint>

#include "foundation/CString.h"
#include "foundation/XbArray.h"
#include "report/ArchiveScan.h"

namespace TestSuite::Report {

struct SArchiveRow {
  std::uint64_t revision = 0;
  bool isPart = false;  // the file name's tag is exactly "Part"
  CString date;         // DateBegin of the report, in report form
  unsigned int successfulCases = 0;
  unsigned int casesTotal = 0;
  unsigned int successfulClasses = 0;
  unsigned int classesTotal = 0;
  CString reportLink;          // the HTML report, relative to index.html
  CString diffToPrevious;      // diff page against the neighbour in the whole list; may be empty
  CString diffToPreviousFull;  // diff page against the previous full report; may be empty
};

struct SArchiveRows {
  XbArray<SArchiveRow> full;  // full reports only, in scan order
  XbArray<SArchiveRow> all;   // every report, in scan order
};

// One row for each of `entries` (sorted as ScanArchive gives them). For an
// entry whose page "<stem>.html" is missing from `htmlDirectory` the report
// is loaded once and its page written; the diff pages in `htmlDirectory` +
// "diff/" against the previous entry (one-sided rows ignored) and, for a
// full report, against the previous full one are made where missing. The
// figures come from the loaded record, or else from a plain parse of five
// values of the file. A report that does not load gives an empty page and
// zero figures; nothing stops the update and nothing is printed.
SArchiveRows UpdateArchivePages(const XbArray<SArchiveEntry>& entries, const CString& htmlDirectory);

}  // namespace TestSuite::Report
