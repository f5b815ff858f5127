// The case times of an earlier report for the balance of a sharded run:
// one time per key, the mean where the report holds the key more than once;
// a report that does not load leaves the part to the hash.
#include "tools/ShardTimes.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using ReportTest::AddCase;

TEST(ShardTimes, OneTimePerKeyTheMeanOfItsRows) {
  Report::SData report = ReportTest::MakeEmptyReport();
  AddCase(report, 0, L"Beta", L"b1", Run::eCaseOk).Time = 1.0;
  AddCase(report, 1, L"Beta", L"b1", Run::eCaseOk).Time = 3.0;  // Beta in a second directory
  AddCase(report, 2, L"Beta", L"b2", Run::eCaseError).Time = 0.5;
  AddCase(report, 3, L"Alpha", L"b1", Run::eCaseOk).Time = 7.0;
  const XbMap<CString, double> times = GetCaseTimes(report);
  ASSERT_EQ(times.GetCount(), 3u);
  EXPECT_DOUBLE_EQ(*times.Find(L"Beta:b1"), 2.0);
  EXPECT_DOUBLE_EQ(*times.Find(L"Beta:b2"), 0.5);
  EXPECT_DOUBLE_EQ(*times.Find(L"Alpha:b1"), 7.0);
}

TEST(ShardTimes, LoadedFromAReportFile) {
  TempDirectory directory;
  Report::SData report = ReportTest::MakeEmptyReport();
  AddCase(report, 0, L"Beta", L"b1", Run::eCaseOk).Time = 1.5;
  Report::WriteXmlReport(directory / L"times.xml", report);
  SShard shard;
  ASSERT_TRUE(LoadShardTimes(directory / L"times.xml", shard));
  EXPECT_TRUE(shard.bByTimes);
  ASSERT_EQ(shard.caseTimes.GetCount(), 1u);
  EXPECT_DOUBLE_EQ(*shard.caseTimes.Find(L"Beta:b1"), 1.5);
}

TEST(ShardTimes, AReportThatDoesNotLoadLeavesTheShardAsItWas) {
  TempDirectory directory;
  directory.WriteFile(L"broken.xml", "<other/>");
  SShard shard;
  COutRecorder recorder;
  EXPECT_FALSE(LoadShardTimes(directory / L"missing.xml", shard));
  EXPECT_FALSE(LoadShardTimes(directory / L"broken.xml", shard));
  EXPECT_FALSE(shard.bByTimes);
  EXPECT_TRUE(shard.caseTimes.IsEmpty());
  EXPECT_EQ(recorder.Text(),
            FormatString(L"Fehler: Datei %s existiert nicht.\n", directory / L"missing.xml") +
                L"Fehler in Config-File: XML-Syntax Fehler\n" +
                FormatString(L"Fehler: Daten der Datei %s konnten nicht geladen werden.\n", directory / L"broken.xml"));
}
