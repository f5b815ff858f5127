// End-to-end: what the front end reads and where it writes its log, when
// these are not as expected: file names that are not UTF-8, link cycles in
// the data tree, a log file that cannot be written, a library list of the
// wrong shape, a bad wildcard in "#ExtraInfo.xml", a regular expression
// nested too deep, and case output cut at its limit.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "CliRunner.h"
#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "Xmllint.h"
#include "foundation/SystemPath.h"
#include "isolation_PrivateFrontEnd.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

using CliTest::RunCli;

namespace {

// The replacement character as the console shows an undecodable byte.
const std::string c_sReplacement = "\xEF\xBF\xBD";

std::string bytesOf(const CString& path) { return PathToSystem(path); }

// How often `needle` stands in `text`.
std::size_t countOf(const std::string& text, const std::string& needle) {
  std::size_t count = 0;
  for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) ++count;
  return count;
}

void expectWellFormed(const std::string& path) {
  std::string messages;
  EXPECT_EQ(TestSupport::CheckWellFormed(path, messages), 0) << messages;
}

}  // namespace

// "Gr\xF6sse" and "x\xE4.case" are Latin-1 bytes, no UTF-8: each is carried
// as U+DC00 + byte and turned back into the byte at every open.
TEST(InputReliability, ALatin1DirectoryAndCaseNameAreFoundAndTheirCaseRuns) {
  TempDirectory root;
  const CString classDir = L"data/Gr\xDCF6sse/CliScripted";
  TestSupport::WriteScriptedClass(root, classDir, {{"a.case", "pass"}});
  root.WriteFile(classDir + L"/x\xDCE4.case", "fail");
  const std::string xml = bytesOf(root.Path()) + "run.xml";
  const std::string log = bytesOf(root.Path()) + "run.log";
  const auto result =
      RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--xml", xml, "--log-file", log});
  EXPECT_EQ(result.iExitCode, 1) << result.sStdout;
  EXPECT_EQ(CliTest::ReadText(log), result.sStdout);
  EXPECT_NE(result.sStdout.find("\ta.case... OK"), std::string::npos) << result.sStdout;
  EXPECT_NE(result.sStdout.find("\tx" + c_sReplacement + ".case... FEHLER"), std::string::npos) << result.sStdout;
  expectWellFormed(xml);
  EXPECT_NE(CliTest::ReadText(xml).find("name=\"x?.case\""), std::string::npos);  // '?' in the 8-bit report
}

// A selection file is declared ISO-8859-1: "Stra\xDFe.case" is "Straße.case",
// and "\xC3\xA4.case" is "Ã¤.case", not the "ä.case" its bytes would be as
// UTF-8.
TEST(InputReliability, ASelectionFileInLatin1SelectsItsCases) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"Stra\xC3\x9F"
                                    "e.case",
                                    "pass"},
                                   {"\xC3\x83\xC2\xA4.case", "pass"},
                                   {"\xC3\xA4.case", "pass"}});
  root.WriteFile(L"selection.xml",
                 "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<Config version=\"1.0\">\n"
                 "\t<Selection default=\"none\">\n\t\t<UnitTest name=\"CliScripted\" default=\"none\">\n"
                 "\t\t\t<TestCase name=\"Stra\xDF"
                 "e.case\" select=\"true\"/>\n"
                 "\t\t\t<TestCase name=\"\xC3\xA4.case\" select=\"true\"/>\n"
                 "\t\t</UnitTest>\n\t</Selection>\n</Config>\n");
  const auto result = RunCli(
      {"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--select", bytesOf(root / L"selection.xml")});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_NE(result.sStdout.find("\tStra\xC3\x9F"
                                "e.case... OK"),
            std::string::npos)
      << result.sStdout;
  EXPECT_NE(result.sStdout.find("\t\xC3\x83\xC2\xA4.case... OK"), std::string::npos) << result.sStdout;
  EXPECT_EQ(result.sStdout.find("\t\xC3\xA4.case..."), std::string::npos) << result.sStdout;
}

// The report is ISO-8859-1: "café", "Prüfung Tagä" and markup in the output
// load back, the time summary reads the file, and written again from what
// was loaded it is the same file.
TEST(InputReliability, AReportWithLatin1LettersAndMarkupLoadsBackAndWritesTheSame) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a.case", "info caf\xC3\xA9"}, {"b.case", "info <script>x</script>"}});
  const std::string xml = bytesOf(root.Path()) + "run.xml";
  const auto run = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--run-tag",
                           "Pr\xC3\xBC"
                           "fung Tag\xC3\xA4",
                           "--xml", xml});
  ASSERT_EQ(run.iExitCode, 0) << run.sStdout;
  expectWellFormed(xml);
  const auto summary = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--time-summary", xml});
  EXPECT_EQ(summary.iExitCode, 0) << summary.sStdout;
  EXPECT_EQ(summary.sStdout.find("XML-Syntax Fehler"), std::string::npos) << summary.sStdout;
  TestSuite::Report::SData data;
  ASSERT_TRUE(TestSuite::Report::LoadReportDataFromXMLFile(PathFromSystem(xml), data));
  EXPECT_EQ(data.RunTag, L"Prüfung Tagä");
  ASSERT_EQ(data.Cases.GetCount(), 2u);
  ASSERT_EQ(data.Cases[0].Dumps.GetCount(), 1u);
  EXPECT_EQ(data.Cases[0].Dumps[0].Text, L"café");
  EXPECT_EQ(data.Cases[1].Dumps[0].Text, L"&lt;script&gt;x&lt;/script&gt;");
  const CString again = root / L"again.xml";
  TestSuite::Report::WriteXmlReport(again, data);
  EXPECT_EQ(TempDirectory::ReadBytes(again), CliTest::ReadText(xml));
}

TEST(InputReliability, ADataDirectoryGivenWithLatin1BytesRuns) {
  TempDirectory root;
  const CString classDir = L"Gr\xDCF6sse/CliScripted";
  TestSupport::WriteScriptedClass(root, classDir, {{"b.case", "fail"}});
  const auto result = RunCli({"-d", bytesOf(root / L"Gr\xDCF6sse"), "--dll", "cli_ScriptedClasses"});
  EXPECT_EQ(result.iExitCode, 1) << result.sStdout << result.sStderr;
  EXPECT_NE(result.sStdout.find("\tb.case... FEHLER"), std::string::npos) << result.sStdout;
}

// data/sub/up and data/other/up lead back to data: each directory is walked
// once, with a warning for each link.
TEST(InputReliability, LinkCyclesAreWalkedOnceWithAWarning) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "pass"}});
  root.MakeDirectory(L"data/sub");
  root.MakeDirectory(L"data/other");
  std::filesystem::create_directory_symlink("..", bytesOf(root / L"data/sub/up"));
  std::filesystem::create_directory_symlink("..", bytesOf(root / L"data/other/up"));
  const auto result = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses"}, "", 60);
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_EQ(countOf(result.sStdout, "\ta.case... OK"), 1u) << result.sStdout;
  EXPECT_EQ(countOf(result.sStdout, "(Link-Zyklus)"), 2u) << result.sStdout;
  EXPECT_NE(result.sStdout.find("Warnung: Verzeichnis " + bytesOf(root / L"data/sub/up/")), std::string::npos);
}

TEST(InputReliability, ALogFileOnAFullDiskIsSaidAndTheReportIsStillWritten) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "pass"}});
  const std::string xml = bytesOf(root.Path()) + "run.xml";
  const auto result =
      RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--log-file", "/dev/full", "--xml", xml});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_EQ(countOf(result.sStdout, "Fehler: Log-Datei /dev/full konnte nicht geschrieben werden.\n"), 1u)
      << result.sStdout;
  EXPECT_NE(result.sStdout.find("\ta.case... OK"), std::string::npos);
  expectWellFormed(xml);
}

TEST(InputReliability, ALogFileThatCannotBeOpenedIsSaid) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "pass"}});
  const std::string log = bytesOf(root.Path()) + "missing/run.log";
  const auto result = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--log-file", log});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(countOf(result.sStdout, "Fehler: Log-Datei " + log + " konnte nicht geschrieben werden.\n"), 1u)
      << result.sStdout;
}

// The library list beside a private front end, in every wrong shape: one
// warning naming the file, and the run goes on with the library named on
// the command line. A library that cannot be loaded is warned about once,
// although the front end and the run both load the list.
TEST(InputReliability, ALibraryListOfTheWrongShapeIsNamedAndPassedOver) {
  const std::string contents[] = {"{\"a\": \"cli_ScriptedClasses\"}",
                                  "\"cli_ScriptedClasses\"",
                                  "[\"cli_ScriptedClasses\"",
                                  "",
                                  "[1, 2]",
                                  std::string("\x7f"
                                              "ELF\x02\x01\x01\x00\xff\xfe binary",
                                              16)};
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "pass"}});
  CPrivateFrontEnd frontEnd({"cli_ScriptedClasses"});
  const std::string conf = frontEnd.Directory() + "ZoTestSuiteEnvironment.conf";
  std::ofstream(frontEnd.Directory() + "broken.so") << "no library";
  for (const std::string& content : contents) {
    SCOPED_TRACE(content);
    std::ofstream(conf, std::ios::binary | std::ios::trunc) << content;
    CliTest::CCliProcess process(frontEnd.Program(), {"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses",
                                                      "--dll", "broken", "--no-color"});
    const CliTest::SCliResult result = process.Finish(120);
    EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
    EXPECT_EQ(countOf(result.sStdout,
                      "Warnung: " + conf + " ist keine JSON-Liste von Bibliotheksnamen und wird übergangen.\n"),
              1u)
        << result.sStdout;
    EXPECT_EQ(countOf(result.sStdout, "DLL 'broken.so' konnte nicht geladen werden: "), 1u) << result.sStdout;
    EXPECT_NE(result.sStdout.find("\ta.case... OK"), std::string::npos);
    EXPECT_EQ(result.sStdout.find("\xff\xfe"), std::string::npos);  // no raw bytes of the file
  }
}

TEST(InputReliability, ABadWildcardInExtraInfoNamesTheFileAndTheRunGoesOn) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"c_a.case", "pass"}});
  root.WriteFile(L"data/CliScripted/#ExtraInfo.xml",
                 "<ExtraInfo><TestCase name=\"c_{\"><Enable>false</Enable></TestCase></ExtraInfo>");
  const auto result = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses"});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_NE(result.sStdout.find("Warnung: Ungültiges Muster 'c_{' in Datei " +
                                bytesOf(root / L"data/CliScripted/#ExtraInfo.xml") + ".\n"),
            std::string::npos)
      << result.sStdout;
  EXPECT_NE(result.sStdout.find("\tc_a.case... OK"), std::string::npos);
}

TEST(InputReliability, ARegularExpressionNestedTwentyThousandDeepIsAUsageError) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "pass"}});
  const std::string nested = std::string(20000, '(') + "a" + std::string(20000, ')');
  const auto result =
      RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses", "--include-regex", nested});
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_NE(result.sStderr.find("--include-regex"), std::string::npos);
}

// 1,100,000 characters of output are cut at 1,048,575, mid-line: the next
// case line starts on a line of its own.
TEST(InputReliability, ACaseLineIsNotGluedToOutputCutAtItsLimit) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a.case", "output 1100000"}, {"b.case", "pass"}});
  const auto result = RunCli({"-d", bytesOf(root / L"data"), "--dll", "cli_ScriptedClasses"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(countOf(result.sStdout, std::string(1048575, 'o') + "\n\tb.case... OK"), 1u);
}
