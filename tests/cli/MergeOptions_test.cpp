// The merge option of the front end: the mode and fields it fills, its
// usage errors, and the refusals of the merge before anything is written.
#include "MergeOptions.h"

#include <gtest/gtest.h>

#include "FrontEnd.h"
#include "TempDirectory.h"
#include "cli_ParseWords.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using namespace TestSuite::CLI;
using CliParse::Parse;
using CliParse::UsageError;

TEST(MergeOptions, TheMergedReportFirstThenThePartsAndNoDataDirectory) {
  const SCommandLine c = Parse({"--merge-reports", "all.xml", "p0.xml", "p1.xml", "p2.xml", "--html", "--junit",
                                "all.junit.xml", "--run-tag", "nightly"});
  EXPECT_EQ(c.eMode, EMode::MergeReports);
  ASSERT_TRUE(c.setup.oXmlReport.has_value());
  EXPECT_EQ(*c.setup.oXmlReport, L"all.xml");
  ASSERT_EQ(c.setup.diffInputs.GetCount(), 3u);
  EXPECT_EQ(c.setup.diffInputs[2], L"p2.xml");
  ASSERT_TRUE(c.setup.oHtmlReport.has_value());
  EXPECT_EQ(*c.setup.oHtmlReport, L"");
  EXPECT_EQ(c.setup.sFrontEndText, L"all.junit.xml");
  EXPECT_EQ(c.setup.sRunTag, L"nightly");
}

TEST(MergeOptions, UsageErrors) {
  const std::string tooFew =
      "--merge-reports: the merged report and at least one part are needed: "
      "ZoTestSuiteCLI --merge-reports OUT.xml IN.xml...";
  EXPECT_EQ(UsageError({"--merge-reports"}, false), tooFew);
  EXPECT_EQ(UsageError({"--merge-reports", "all.xml"}, false), tooFew);
  EXPECT_EQ(UsageError({"--merge-reports", "all.xml", "a.xml", "--xml", "b.xml"}, false),
            "--merge-reports names its report itself: --xml is not needed");
  EXPECT_EQ(UsageError({"--merge-reports", "all.xml", "a.xml", "--diff", "a.xml", "b.xml"}, false),
            "--merge-reports stands alone: it excludes the other modes");
  EXPECT_EQ(UsageError({"--merge-reports", "all.xml", "a.xml", "--query"}),
            "--merge-reports stands alone: it excludes the other modes");
}

class MergeRun : public ::testing::Test {
 protected:
  void SetUp() override {
    Report::SData part;
    Report::SCaseData& row = part.Cases.Emplace();
    row.ClassName = L"Beta";
    row.CaseName = L"b1";
    row.Time = 2.5;
    Report::WriteXmlReport(m_dir / L"p0.xml", part);
  }
  int Merge(std::vector<const char*> words) {
    std::vector<std::string> storage;
    for (const char* word : words) storage.push_back((m_dir.Path() + CString::FromUtf8(word)).ToUtf8());
    std::vector<const char*> arguments = {"--merge-reports"};
    for (const std::string& word : storage) arguments.push_back(word.c_str());
    const SCommandLine c = Parse(arguments);
    COutRecorder recorder;
    const int status = RunMergeReports(c.setup);
    m_sPrinted = recorder.Text();
    return status;
  }

  TempDirectory m_dir;
  CString m_sPrinted;
};

TEST_F(MergeRun, WritesTheReportAndSaysSo) {
  EXPECT_EQ(Merge({"all.xml", "p0.xml", "p0.xml"}), sc_iExitPassed);
  EXPECT_EQ(m_sPrinted, FormatString(L"Report geschrieben: %s (Teile: 2, Testfälle: 2)\n", m_dir / L"all.xml"));
  Report::SData merged;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(m_dir / L"all.xml", merged));
  EXPECT_EQ(merged.CasesTotal, 2u);
}

TEST_F(MergeRun, RefusesOutputsThatWouldDoHarmAndWritesNothing) {
  EXPECT_EQ(Merge({"p0.xml", "p0.xml"}), sc_iExitUsage);
  EXPECT_EQ(m_sPrinted, FormatString(L"Fehler: Der Report %s würde eine Eingabe überschreiben.\n", m_dir / L"p0.xml"));
  EXPECT_EQ(Merge({"nowhere/all.xml", "p0.xml"}), sc_iExitUsage);
  EXPECT_EQ(m_sPrinted, FormatString(L"Fehler: Verzeichnis %s existiert nicht.\n", m_dir / L"nowhere/"));
  EXPECT_EQ(Merge({"all.xml", "p0.xml", "missing.xml"}), sc_iExitUsage);
  EXPECT_EQ(m_sPrinted, FormatString(L"Fehler: Datei %s existiert nicht.\n", m_dir / L"missing.xml"));
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"all.xml"));
}
