// The archive's diff pages: the page's name and link, one page per pair,
// the shared record of the newer report, and reports that do not load.
#include "report/DiffPageContext.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

class DiffPageContextTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir.MakeDirectory(L"html/diff");
    m_older = m_dir / L"Report-10-[2021.05.04-12.00.00].xml";
    m_newer = m_dir / L"Report-11-[2021.05.05-12.00.00].xml";
    WriteXmlReport(m_older, report(Run::eCaseError, false));
    WriteXmlReport(m_newer, report(Run::eCaseOk, true));
    m_context.sName = L"Report-11-[2021.05.05-12.00.00]";
    m_context.sDirectory = m_dir / L"html/diff";
    m_context.sPath = m_newer;
  }

  static SData report(Run::ECaseResult result, bool withNewClass) {
    SData data = MakeEmptyReport();
    AddClass(data, L"Geometry", 1, result == Run::eCaseOk ? 0 : 1, 0, 0);
    AddCase(data, 0, L"Geometry", L"cube", result);
    if (withNewClass) {
      AddClass(data, L"Fresh", 1, 1, 0, 0);
      AddCase(data, 1, L"Fresh", L"new", Run::eCaseError);
    }
    return data;
  }

  CString pagePath() const {
    return m_dir / L"html/diff/Report-10-[2021.05.04-12.00.00]-vs-Report-11-[2021.05.05-12.00.00].html";
  }

  TempDirectory m_dir;
  CString m_older, m_newer;
  SDiffPageContext m_context;
};

TEST_F(DiffPageContextTest, MakesTheOlderVersusNewerPageWithoutCaseTable) {
  CString link;
  EnsureDiffPage(m_context, link, m_older, false);
  EXPECT_EQ(link, L"diff/Report-10-[2021.05.04-12.00.00]-vs-Report-11-[2021.05.05-12.00.00].html");
  const std::string page = ReadBytes(pagePath());
  EXPECT_TRUE(Contains(page, "<td>Data Source</td><td>" + m_older.ToUtf8() + "</td><td>" + m_newer.ToUtf8()));
  EXPECT_TRUE(Contains(page, "<tr class=\"better\">\n\t\t\t\t<td>Geometry</td>"));
  EXPECT_TRUE(Contains(page, "<tr class=\"worse\">\n\t\t\t\t<td>Fresh</td>"));
  EXPECT_FALSE(Contains(page, "Case Diff"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"html/diff/ZoTestSuite.css"));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"html/diff/ZoTestSuite.js"));
  ASSERT_TRUE(m_context.pData);
  EXPECT_EQ(m_context.pData->Cases.GetCount(), 2u);
}

TEST_F(DiffPageContextTest, OneSidedClassesAreIgnoredOnRequest) {
  CString link;
  EnsureDiffPage(m_context, link, m_older, true);
  const std::string page = ReadBytes(pagePath());
  EXPECT_TRUE(Contains(page, "<td>Geometry</td>"));
  EXPECT_FALSE(Contains(page, "<td>Fresh</td>"));
}

TEST_F(DiffPageContextTest, AnExistingPageIsNotMadeAgain) {
  TempDirectory::WriteBytes(pagePath(), "made before");
  CString link;
  EnsureDiffPage(m_context, link, m_older, false);
  EXPECT_EQ(link, L"diff/Report-10-[2021.05.04-12.00.00]-vs-Report-11-[2021.05.05-12.00.00].html");
  EXPECT_EQ(ReadBytes(pagePath()), "made before");
  EXPECT_FALSE(m_context.pData);  // nothing was loaded
}

TEST_F(DiffPageContextTest, TheSharedRecordIsLoadedOnceAndUsedAsItIs) {
  m_context.pData = std::make_shared<SData>(report(Run::eCaseOk, false));
  m_context.pData->RunTag = L"from the slot";
  CString link;
  EnsureDiffPage(m_context, link, m_older, false);
  const std::string page = ReadBytes(pagePath());
  EXPECT_TRUE(Contains(page, "<td>Run Tag:</td>\n\t\t\t\t<td></td>\n\t\t\t\t<td>from the slot</td>"));
  EXPECT_FALSE(Contains(page, "Fresh"));
}

TEST_F(DiffPageContextTest, AReportThatDoesNotLoadLeavesNoPageButTheLink) {
  TempDirectory::WriteBytes(m_newer, "no xml");
  CString link;
  {
    COutRecorder recorder;
    EnsureDiffPage(m_context, link, m_older, false);
  }
  EXPECT_EQ(link, L"diff/Report-10-[2021.05.04-12.00.00]-vs-Report-11-[2021.05.05-12.00.00].html");
  EXPECT_FALSE(ZoFileSystem::Exists(pagePath()));
  ASSERT_TRUE(m_context.pData);
  EXPECT_EQ(m_context.pData->Cases.GetCount(), 0u);
  CString otherLink;
  EnsureDiffPage(m_context, otherLink, m_dir / L"missing.xml", false);
  EXPECT_EQ(otherLink, L"diff/missing-vs-Report-11-[2021.05.05-12.00.00].html");
}

}  // namespace
