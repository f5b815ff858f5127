// Crash isolation through the real front end: cases that crash, end their
// process, hang, flood the output or leak run in child processes, and each
// costs its own row only. The front end is a private copy whose
// ZoTestSuiteEnvironment.conf names isolation_CrashClasses, so that its
// children load the classes too.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <thread>

#include "IsolationCli.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"
#include "services/platform/HeapHooks.h"

namespace fs = std::filesystem;
using CliTest::CCliProcess;
using CliTest::SCliResult;

namespace {

const char* const sc_szUnknown = "FEHLER (Unbekannter Fehler)";
const char* const sc_szTimeOut = "FEHLER (Ausführung nach Erreichen des Zeitlimits abgebrochen.)";
const char* const sc_szCancelled = "WARNUNG (Ausführung des Testfalls vom Benutzer abgebrochen)";

// What each case of the data tree must give.
const std::map<std::string, std::string>& expectedResults() {
  static const std::map<std::string, std::string> results = {
      {"nullDereference", sc_szUnknown},
      {"abort", sc_szUnknown},
      {"exit0", sc_szUnknown},
      {"stackOverflow", sc_szUnknown},
      {"endlessLoop", sc_szTimeOut},
      {"blockForever", sc_szTimeOut},
      {"leak", "WARNUNG (Ein Speicheranstieg von 100 Bytes wurde entdeckt)"},
      {"limit", "OK"},
      {"beyondLimit", "OK"},
      {"a", "OK"},
      {"b", "OK"},
      {"c", "OK"},
      {"assertDialog", "OK"}};
  return results;
}

// One case line as -v --no-times prints it.
struct SRow {
  std::string sName;
  std::string sResult;
  int iThread = -1;
  int iProcess = -1;
};

// The case lines in the order they were printed. A case's output has no
// line end of its own, so a line can begin behind the output before it.
std::vector<SRow> parseRows(const std::string& text) {
  static const std::regex line(
      "\t(?:\\([0-9]+/[0-9]+\\) )?([A-Za-z0-9]+)\\.\\.\\. ([^\\[\n]+) (\\[T([0-9]+)\\])?(\\[P([0-9]+)\\])?\n");
  std::vector<SRow> rows;
  for (std::sregex_iterator it(text.begin(), text.end(), line), end; it != end; ++it) {
    const std::smatch& match = *it;
    SRow row{match[1], match[2]};
    if (match[4].matched) row.iThread = std::stoi(match[4]);
    if (match[6].matched) row.iProcess = std::stoi(match[6]);
    rows.push_back(row);
  }
  return rows;
}

bool isBad(const SRow& row) { return row.sResult.compare(0, 6, "FEHLER") == 0; }

// The lengths of the runs of 'x' of at least 1,000 characters.
std::vector<std::size_t> floods(const std::string& text) {
  std::vector<std::size_t> lengths;
  for (std::size_t at = text.find("xxxxxxxxxx"); at != std::string::npos; at = text.find("xxxxxxxxxx", at)) {
    const std::size_t end = text.find_first_not_of('x', at);
    const std::size_t length = (end == std::string::npos ? text.size() : end) - at;
    if (length >= 1000) lengths.push_back(length);
    at += length;
  }
  return lengths;
}

// A data tree of empty class directories: each class lists fixed subtests.
class CDataTree {
 public:
  explicit CDataTree(std::initializer_list<const char*> classes) {
    for (const char* name : classes) m_dir.MakeDirectory(CString::FromUtf8(name));
    m_sPath = m_dir.Path().ToUtf8();
    m_sPath.pop_back();
  }
  // The root, without a closing '/'.
  const std::string& Path() const { return m_sPath; }

 private:
  TempDirectory m_dir;
  std::string m_sPath;
};

struct SModeRun {
  const char* szName;
  std::vector<std::string> options;
  unsigned int uiPid = 0;
  SCliResult result;
};

// The runs of a test start together and are awaited together: most of their
// time is spent waiting for crashed and hanging children.
class CrashIsolation : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_frontEnd = std::make_unique<CPrivateFrontEnd>(std::vector<std::string>{"isolation_CrashClasses"});
    s_data = std::make_unique<CDataTree>(
        std::initializer_list<const char*>{"IsoCrash", "IsoHang", "IsoLeak", "IsoOutput", "IsoPass"});
  }
  static void TearDownTestSuite() {
    s_data.reset();
    s_frontEnd.reset();
  }

  static void runAll(std::vector<SModeRun>& runs) {
    std::vector<std::unique_ptr<CCliProcess>> processes;
    for (SModeRun& run : runs) {
      std::vector<std::string> arguments = {"-d", s_data->Path(), "-t",         "2",
                                            "-v", "--no-times",   "--no-color", "--track-heap"};
      arguments.insert(arguments.end(), run.options.begin(), run.options.end());
      processes.push_back(std::make_unique<CCliProcess>(s_frontEnd->Program(), arguments));
      run.uiPid = processes.back()->GetId();
    }
    for (std::size_t i = 0; i < runs.size(); ++i) runs[i].result = processes[i]->Finish(120);
  }

  // Every case has exactly one row with its own result; nothing is left.
  static void expectEveryCaseCostsItsOwnRowOnly(const SModeRun& run) {
    SCOPED_TRACE(run.szName);
    const SCliResult& result = run.result;
    ASSERT_FALSE(result.bTimedOut);
    EXPECT_FALSE(result.bSignaled);
    EXPECT_EQ(result.iExitCode, 1) << result.sStderr;
    const std::vector<SRow> rows = parseRows(result.sStdout);
    std::map<std::string, std::string> seen;
    for (const SRow& row : rows) {
      EXPECT_TRUE(seen.emplace(row.sName, row.sResult).second) << row.sName << " has two rows";
      EXPECT_GE(row.iProcess, 0) << row.sName << " did not run in a child";
    }
    std::map<std::string, std::string> expected = expectedResults();
    if (!TestSuite::HeapHooks::IsAvailable()) expected["leak"] = "OK";  // a sanitizer's allocator is not tracked
    EXPECT_EQ(seen, expected);
    EXPECT_NE(result.sStdout.find("\tAusgeführt:\t13 Tests, 5 Klassen\n"), std::string::npos);
    EXPECT_NE(result.sStdout.find("\tErfolgreich:\t7 Tests, 3 Klassen\n"), std::string::npos);
    EXPECT_EQ(floods(result.sStdout), (std::vector<std::size_t>{1048575, 1048575}));
    EXPECT_TRUE(ProcessesRunningFrom(s_frontEnd->Directory()).empty());
    EXPECT_TRUE(ExternalObjectsOfProcess(run.uiPid).empty());
  }

  static std::unique_ptr<CPrivateFrontEnd> s_frontEnd;
  static std::unique_ptr<CDataTree> s_data;
};

std::unique_ptr<CPrivateFrontEnd> CrashIsolation::s_frontEnd;
std::unique_ptr<CDataTree> CrashIsolation::s_data;

}  // namespace

TEST_F(CrashIsolation, ExternalKeepsItsChildUntilACaseGoesWrong) {
  std::vector<SModeRun> runs = {{"External", {"-x"}, 0, {}}};
  runAll(runs);
  const SModeRun& run = runs[0];
  expectEveryCaseCostsItsOwnRowOnly(run);
  const std::vector<SRow> rows = parseRows(run.result.sStdout);
  ASSERT_EQ(rows.size(), 13u);
  EXPECT_EQ(rows[0].iProcess, 0);
  for (std::size_t i = 1; i < rows.size(); ++i)
    EXPECT_EQ(rows[i].iProcess, rows[i - 1].iProcess + (isBad(rows[i - 1]) ? 1 : 0)) << rows[i].sName;
}

// Rows come in the order they finished; per thread that is the order in
// which the thread ran them.
TEST_F(CrashIsolation, ExternalWithWorkersKeepsOneChildPerThreadUntilACaseGoesWrong) {
  std::vector<SModeRun> runs = {{"External, two workers", {"-x", "-w", "2"}, 0, {}}};
  runAll(runs);
  const SModeRun& run = runs[0];
  expectEveryCaseCostsItsOwnRowOnly(run);
  std::map<int, SRow> lastOfThread;
  std::map<int, int> threadOfProcess;
  for (const SRow& row : parseRows(run.result.sStdout)) {
    ASSERT_TRUE(row.iThread == 0 || row.iThread == 1) << row.sName;
    const auto [owner, fresh] = threadOfProcess.emplace(row.iProcess, row.iThread);
    EXPECT_EQ(owner->second, row.iThread) << "P" << row.iProcess << " served two threads";
    const auto last = lastOfThread.find(row.iThread);
    if (last != lastOfThread.end()) {
      if (isBad(last->second)) EXPECT_GT(row.iProcess, last->second.iProcess) << row.sName;
      else EXPECT_EQ(row.iProcess, last->second.iProcess) << row.sName;
    }
    lastOfThread[row.iThread] = row;
  }
}

TEST_F(CrashIsolation, ExternalIsolatedGivesEveryCaseItsOwnChild) {
  std::vector<SModeRun> runs = {{"External Isolated", {"-x", "-l"}, 0, {}},
                                {"External Isolated, two workers", {"-x", "-l", "-w", "2"}, 0, {}}};
  runAll(runs);
  for (const SModeRun& run : runs) {
    expectEveryCaseCostsItsOwnRowOnly(run);
    std::set<int> processes;
    for (const SRow& row : parseRows(run.result.sStdout))
      EXPECT_TRUE(processes.insert(row.iProcess).second) << run.szName << ": P" << row.iProcess << " ran two cases";
  }
}

// Ctrl-C (INT), a stop request (TERM) and a closed terminal (HUP) all cancel
// the run in the same way.
class CrashIsolationInterrupt : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Signals, CrashIsolationInterrupt, testing::Values("INT", "TERM", "HUP"));

TEST_P(CrashIsolationInterrupt, SignalStopsTheRunKillsTheChildAndPrintsTheSummary) {
  const CPrivateFrontEnd frontEnd({"isolation_CrashClasses"});
  const CDataTree data({"IsoSlow"});
  CCliProcess process(frontEnd.Program(), {"-d", data.Path(), "-x", "-r", "2", "-v", "--no-times", "--no-color"});
  ASSERT_TRUE(process.IsStarted());
  ASSERT_TRUE(process.WaitForOutput("\t(1/2) sleep... ", 60)) << process.Output();
  const auto running = [&frontEnd] { return ProcessesRunningFrom(frontEnd.Directory()).size() == 2; };
  for (int i = 0; i < 3000 && !running(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  ASSERT_TRUE(running()) << "the front end and its child";
  const auto interrupted = std::chrono::steady_clock::now();
  ASSERT_TRUE(process.SendSignal(GetParam()));
  const SCliResult result = process.Finish(60);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - interrupted).count();
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_LT(seconds, 5.0) << "the run did not stop within about a second";
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 1);
  EXPECT_NE(result.sStderr.find("Abbruch angefordert"), std::string::npos);
  const std::vector<SRow> rows = parseRows(result.sStdout);
  ASSERT_EQ(rows.size(), 1u) << result.sStdout;
  EXPECT_EQ(rows[0].sName, "sleep");
  EXPECT_EQ(rows[0].sResult, sc_szCancelled);
  EXPECT_EQ(rows[0].iProcess, 0);
  EXPECT_NE(result.sStdout.find(std::string(sc_szCancelled) + " [P0]\n\tAusführung abgebrochen.\n"), std::string::npos)
      << result.sStdout;
  EXPECT_NE(result.sStdout.find("Zusammenfassung\n\tAusgeführt:\t0 Tests, 0 Klassen\n"), std::string::npos)
      << result.sStdout;
  EXPECT_TRUE(ProcessesRunningFrom(frontEnd.Directory()).empty());
  EXPECT_TRUE(ExternalObjectsOfProcess(process.GetId()).empty());
}
