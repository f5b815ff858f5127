// The diff page mode: where its page goes, which options reach the page,
// the opening of the page, and inputs that stop it.
#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "ZoTestSuite.h"
#include "foundation/ZoFileSystem.h"
#include "report/DocumentOpener.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace ReportTest;

class ReportDiffModeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir.MakeDirectory(L"ref");
    m_dir.MakeDirectory(L"test");
    m_pathA = m_dir / L"ref/a.xml";
    m_pathB = m_dir / L"test/b.xml";
    Report::WriteXmlReport(m_pathA, report(false));
    Report::WriteXmlReport(m_pathB, report(true));
    m_setup.diffInputs.Add(m_pathA);
    m_setup.diffInputs.Add(m_pathB);
    m_previousOpener = Report::SetDocumentOpener([this](const CString& path) { m_opened.push_back(path); });
  }
  void TearDown() override { Report::SetDocumentOpener(m_previousOpener); }

  // One class with a passing case; in B the case has gained a warning.
  static Report::SData report(bool warning) {
    Report::SData data = MakeEmptyReport();
    AddClass(data, L"Geometry", 1, 0, 0, warning ? 1 : 0);
    AddCase(data, 0, L"Geometry", L"cube", Run::eCaseOk, warning);
    return data;
  }

  TempDirectory m_dir;
  CString m_pathA, m_pathB;
  SSetup m_setup;
  std::vector<CString> m_opened;
  std::function<void(const CString&)> m_previousOpener;
};

TEST_F(ReportDiffModeTest, PageGoesBesideTheReferenceNamedAfterBothReports) {
  GenerateReportDiff(m_setup);
  const std::string page = ReadBytes(m_dir / L"ref/Diff-[a][b].html");
  EXPECT_TRUE(Contains(page, "<td>Data Source</td><td>" + m_pathA.ToUtf8() + "</td><td>" + m_pathB.ToUtf8()));
  EXPECT_TRUE(Contains(page, "<h2>Case Diff</h2>"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"ref/ZoTestSuite.css"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"ref/ZoTestSuite.js"));
  EXPECT_TRUE(m_opened.empty());
}

TEST_F(ReportDiffModeTest, OutputPathAndPageOptionsOfTheSetupApply) {
  m_setup.sDiffOutputPath = m_dir / L"out.html";
  m_setup.bHtmlClassesOnly = true;
  m_setup.bHtmlHideWarnings = false;
  m_setup.bOpenHtmlReport = true;
  GenerateReportDiff(m_setup);
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"ref/Diff-[a][b].html"));
  const std::string page = ReadBytes(m_setup.sDiffOutputPath);
  EXPECT_FALSE(Contains(page, "Case Diff"));
  EXPECT_TRUE(Contains(page, "<tr class=\"worse\">\n\t\t\t\t<td>Geometry</td>"));  // the warning counts
  ASSERT_EQ(m_opened.size(), 1u);
  EXPECT_EQ(m_opened[0], m_setup.sDiffOutputPath);
}

TEST_F(ReportDiffModeTest, WarningsHiddenByDefault) {
  m_setup.sDiffOutputPath = m_dir / L"out.html";
  GenerateReportDiff(m_setup);
  const std::string page = ReadBytes(m_setup.sDiffOutputPath);
  EXPECT_FALSE(Contains(page, "Class Diff"));
  EXPECT_TRUE(Contains(page, "<tr>\n\t\t\t\t<td></td>\n\t\t\t\t<td>0</td>\n\t\t\t\t<td>0</td>\n"));
}

TEST_F(ReportDiffModeTest, MissingInputStopsWithTheLoadersLineAndWritesNothing) {
  m_setup.diffInputs[1] = m_dir / L"test/none.xml";
  m_setup.bOpenHtmlReport = true;
  COutRecorder recorder;
  GenerateReportDiff(m_setup);
  EXPECT_EQ(recorder.Text(), L"Fehler Diff: Datei " + m_setup.diffInputs[1] + L" existiert nicht.\n");
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"ref/Diff-[a][none].html"));
  EXPECT_TRUE(m_opened.empty());
}

TEST_F(ReportDiffModeTest, PageThatCannotBeWrittenIsSaidAndOpenedAllTheSame) {
  m_setup.sDiffOutputPath = m_dir / L"missing/out.html";
  m_setup.bOpenHtmlReport = true;
  COutRecorder recorder;
  GenerateReportDiff(m_setup);
  EXPECT_EQ(recorder.Text(), L"HTML-Report " + m_setup.sDiffOutputPath + L" konnte nicht erzeugt werden.\n");
  ASSERT_EQ(m_opened.size(), 1u);
}

}  // namespace
