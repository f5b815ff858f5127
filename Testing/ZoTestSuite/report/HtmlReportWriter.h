// HtmlReportWriter: the page that people read after a run: build and setup
// data, the result figures, the classes that need attention and all cases,
// as one XHTML 1.0 Strict file (ISO-8859-1, "\n" line ends, one tab per
// level), with "ZoTestSuite.css" and "ZoTestSuite.js" written beside it.
// The page head and the two-cell rows serve the other report pages too.
//
// Table cells are not escaped, except a case's name; dump texts were escaped
// when the record was built.
#pragma once

#include <initializer_list>

#include "report/MarkupWriter.h"
#include "report/ReportData.h"

namespace TestSuite::Report {

// The start of a page up to and including "</head>": document type, html,
// content type, title, the style sheet embedded line by line (if
// `embedStyle`) and the links to the two neighbour files, which are written
// in either case. Leaves the writer at depth 1.
void WriteHtmlHead(Utils::CMarkupWriter& writer, bool embedStyle);

// A head row: "<tr>", one `th` element for each text, "</tr>".
void WriteHtmlHeadRow(Utils::CMarkupWriter& writer, std::initializer_list<const wchar_t*> heads);

// Successful over total in per cent, worked out in single precision; a
// total of 0 is not guarded (0/0 gives no number).
float GetSuccessRate(unsigned int successful, unsigned int total);
// "%d/%d = %4.2f%%" with the two counts and the rate.
CString FormatSuccessRate(unsigned int successful, unsigned int total, float rate);

// The contact cell of a class: empty without an e-mail address, else a
// mailto link whose text is the contact's name, or the address again.
CString MakeContactCell(const SClassData& row);

// One table row of two cells, label and value, both as they stand.
void WriteHtmlTableRow(Utils::CMarkupWriter& writer, const CString& label, const CString& value);

// Writes the page for `data` to `path` and the two neighbour files into its
// directory; an empty path writes nothing. `bOmitCaseTable` leaves out the
// table of cases. With `bHideWarnings` warnings neither bring up the class
// summary nor colour a row. A failure prints "HTML-Report %s konnte nicht
// erzeugt werden.\n" and leaves what was written; it never reaches the
// caller.
void WriteHtmlReport(const CString& path, const SData& data, bool bOmitCaseTable, bool bHideWarnings);

}  // namespace TestSuite::Report
