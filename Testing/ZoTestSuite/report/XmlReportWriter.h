// XmlReportWriter: the XML report, the durable record of a run that the
// archive keeps, the diff tools compare and the loader reads back.
//
// The file is ISO-8859-1 text with "\n" line ends and one tab per level: a
// root "testsuite" with the counts tests, errors, failures and skip (always
// 0), then the blocks SystemInfo, BuildInfo, RunInfo, Statistics and
// ClassStatistics, then one "testcase" per reported case. Values go in as
// they stand: only a case's name is escaped here, and dump texts were
// escaped when the record was built. A case's Message is not written; its
// leak delta is.
#pragma once

#include "report/ReportData.h"

namespace TestSuite::Report {

// Writes `data` to `path`, replacing the file; an empty path writes
// nothing. A failure prints "XML-Report %s konnte nicht erzeugt werden.\n"
// and leaves what was written; it never reaches the caller.
void WriteXmlReport(const CString& path, const SData& data);

}  // namespace TestSuite::Report
