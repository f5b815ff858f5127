// The JUnit form of a report: valid against the schema that CI servers use,
// one suite per class, results as failures and errors.
#include "report/JUnitReportWriter.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

std::string writeJUnit(const SData& data, CString* written = nullptr, TempDirectory* keep = nullptr) {
  TempDirectory own;
  TempDirectory& directory = keep ? *keep : own;
  const CString path = directory / L"junit.xml";
  WriteJUnitReport(path, data);
  if (written) *written = path;
  return ReadBytes(path);
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(JUnitReportWriterTest, FixedReportValidatesAgainstTheSchema) {
  TempDirectory directory;
  CString path;
  writeJUnit(MakeFixedReport(), &path, &directory);
  std::string messages;
  EXPECT_EQ(ValidateJUnitFile(path.ToUtf8(), messages), 0) << messages;
}

TEST(JUnitReportWriterTest, EmptyReportValidatesToo) {
  TempDirectory directory;
  CString path;
  writeJUnit(MakeEmptyReport(), &path, &directory);
  std::string messages;
  EXPECT_EQ(ValidateJUnitFile(path.ToUtf8(), messages), 0) << messages;
}

TEST(JUnitReportWriterTest, OneSuitePerClassWithItsCounts) {
  const std::string text = writeJUnit(MakeFixedReport());
  EXPECT_TRUE(
      contains(text, "<testsuites name=\"ZoTestSuite\" tests=\"5\" failures=\"1\" errors=\"1\" time=\"14.250\">"));
  EXPECT_EQ(CountOf(text, "<testsuite "), 4u);
  EXPECT_TRUE(contains(text,
                       "<testsuite name=\"Geometry\" tests=\"2\" failures=\"1\" errors=\"0\" skipped=\"0\" "
                       "time=\"1.500\" timestamp=\"2021-05-04T12:34:56\" hostname=\"BUILD-07\" id=\"0\">"));
  EXPECT_TRUE(contains(text, "<testsuite name=\"Empty\" tests=\"0\" failures=\"0\" errors=\"0\""));
  EXPECT_EQ(CountOf(text, "<testcase "), 5u);
}

TEST(JUnitReportWriterTest, ResultsBecomeFailuresAndErrorsWithTheGermanLabel) {
  const std::string text = writeJUnit(MakeFixedReport());
  EXPECT_TRUE(contains(text,
                       "<testcase classname=\"Geometry\" name=\"gr&#252;&#223;e.dat\" time=\"1.250\">\n"
                       "\t\t\t<failure type=\"Unterschiede zur Referenz-Ausf&#252;hrung\" "
                       "message=\"Unterschiede zur Referenz-Ausf&#252;hrung\">"
                       "Abweichung bei &lt;node 3&gt;: &#246;ffnen\nsecond line\n...\n</failure>"));
  EXPECT_TRUE(contains(text,
                       "<testcase classname=\"Import\" name=\"big.step\" time=\"0.500\">\n"
                       "\t\t\t<error type=\"Zeitlimit &#252;berschritten\""));
  EXPECT_TRUE(contains(text, "<testcase classname=\"Mesh\" name=\"plane\" time=\"0.016\"/>"));
  EXPECT_TRUE(contains(text,
                       "<testcase classname=\"Geometry\" name=\"cube &amp; sphere\" time=\"0.250\">\n"
                       "\t\t\t<system-out>loaded 12 faces\n</system-out>"));
}

TEST(JUnitReportWriterTest, LeakWarningGoesToSystemErr) {
  EXPECT_TRUE(contains(writeJUnit(MakeFixedReport()),
                       "<system-out>subdivided 3 times\n</system-out>\n"
                       "\t\t\t<system-err>Speicherleck von 256 Bytes detektiert.</system-err>"));
}

TEST(JUnitReportWriterTest, BuildAndRunInformationAreProperties) {
  const std::string text = writeJUnit(MakeFixedReport());
  EXPECT_TRUE(contains(text, "<property name=\"PscmChangeset\" value=\"4711\"/>"));
  EXPECT_TRUE(contains(text, "<property name=\"SvnRevision\" value=\"1234\"/>"));
  EXPECT_TRUE(contains(text, "<property name=\"PscmChangesetAuthor\" value=\"J&#246;rg B&#228;cker\"/>"));
  EXPECT_TRUE(contains(text, "<property name=\"ExecutionMode\" value=\"External Isolated\"/>"));
  EXPECT_TRUE(contains(text, "<property name=\"RunTag\" value=\"nightly\"/>"));
  EXPECT_EQ(CountOf(text, "<properties>"), 4u);
}

TEST(JUnitReportWriterTest, CharactersBeyondLatin1AreUtf8AndControlsAreDropped) {
  SData data = MakeEmptyReport();
  AddClass(data, L"K", 1, 0, 0, 0);
  AddCase(data, 0, L"K", L"\u20ac-case\x01", Run::eCaseOk);
  const std::string text = writeJUnit(data);
  EXPECT_TRUE(contains(text, "name=\"\xE2\x82\xAC-case\""));
}

TEST(JUnitReportWriterTest, CasesOfAClassNameShareOneSuite) {
  SData data = MakeEmptyReport();
  AddClass(data, L"Twin", 1, 0, 0, 0);
  AddClass(data, L"Twin", 1, 0, 0, 0);
  AddCase(data, 0, L"Twin", L"one", Run::eCaseOk);
  AddCase(data, 1, L"Twin", L"two", Run::eCaseError);
  const std::string text = writeJUnit(data);
  EXPECT_EQ(CountOf(text, "<testsuite "), 1u);
  EXPECT_TRUE(contains(text, "<testsuite name=\"Twin\" tests=\"2\" failures=\"1\" errors=\"0\""));
}

TEST(JUnitReportWriterTest, EmptyPathWritesNothingAndUnwritablePathPrintsOneLine) {
  TempDirectory directory;
  COutRecorder recorder;
  WriteJUnitReport(CString(), MakeEmptyReport());
  EXPECT_TRUE(recorder.Text().IsEmpty());
  const CString path = directory / L"missing/junit.xml";
  WriteJUnitReport(path, MakeEmptyReport());
  EXPECT_EQ(recorder.Text(), L"JUnit-Report " + path + L" konnte nicht erzeugt werden.\n");
}

}  // namespace

TEST(JUnitReportWriterTest, FullDiskPrintsOneLine) {
  COutRecorder recorder;
  WriteJUnitReport(L"/dev/full", MakeFixedReport());
  EXPECT_EQ(recorder.Text(), L"JUnit-Report /dev/full konnte nicht erzeugt werden.\n");
}
