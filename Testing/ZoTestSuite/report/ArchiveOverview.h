// ArchiveOverview: the page "html/index.html" of a report archive, which
// shows the history of its reports newest first, full runs apart from all
// runs, with the success of each run as a bar and links to its report and
// to the diff against the run before.
#pragma once

#include "foundation/CString.h"
#include "report/ArchiveRows.h"

namespace TestSuite::Report {

// The overview update of the archive `directory`: scans its reports, makes
// "html" below it and "diff" below that (one level each; an existing one is
// fine), makes the pages that are missing and writes "index.html" anew. A
// directory that cannot be made throws the standard file-system error
// "create_directory(p): invalid argument"; a page that cannot be written
// throws too. Nothing is caught here and nothing is printed.
void WriteArchiveOverview(const CString& directory);

// Writes the overview page of `rows` to `path`; `directory` is shown as it
// stands. Rows are written from the last to the first.
void WriteArchiveOverviewPage(const CString& path, const CString& directory, const SArchiveRows& rows);

}  // namespace TestSuite::Report
