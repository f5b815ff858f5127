// ReportOptions: the options of the front end that ask for reports: the XML
// and HTML reports that the run writes itself, how the page looks, and the
// JUnit file for CI servers, which the front end writes after the run.
#pragma once

#include <cstdint>
#include <string>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SReportOptionValues {
  std::string sXmlReport;
  std::string sHtmlReport;
  std::string sJUnitReport;
  std::int32_t iMessageReportMax = 3;
  bool bOpenHtmlReport = false;
  bool bHtmlClassesOnly = false;
  bool bShowWarnings = false;
};

// --xml [FILE], --html [FILE] (without FILE: the default report directory
// and a name after the revision or the date), --open, --html-classes-only,
// --show-warnings, --message-report-max N and --junit FILE.
void AddReportOptions(::CLI::App& app, SReportOptionValues& values);

// Moves the parsed values into the setup. The JUnit path is carried in the
// setup's front-end text, which the library does not read.
void ApplyReportOptions(const ::CLI::App& app, const SReportOptionValues& values, SSetup& setup);

// After Run::Run: writes the JUnit file that --junit asked for, from the
// same report data as the run's own reports; nothing without --junit.
void WriteJUnitReportOfRun(const SSetup& setup, const Run::SResult& result);

}  // namespace TestSuite::CLI
