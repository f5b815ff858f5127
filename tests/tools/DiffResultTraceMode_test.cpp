// The tool entry of the diff result trace: what it needs of the setup, and
// the file it writes when no output is given.
#include "tools/DiffResultTraceMode.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace TestSuite {
namespace {

class DiffResultTraceModeTest : public ::testing::Test {
 protected:
  CString Archive(const wchar_t* name, Run::ECaseResult result) {
    Report::SData data = ReportTest::MakeEmptyReport();
    ReportTest::AddCase(data, 0, L"Mesh", L"torus", result);
    const CString path = m_dir / name;
    Report::WriteXmlReport(path, data);
    return path;
  }

  TempDirectory m_dir;
  SSetup m_setup;
};

TEST_F(DiffResultTraceModeTest, WithoutAFilterModeNothingHappensAtAll) {
  m_setup.diffInputs = {Archive(L"Report-1-[d].xml", Run::eCaseOk), Archive(L"Report-2-[d].xml", Run::eCaseError)};
  COutRecorder recorder;
  GenerateDiffResultTrace(m_setup);
  EXPECT_TRUE(recorder.Text().IsEmpty());
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"DiffResultTrace-[Report-1-[d]][Report-2-[d]].xml"));
}

TEST_F(DiffResultTraceModeTest, AnythingButTwoInputsIsSaid) {
  m_setup.oDiffFilterMode = SSetup::eDiffAll;
  m_setup.diffInputs = {Archive(L"Report-1-[d].xml", Run::eCaseOk)};
  COutRecorder recorder;
  GenerateDiffResultTrace(m_setup);
  EXPECT_EQ(recorder.Text(), CString(L"Fehler: es werden zwei Diff-Eingaben benötigt.\n"));
}

TEST_F(DiffResultTraceModeTest, TheDefaultOutputIsNamedAfterBothInputsBesideTheFirst) {
  m_setup.oDiffFilterMode = SSetup::eDiffAll;
  m_setup.diffInputs = {Archive(L"Report-1-[d].xml", Run::eCaseOk), Archive(L"Report-2-[d].xml", Run::eCaseError)};
  const SDiffResultTraceRun run = RunDiffResultTrace(m_setup);
  EXPECT_EQ(run.sPath, m_dir / L"DiffResultTrace-[Report-1-[d]][Report-2-[d]].xml");
  EXPECT_TRUE(run.outcome.bWritten);
  EXPECT_TRUE(ReportTest::Contains(TempDirectory::ReadBytes(run.sPath), "<TestCase name=\"torus\">"));
}

TEST_F(DiffResultTraceModeTest, AnOutputPathIsTakenAsItStands) {
  TempDirectory elsewhere;
  m_setup.oDiffFilterMode = SSetup::eDiffOnlySuccessful;
  m_setup.sDiffOutputPath = elsewhere / L"trace.xml";
  m_setup.diffInputs = {Archive(L"Report-1-[d].xml", Run::eCaseOk), Archive(L"Report-2-[d].xml", Run::eCaseError)};
  GenerateDiffResultTrace(m_setup);
  const std::string text = TempDirectory::ReadBytes(m_setup.sDiffOutputPath);
  EXPECT_TRUE(ReportTest::Contains(text, "<EndRevision>2</EndRevision>"));
  EXPECT_FALSE(ReportTest::Contains(text, "<UnitTest"));  // the case now fails: the filter drops it
}

}  // namespace
}  // namespace TestSuite
