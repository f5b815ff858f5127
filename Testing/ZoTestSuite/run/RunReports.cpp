// The report output of a run: the report record built from the run and written as XML and HTML.
#include "run/RunReports.h"

#include "report/DocumentOpener.h"
#include "report/HtmlReportWriter.h"
#include "report/ReportNames.h"
#include "report/XmlReportWriter.h"

namespace TestSuite {

void WriteRunReports(const SSetup& setup, const XbArray<SUnitTest>& classes, const Run::SResult& result) {
  if (!setup.oXmlReport && !setup.oHtmlReport) return;
  Report::SData data;
  Report::BuildReportData(data, setup, classes, result.cases, result.statistics);
  if (setup.oXmlReport) Report::WriteXmlReport(Report::ResolveReportPath(*setup.oXmlReport, data, L"xml"), data);
  if (setup.oHtmlReport) {
    const CString path = Report::ResolveReportPath(*setup.oHtmlReport, data, L"html");
    Report::WriteHtmlReport(path, data, setup.bHtmlClassesOnly, setup.bHtmlHideWarnings);
    if (setup.bOpenHtmlReport) Report::OpenDocument(path);
  }
}

}  // namespace TestSuite
