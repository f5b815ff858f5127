// Loading XML reports back: what a written report gives, lenient reading of
// partial files, and the failures.
#include "report/XmlReportLoader.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include "TempDirectory.h"
#include "Xmllint.h"
#include "report/HtmlReportWriter.h"
#include "report/MarkupWriter.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

const char* const c_prolog = "<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>\n";

struct SLoaded {
  bool bLoaded = false;
  SData data;
  CString sPrinted;
};

SLoaded loadText(const std::string& text) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  TempDirectory::WriteBytes(path, text);
  COutRecorder recorder;
  SLoaded loaded;
  loaded.data.RunTag = L"left over";
  loaded.bLoaded = LoadReportDataFromXMLFile(path, loaded.data);
  loaded.sPrinted = recorder.Text();
  return loaded;
}

SLoaded loadCase(const std::string& testcase) {
  return loadText(std::string(c_prolog) + "<testsuite>\n" + testcase + "</testsuite>\n");
}

SData writeAndLoad(const SData& written) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  WriteXmlReport(path, written);
  SData loaded;
  EXPECT_TRUE(LoadReportDataFromXMLFile(path, loaded));
  return loaded;
}

// What "%f" keeps of a value: six decimals.
double sixDecimals(double value) { return std::atof(FormatString(L"%f", value).ToUtf8().c_str()); }

void expectSameHeader(const SData& loaded, const SData& written) {
  EXPECT_EQ(loaded.BuildConfiguration, written.BuildConfiguration);
  EXPECT_EQ(loaded.Processor, written.Processor);
  EXPECT_EQ(loaded.GPU, written.GPU);
  EXPECT_EQ(loaded.MachineName, written.MachineName);
  EXPECT_EQ(loaded.DataDirectory, written.DataDirectory);
  EXPECT_EQ(loaded.ExecutionMode, written.ExecutionMode);
  EXPECT_EQ(loaded.ThreadCount, written.ThreadCount);
  EXPECT_EQ(loaded.TimeOut, written.TimeOut);
  EXPECT_EQ(loaded.RunTag, written.RunTag);
  EXPECT_EQ(loaded.ShuffleSeed, written.ShuffleSeed);
  EXPECT_EQ(loaded.ClassesTotal, written.ClassesTotal);
  EXPECT_EQ(loaded.ClassesSuccessful, written.ClassesSuccessful);
  EXPECT_EQ(loaded.CasesTotal, written.CasesTotal);
  EXPECT_EQ(loaded.Successful, written.Successful);
  EXPECT_EQ(loaded.Failures, written.Failures);
  EXPECT_EQ(loaded.Errors, written.Errors);
  EXPECT_EQ(loaded.Warnings, written.Warnings);
  EXPECT_EQ(loaded.DateBegin, written.DateBegin);
  EXPECT_EQ(loaded.DateEnd, written.DateEnd);
  EXPECT_EQ(loaded.TimeTotal, sixDecimals(written.TimeTotal));
  EXPECT_EQ(loaded.TimeAvg, sixDecimals(written.TimeAvg));
  EXPECT_EQ(loaded.TimeMax, sixDecimals(written.TimeMax));
  EXPECT_EQ(loaded.TimeMin, sixDecimals(written.TimeMin));
  EXPECT_EQ(loaded.MemoryAvg, written.MemoryAvg);
  EXPECT_EQ(loaded.MemoryMax, written.MemoryMax);
  EXPECT_EQ(loaded.MemoryMin, written.MemoryMin);
}

TEST(XmlReportLoaderTest, WrittenReportComesBackExceptForTheDocumentedDifferences) {
  const SData written = MakeFixedReport();
  const SData loaded = writeAndLoad(written);
  expectSameHeader(loaded, written);
  EXPECT_EQ(loaded.ClassesNotClean, 0u);  // not in the file
  ASSERT_TRUE(loaded.SvnInfo && loaded.PscmInfo);
  EXPECT_EQ(loaded.SvnInfo->URL, written.SvnInfo->URL);
  EXPECT_EQ(loaded.SvnInfo->Revision, written.SvnInfo->Revision);
  EXPECT_EQ(loaded.SvnInfo->WorkingCopyRootPath, written.SvnInfo->WorkingCopyRootPath);
  EXPECT_EQ(loaded.SvnInfo->LastChangedAuthor, written.SvnInfo->LastChangedAuthor);
  EXPECT_EQ(loaded.SvnInfo->LastChangedRev, written.SvnInfo->LastChangedRev);
  EXPECT_EQ(loaded.SvnInfo->LastChangedDate, written.SvnInfo->LastChangedDate);
  EXPECT_TRUE(loaded.SvnInfo->Path.IsEmpty());            // neither written
  EXPECT_TRUE(loaded.SvnInfo->RepositoryRoot.IsEmpty());  // nor read
  EXPECT_EQ(loaded.PscmInfo->Server, written.PscmInfo->Server);
  EXPECT_EQ(loaded.PscmInfo->Repository, written.PscmInfo->Repository);
  EXPECT_EQ(loaded.PscmInfo->Branch, written.PscmInfo->Branch);
  EXPECT_EQ(loaded.PscmInfo->Changeset, written.PscmInfo->Changeset);
  EXPECT_EQ(loaded.PscmInfo->ChangesetAuthor, L"Jörg Bäcker");
  EXPECT_EQ(loaded.PscmInfo->WorkspacePath, written.PscmInfo->WorkspacePath);
  ASSERT_EQ(loaded.Classes.GetCount(), written.Classes.GetCount());
  for (unsigned int i = 0; i < written.Classes.GetCount(); ++i) {
    const SClassData& a = loaded.Classes[i];
    const SClassData& b = written.Classes[i];
    EXPECT_TRUE(a.Name == b.Name && a.CasesTotal == b.CasesTotal && a.Successful == b.Successful &&
                a.Errors == b.Errors && a.Failures == b.Failures && a.Warnings == b.Warnings &&
                a.ContactName == b.ContactName && a.ContactEMail == b.ContactEMail)
        << "class " << i;
  }
}

TEST(XmlReportLoaderTest, CasesComeBackWithNamesUnescapedAndDumpsEscapedAsTheRecordHeldThem) {
  const SData written = MakeFixedReport();
  const SData loaded = writeAndLoad(written);
  ASSERT_EQ(loaded.Cases.GetCount(), written.Cases.GetCount());
  for (unsigned int i = 0; i < written.Cases.GetCount(); ++i) {
    const SCaseData& a = loaded.Cases[i];
    const SCaseData& b = written.Cases[i];
    EXPECT_TRUE(a.Id == b.Id && a.ClassName == b.ClassName && a.CaseName == b.CaseName &&
                a.Time == sixDecimals(b.Time) && a.Memory == b.Memory && a.MemoryDelta == b.MemoryDelta &&
                a.ResultType == b.ResultType && a.Message == b.Message && a.Warning == b.Warning &&
                a.Dumps.GetCount() == b.Dumps.GetCount())
        << "case " << i;
  }
  EXPECT_EQ(loaded.Cases[1].CaseName, L"grüße.dat");
  EXPECT_EQ(loaded.Cases[0].CaseName, L"cube & sphere");
  EXPECT_EQ(loaded.Cases[1].Dumps[0].Text, L"Abweichung bei &lt;node 3&gt;: &#246;ffnen");
  EXPECT_TRUE(loaded.Cases[1].Dumps[0].IsError);
  EXPECT_FALSE(loaded.Cases[1].Dumps[2].IsError);
  EXPECT_EQ(loaded.Cases[3].Message, L"Speicherleck von 256 Bytes detektiert.");
}

TEST(XmlReportLoaderTest, TimeOutOfMinusOneComesBackAsAllOnesAndTimesKeepSixDecimals) {
  SData written = MakeEmptyReport();
  written.TimeOut = 0xFFFFFFFF;
  written.TimeTotal = 1.23456789;
  const SData loaded = writeAndLoad(written);
  EXPECT_EQ(loaded.TimeOut, 0xFFFFFFFFu);
  EXPECT_EQ(loaded.TimeTotal, 1.234568);
}

TEST(XmlReportLoaderTest, TimesLoadBackUnderALocaleWithADecimalComma) {
  const std::string previous = std::setlocale(LC_ALL, nullptr);
  if (!std::setlocale(LC_ALL, "de_DE.UTF-8"))
    GTEST_SKIP() << "de_DE.UTF-8 is not installed (scripts/setup.sh makes it)";
  SData written = MakeEmptyReport();
  written.TimeTotal = 2.5;
  const SData loaded = writeAndLoad(written);
  std::setlocale(LC_ALL, previous.c_str());
  EXPECT_EQ(loaded.TimeTotal, 2.5);
}

TEST(XmlReportLoaderTest, TheSeedOfAShuffledRunComesBackAndAReportWithoutOneHasNone) {
  SData written = MakeFixedReport();
  written.ShuffleSeed = 18446744073709551615u;
  EXPECT_EQ(writeAndLoad(written).ShuffleSeed, written.ShuffleSeed);
  written.ShuffleSeed = 0;
  EXPECT_EQ(writeAndLoad(written).ShuffleSeed, std::optional<std::uint64_t>(0));
  written.ShuffleSeed.reset();
  EXPECT_FALSE(writeAndLoad(written).ShuffleSeed.has_value());
  EXPECT_FALSE(
      loadText(std::string(c_prolog) + "<testsuite><RunInfo><ShuffleSeed></ShuffleSeed></RunInfo></testsuite>\n")
          .data.ShuffleSeed.has_value());
}

TEST(XmlReportLoaderTest, Latin1LettersBeforeADelimiterLoadBack) {
  SData written = MakeEmptyReport();
  written.RunTag = L"Prüfung Tagä";
  AddClass(written, L"Straß", 1, 0, 0, 0);
  SCaseData& row = AddCase(written, 0, L"Straß", L"Größe", Run::eCaseOk);
  row.Dumps.Add(SDump{false, L"café"});
  const SData loaded = writeAndLoad(written);
  EXPECT_EQ(loaded.RunTag, L"Prüfung Tagä");
  ASSERT_EQ(loaded.Cases.GetCount(), 1u);
  EXPECT_EQ(loaded.Cases[0].ClassName, L"Straß");
  EXPECT_EQ(loaded.Cases[0].CaseName, L"Größe");
  ASSERT_EQ(loaded.Cases[0].Dumps.GetCount(), 1u);
  EXPECT_EQ(loaded.Cases[0].Dumps[0].Text, L"café");
}

// Report text is declared ISO-8859-1: "Ã¤" is written as C3 A4, which as
// UTF-8 would be one "ä", and comes back as the two letters it was.
TEST(XmlReportLoaderTest, Latin1TextThatLooksLikeUtf8LoadsBackByteForByte) {
  SData written = MakeEmptyReport();
  written.RunTag = L"Pr\u00FCfung \u00C3\u00A4";
  AddClass(written, L"\u00C3\u00A4", 1, 0, 0, 0);
  SCaseData& row = AddCase(written, 0, L"\u00C3\u00A4", L"caf\u00E9", Run::eCaseOk);
  row.Dumps.Add(SDump{false, L"\u00C3\u00A9"});
  TempDirectory directory;
  const CString first = directory / L"first.xml";
  const CString second = directory / L"second.xml";
  WriteXmlReport(first, written);
  SData loaded;
  ASSERT_TRUE(LoadReportDataFromXMLFile(first, loaded));
  EXPECT_EQ(loaded.RunTag, written.RunTag);
  ASSERT_EQ(loaded.Cases.GetCount(), 1u);
  EXPECT_EQ(loaded.Cases[0].ClassName, L"\u00C3\u00A4");
  EXPECT_EQ(loaded.Cases[0].Dumps[0].Text, L"\u00C3\u00A9");
  WriteXmlReport(second, loaded);
  EXPECT_EQ(TempDirectory::ReadBytes(second), TempDirectory::ReadBytes(first));
}

// A run's record holds its dumps escaped; a loaded one holds them so too:
// written again the file is the same, and output never turns into markup.
TEST(XmlReportLoaderTest, DumpsOfMarkupStayTextThroughLoadAndWrite) {
  SData written = MakeEmptyReport();
  AddClass(written, L"K", 1, 0, 0, 0);
  SCaseData& row = AddCase(written, 0, L"K", L"c", Run::eCaseOk);
  row.Dumps.Add(SDump{false, Utils::CMarkupWriter::Clean(L"<script>alert('x')</script> & \u00E4")});
  TempDirectory directory;
  const CString first = directory / L"first.xml";
  WriteXmlReport(first, written);
  SData loaded;
  ASSERT_TRUE(LoadReportDataFromXMLFile(first, loaded));
  EXPECT_EQ(loaded.Cases[0].Dumps[0].Text, written.Cases[0].Dumps[0].Text);
  const CString second = directory / L"second.xml";
  WriteXmlReport(second, loaded);
  EXPECT_EQ(TempDirectory::ReadBytes(second), TempDirectory::ReadBytes(first));
  const CString page = directory / L"page.html";
  WriteHtmlReport(page, loaded, false, false);
  const std::string html = TempDirectory::ReadBytes(page);
  EXPECT_EQ(html.find("<script>alert"), std::string::npos);
  EXPECT_NE(html.find("&lt;script&gt;alert(&apos;x&apos;)&lt;/script&gt; &amp; &#228;"), std::string::npos);
}

// Clean keeps a line feed and drops other control characters: the report
// stays well-formed and the name comes back without them.
TEST(XmlReportLoaderTest, ANewlineAndAControlCharacterInACaseNameKeepTheReportWellFormed) {
  SData written = MakeEmptyReport();
  AddClass(written, L"K", 1, 0, 0, 0);
  AddCase(written, 0, L"K", L"zwei\nZeilen\x01\x1B[31m", Run::eCaseOk);
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  WriteXmlReport(path, written);
  std::string messages;
  EXPECT_EQ(TestSupport::CheckWellFormed(path.ToUtf8(), messages), 0) << messages;
  SData loaded;
  ASSERT_TRUE(LoadReportDataFromXMLFile(path, loaded));
  ASSERT_EQ(loaded.Cases.GetCount(), 1u);
  EXPECT_EQ(loaded.Cases[0].CaseName, L"zwei\nZeilen[31m");
}

TEST(XmlReportLoaderTest, MissingFileGivesFalseAndPrintsNothing) {
  TempDirectory directory;
  SData data;
  data.RunTag = L"before";
  COutRecorder recorder;
  EXPECT_FALSE(LoadReportDataFromXMLFile(directory / L"nothing.xml", data));
  EXPECT_TRUE(recorder.Text().IsEmpty());
  EXPECT_TRUE(data.RunTag.IsEmpty());  // reset also on failure
}

TEST(XmlReportLoaderTest, OtherRootElementIsASyntaxError) {
  const SLoaded loaded = loadText(std::string(c_prolog) + "<Config><testcase/></Config>\n");
  EXPECT_FALSE(loaded.bLoaded);
  EXPECT_EQ(loaded.sPrinted, L"Fehler in Config-File: XML-Syntax Fehler\n");
  EXPECT_TRUE(loaded.data.RunTag.IsEmpty());
}

TEST(XmlReportLoaderTest, BrokenXmlIsASyntaxError) {
  const SLoaded loaded = loadText("<testsuite><RunInfo></Statistics></testsuite>");
  EXPECT_FALSE(loaded.bLoaded);
  EXPECT_EQ(loaded.sPrinted, L"Fehler in Config-File: XML-Syntax Fehler\n");
}

TEST(XmlReportLoaderTest, TruncatedReportIsASyntaxError) {
  TempDirectory directory;
  const CString path = directory / L"report.xml";
  WriteXmlReport(path, MakeFixedReport());
  const std::string whole = ReadBytes(path);
  for (const std::size_t length : {whole.size() / 3, whole.size() / 2, whole.size() - 20}) {
    const SLoaded loaded = loadText(whole.substr(0, length));
    EXPECT_FALSE(loaded.bLoaded) << length;
    EXPECT_EQ(loaded.sPrinted, L"Fehler in Config-File: XML-Syntax Fehler\n") << length;
    EXPECT_TRUE(loaded.data.Cases.IsEmpty());
  }
}

TEST(XmlReportLoaderTest, EmptyFileAndBinaryBytesGiveFalseWithoutCrashing) {
  EXPECT_FALSE(loadText("").bLoaded);
  EXPECT_FALSE(loadText(std::string("\0\x01\xFF\xFE<", 5)).bLoaded);
}

TEST(XmlReportLoaderTest, EmptyTestsuiteGivesZeroCountsAndEmptyArrays) {
  const SLoaded loaded = loadText("<testsuite></testsuite>");
  ASSERT_TRUE(loaded.bLoaded);
  EXPECT_TRUE(loaded.sPrinted.IsEmpty());
  EXPECT_EQ(loaded.data.CasesTotal, 0u);
  EXPECT_EQ(loaded.data.TimeOut, 0u);
  EXPECT_TRUE(loaded.data.RunTag.IsEmpty());
  EXPECT_TRUE(loaded.data.Classes.IsEmpty());
  EXPECT_TRUE(loaded.data.Cases.IsEmpty());
  EXPECT_FALSE(loaded.data.SvnInfo || loaded.data.PscmInfo);
}

TEST(XmlReportLoaderTest, UnknownElementsAreIgnoredAndOrderAndCaseDoNotMatter) {
  const SLoaded loaded = loadText(std::string(c_prolog) +
                                  "<testsuite>\n<Extra><CasesTotal>99</CasesTotal></Extra>\n"
                                  "<statistics><warnings>2</warnings><CASESTOTAL>7</CASESTOTAL><Unknown/>"
                                  "</statistics>\n"
                                  "<testcase id=\"3\" name=\"n\"><future>x</future><memory>12</memory></testcase>\n"
                                  "<RunInfo><RunTag>t</RunTag></RunInfo>\n</testsuite>\n");
  ASSERT_TRUE(loaded.bLoaded);
  EXPECT_EQ(loaded.data.CasesTotal, 7u);
  EXPECT_EQ(loaded.data.Warnings, 2u);
  EXPECT_EQ(loaded.data.RunTag, L"t");
  ASSERT_EQ(loaded.data.Cases.GetCount(), 1u);
  EXPECT_EQ(loaded.data.Cases[0].Id, 3u);
  EXPECT_EQ(loaded.data.Cases[0].Memory, 12u);
}

TEST(XmlReportLoaderTest, TestcaseWithoutResultIsUnknown) {
  const SLoaded loaded = loadCase("<testcase name=\"a\"><time>0.5</time></testcase>\n");
  ASSERT_TRUE(loaded.bLoaded);
  ASSERT_EQ(loaded.data.Cases.GetCount(), 1u);
  EXPECT_EQ(loaded.data.Cases[0].ResultType, Run::eCaseUnknown);
  EXPECT_EQ(loaded.data.Cases[0].Id, 0u);
  EXPECT_EQ(loaded.data.Cases[0].Time, 0.5);
}

TEST(XmlReportLoaderTest, ResultWordsAreComparedWithCase) {
  const SLoaded loaded = loadCase(
      "<testcase><result type=\"Ok\"/></testcase>\n<testcase><result type=\"OK\"/></testcase>\n"
      "<testcase><result type=\"CANCELED\"/></testcase>\n<testcase><result type=\"TIMEOUT\"/></testcase>\n"
      "<testcase><result type=\"NOINPUT\"/></testcase>\n<testcase><result type=\"whatever\"/></testcase>\n");
  ASSERT_EQ(loaded.data.Cases.GetCount(), 6u);
  const Run::ECaseResult expected[] = {Run::eCaseUnknown, Run::eCaseOk,      Run::eCaseCanceled,
                                       Run::eCaseTimeout, Run::eCaseNoInput, Run::eCaseUnknown};
  for (unsigned int i = 0; i < 6; ++i) EXPECT_EQ(loaded.data.Cases[i].ResultType, expected[i]) << i;
}

TEST(XmlReportLoaderTest, OnlyTheTypeInfoMakesAnInfoLine) {
  const SLoaded loaded = loadCase(
      "<testcase><result type=\"OK\" warning=\"TRUE\"><dump type=\"INFO\">a</dump><dump type=\"info\">b</dump>"
      "<dump>c</dump><dump type=\"error\">d</dump></result></testcase>\n");
  ASSERT_EQ(loaded.data.Cases.GetCount(), 1u);
  const SCaseData& row = loaded.data.Cases[0];
  ASSERT_EQ(row.Dumps.GetCount(), 4u);
  EXPECT_TRUE(row.Dumps[0].IsError);
  EXPECT_FALSE(row.Dumps[1].IsError);
  EXPECT_TRUE(row.Dumps[2].IsError);
  EXPECT_TRUE(row.Dumps[3].IsError);
  EXPECT_EQ(row.Dumps[1].Text, L"b");
  EXPECT_FALSE(row.Warning);  // only "true" is true
}

TEST(XmlReportLoaderTest, SvnRevisionWithoutSvnUrlGivesNoSvnInfo) {
  const SLoaded loaded = loadText(
      "<testsuite><BuildInfo><SvnRevision>12</SvnRevision><PscmChangeset>7</PscmChangeset></BuildInfo></testsuite>");
  ASSERT_TRUE(loaded.bLoaded);
  EXPECT_EQ(loaded.data.SvnInfo, nullptr);
  EXPECT_EQ(loaded.data.PscmInfo, nullptr);  // PscmRepository decides
}

TEST(XmlReportLoaderTest, MessageIsRebuiltFromTheDeltaAndTheFilesMessageIgnored) {
  const SLoaded loaded = loadCase(
      "<testcase><memorydelta>-8</memorydelta><result type=\"ERROR\"/>"
      "<failure message=\"from the file\" type=\"Fehler\"></failure></testcase>\n"
      "<testcase><memorydelta>0</memorydelta><result type=\"OK\"/></testcase>\n");
  ASSERT_EQ(loaded.data.Cases.GetCount(), 2u);
  EXPECT_EQ(loaded.data.Cases[0].MemoryDelta, -8);
  EXPECT_EQ(loaded.data.Cases[0].Message, L"Speicherleck von -8 Bytes detektiert.");
  EXPECT_TRUE(loaded.data.Cases[1].Message.IsEmpty());
}

TEST(XmlReportLoaderTest, RootCountsAreNotReadAndClassSuccessIsComputed) {
  const SLoaded loaded = loadText(
      "<testsuite tests=\"9\" errors=\"9\" failures=\"9\"><ClassStatistics><ClassesTotal>1</ClassesTotal>"
      "<Successful>0</Successful><Class Name=\"K\"><CasesTotal>5</CasesTotal><Errors>1</Errors>"
      "<Failures>2</Failures></Class></ClassStatistics></testsuite>");
  ASSERT_TRUE(loaded.bLoaded);
  EXPECT_EQ(loaded.data.CasesTotal, 0u);
  EXPECT_EQ(loaded.data.Errors, 0u);
  ASSERT_EQ(loaded.data.Classes.GetCount(), 1u);
  EXPECT_EQ(loaded.data.Classes[0].Name, L"K");
  EXPECT_EQ(loaded.data.Classes[0].Successful, 2u);
  EXPECT_EQ(loaded.data.ClassesTotal, 1u);
}

TEST(XmlReportLoaderTest, HugeReportLoadsEveryCase) {
  constexpr unsigned int c_uiCases = 100000;
  std::string text = std::string(c_prolog) + "<testsuite>\n<Statistics><CasesTotal>100000</CasesTotal></Statistics>\n";
  text.reserve(c_uiCases * 160);
  for (unsigned int i = 0; i < c_uiCases; ++i) {
    const bool failing = i % 10 == 3;
    text += "<testcase id=\"" + std::to_string(i) + "\" classname=\"Class" + std::to_string(i / 1000) +
            "\" name=\"case" + std::to_string(i) + ".dat\"><time>0.001</time><memory>" + std::to_string(i) +
            "</memory><result type=\"" + (failing ? "ERROR" : "OK") + "\">";
    if (failing)
      text += "<dump type=\"error\">line &lt;" + std::to_string(i) + "&gt;</dump><dump type=\"info\">x</dump>";
    text += "</result></testcase>\n";
  }
  text += "</testsuite>\n";
  const SLoaded loaded = loadText(text);
  ASSERT_TRUE(loaded.bLoaded);
  EXPECT_TRUE(loaded.sPrinted.IsEmpty());
  EXPECT_EQ(loaded.data.CasesTotal, c_uiCases);
  ASSERT_EQ(loaded.data.Cases.GetCount(), c_uiCases);
  unsigned int failing = 0;
  for (unsigned int i = 0; i < c_uiCases; ++i) {
    const SCaseData& row = loaded.data.Cases[i];
    if (row.Id != i || row.Memory != i) {
      ADD_FAILURE() << "row " << i;
      break;
    }
    if (row.ResultType == Run::eCaseError) ++failing;
  }
  EXPECT_EQ(failing, c_uiCases / 10);
  const SCaseData& last = loaded.data.Cases[99993];
  EXPECT_EQ(last.ClassName, L"Class99");
  EXPECT_EQ(last.CaseName, L"case99993.dat");
  ASSERT_EQ(last.Dumps.GetCount(), 2u);
  EXPECT_EQ(last.Dumps[0].Text, L"line &lt;99993&gt;");
  EXPECT_FALSE(last.Dumps[1].IsError);
}

}  // namespace
