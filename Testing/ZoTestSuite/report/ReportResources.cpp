// The style sheet and the script of the HTML reports.
#include "report/ReportResources.h"

#include "foundation/ZoStreamFile.h"
#include "services/BuildInformation.h"

namespace TestSuite::Report {

namespace {

void writeBytes(const CString& path, const std::string& bytes) {
  ZoStreamWriteASCIIFile stream(path, 0, 0, 0);
  stream << CString::FromLatin1(bytes);  // each character back to its one byte
  stream.Close();
}

}  // namespace

std::string LoadStyleSheet() { return LoadTextResource(L"IDR_HTML_REPORT_CSS", L"CSSFILE"); }

std::string LoadReportScript() { return LoadTextResource(L"IDR_HTML_REPORT_JS", L"JSFILE"); }

void WriteReportResourceFiles(const CString& directory) {
  writeBytes(directory + L"ZoTestSuite.css", LoadStyleSheet());
  writeBytes(directory + L"ZoTestSuite.js", LoadReportScript());
}

}  // namespace TestSuite::Report
