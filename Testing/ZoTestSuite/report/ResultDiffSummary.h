// ResultDiffSummary: the file of a diff result trace, the revisions it spans
// and the traced cases of each class with the revision before and after
// their change.
#pragma once

#include <cstdint>

#include "report/ReportData.h"
#include "report/TraceLists.h"

namespace TestSuite::Report {

// Writes the summary of `groups` to `path` as 8-bit text, nothing escaped:
// both revisions with all their 64 bits, then one UnitTest block per group
// with the contact of that class as `endReport` lists it (none if it lists
// no such class), and in each TestCase the revisions of ResultBefore (if
// found) and ResultAfter through "%d", their low 32 bits as a signed
// number. True if the file was written whole; a failure leaves what was
// written and says nothing.
bool WriteResultDiffSummary(const CString& path, std::uint64_t beginRevision, std::uint64_t endRevision,
                            const CTraceGroups& groups, const SData& endReport);

}  // namespace TestSuite::Report
