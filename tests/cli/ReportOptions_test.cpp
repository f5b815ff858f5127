// The report options of the front end, parsed into the setup.
#include "ReportOptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "TempDirectory.h"

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

// Makes a scratch directory the working directory while it lives, so that
// a file written under a relative name, or none, shows there.
class CScratchWorkingDirectory {
 public:
  CScratchWorkingDirectory() : m_previous(std::filesystem::current_path()) {
    std::filesystem::current_path(m_dir.Path().ToUtf8());
  }
  ~CScratchWorkingDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(m_previous, ignored);
  }
  std::vector<std::string> Entries() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_dir.Path().ToUtf8()))
      names.push_back(entry.path().filename().string());
    return names;
  }

 private:
  TempDirectory m_dir;
  std::filesystem::path m_previous;
};

TEST(ReportOptions, JUnitFileWithTheOption) {
  const CScratchWorkingDirectory directory;
  WriteJUnitReportOfRun(parse({"--junit", "junit.xml"}), Run::SResult());
  EXPECT_EQ(directory.Entries(), std::vector<std::string>{"junit.xml"});
}

TEST(ReportOptions, NoJUnitFileWithoutTheOption) {
  const CScratchWorkingDirectory directory;
  WriteJUnitReportOfRun(parse({}), Run::SResult());
  EXPECT_TRUE(directory.Entries().empty());
}

}  // namespace
