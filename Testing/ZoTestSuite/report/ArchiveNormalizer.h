// ArchiveNormalizer: brings a directory of XML reports with arbitrary names
// into the archive's naming scheme, by revision, begin date and run tag,
// and rebuilds its overview.
#pragma once

#include "foundation/CString.h"

namespace TestSuite::Report {

// Renames each report directly in `directory` to its archive name (see
// GetArchiveName) and then updates the overview (WriteArchiveOverview).
// Only renames: nothing is deleted, nothing is overwritten. A file that
// does not load, has no revision, or whose name is taken (its own name
// included) keeps its name, silently. A rename that fails throws the
// standard file-system error "rename(p1, p2): invalid arguments"; the
// overview's errors pass on as well.
void NormalizeArchiveDir(const CString& directory);

}  // namespace TestSuite::Report
