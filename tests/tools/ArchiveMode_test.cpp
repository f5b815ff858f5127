// The archive mode up to and around its child process: every check of the
// run list and its entry with its message, the command line it composes, and
// the filing of the report. The child here is a small shell script in place
// of the front end, which records its arguments and working directory and
// writes the report it is given; the real front end runs in the end-to-end
// tests.
#include "tools/ArchiveMode.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "foundation_TestFiles.h"
#include "report/ArchiveScan.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace TestSuite {
namespace {

// The script that stands in for the front end: it keeps its arguments and
// working directory beside itself and copies "report.xml" from there to
// the path behind --xml, if that file exists.
const char* const c_szScript =
    "#!/bin/sh\n"
    "here=$(dirname \"$0\")\n"
    "pwd > \"$here/cwd.txt\"\n"
    "printf '%s\\n' \"$@\" > \"$here/arguments.txt\"\n"
    "while [ $# -gt 0 ]; do\n"
    "  if [ \"$1\" = --xml ] && [ -f \"$here/report.xml\" ]; then cp \"$here/report.xml\" \"$2\"; fi\n"
    "  shift\n"
    "done\n";

class ArchiveModeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_root.MakeDirectory(L"bin");
    m_root.MakeDirectory(L"data");
    writeExecutable(L"bin/ZoTestSuiteCLI");
  }

  void writeExecutable(const wchar_t* name) {
    m_root.WriteFile(name, c_szScript);
    std::filesystem::permissions((m_root / name).ToUtf8(), std::filesystem::perms::owner_all);
  }

  // A list with the entry "Nightly"; `more` is put into it.
  void WriteList(const std::string& more = "", const char* dataDir = nullptr, const char* config = "Release") {
    const std::string root = m_root.Path().ToUtf8();
    const std::string data = dataDir ? dataDir : root + "data";
    m_root.WriteFile(L"runs.xml", "<ArchiveRun>\n<Run name=\"Nightly\">\n<BinaryDir>" + root +
                                      "bin</BinaryDir>\n<Config>" + config +
                                      "</Config>\n<Platform>x64</Platform>\n<DataDir>" + data + "</DataDir>\n<OutDir>" +
                                      root + "archive</OutDir>\n" + more + "</Run>\n</ArchiveRun>\n");
    m_setup.sArchiveRun = m_root / L"runs.xml:Nightly";
  }

  // The report that the child writes; with `revision`, as build information.
  void GiveReport(const wchar_t* revision) {
    Report::SData data = ReportTest::MakeEmptyReport();
    ReportTest::AddCase(data, 0, L"Mesh", L"torus", Run::eCaseOk);
    if (revision) {
      data.PscmInfo = std::make_shared<SPscmInfo>();
      data.PscmInfo->Repository = L"zo";
      data.PscmInfo->Changeset = revision;
    }
    Report::WriteXmlReport(m_root / L"bin/report.xml", data);
  }

  // What the mode said and how it ended.
  CString Run() {
    COutRecorder recorder;
    m_outcome = RunArchiveEntry(m_setup);
    return recorder.Text();
  }

  std::string Arguments() const { return TempDirectory::ReadBytes(m_root / L"bin/arguments.txt"); }
  XbArray<ZoFileSystem::SEntry> TemporaryFiles() const {
    return ZoFileSystem::ListDirectory(m_appData / L"ZoTestSuite/Orvane/Temp");
  }

  TempDirectory m_root;
  TempDirectory m_appData;
  FoundationTest::CScopedEnvironment m_xdg{"XDG_DATA_HOME", m_appData.Path().ToUtf8()};
  SSetup m_setup;
  EArchiveRunOutcome m_outcome = EArchiveRunOutcome::Filed;
};

TEST_F(ArchiveModeTest, ATextWithoutAColonLooksForAFileWithNoName) {
  m_setup.sArchiveRun = L"Nightly";
  EXPECT_EQ(Run(), CString(L"Fehler in Config-File: Datei  nicht gefunden\n"));
  EXPECT_EQ(m_outcome, EArchiveRunOutcome::ConfigError);
}

TEST_F(ArchiveModeTest, AMissingListIsNamed) {
  m_setup.sArchiveRun = m_root / L"missing.xml:Nightly";
  EXPECT_EQ(Run(), L"Fehler in Config-File: Datei " + (m_root / L"missing.xml") + L" nicht gefunden\n");
}

TEST_F(ArchiveModeTest, ABrokenListIsASyntaxError) {
  m_root.WriteFile(L"runs.xml", "<ArchiveRun><Run name=\"Nightly\">");
  m_setup.sArchiveRun = m_root / L"runs.xml:Nightly";
  EXPECT_EQ(Run(), CString(L"Fehler in Config-File: XML-Syntax Fehler\n"));
}

TEST_F(ArchiveModeTest, ABadConfigInAnotherEntryLeavesTheModeAsAPlainPointer) {
  WriteList();
  const std::string list = TempDirectory::ReadBytes(m_root / L"runs.xml");
  m_root.WriteFile(L"runs.xml", list.substr(0, list.size() - 14) +
                                    "<Run name=\"Other\"><Config>Profile</Config><Platform>x64</Platform></Run>\n"
                                    "</ArchiveRun>\n");
  COutRecorder recorder;
  try {
    RunArchiveMode(m_setup);
    ADD_FAILURE() << "no exception";
  } catch (const wchar_t* text) { EXPECT_EQ(CString(text), CString(L"Ungültige Konfiguration")); }
  EXPECT_TRUE(recorder.Text().IsEmpty());
  EXPECT_FALSE(ZoFileSystem::Exists(m_root / L"bin/arguments.txt"));
}

TEST_F(ArchiveModeTest, AnUnknownRunIsSaidWithoutTheFrame) {
  WriteList();
  m_setup.sArchiveRun = m_root / L"runs.xml:Weekly";
  EXPECT_EQ(Run(), CString(L"Fehler: Run Eintrag 'Weekly' nicht gefunden\n"));
  EXPECT_EQ(m_outcome, EArchiveRunOutcome::RunNotFound);
}

TEST_F(ArchiveModeTest, AMissingBinaryDirIsNamedWithItsSeparator) {
  WriteList();
  std::filesystem::remove_all((m_root / L"bin").ToUtf8());
  EXPECT_EQ(Run(), L"Fehler in Config-File: Verzeichnis " + (m_root / L"bin/") + L" existiert nicht\n");
}

TEST_F(ArchiveModeTest, AMissingDataDirIsNamed) {
  WriteList("", (m_root.Path().ToUtf8() + "nodata").c_str());
  EXPECT_EQ(Run(), L"Fehler in Config-File: Verzeichnis " + (m_root / L"nodata/") + L" existiert nicht\n");
  EXPECT_FALSE(ZoFileSystem::Exists(m_root / L"bin/arguments.txt"));
}

TEST_F(ArchiveModeTest, AMissingExecutableIsNamedWithBothLineEnds) {
  WriteList("", nullptr, "Debug");
  EXPECT_EQ(Run(), L"Fehler in Config-File: Fehler: Executable " + (m_root / L"bin/ZoTestSuiteCLID") +
                       L" nicht gefunden.\n\n");
}

TEST_F(ArchiveModeTest, TheDebugConfigurationRunsTheDebugFrontEnd) {
  WriteList("", nullptr, "Debug");
  writeExecutable(L"bin/ZoTestSuiteCLID");
  const CString said = Run();
  EXPECT_TRUE(said.Find(m_root / L"bin/ZoTestSuiteCLID  -d") >= 0) << said.ToUtf8();
}

TEST_F(ArchiveModeTest, AMissingSelectionFileIsNamed) {
  WriteList("<SelectionFile>" + m_root.Path().ToUtf8() + "missing-selection.xml</SelectionFile>\n");
  EXPECT_EQ(Run(), L"Fehler in Config-File: Datei " + (m_root / L"missing-selection.xml") + L" nicht gefunden\n");
}

TEST_F(ArchiveModeTest, TheChildRunsInTheBinaryDirWithTheComposedLineAndTheReportIsFiled) {
  m_root.WriteFile(L"selection.xml", "<Config/>");
  WriteList("<SelectionFile>" + m_root.Path().ToUtf8() + "selection.xml</SelectionFile>\n");
  GiveReport(L"4711");
  const CString said = Run();
  EXPECT_EQ(m_outcome, EArchiveRunOutcome::Filed);
  EXPECT_TRUE(said.Find(L"Ausführung...\n" + (m_root / L"bin/ZoTestSuiteCLI") + L"  -d \"" + (m_root / L"data") +
                        L"\" --select \"") == 0)
      << said.ToUtf8();
  EXPECT_EQ(TempDirectory::ReadBytes(m_root / L"bin/cwd.txt"), (m_root / L"bin").ToUtf8() + "\n");
  const std::string arguments = Arguments();
  const std::string head =
      "-d\n" + (m_root / L"data").ToUtf8() + "\n--select\n" + (m_root / L"selection.xml").ToUtf8() + "\n--xml\n";
  ASSERT_EQ(arguments.substr(0, head.size()), head);
  EXPECT_TRUE(ReportTest::Contains(arguments, "-Report.xml\n-x\n--track-heap\n--no-assert-dialog\n-t\n300\n"));
  const XbArray<Report::SArchiveEntry> filed = Report::ScanArchive(m_root / L"archive");
  ASSERT_EQ(filed.GetCount(), 1u);
  EXPECT_EQ(filed[0].path, m_root / L"archive/Report-4711-[2021.05.04-12.34.56].xml");
  EXPECT_TRUE(ZoFileSystem::Exists(m_root / L"archive/html/index.html"));
  EXPECT_EQ(TemporaryFiles().GetCount(), 0u);
}

TEST_F(ArchiveModeTest, ADataDirWithTrailingSeparatorsIsHandedOnWithoutThem) {
  WriteList("", (m_root.Path().ToUtf8() + "data///").c_str());
  Run();
  const std::string head = "-d\n" + (m_root / L"data").ToUtf8() + "\n";
  EXPECT_EQ(Arguments().substr(0, head.size()), head);
}

TEST_F(ArchiveModeTest, AReportWithoutRevisionLeavesNothingInTheArchiveAndNoTemporaryReport) {
  WriteList();
  GiveReport(nullptr);
  Run();
  EXPECT_EQ(m_outcome, EArchiveRunOutcome::NotFiled);
  EXPECT_EQ(Report::ScanArchive(m_root / L"archive").GetCount(), 0u);
  for (const ZoFileSystem::SEntry& entry : ZoFileSystem::ListDirectory(m_root / L"archive"))
    EXPECT_TRUE(entry.bDirectory) << entry.sName.ToUtf8();
  EXPECT_TRUE(ReportTest::Contains(Arguments(), "--xml\n"));  // the child did run
  EXPECT_EQ(TemporaryFiles().GetCount(), 0u);
}

TEST_F(ArchiveModeTest, AChildThatWritesNoReportFilesNothingAndTheOverviewIsStillMade) {
  WriteList();
  Run();
  EXPECT_EQ(m_outcome, EArchiveRunOutcome::NotFiled);
  EXPECT_TRUE(ZoFileSystem::Exists(m_root / L"archive/html/index.html"));
}

// The composed arguments.

SArchiveRun entry() {
  SArchiveRun run;
  run.DataDir = L"/data/my tests";
  return run;
}

TEST(ArchiveRunArguments, TheDefaultsGiveTheFixedPartAloneWithoutRepeatOrCaseLimit) {
  SSetup setup;
  ASSERT_EQ(setup.run.uiRepeatCount, 1u);
  EXPECT_EQ(ComposeArchiveRunArguments(setup, entry(), L"/tmp/r.xml"),
            CString(L" -d \"/data/my tests\" --xml \"/tmp/r.xml\" -x --track-heap --no-assert-dialog -t 300"));
}

TEST(ArchiveRunArguments, EveryOptionInItsOrderLogFileAndTagUnquoted) {
  SSetup setup;
  setup.run.bIsolated = true;
  setup.run.bParallel = true;
  setup.run.uiThreadCount = 4;
  setup.run.bShowThreadInfo = true;
  setup.run.uiRepeatCount = 3;
  setup.collectOptions.uiCaseLimit = 10;
  setup.oLogFile = L"/logs/night.log";
  setup.sRunTag = L"Part";
  // What the caller's setup says of these never counts.
  setup.run.bExternal = false;
  setup.run.uiTimeOutSec = 5;
  SArchiveRun run = entry();
  run.SelectionFile = L"/sel.xml";
  EXPECT_EQ(ComposeArchiveRunArguments(setup, run, L"/tmp/r.xml"),
            CString(L" -d \"/data/my tests\" --select \"/sel.xml\" --xml \"/tmp/r.xml\" -x --track-heap "
                    L"--no-assert-dialog -t 300 -l -w 4 -v -r 3 -c 10 --log-file /logs/night.log --run-tag Part"));
}

TEST(ArchiveRunArguments, AnEmptyLogFileIsNotHandedOn) {
  SSetup setup;
  setup.oLogFile = CString();
  EXPECT_EQ(ComposeArchiveRunArguments(setup, entry(), L"/r.xml").Find(L"--log-file"), -1);
}

TEST(ArchiveRunArguments, TheExecutableFollowsTheConfiguration) {
  SArchiveRun run;
  run.BinaryDir = L"/opt/zo/";
  run.Config = L"Debug";
  EXPECT_EQ(GetArchiveRunExecutable(run), CString(L"/opt/zo/ZoTestSuiteCLID"));
  run.Config = L"Release";
  EXPECT_EQ(GetArchiveRunExecutable(run), CString(L"/opt/zo/ZoTestSuiteCLI"));
}

}  // namespace
}  // namespace TestSuite
