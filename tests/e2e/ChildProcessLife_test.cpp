// The life of child processes around abnormal ends, through the real front
// end: a second stop signal, a front end killed outright, a case that
// signals its own process group, a case that leaves a process behind, a
// child that ends while the parent is slow. Nothing may outlive the run: no
// process, no name in /dev/shm.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "Xmllint.h"
#include "isolation_PrivateFrontEnd.h"
#include "services/platform/HeapHooks.h"

using CliTest::CCliProcess;
using CliTest::SCliResult;

namespace {

// A data tree below a temporary directory; classes with fixed subtests
// need only their directory, whose #ExtraInfo.xml may hold case options.
class CTree {
 public:
  void Class(const char* name, const std::string& extraInfo = std::string()) {
    m_dir.MakeDirectory(CString::FromUtf8(name));
    if (!extraInfo.empty()) m_dir.WriteFile(CString::FromUtf8(name) + L"/#ExtraInfo.xml", extraInfo);
  }
  std::string Path() const {
    std::string path = m_dir.Path().ToUtf8();
    path.pop_back();
    return path;
  }
  std::string File(const char* name) const { return m_dir.Path().ToUtf8() + name; }
  const TempDirectory& Dir() const { return m_dir; }

 private:
  TempDirectory m_dir;
};

std::string inProcess(const char* caseName) {
  return std::string("<ExtraInfo><TestCase name=\"") + caseName +
         "\"><External>false</External></TestCase></ExtraInfo>";
}

// Waits up to `seconds` for `condition`.
template <typename TCondition>
bool waitFor(TCondition condition, int seconds) {
  for (int i = 0; i < seconds * 100; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return condition();
}

class ChildProcessLife : public ::testing::Test {
 protected:
  CPrivateFrontEnd m_frontEnd{{"isolation_CrashClasses", "cli_ScriptedClasses"}};

  bool nothingRuns() { return ProcessesRunningFrom(m_frontEnd.Directory()).empty(); }
  // Runs a front end in "External" mode on IsoHang and sends it `signal`
  // once the first case hangs in the child; its id goes to `pid`.
  SCliResult signalWhileHanging(const char* signal, unsigned int& pid) {
    CTree tree;
    tree.Class("IsoHang");
    CCliProcess process(m_frontEnd.Program(), {"-d", tree.Path(), "-x", "-v", "--no-times", "--no-color"});
    pid = process.GetId();
    const bool hangs = process.WaitForOutput("\tendlessLoop... ", 60) &&
                       waitFor([this] { return ProcessesRunningFrom(m_frontEnd.Directory()).size() == 2; }, 30);
    EXPECT_TRUE(hangs) << process.Output();
    if (hangs) process.SendSignal(signal);
    return process.Finish(60);
  }
  void expectNothingLeft(unsigned int pid) {
    EXPECT_TRUE(waitFor([this] { return nothingRuns(); }, 10)) << "a process outlived the run";
    EXPECT_TRUE(ExternalObjectsOfProcess(pid).empty()) << "a name in /dev/shm outlived the run";
  }
};

}  // namespace

// The first signal asks for a cancel that a case in process does not
// heed; the second ends the front end at once, and still takes the idle
// child of the case before and the names of its block and events along.
TEST_F(ChildProcessLife, ASecondStopSignalEndsAt130AndLeavesNoChildAndNoName) {
  CTree tree;
  tree.Class("IsoPass");
  tree.Class("IsoSlow", inProcess("sleep"));
  CCliProcess process(m_frontEnd.Program(), {"-d", tree.Path(), "-x", "-v", "--no-times", "--no-color"});
  ASSERT_TRUE(process.WaitForOutput("\tsleep... ", 60)) << process.Output();
  ASSERT_FALSE(ExternalObjectsOfProcess(process.GetId()).empty()) << "the block of the first cases is gone already";
  ASSERT_TRUE(process.SendSignal("TERM"));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  ASSERT_TRUE(process.SendSignal("TERM"));
  const SCliResult result = process.Finish(30);
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 130);
  expectNothingLeft(process.GetId());
}

TEST_F(ChildProcessLife, AStopSignalDuringAHangingCaseInAChildLeavesNothing) {
  unsigned int pid = 0;
  const SCliResult result = signalWhileHanging("TERM", pid);
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_EQ(result.iExitCode, 1);
  expectNothingLeft(pid);
}

// The kernel ends the child with its parent; the names stay until the next
// start of the front end removes them.
TEST_F(ChildProcessLife, AKilledFrontEndLeavesNoChildAndTheNextStartRemovesItsNames) {
  unsigned int pid = 0;
  const SCliResult killed = signalWhileHanging("KILL", pid);
  EXPECT_TRUE(killed.bSignaled);
  EXPECT_TRUE(waitFor([this] { return nothingRuns(); }, 10)) << "the child outlived its parent";
  ASSERT_FALSE(ExternalObjectsOfProcess(pid).empty()) << "nothing left for the next start to remove";
  CTree empty;
  empty.Class("IsoPass");
  const SCliResult next = CliTest::RunProgram(m_frontEnd.Program(), {"-d", empty.Path(), "--no-color"});
  EXPECT_EQ(next.iExitCode, 0) << next.sStdout << next.sStderr;
  EXPECT_TRUE(ExternalObjectsOfProcess(pid).empty());
}

// The child leads a process group of its own, so a case that signals "its"
// group does not reach the front end.
TEST_F(ChildProcessLife, ACaseThatSignalsItsProcessGroupInAChildDoesNotStopTheRun) {
  CTree tree;
  tree.Class("IsoPass");
  tree.Class("IsoProcess", inProcess("forkSleeper"));
  const SCliResult result = CliTest::RunProgram(
      m_frontEnd.Program(), {"-d", tree.Path(), "-x", "-v", "--no-times", "--no-color", "--include", "*kill*"}, 60);
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.sStderr.find("Abbruch angefordert"), std::string::npos) << result.sStderr;
  EXPECT_NE(result.sStdout.find("Zusammenfassung"), std::string::npos) << result.sStdout;
  EXPECT_NE(result.sStdout.find("\tkillGroup... OK"), std::string::npos) << result.sStdout;
}

// A process that a case forks is killed with the run, whether the case ran
// in process (the front end kills its children that it did not start) or
// in a child (the child's process group goes with it).
TEST_F(ChildProcessLife, AProcessThatACaseLeavesBehindDoesNotOutliveTheRunInAnyMode) {
  const std::vector<std::vector<std::string>> modes = {{}, {"-x"}, {"-x", "-l"}, {"-w", "2"}, {"-x", "-w", "2"}};
  for (const std::vector<std::string>& mode : modes) {
    SCOPED_TRACE(mode.empty() ? std::string("in process") : mode[0] + (mode.size() > 1 ? " " + mode[1] : ""));
    CTree tree;
    tree.Class("IsoProcess");
    std::vector<std::string> arguments = {"-d", tree.Path(), "--no-color", "--include", "*fork*"};
    arguments.insert(arguments.end(), mode.begin(), mode.end());
    const SCliResult result = CliTest::RunProgram(m_frontEnd.Program(), arguments, 60);
    EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
    EXPECT_TRUE(waitFor([this] { return nothingRuns(); }, 10)) << "the forked process outlived the run";
  }
}

// The child waits five seconds for a request and then ends; a parent busy
// longer than that (here with a case in process) hands the next case to a
// new child, and the row of that case carries nothing of the leaking case
// two rows before it.
TEST_F(ChildProcessLife, AChildThatEndedWhileTheParentWasBusyIsReplacedAndCostsNothing) {
  CTree tree;
  TestSupport::WriteScriptedClass(tree.Dir(), L"CliScripted",
                                  {{"a.case", "leak 100"}, {"b.case", "sleep 6"}, {"c.case", "pass"}});
  tree.Dir().WriteFile(L"CliScripted/#ExtraInfo.xml", inProcess("b.case"));
  const std::string report = tree.File("report.xml");
  const SCliResult result = CliTest::RunProgram(
      m_frontEnd.Program(),
      {"-d", tree.Path(), "-x", "-v", "--no-times", "--no-color", "--track-heap", "--xml", report}, 60);
  const bool tracked = TestSuite::HeapHooks::IsAvailable();
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
  EXPECT_NE(result.sStdout.find("\tc.case... OK"), std::string::npos) << result.sStdout;
  if (tracked) { EXPECT_NE(result.sStdout.find("\tMit Warnung:\t1 Test"), std::string::npos) << result.sStdout; }
  const std::string xml = CliTest::ReadText(report);
  std::string messages;
  EXPECT_EQ(TestSupport::CheckWellFormed(report, messages), 0) << messages;
  const std::size_t row = xml.find("c.case");
  ASSERT_NE(row, std::string::npos) << xml;
  EXPECT_EQ(xml.find("100", row), std::string::npos)
      << "the leak of a.case reached the row of c.case: " << xml.substr(row);
  EXPECT_TRUE(waitFor([this] { return nothingRuns(); }, 10));
}

// A child whose parent (the creator that the block's id names) is not its
// parent any more, because it died before the child could ask to die with
// it, serves nothing and ends at once, quietly.
TEST_F(ChildProcessLife, AChildWhoseParentDiedBeforeItStartedEndsAtOnce) {
  CTree tree;
  const std::string orphanId = "00000001" + std::string(24, 'A');
  const SCliResult result = CliTest::RunProgram(m_frontEnd.Program(),
                                                {"-d", tree.Path(), "-x", "--memory-id", orphanId, "--request-event-id",
                                                 orphanId + "R", "--response-event-id", orphanId + "S"},
                                                30);
  EXPECT_FALSE(result.bTimedOut);
  EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
  EXPECT_TRUE(result.sStderr.empty()) << result.sStderr;
}
