// The merge of the reports of a sharded run's parts: cases renumbered in
// the order of the parts, class rows merged by name, statistics counted
// again, run information of the first part, dumps escaped again after
// loading; and the tool mode: the merged files, the warnings about parts of
// different revisions or data directories, and a part that does not load.
#include "tools/ReportMerge.h"

#include <gtest/gtest.h>

#include "GoldenFile.h"
#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using ReportTest::AddCase;
using ReportTest::AddClass;

// A second part: one more failing case of Mesh and a class of its own,
// from a run that began earlier and ended later than the fixed report.
Report::SData makeSecondPart() {
  Report::SData data = ReportTest::MakeEmptyReport();
  data.DataDirectory = L"/data/tests";
  data.PscmInfo = std::make_shared<SPscmInfo>(
      SPscmInfo{L"ssh://vcs.example/zo.git", L"zo", L"main", L"4711", L"Jörg Bäcker", L"/src/zo"});
  data.RunTag = L"shard 2 of 2";
  data.DateBegin = L"2021-05-04 12:30:00";
  data.DateEnd = L"2021-05-04 12:40:00";
  data.TimeTotal = 2.0;
  AddClass(data, L"Mesh", 1, 1, 0, 0).ContactEMail = L"mesh@example.com";
  AddClass(data, L"Alpha", 1, 0, 0, 0);
  Report::SCaseData& cone = AddCase(data, 7, L"Mesh", L"cone", Run::eCaseError);
  cone.Time = 3.0;
  cone.Memory = 20000;
  AddCase(data, 9, L"Alpha", L"a1", Run::eCaseOk).Time = 0.125;
  return data;
}

}  // namespace

TEST(ReportMerge, CasesInTheOrderOfThePartsRenumbered) {
  const Report::SData merged = MergeReportData({ReportTest::MakeFixedReport(), makeSecondPart()});
  ASSERT_EQ(merged.Cases.GetCount(), 7u);
  const wchar_t* const names[] = {L"cube & sphere", L"grüße.dat", L"big.step", L"torus", L"plane", L"cone", L"a1"};
  for (unsigned int i = 0; i < 7; ++i) {
    EXPECT_EQ(merged.Cases[i].Id, i);
    EXPECT_EQ(merged.Cases[i].CaseName, names[i]);
  }
}

TEST(ReportMerge, ClassRowsMergedByNameSortedAsARunSortsThem) {
  const Report::SData merged = MergeReportData({ReportTest::MakeFixedReport(), makeSecondPart()});
  ASSERT_EQ(merged.Classes.GetCount(), 5u);
  const wchar_t* const names[] = {L"Alpha", L"Empty", L"Geometry", L"Import", L"Mesh"};
  for (unsigned int i = 0; i < 5; ++i) EXPECT_EQ(merged.Classes[i].Name, names[i]);
  const Report::SClassData& mesh = merged.Classes[4];
  EXPECT_EQ(mesh.CasesTotal, 3u);
  EXPECT_EQ(mesh.Failures, 1u);
  EXPECT_EQ(mesh.Errors, 0u);
  EXPECT_EQ(mesh.Warnings, 1u);
  EXPECT_EQ(mesh.Successful, 2u);
  EXPECT_EQ(mesh.ContactEMail, L"mesh@example.com");  // the first part's row has none
  EXPECT_EQ(merged.Classes[2].ContactName, L"Anna Müller");
}

TEST(ReportMerge, StatisticsCountedAgainOverAllCases) {
  const Report::SData merged = MergeReportData({ReportTest::MakeFixedReport(), makeSecondPart()});
  EXPECT_EQ(merged.CasesTotal, 7u);
  EXPECT_EQ(merged.Failures, 2u);  // DIFFERENT and ERROR
  EXPECT_EQ(merged.Errors, 1u);    // TIMEOUT
  EXPECT_EQ(merged.Successful, 4u);
  EXPECT_EQ(merged.Warnings, 1u);
  EXPECT_EQ(merged.ClassesTotal, 4u);       // Empty has no case
  EXPECT_EQ(merged.ClassesSuccessful, 1u);  // Alpha
  EXPECT_EQ(merged.ClassesNotClean, 3u);
  EXPECT_DOUBLE_EQ(merged.TimeTotal, 16.25);
  EXPECT_DOUBLE_EQ(merged.TimeMax, 3.0);
  EXPECT_DOUBLE_EQ(merged.TimeMin, 0.015625);
  EXPECT_DOUBLE_EQ(merged.TimeAvg, (0.25 + 1.25 + 0.5 + 0.625 + 0.015625 + 3.0 + 0.125) / 7);
  EXPECT_EQ(merged.MemoryMax, 20000u);
  EXPECT_EQ(merged.MemoryMin, 0u);  // a1 reported none
  EXPECT_EQ(merged.MemoryAvg, (12000u + 8000u + 4000u + 1000u + 1000u + 20000u) / 7);
  EXPECT_EQ(merged.DateBegin, L"2021-05-04 12:30:00");
  EXPECT_EQ(merged.DateEnd, L"2021-05-04 12:40:00");
}

TEST(ReportMerge, RunInformationOfTheFirstPart) {
  const Report::SData merged = MergeReportData({ReportTest::MakeFixedReport(), makeSecondPart()});
  EXPECT_EQ(merged.Processor, L"Model: Test CPU 3000, Cores: 8, Speed 3.600 GHz, Memory 31.9 GB");
  EXPECT_EQ(merged.MachineName, L"BUILD-07");
  EXPECT_EQ(merged.ExecutionMode, L"External Isolated");
  EXPECT_EQ(merged.ThreadCount, 4u);
  EXPECT_EQ(merged.TimeOut, 30u);
  EXPECT_EQ(merged.RunTag, L"nightly");
  ASSERT_TRUE(merged.SvnInfo);
  EXPECT_EQ(merged.SvnInfo->LastChangedRev, L"1230");
}

TEST(ReportMerge, NoPartsAndEmptyParts) {
  const Report::SData none = MergeReportData({});
  EXPECT_EQ(none.CasesTotal, 0u);
  EXPECT_TRUE(none.Classes.IsEmpty());
  const Report::SData empty = MergeReportData({ReportTest::MakeEmptyReport(), ReportTest::MakeEmptyReport()});
  EXPECT_EQ(empty.CasesTotal, 0u);
  EXPECT_EQ(empty.TimeAvg, 0.0);
  EXPECT_EQ(empty.MemoryAvg, 0u);
  EXPECT_EQ(empty.DateBegin, L"2021-05-04 12:34:56");
}

class ReportMergeFiles : public ::testing::Test {
 protected:
  CString Write(const wchar_t* name, const Report::SData& data) {
    const CString path = m_dir / name;
    Report::WriteXmlReport(path, data);
    return path;
  }
  bool Merge(std::initializer_list<CString> parts) {
    m_setup.oXmlReport = m_dir / L"merged.xml";
    for (const CString& part : parts) m_setup.diffInputs.Add(part);
    COutRecorder recorder;
    const bool bMerged = MergeReports(m_setup, m_merged);
    m_messages = recorder.Messages();
    m_sPrinted = recorder.Text();
    return bMerged;
  }

  TempDirectory m_dir;
  SSetup m_setup;
  Report::SData m_merged;
  std::vector<COutRecorder::SMessage> m_messages;
  CString m_sPrinted;
};

TEST_F(ReportMergeFiles, TheMergedFileAsGoldenAndItLoadsBackWithItsDumpsEscaped) {
  ASSERT_TRUE(Merge({Write(L"a.xml", ReportTest::MakeFixedReport()), Write(L"b.xml", makeSecondPart())}));
  EXPECT_EQ(m_sPrinted, L"");
  const std::string bytes = ReportTest::ReadBytes(m_dir / L"merged.xml");
  TestSupport::ExpectGoldenFile("tools/golden/merged.xml", bytes);
  Report::SData loaded;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(m_dir / L"merged.xml", loaded));
  EXPECT_EQ(loaded.CasesTotal, 7u);
  // A loaded dump is held as the markup the writer puts out as it is.
  EXPECT_EQ(loaded.Cases[1].Dumps[0].Text, L"Abweichung bei &lt;node 3&gt;: &#246;ffnen");
  EXPECT_EQ(m_merged.Cases[1].Dumps[0].Text, loaded.Cases[1].Dumps[0].Text);
}

TEST_F(ReportMergeFiles, PartsOfOtherRevisionsOrDataDirectoriesAreWarnedAbout) {
  Report::SData second = makeSecondPart();
  second.PscmInfo->Changeset = L"4712";
  second.DataDirectory = L"/other/tests";
  Report::SData third = makeSecondPart();
  third.PscmInfo.reset();
  const CString a = Write(L"a.xml", ReportTest::MakeFixedReport());
  const CString b = Write(L"b.xml", second);
  const CString c = Write(L"c.xml", third);
  ASSERT_TRUE(Merge({a, b, c}));
  ASSERT_EQ(m_messages.size(), 3u);
  EXPECT_EQ(
      m_messages[0].sText,
      FormatString(L"Warnung: Die Teilreports stammen aus verschiedenen Revisionen: %s (4711) und %s (4712).\n", a, b));
  EXPECT_EQ(
      m_messages[1].sText,
      FormatString(L"Warnung: Die Teilreports stammen aus verschiedenen Datenverzeichnissen: %s (/data/tests) und "
                   L"%s (/other/tests).\n",
                   a, b));
  EXPECT_EQ(m_messages[2].sText,
            FormatString(L"Warnung: Die Teilreports stammen aus verschiedenen Revisionen: %s (4711) und %s (keine).\n",
                         a, c));
  for (const auto& message : m_messages) {
    EXPECT_TRUE(message.bHasColor);
    EXPECT_EQ(message.color, ZoColorRGBA::c_GOLDENROD);
  }
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"merged.xml"));
}

TEST_F(ReportMergeFiles, APartThatDoesNotLoadStopsTheMergeWithNothingWritten) {
  const CString a = Write(L"a.xml", ReportTest::MakeFixedReport());
  m_dir.WriteFile(L"broken.xml", "<testsuite><unclosed>");
  m_setup.oHtmlReport = CString();
  EXPECT_FALSE(Merge({a, m_dir / L"broken.xml"}));
  EXPECT_NE(m_sPrinted.Find(L"Fehler: Daten der Datei "), -1) << m_sPrinted.ToUtf8();
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"merged.xml"));
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"merged.html"));
  m_setup.diffInputs.RemoveAll();
  EXPECT_FALSE(Merge({a, m_dir / L"missing.xml"}));
  EXPECT_EQ(m_messages.back().sText, FormatString(L"Fehler: Datei %s existiert nicht.\n", m_dir / L"missing.xml"));
  EXPECT_EQ(m_messages.back().color, ZoColorRGBA::c_RED);
  EXPECT_FALSE(ZoFileSystem::Exists(m_dir / L"merged.xml"));
}

TEST_F(ReportMergeFiles, TheShardTagGoesAGivenTagStays) {
  Report::SData first = makeSecondPart();
  first.RunTag = L"shard 1 of 2";
  const CString a = Write(L"a.xml", first);
  const CString b = Write(L"b.xml", makeSecondPart());
  ASSERT_TRUE(Merge({a, b}));
  EXPECT_EQ(m_merged.RunTag, L"");
  m_setup.diffInputs.RemoveAll();
  m_setup.sRunTag = L"nightly merged";
  ASSERT_TRUE(Merge({a, b}));
  EXPECT_EQ(m_merged.RunTag, L"nightly merged");
  first.RunTag = L"nightly";
  m_setup.diffInputs.RemoveAll();
  m_setup.sRunTag.Empty();
  ASSERT_TRUE(Merge({Write(L"c.xml", first), b}));
  EXPECT_EQ(m_merged.RunTag, L"nightly");
}

TEST_F(ReportMergeFiles, TheHtmlPageBesideTheReportOrWhereItIsAskedFor) {
  const CString a = Write(L"a.xml", ReportTest::MakeFixedReport());
  m_setup.oHtmlReport = CString();
  ASSERT_TRUE(Merge({a}));
  EXPECT_NE(ReportTest::ReadBytes(m_dir / L"merged.html").find("torus"), std::string::npos);
  m_setup.diffInputs.RemoveAll();
  m_setup.oHtmlReport = m_dir / L"page.html";
  ASSERT_TRUE(Merge({a}));
  EXPECT_TRUE(ZoFileSystem::Exists(m_dir / L"page.html"));
}
