// JUnitReportWriter: the report of a run in the JUnit XML form that CI
// servers read, made from the same Report::SData as the system's own
// reports.
//
// The file is UTF-8: a root "testsuites" with one "testsuite" per class
// name (classes of the same name share one), each with the run's system,
// build and run information as "properties", and one "testcase" per
// reported case. Results 1 to 4 become a "failure", 5 and above an "error",
// with the German label as type and message and the case's output lines as
// text; a leak message goes to "system-err", the output of a passing case
// to "system-out". Texts are escaped for XML; dump texts come escaped from
// the record of a run.
#pragma once

#include "report/ReportData.h"

namespace TestSuite::Report {

// Writes `data` to `path`, replacing the file; an empty path writes
// nothing. A failure prints "JUnit-Report %s konnte nicht erzeugt werden.\n"
// and never reaches the caller.
void WriteJUnitReport(const CString& path, const SData& data);

}  // namespace TestSuite::Report
