// The report options of the front end, parsed into the setup.
#include "ReportOptions.h"

#include <gtest/gtest.h>

#include "CommandLine.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SSetup parse(std::vector<const char*> words) {
  words.insert(words.begin(), {"ZoTestSuiteCLI", "-d", "data"});
  return ParseCommandLine(static_cast<int>(words.size()), words.data()).setup;
}

TEST(ReportOptions, WithoutOptionsNoReportIsAsked) {
  const SSetup setup = parse({});
  EXPECT_FALSE(setup.oXmlReport.has_value());
  EXPECT_FALSE(setup.oHtmlReport.has_value());
  EXPECT_FALSE(setup.bOpenHtmlReport || setup.bHtmlClassesOnly);
  EXPECT_TRUE(setup.bHtmlHideWarnings);
  EXPECT_EQ(setup.iMessageReportMax, 3);
  EXPECT_TRUE(setup.sFrontEndText.IsEmpty());
}

TEST(ReportOptions, ReportWithoutFileAsksForTheDefaultLocation) {
  const SSetup setup = parse({"--xml", "--html"});
  ASSERT_TRUE(setup.oXmlReport.has_value());
  EXPECT_TRUE(setup.oXmlReport->IsEmpty());
  ASSERT_TRUE(setup.oHtmlReport.has_value());
  EXPECT_TRUE(setup.oHtmlReport->IsEmpty());
}

TEST(ReportOptions, ReportFilesAndPageOptionsFillTheirFields) {
  const SSetup setup = parse({"--xml", "out/run.xml", "--html", "out/Grüße.html", "--open", "--html-classes-only",
                              "--show-warnings", "--message-report-max", "7", "--junit", "out/junit.xml"});
  EXPECT_EQ(setup.oXmlReport, std::optional<CString>(CString(L"out/run.xml")));
  EXPECT_EQ(setup.oHtmlReport, std::optional<CString>(CString(L"out/Grüße.html")));
  EXPECT_TRUE(setup.bOpenHtmlReport);
  EXPECT_TRUE(setup.bHtmlClassesOnly);
  EXPECT_FALSE(setup.bHtmlHideWarnings);
  EXPECT_EQ(setup.iMessageReportMax, 7);
  EXPECT_EQ(setup.sFrontEndText, CString(L"out/junit.xml"));
}

TEST(ReportOptions, ReportOptionWithoutFileDoesNotSwallowTheNextOption) {
  const SSetup setup = parse({"--html", "--xml", "x.xml"});
  EXPECT_EQ(setup.oHtmlReport, std::optional<CString>(CString()));
  EXPECT_EQ(setup.oXmlReport, std::optional<CString>(CString(L"x.xml")));
}

TEST(ReportOptions, JUnitNeedsAFileAndTheLimitANumber) {
  EXPECT_THROW(parse({"--junit"}), CUsageError);
  EXPECT_THROW(parse({"--message-report-max", "many"}), CUsageError);
}

TEST(ReportOptions, NoJUnitFileWithoutTheOption) {
  SSetup setup = parse({});
  Run::SResult result;
  EXPECT_NO_THROW(WriteJUnitReportOfRun(setup, result));
}

}  // namespace
