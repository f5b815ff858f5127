// End-to-end: a nightly archive kept by the archive mode, and a trace
// through it. Three archive runs of one run-list entry start the real front
// end (a private copy whose ZoTestSuiteEnvironment.conf names
// cli_ScriptedClasses, since the archive runs execute every case in a child
// process) on a data tree whose scripted cases change between the runs;
// each run files its report in the archive. Then --trace between the first
// and the last report, checked element by element; and the refusals of bad
// run lists and bad trace inputs.
//
// The revision of a report is the build's: the library carries the commit
// count of its checkout, so all three runs of one build file reports of one
// revision (told apart by their run tags). A history of three builds is made
// afterwards the way the system itself reads revisions: the PscmChangeset
// of each filed report is set to 101, 102 and 103 in run order, and
// --normalize-archive files the reports under their new names.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <regex>

#include "CliRunner.h"
#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"
#include "services/BuildInformation.h"

namespace fs = std::filesystem;
using CliTest::ReadText;
using CliTest::SCliResult;

namespace {

struct SScript {
  const wchar_t* sName;
  const char* sRuns[3];  // nullptr: not in that run
};

// Revisions 101, 102, 103.
const SScript c_scripts[] = {
    {L"a_steady.case", {"pass", "pass", "pass"}},    // never changes
    {L"b_breaks.case", {"pass", "fail", "fail"}},    // broke at 102
    {L"c_fixed.case", {"fail", "fail", "pass"}},     // fixed at 103
    {L"d_late.case", {"pass", "pass", "fail"}},      // broke at 103
    {L"e_new.case", {nullptr, nullptr, "pass"}},     // new at 103
    {L"f_flaky.case", {"fail", "pass", "fail"}},     // the same result at both ends
    {L"g_gap.case", {"pass", nullptr, "fail"}},      // missing at 102
    {L"h_throws.case", {"fail", "throw", "throw"}},  // one failure for another
};

const char* const c_szTags[3] = {"r1", "r2", "r3"};

class ArchiveTrace : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_frontEnd = std::make_unique<CPrivateFrontEnd>(std::vector<std::string>{"cli_ScriptedClasses"});
    s_root = std::make_unique<TempDirectory>();
    s_appData = std::make_unique<TempDirectory>();
    s_root->WriteFile(
        L"data/CliScripted/#ExtraInfo.xml",
        "<ExtraInfo><Contact><Name>Anna Berg</Name><Email>anna@example.org</Email></Contact></ExtraInfo>");
    WriteList("runs.xml", Entry("Nightly", BinaryDir(), Path("data"), ""));
    for (int run = 0; run < 3; ++run) {
      for (const SScript& script : c_scripts) {
        const CString name = CString(L"data/CliScripted/") + script.sName;
        if (script.sRuns[run]) s_root->WriteFile(name, script.sRuns[run]);
        else fs::remove(Path(name.ToUtf8()));
      }
      s_runs[run] = Cli({"--archive-run", Path("runs.xml") + ":Nightly", "--run-tag", c_szTags[run]});
    }
  }
  static void TearDownTestSuite() {
    s_root.reset();
    s_appData.reset();
    s_frontEnd.reset();
  }

  static SCliResult Cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(),
                     {"XDG_DATA_HOME=" + s_appData->Path().ToUtf8(), s_frontEnd->Program(), "--no-color"});
    return CliTest::RunProgram("env", arguments, 240);
  }
  static std::string Path(const std::string& name) { return s_root->Path().ToUtf8() + name; }
  static std::string BinaryDir() { return s_frontEnd->Directory(); }
  static const char* Config() {
    const std::string program = s_frontEnd->Program();
    return program.back() == 'D' ? "Debug" : "Release";
  }
  static std::string Entry(const std::string& name, const std::string& binaryDir, const std::string& dataDir,
                           const std::string& more, const std::string& config = "") {
    return "<Run name=\"" + name + "\"><BinaryDir>" + binaryDir + "</BinaryDir><Config>" +
           (config.empty() ? Config() : config) + "</Config><Platform>x64</Platform><DataDir>" + dataDir +
           "</DataDir><OutDir>" + Path("archive") + "</OutDir>" + more + "</Run>\n";
  }
  static void WriteList(const char* name, const std::string& entries) {
    s_root->WriteFile(CString::FromUtf8(name), "<?xml version=\"1.0\"?>\n<ArchiveRun>\n" + entries + "</ArchiveRun>\n");
  }
  // The XML reports of the archive, by file name.
  static std::vector<std::string> Reports() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Path("archive")))
      if (entry.is_regular_file() && entry.path().extension() == ".xml") names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  // The archived report of the run with `tag`; empty if there is none.
  static std::string ReportOf(const std::string& tag) {
    for (const std::string& name : Reports())
      if (name.find("-T[" + tag + "].xml") != std::string::npos) return Path("archive/" + name);
    return std::string();
  }
  // Sets the revision of each filed report to 101, 102, 103 in run order
  // and files them under their new names.
  static void MakeHistory() {
    if (!ReportOf("r1").empty() && ReportOf("r1").find("Report-101-") != std::string::npos) return;
    static const std::regex changeset("<PscmChangeset>[^<]*</PscmChangeset>");
    for (int run = 0; run < 3; ++run) {
      const std::string path = ReportOf(c_szTags[run]);
      ASSERT_FALSE(path.empty()) << c_szTags[run];
      const std::string text = ReadText(path);
      const std::string revision = "<PscmChangeset>" + std::to_string(101 + run) + "</PscmChangeset>";
      TempDirectory::WriteBytes(CString::FromUtf8(path), std::regex_replace(text, changeset, revision));
    }
    const SCliResult normalized = Cli({"--normalize-archive", Path("archive")});
    ASSERT_EQ(normalized.iExitCode, 0) << normalized.sStdout << normalized.sStderr;
  }

  void SetUp() override {
    const std::unique_ptr<TestSuite::SPscmInfo> build = TestSuite::GetPscmInfo();
    if (!build || build->Changeset.IsEmpty()) GTEST_SKIP() << "this build carries no revision: nothing is filed";
  }

  static std::unique_ptr<CPrivateFrontEnd> s_frontEnd;
  static std::unique_ptr<TempDirectory> s_root;
  static std::unique_ptr<TempDirectory> s_appData;
  static SCliResult s_runs[3];
};

std::unique_ptr<CPrivateFrontEnd> ArchiveTrace::s_frontEnd;
std::unique_ptr<TempDirectory> ArchiveTrace::s_root;
std::unique_ptr<TempDirectory> ArchiveTrace::s_appData;
SCliResult ArchiveTrace::s_runs[3];

TEST_F(ArchiveTrace, EachArchiveRunFilesItsReportAndUpdatesTheOverview) {
  for (int run = 0; run < 3; ++run) {
    const SCliResult& result = s_runs[run];
    ASSERT_FALSE(result.bTimedOut);
    EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
    EXPECT_EQ(result.sStdout.find("Ausführung...\n" + BinaryDir() + s_frontEnd->Program().substr(BinaryDir().size()) +
                                  "  -d \"" + Path("data") + "\" --xml \""),
              0u)
        << result.sStdout;
    EXPECT_NE(result.sStdout.find(" -x --track-heap --no-assert-dialog -t 300 --run-tag " + std::string(c_szTags[run]) +
                                  "\n"),
              std::string::npos)
        << result.sStdout;
    // The child's own console output comes through.
    EXPECT_NE(result.sStdout.find("b_breaks.case... "), std::string::npos) << result.sStdout;
    EXPECT_FALSE(ReportOf(c_szTags[run]).empty()) << c_szTags[run];
  }
  EXPECT_EQ(Reports().size(), 3u);
  EXPECT_TRUE(fs::exists(Path("archive/html/index.html")));
  // The temporary reports are gone.
  EXPECT_TRUE(fs::is_empty(s_appData->Path().ToUtf8() + "ZoTestSuite/Orvane/Temp"));
}

TEST_F(ArchiveTrace, TheTraceFromTheFirstToTheLastNamesTheRevisionOfEachChange) {
  MakeHistory();
  const std::string first = ReportOf("r1"), last = ReportOf("r3");
  ASSERT_NE(first.find("Report-101-"), std::string::npos) << first;
  ASSERT_NE(last.find("Report-103-"), std::string::npos) << last;
  const std::string output = Path("trace.xml");
  const SCliResult traced = Cli({"--trace", last, first, "--diff-output", output});
  EXPECT_EQ(traced.iExitCode, 0) << traced.sStdout << traced.sStderr;
  EXPECT_EQ(traced.sStdout,
            "Trace von Revision 101 bis 103 geschrieben: " + output + " (Testfälle: 6, Reports gelesen: 2)\n");
  EXPECT_EQ(ReadText(output),
            "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n"
            "<ResultDiffSummary>\n"
            "\t<BeginRevision>101</BeginRevision>\n"
            "\t<EndRevision>103</EndRevision>\n"
            "\t<UnitTest name=\"CliScripted\">\n"
            "\t\t<ContactName>Anna Berg</ContactName>\n"
            "\t\t<ContactEMail>anna@example.org</ContactEMail>\n"
            // Finished at 102, in the order of the end report.
            "\t\t<TestCase name=\"c_fixed.case\">\n"
            "\t\t\t<ResultBefore succeeded=\"false\" revision=\"102\"/>\n"
            "\t\t\t<ResultAfter succeeded=\"true\" revision=\"103\"/>\n"
            "\t\t</TestCase>\n"
            "\t\t<TestCase name=\"d_late.case\">\n"
            "\t\t\t<ResultBefore succeeded=\"true\" revision=\"102\"/>\n"
            "\t\t\t<ResultAfter succeeded=\"false\" revision=\"103\"/>\n"
            "\t\t</TestCase>\n"
            // Finished at 101.
            "\t\t<TestCase name=\"b_breaks.case\">\n"
            "\t\t\t<ResultBefore succeeded=\"true\" revision=\"101\"/>\n"
            "\t\t\t<ResultAfter succeeded=\"false\" revision=\"102\"/>\n"
            "\t\t</TestCase>\n"
            "\t\t<TestCase name=\"g_gap.case\">\n"
            "\t\t\t<ResultBefore succeeded=\"true\" revision=\"101\"/>\n"
            "\t\t\t<ResultAfter succeeded=\"false\" revision=\"103\"/>\n"
            "\t\t</TestCase>\n"
            // Never finished: one failure for another, and a new case.
            "\t\t<TestCase name=\"e_new.case\">\n"
            "\t\t\t<ResultAfter succeeded=\"true\" revision=\"103\"/>\n"
            "\t\t</TestCase>\n"
            "\t\t<TestCase name=\"h_throws.case\">\n"
            "\t\t\t<ResultAfter succeeded=\"false\" revision=\"101\"/>\n"
            "\t\t</TestCase>\n"
            "\t</UnitTest>\n"
            "</ResultDiffSummary>\n");
}

TEST_F(ArchiveTrace, TheFailedFilterAndTheDefaultOutputBesideTheFirstReport) {
  MakeHistory();
  const std::string first = ReportOf("r1"), last = ReportOf("r3");
  const SCliResult traced = Cli({"--trace", first, last, "--diff-filter", "failed"});
  EXPECT_EQ(traced.iExitCode, 0) << traced.sStdout << traced.sStderr;
  const std::string stem = [](const std::string& path) { return fs::path(path).stem().string(); }(first);
  const std::string output = Path("archive/DiffResultTrace-[" + stem + "][" + fs::path(last).stem().string() + "].xml");
  const std::string text = ReadText(output);
  EXPECT_NE(text.find("<TestCase name=\"d_late.case\">"), std::string::npos) << text;
  EXPECT_EQ(text.find("<TestCase name=\"c_fixed.case\">"), std::string::npos) << text;
  EXPECT_EQ(text.find("<TestCase name=\"e_new.case\">"), std::string::npos) << text;
}

TEST_F(ArchiveTrace, ATraceRefusesTheSameReportTwiceAndAReportOfAnotherDirectory) {
  MakeHistory();
  const std::string first = ReportOf("r1");
  SCliResult result = Cli({"--trace", first, first});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler: die beiden Eingabe-XMLs müssen sich unterscheiden.\n");
  fs::create_directories(Path("elsewhere"));
  const std::string copy = Path("elsewhere/") + fs::path(ReportOf("r3")).filename().string();
  fs::copy_file(ReportOf("r3"), copy, fs::copy_options::overwrite_existing);
  result = Cli({"--trace", first, copy});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler: Eingabe-XMLs sind keine gültigen Archivreport-XMLs.\n");
  result = Cli({"--trace", first, Path("archive/missing.xml")});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler: Datei " + Path("archive/missing.xml") + " existiert nicht.\n");
}

TEST_F(ArchiveTrace, BadRunListsAreSaidAndRunNothing) {
  const std::vector<std::string> before = Reports();
  SCliResult result = Cli({"--archive-run", Path("missing.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: Datei " + Path("missing.xml") + " nicht gefunden\n");

  s_root->WriteFile(L"broken.xml", "<ArchiveRun><Run name=\"Nightly\"><BinaryDir>");
  result = Cli({"--archive-run", Path("broken.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: XML-Syntax Fehler\n");

  result = Cli({"--archive-run", Path("runs.xml") + ":Weekly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler: Run Eintrag 'Weekly' nicht gefunden\n");

  WriteList("nodata.xml", Entry("Nightly", BinaryDir(), Path("nodata"), ""));
  result = Cli({"--archive-run", Path("nodata.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: Verzeichnis " + Path("nodata/") + " existiert nicht\n");

  WriteList("noexe.xml", Entry("Nightly", Path("data"), Path("data"), ""));
  result = Cli({"--archive-run", Path("noexe.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, std::string("Fehler in Config-File: Fehler: Executable ") + Path("data/") +
                                s_frontEnd->Program().substr(BinaryDir().size()) + " nicht gefunden.\n\n");

  WriteList("nosel.xml", Entry("Nightly", BinaryDir(), Path("data"),
                               "<SelectionFile>" + Path("missing-selection.xml") + "</SelectionFile>"));
  result = Cli({"--archive-run", Path("nosel.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: Datei " + Path("missing-selection.xml") + " nicht gefunden\n");
  EXPECT_EQ(Reports(), before);
}

TEST_F(ArchiveTrace, ABadConfigOrPlatformInAnotherEntryEndsTheFrontEndPlainly) {
  const std::vector<std::string> before = Reports();
  WriteList("badconfig.xml",
            Entry("Nightly", BinaryDir(), Path("data"), "") + Entry("Other", BinaryDir(), Path("data"), "", "Profile"));
  SCliResult result = Cli({"--archive-run", Path("badconfig.xml") + ":Nightly"});
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 3);
  EXPECT_NE((result.sStdout + result.sStderr).find("Ungültige Konfiguration"), std::string::npos)
      << result.sStdout << result.sStderr;
  WriteList("badplatform.xml", "<Run name=\"Other\"><Config>Release</Config><Platform>arm64</Platform></Run>\n" +
                                   Entry("Nightly", BinaryDir(), Path("data"), ""));
  result = Cli({"--archive-run", Path("badplatform.xml") + ":Nightly"});
  EXPECT_EQ(result.iExitCode, 3);
  EXPECT_NE((result.sStdout + result.sStderr).find("Ungültige Platform"), std::string::npos)
      << result.sStdout << result.sStderr;
  EXPECT_EQ(Reports(), before);
}

}  // namespace
