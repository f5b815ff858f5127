// A report named on the command line: loaded silently, or refused with the
// red line that says whether it is missing or does not load.
#include "tools/ReportInput.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

TEST(ReportInput, AReportLoadsSilently) {
  TempDirectory directory;
  Report::WriteXmlReport(directory / L"r.xml", ReportTest::MakeFixedReport());
  Report::SData data;
  COutRecorder recorder;
  ASSERT_TRUE(LoadReportInput(directory / L"r.xml", data));
  EXPECT_EQ(recorder.Text(), L"");
  EXPECT_EQ(data.CasesTotal, 5u);
}

TEST(ReportInput, MissingAndUnloadableFilesAreSaidInRed) {
  TempDirectory directory;
  directory.WriteFile(L"empty.xml", "");
  Report::SData data;
  COutRecorder recorder;
  EXPECT_FALSE(LoadReportInput(directory / L"none.xml", data));
  EXPECT_FALSE(LoadReportInput(directory / L"empty.xml", data));
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages[0].sText, FormatString(L"Fehler: Datei %s existiert nicht.\n", directory / L"none.xml"));
  EXPECT_EQ(messages[2].sText,
            FormatString(L"Fehler: Daten der Datei %s konnten nicht geladen werden.\n", directory / L"empty.xml"));
  EXPECT_EQ(messages[0].color, ZoColorRGBA::c_RED);
  EXPECT_EQ(messages[2].color, ZoColorRGBA::c_RED);
}
