// The report output at the end of a run: which reports are written where,
// and the page opened afterwards.
#include "run/RunReports.h"

#include <gtest/gtest.h>

#include <vector>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "foundation_TestFiles.h"
#include "report/DocumentOpener.h"
#include "report/ReportNames.h"
#include "report/XmlReportLoader.h"
#include "run/RunDriver.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;

// A finished run of two cases of one class, begun 2021-05-04 12:34:56.
struct SFinishedRun {
  XbArray<SUnitTest> classes;
  Run::SResult result;

  SFinishedRun() {
    SUnitTest unitTest;
    unitTest.Name = L"Reported";
    unitTest.DataDir = L"/data/Reported/";
    unitTest.Cases = {SUnitTest::SCase{L"passes", {}}, SUnitTest::SCase{L"fails", {}}};
    classes.Add(unitTest);
    SCaseResult passes, fails;
    passes.eResult = Run::eCaseOk;
    fails.uiCaseIndex = 1;
    fails.eResult = Run::eCaseError;
    fails.sOutput = L"ERROR: broken\n";
    result.cases = {passes, fails};
    ComputeStatistics(result.cases, classes.GetCount(), result.statistics);
    result.statistics.dateBegin = XbDateTime(2021, 5, 4, 12, 34, 56);
    result.statistics.dateEnd = XbDateTime(2021, 5, 4, 12, 35, 0);
  }
};

// Points the documents directory at a scratch directory and records what
// is opened, while it lives.
class CReportScene {
 public:
  CReportScene() {
    Report::SetDocumentOpener([this](const CString& path) { m_opened.push_back(path); });
  }
  ~CReportScene() { Report::SetDocumentOpener(nullptr); }
  CReportScene(const CReportScene&) = delete;
  CReportScene& operator=(const CReportScene&) = delete;

  const CString& Documents() const { return m_documents.Path(); }
  const CString& Output() const { return m_output.Path(); }
  const std::vector<CString>& Opened() const { return m_opened; }

 private:
  TempDirectory m_documents;
  TempDirectory m_output;
  FoundationTest::CScopedEnvironment m_environment{"XDG_DOCUMENTS_DIR", m_documents.Path().ToUtf8()};
  std::vector<CString> m_opened;
};

TEST(RunReportsTest, WithoutReportsNothingIsBuiltOrMade) {
  CReportScene scene;
  SSetup setup;
  setup.bOpenHtmlReport = true;
  const SFinishedRun run;
  COutRecorder recorder;
  WriteRunReports(setup, run.classes, run.result);
  EXPECT_TRUE(ZoFileSystem::ListDirectory(scene.Documents()).IsEmpty());
  EXPECT_TRUE(scene.Opened().empty());
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

TEST(RunReportsTest, GivenPathsAreUsedAsTheyStand) {
  CReportScene scene;
  SSetup setup;
  setup.oXmlReport = scene.Output() + L"run.report";
  setup.oHtmlReport = scene.Output() + L"page.htm";
  setup.sRunTag = L"tagged";
  const SFinishedRun run;
  WriteRunReports(setup, run.classes, run.result);
  Report::SData loaded;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(*setup.oXmlReport, loaded));
  EXPECT_EQ(loaded.CasesTotal, 2u);
  EXPECT_EQ(loaded.Failures, 1u);
  EXPECT_EQ(loaded.RunTag, L"tagged");
  EXPECT_EQ(loaded.DateBegin, L"2021-05-04 12:34:56");
  ASSERT_EQ(loaded.Cases.GetCount(), 2u);
  EXPECT_EQ(loaded.Cases[1].Dumps[0].Text, L"broken");
  EXPECT_TRUE(ZoFileSystem::Exists(*setup.oHtmlReport));
  EXPECT_TRUE(ZoFileSystem::Exists(scene.Output() + L"ZoTestSuite.css"));
  EXPECT_TRUE(ZoFileSystem::Exists(scene.Output() + L"ZoTestSuite.js"));
  EXPECT_TRUE(ZoFileSystem::ListDirectory(scene.Documents()).IsEmpty());
  EXPECT_TRUE(scene.Opened().empty());
}

TEST(RunReportsTest, EmptyPathsGoToTheDefaultDirectoryUnderTheReportsName) {
  CReportScene scene;
  SSetup setup;
  setup.oXmlReport = CString();
  setup.oHtmlReport = CString();
  const SFinishedRun run;
  WriteRunReports(setup, run.classes, run.result);
  // Named after the revision where the build has one, else after the date.
  Report::SData data;
  data.PscmInfo = GetPscmInfo();
  data.DateBegin = L"2021-05-04 12:34:56";
  const CString name = Report::GetArchiveName(data).value_or(L"Report-[2021.05.04-12.34.56]");
  const CString directory = scene.Documents() + L"ZoTestSuite/Reports/";
  EXPECT_TRUE(ZoFileSystem::Exists(directory + name + L".xml")) << directory + name;
  EXPECT_TRUE(ZoFileSystem::Exists(directory + name + L".html"));
  EXPECT_TRUE(ZoFileSystem::Exists(directory + L"ZoTestSuite.css"));
}

TEST(RunReportsTest, HtmlReportIsOpenedWhenAsked) {
  CReportScene scene;
  SSetup setup;
  setup.oXmlReport = scene.Output() + L"run.xml";
  setup.oHtmlReport = scene.Output() + L"page.html";
  setup.bOpenHtmlReport = true;
  const SFinishedRun run;
  WriteRunReports(setup, run.classes, run.result);
  ASSERT_EQ(scene.Opened().size(), 1u);
  EXPECT_EQ(scene.Opened()[0], *setup.oHtmlReport);
}

TEST(RunReportsTest, UnwritableReportIsOpenedAllTheSame) {
  CReportScene scene;
  SSetup setup;
  setup.oHtmlReport = scene.Output() + L"missing/page.html";
  setup.bOpenHtmlReport = true;
  const SFinishedRun run;
  COutRecorder recorder;
  WriteRunReports(setup, run.classes, run.result);
  EXPECT_EQ(recorder.Text(), L"HTML-Report " + *setup.oHtmlReport + L" konnte nicht erzeugt werden.\n");
  EXPECT_EQ(scene.Opened().size(), 1u);
}

TEST(RunReportsTest, PageFollowsTheSetupsHtmlOptions) {
  CReportScene scene;
  SSetup setup;
  setup.oHtmlReport = scene.Output() + L"page.html";
  setup.bHtmlClassesOnly = true;
  const SFinishedRun run;
  WriteRunReports(setup, run.classes, run.result);
  const std::string page = TempDirectory::ReadBytes(*setup.oHtmlReport);
  EXPECT_EQ(page.find("Testcases"), std::string::npos);
  EXPECT_NE(page.find("<tr class=\"failure\">"), std::string::npos);
  EXPECT_FALSE(ZoFileSystem::Exists(scene.Output() + L"run.xml"));
}

}  // namespace
