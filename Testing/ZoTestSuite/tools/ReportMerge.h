// ReportMerge: one report made of the reports of the parts of a sharded
// run, so that the parts come back as one run that loads, diffs, archives
// and traces like any other.
#pragma once

#include <vector>

#include "ZoTestSuite.h"
#include "report/ReportData.h"

namespace TestSuite {

// The parts, as the loader gives them, in order as one report: the cases
// in the order of the parts with their ids renumbered from 0; one class row
// per class name with the counts of the parts summed, sorted by name as a
// run sorts its classes; the statistics counted again over all cases and
// classes, the time total as the sum of the parts', the begin the earliest
// and the end the latest; system, build and run information of the first
// part. The loader gives dump texts back decoded: they are escaped again,
// so that the merged file reads as the parts did. No parts: an empty report.
Report::SData MergeReportData(const std::vector<Report::SData>& parts);

// The tool mode: loads the reports `setup.diffInputs`, warns in goldenrod
// when they name different revisions or data directories, and writes the
// merged report to `*setup.oXmlReport`, and, when `setup.oHtmlReport` is
// present, the HTML report to its text (an empty text: beside the XML
// report, with the extension ".html"). The run tag is `setup.sRunTag` if
// it is not empty, else that of the first part, unless that is the tag a
// sharded run gives itself ("shard 1 of 3"): then the merged report has
// none. False, with nothing written, when a part is missing or does not
// load; the red line has said which. `merged` receives the merged report.
bool MergeReports(const SSetup& setup, Report::SData& merged);

}  // namespace TestSuite
