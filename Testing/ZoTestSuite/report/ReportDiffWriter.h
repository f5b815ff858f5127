// ReportDiffWriter: the HTML page that sets a test report B beside its
// reference A: the two sources, build and setup facts, the result figures,
// the classes whose outcome moved and every case with its time and memory
// ratio, rows coloured by their judgement; "ZoTestSuite.css" and
// "ZoTestSuite.js" go beside it. The class and case tables are sortable.
//
// The page ends after its last table, without "</body>" and "</html>".
#pragma once

#include <cstdint>

#include "report/MarkupWriter.h"
#include "report/ReportData.h"
#include "report/ReportDiff.h"

namespace TestSuite::Report {

// Rows of three cells, label, value of A and value of B, opened with the
// tag of `state` and closed with "</tr>"; they differ only in how the
// values are formatted.
void WriteDiffRowUInt(Utils::CMarkupWriter& writer, const CString& label, unsigned int a, unsigned int b,
                      EDiffRowState state);                                                      // "%u"
void WriteDiffRowDouble(Utils::CMarkupWriter& writer, const CString& label, double a, double b,  // "%f"
                        EDiffRowState state);
void WriteDiffRowUInt64(Utils::CMarkupWriter& writer, const CString& label, std::uint64_t a, std::uint64_t b,
                        EDiffRowState state);  // "%I64u"
void WriteDiffRowText(Utils::CMarkupWriter& writer, const CString& label, const CString& a, const CString& b,
                      EDiffRowState state);  // as they stand

// Writes the diff page of `a` (the reference, read from `pathA`) and `b`
// (from `pathB`) to `outPath`. Writes and says nothing if `outPath` is
// empty or either record has no classes or no cases. `bIgnoreOneSided`
// leaves rows of one side unjudged, `bOmitCaseTable` leaves out the case
// table, `bHideWarnings` keeps gained warnings from making a row worse. A
// failure prints "HTML-Report %s konnte nicht erzeugt werden.\n", keeps what
// was written and never reaches the caller.
void WriteReportDiff(const CString& outPath, const CString& pathA, const CString& pathB, const SData& a, const SData& b,
                     bool bIgnoreOneSided, bool bOmitCaseTable, bool bHideWarnings);

}  // namespace TestSuite::Report
