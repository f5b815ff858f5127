// The diff input loader: the two reports it gives, and each of its three
// refusals with its exact line.
#include "tools/DiffInputs.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using ReportTest::AddCase;

class DiffInputsTest : public ::testing::Test {
 protected:
  // A written report with one case of `className`.
  CString WriteReport(const wchar_t* name, const wchar_t* className) {
    Report::SData data = ReportTest::MakeEmptyReport();
    AddCase(data, 0, className, L"c1", Run::eCaseOk);
    const CString path = m_dir / name;
    Report::WriteXmlReport(path, data);
    return path;
  }
  bool Load(std::initializer_list<CString> inputs) {
    for (const CString& input : inputs) m_setup.diffInputs.Add(input);
    COutRecorder recorder;
    m_first.RunTag = L"left over";
    m_second.RunTag = L"left over";
    const bool bLoaded = LoadDiffInputs(m_setup, m_first, m_second);
    m_messages = recorder.Messages();
    m_sPrinted = recorder.Text();
    return bLoaded;
  }

  TempDirectory m_dir;
  SSetup m_setup;
  Report::SData m_first, m_second;
  std::vector<COutRecorder::SMessage> m_messages;
  CString m_sPrinted;
};

TEST_F(DiffInputsTest, TwoReportsLoadAsBaseAndComparedOneSilently) {
  const CString a = WriteReport(L"a.xml", L"Alpha");
  const CString b = WriteReport(L"b.xml", L"Beta");
  ASSERT_TRUE(Load({a, b}));
  EXPECT_EQ(m_sPrinted, L"");
  ASSERT_EQ(m_first.Cases.GetCount(), 1u);
  ASSERT_EQ(m_second.Cases.GetCount(), 1u);
  EXPECT_EQ(m_first.Cases[0].ClassName, L"Alpha");
  EXPECT_EQ(m_second.Cases[0].ClassName, L"Beta");
}

TEST_F(DiffInputsTest, NoInputAsksForTwoFiles) {
  EXPECT_FALSE(Load({}));
  EXPECT_EQ(m_sPrinted, L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
}

TEST_F(DiffInputsTest, OneInputAsksForTwoFiles) {
  EXPECT_FALSE(Load({WriteReport(L"a.xml", L"Alpha")}));
  EXPECT_EQ(m_sPrinted, L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
  EXPECT_EQ(m_first.RunTag, L"left over");
}

TEST_F(DiffInputsTest, ThreeInputsAskForTwoFiles) {
  const CString a = WriteReport(L"a.xml", L"Alpha");
  EXPECT_FALSE(Load({a, a, a}));
  EXPECT_EQ(m_sPrinted, L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
}

TEST_F(DiffInputsTest, MessagesCarryNoColour) {
  EXPECT_FALSE(Load({m_dir / L"none.xml", m_dir / L"none.xml"}));
  ASSERT_EQ(m_messages.size(), 1u);
  EXPECT_FALSE(m_messages[0].bHasColor);
}

TEST_F(DiffInputsTest, MissingFirstFileIsNamed) {
  const CString missing = m_dir / L"missing.xml";
  EXPECT_FALSE(Load({missing, WriteReport(L"b.xml", L"Beta")}));
  EXPECT_EQ(m_sPrinted, L"Fehler Diff: Datei " + missing + L" existiert nicht.\n");
}

TEST_F(DiffInputsTest, MissingSecondFileIsFoundBeforeTheFirstIsLoaded) {
  const CString broken = m_dir / L"broken.xml";
  TempDirectory::WriteBytes(broken, "<other/>");
  const CString missing = m_dir / L"missing.xml";
  EXPECT_FALSE(Load({broken, missing}));
  // Only the existence line: the unparsable first file was never opened.
  EXPECT_EQ(m_sPrinted, L"Fehler Diff: Datei " + missing + L" existiert nicht.\n");
  EXPECT_EQ(m_first.RunTag, L"left over");
}

TEST_F(DiffInputsTest, FirstFileOfAnotherRootIsNamedAfterTheLoadersLine) {
  const CString other = m_dir / L"other.xml";
  TempDirectory::WriteBytes(other, "<Config version=\"1.0\"><Selection default=\"none\"/></Config>");
  EXPECT_FALSE(Load({other, WriteReport(L"b.xml", L"Beta")}));
  EXPECT_EQ(m_sPrinted,
            L"Fehler in Config-File: XML-Syntax Fehler\n"
            L"Fehler Diff: Daten der Datei " +
                other + L" konnten nicht geladen werden.\n");
  EXPECT_TRUE(m_second.RunTag == L"left over") << "the second file must not be loaded";
}

TEST_F(DiffInputsTest, EmptySecondFileIsNamed) {
  const CString empty = m_dir / L"empty.xml";
  TempDirectory::WriteBytes(empty, "");
  EXPECT_FALSE(Load({WriteReport(L"a.xml", L"Alpha"), empty}));
  EXPECT_EQ(m_sPrinted,
            L"Fehler in Config-File: XML-Syntax Fehler\n"
            L"Fehler Diff: Daten der Datei " +
                empty + L" konnten nicht geladen werden.\n");
  ASSERT_EQ(m_first.Cases.GetCount(), 1u);
}

}  // namespace
