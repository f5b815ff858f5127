// ReportOptions: the options of the report files, parsed into the setup.
#include "ReportOptions.h"

#include <CLI/CLI.hpp>

#include "foundation/SystemPath.h"
#include "report/JUnitReportWriter.h"
#include "report/ReportData.h"

namespace TestSuite::CLI {

void AddReportOptions(::CLI::App& app, SReportOptionValues& values) {
  app.add_option("--xml", values.sXmlReport,
                 "Write the XML report to FILE (no FILE: into the default report directory)")
      ->expected(0, 1)
      ->type_name("[FILE]");
  app.add_option("--html", values.sHtmlReport,
                 "Write the HTML report to FILE, with ZoTestSuite.css and ZoTestSuite.js beside it "
                 "(no FILE: into the default report directory)")
      ->expected(0, 1)
      ->type_name("[FILE]");
  app.add_flag("--open", values.bOpenHtmlReport, "Open the HTML report when the run is done");
  app.add_flag("--html-classes-only", values.bHtmlClassesOnly, "Leave the table of cases out of the HTML report");
  app.add_flag("--show-warnings", values.bShowWarnings, "Show warnings in the HTML report");
  app.add_option("--message-report-max", values.iMessageReportMax,
                 "Report at most N output lines of a case (default 3)")
      ->type_name("N");
  app.add_option("--junit", values.sJUnitReport, "Write a JUnit XML file for CI servers to FILE")->type_name("FILE");
}

void ApplyReportOptions(const ::CLI::App& app, const SReportOptionValues& values, SSetup& setup) {
  if (app.count("--xml") > 0) setup.oXmlReport = PathFromSystem(values.sXmlReport);
  if (app.count("--html") > 0) setup.oHtmlReport = PathFromSystem(values.sHtmlReport);
  setup.bOpenHtmlReport = values.bOpenHtmlReport;
  setup.bHtmlClassesOnly = values.bHtmlClassesOnly;
  setup.bHtmlHideWarnings = !values.bShowWarnings;
  setup.iMessageReportMax = values.iMessageReportMax;
  setup.sFrontEndText = PathFromSystem(values.sJUnitReport);
}

void WriteJUnitReportOfRun(const SSetup& setup, const Run::SResult& result) {
  if (setup.sFrontEndText.IsEmpty()) return;
  Report::SData data;
  Report::BuildReportData(data, setup, setup.unitTests, result.cases, result.statistics);
  Report::WriteJUnitReport(setup.sFrontEndText, data);
}

}  // namespace TestSuite::CLI
