// XmlReportLoader: the way back from an XML report to Report::SData, through
// which every tool reaches old runs.
//
// Lenient: the file must parse and its root must be "testsuite"; any element
// may be missing and then gives the empty text or 0. Blocks and their
// children may stand in any order; names are found without regard to case.
// What differs from the record that was written:
//   - ClassesNotClean is 0 (the file does not hold it);
//   - a class's Successful and a case's Message are computed again;
//   - the failure/error elements and the counts on the root are not read:
//     the result words and the Statistics block decide;
//   - a case name comes back unescaped, and so does the text of a dump,
//     which was escaped in the record that was written;
//   - a TimeOut of -1 comes back as 0xFFFFFFFF;
//   - times keep six decimals.
// SvnInfo exists only if SvnURL has a text, PscmInfo only if PscmRepository
// has one. An unknown result word, and a missing one, read as 5 (UNKNOWN);
// a dump is an info line only if its type is exactly "info".
#pragma once

#include "report/ReportData.h"

namespace TestSuite::Report {

// Replaces `data` with the report of `path`. False for a path that does not
// exist (printing nothing) and for a file that does not parse or has
// another root (printing "Fehler in Config-File: XML-Syntax Fehler\n");
// `data` is then default-constructed.
bool LoadReportDataFromXMLFile(const CString& path, SData& data);

}  // namespace TestSuite::Report
