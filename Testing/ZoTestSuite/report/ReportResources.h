// ReportResources: the style sheet and the script that every HTML page of
// the reports uses, as the library holds them (8-bit text, "\r\n" line
// ends), and the files beside a page that receive them.
#pragma once

#include <string>

#include "foundation/CString.h"

namespace TestSuite::Report {

// The style sheet, resource "CSSFILE"/"IDR_HTML_REPORT_CSS".
std::string LoadStyleSheet();
// The table-sorting script, resource "JSFILE"/"IDR_HTML_REPORT_JS".
std::string LoadReportScript();

// Writes "ZoTestSuite.css" and "ZoTestSuite.js", each as the resource stands,
// into `directory` (empty: the working directory; else ending in '/'),
// replacing what is there. A missing resource gives an empty file. Throws
// XbException if a file cannot be made.
void WriteReportResourceFiles(const CString& directory);

}  // namespace TestSuite::Report
