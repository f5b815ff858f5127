// ReportDiffTables: the two sortable tables of the diff page, the classes
// whose outcome moved and all cases side by side.
#pragma once

#include <vector>

#include "report/MarkupWriter.h"
#include "report/ReportDiff.h"

namespace TestSuite::Report {

// The section "Class Diff" with the judged rows of `rows`; left out
// entirely when no row is judged. Name and contact come from A where the
// class is there, else from B; the cells of a missing side stay empty.
void WriteDiffClassTable(Utils::CMarkupWriter& writer, const SData& a, const SData& b,
                         const std::vector<SDiffClassRow>& rows);

// The section "Case Diff" with every row of `rows`, judged or not: ids,
// names, times, memory and results of both sides, ratios where the case is
// on both.
void WriteDiffCaseTable(Utils::CMarkupWriter& writer, const SData& a, const SData& b,
                        const std::vector<SDiffCaseRow>& rows);

}  // namespace TestSuite::Report
