// external_execution_bench: what running a case in a child process costs.
// Runs 2,000 trivial cases in process on one thread, in process on two
// worker threads, and in one child process ("External"), and 100 in a child
// process each ("External Isolated"); and measures the floor under External:
// the round trip of a work block between two processes through shared
// memory and two named events, with nothing done in between. Prints the time
// per case and the overhead of External over the run in process.
//
// Beside them: the floor under External Isolated, starting the front end
// with --version and waiting for it to end; and 200 CPU-bound cases of about
// 20 ms each, in process on one thread and on two worker threads, with the
// speed-up of two threads over one.
//
// The children are a private copy of the front end in a temporary
// directory, whose ZoTestSuiteEnvironment.conf names the library with the
// benchmark's test classes.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "BenchTable.h"
#include "ZoTestSuite.h"
#include "external_execution_BenchClasses.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/Process.h"
#include "run/RunClock.h"
#include "run/RunDriver.h"
#include "run/external/ChildProcess.h"
#include "run/external/ExternalExecution.h"
#include "run/external/NamedEvent.h"
#include "run/external/SharedMemoryWorkBuffer.h"
#include "services/COut.h"

namespace {

namespace fs = std::filesystem;
using namespace TestSuite;
using Clock = std::chrono::steady_clock;

constexpr unsigned int c_uiCases = 2000;
constexpr unsigned int c_uiIsolatedCases = 100;
constexpr unsigned int c_uiBusyCases = 200;
constexpr double c_dBusyCaseSeconds = 0.020;
constexpr int c_iBusyRounds = 2;     // a round of the busy cases takes about six seconds
constexpr int c_iSpawns = 100;       // starts of the front end around each isolated run, one after the other
constexpr int c_iIsolatedPairs = 3;  // isolated runs per round, each beside its anchor
constexpr int c_iRounds = 5;         // every figure is the median of its rounds
constexpr const char* c_szLibrary = "external_execution_BenchClasses";
constexpr const char* c_szEchoMode = "--echo";

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// The front end, its libraries and the benchmark's library, linked into a
// temporary directory beside a ZoTestSuiteEnvironment.conf that names it.
class CPrivateFrontEnd {
 public:
  CPrivateFrontEnd() {
    const fs::path from = ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable).ToUtf8();
    m_directory = fs::path(ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary).ToUtf8()) /
                  ("zo-bench-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8());
    fs::create_directories(m_directory);
    for (const std::string& name : {CFrontEndStarter().GetProgramPath().ToUtf8(), std::string("libZoTestSuite.so"),
                                    std::string("libZoFoundation.so"), std::string(c_szLibrary) + ".so"}) {
      const fs::path file = from / fs::path(name).filename();
      std::error_code error;
      fs::create_hard_link(file, m_directory / file.filename(), error);
      if (error) fs::copy_file(file, m_directory / file.filename());
    }
    std::ofstream(m_directory / "ZoTestSuiteEnvironment.conf") << "[\"" << c_szLibrary << "\"]\n";
  }
  ~CPrivateFrontEnd() {
    std::error_code error;
    fs::remove_all(m_directory, error);
  }
  CString Directory() const { return CString::FromUtf8(m_directory.string() + "/"); }

 private:
  fs::path m_directory;
};

struct SMode {
  const char* szName;
  const wchar_t* szClass;  // the test class and its one subtest
  const wchar_t* szSubtest;
  bool bExternal;
  bool bIsolated;
  bool bParallel;
  unsigned int uiCases;
  // From the start of the first case to the end of the last, as the cases
  // in this process saw it, instead of the whole run: a run on workers ends
  // with the supervisor's next look, up to 250 ms after its last case.
  bool bCaseSpan;
};

// Starts the children of the runs: the private front end's.
IChildStarter* s_pChildStarter = nullptr;

// Seconds per case of one run, or a negative value if a case did not pass.
double secondsPerCase(const SMode& mode) {
  SSetup setup;
  setup.sDataDir = L"/nonexistent/";
  SUnitTest unitTest;
  unitTest.Name = mode.szClass;
  unitTest.DataDir = CString(L"/nonexistent/") + mode.szClass + L"/";
  unitTest.Cases.Add(SUnitTest::SCase{mode.szSubtest, {}});
  setup.unitTests.Add(unitTest);
  setup.run.bExternal = mode.bExternal;
  setup.run.bIsolated = mode.bIsolated;
  setup.run.bParallel = mode.bParallel;
  setup.run.uiThreadCount = 2;
  setup.run.uiRepeatCount = mode.uiCases;
  CEnvironment env;
  BenchClasses::Reset();
  const Run::SResult result = RunTests(setup, env, SystemRunClock(), *s_pChildStarter);
  if (result.statistics.total.uiResults[Run::eCaseOk] != mode.uiCases) return -1.0;
  if (mode.bCaseSpan) {
    const auto span = static_cast<double>(BenchClasses::LastEnd() - BenchClasses::FirstStart());
    return span / 1e9 / mode.uiCases;
  }
  return result.statistics.dTimeTotal / mode.uiCases;
}

// The other side of the round trip: takes a request, touches the block,
// answers; ends after five seconds without a request.
int echo(const char* memoryId, const char* requestId, const char* responseId) {
  CNamedEvent request(CString::FromUtf8(requestId), true);
  CNamedEvent response(CString::FromUtf8(responseId), true);
  CSharedMemoryWorkBuffer buffer(CString::FromUtf8(memoryId), true);
  buffer.KeepView();
  while (request.Wait(sc_uiChildIdleMs) == CNamedEvent::eWaitSignalled) {
    {
      SBufferAccess access = buffer.GetWriteAccess();
      access.pBlock->eResult = access.pBlock->uiRepetition;
    }
    response.Set();
  }
  return 0;
}

// Seconds per round trip: write the block, request, wait for the answer,
// read the block; both sides keep their views, as the cases do.
double secondsPerRoundTrip() {
  const CString memoryId = ZoUniqueIdT<CString>::GetUniqueID();
  const CString requestId = ZoUniqueIdT<CString>::GetUniqueID();
  const CString responseId = ZoUniqueIdT<CString>::GetUniqueID();
  CSharedMemoryWorkBuffer buffer(memoryId, false);
  buffer.KeepView();
  CNamedEvent request(requestId, false), response(responseId, false);
  ZoPlatform::Process::CChild child;
  const std::string self =
      (ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable) + L"external_execution_bench").ToUtf8();
  if (!child.Start({{self, c_szEchoMode, memoryId.ToUtf8(), requestId.ToUtf8(), responseId.ToUtf8()},
                    "",
                    ZoPlatform::Process::EStandardStreams::eNull}))
    return -1.0;
  auto roundTrip = [&](unsigned int i) {
    buffer.GetWriteAccess().pBlock->uiRepetition = i;
    request.Set();
    if (response.Wait(10000) != CNamedEvent::eWaitSignalled) return false;
    return buffer.GetReadAccess().pBlock->eResult == static_cast<std::int32_t>(i);
  };
  if (!roundTrip(0)) return -1.0;  // the child has come up
  const Clock::time_point start = Clock::now();
  for (unsigned int i = 1; i <= c_uiCases; ++i)
    if (!roundTrip(i)) return -1.0;
  return secondsSince(start) / c_uiCases;
}

// Seconds of one write access and one read access of a shared block, each
// opening, mapping and touching it anew, as a case does several times.
double secondsPerAccessPair() {
  CSharedMemoryWorkBuffer buffer(ZoUniqueIdT<CString>::GetUniqueID(), false);
  const Clock::time_point start = Clock::now();
  for (unsigned int i = 0; i < c_uiCases; ++i) {
    buffer.GetWriteAccess().pBlock->uiRepetition = i;
    if (buffer.GetReadAccess().pBlock->uiRepetition != i) return -1.0;
  }
  return secondsSince(start) / c_uiCases;
}

// Seconds per start of the front end that only prints its version, streams
// on /dev/null, from the start to the reaping, over `starts` starts one
// after the other: what a child per case costs at the least, measured as the
// isolated cases are.
double secondsPerSpawn(int starts) {
  const Clock::time_point start = Clock::now();
  for (int i = 0; i < starts; ++i) {
    ZoPlatform::Process::CChild child;
    if (!child.Start({{CFrontEndStarter().GetProgramPath().ToUtf8(), "--version"},
                      "",
                      ZoPlatform::Process::EStandardStreams::eNull}))
      return -1.0;
    if (!child.WaitFor(10000) || child.GetExitStatus().bSignaled || child.GetExitStatus().iCode != 0) return -1.0;
  }
  return secondsSince(start) / starts;
}

struct SIsolatedPair {
  double dIsolated = 0;  // seconds per isolated case
  double dSpawn = 0;     // seconds per start of the front end, around it
};

// An isolated run between two halves of the front end's starts: on a
// machine whose speed drifts (other guests on the host), a case and its
// anchor are only comparable when measured side by side.
bool measureIsolatedPair(const SMode& isolated, SIsolatedPair& pair) {
  const double before = secondsPerSpawn(c_iSpawns / 2);
  pair.dIsolated = secondsPerCase(isolated);
  const double after = secondsPerSpawn(c_iSpawns / 2);
  pair.dSpawn = (before + after) / 2;
  return before > 0 && after > 0 && pair.dIsolated > 0;
}

// Iterations of BenchClasses::Work that take c_dBusyCaseSeconds on one
// core, from the quickest of five timings.
std::uint64_t busyIterations() {
  constexpr std::uint64_t c_uiProbe = 4000000;
  double best = 1e300;
  for (int i = 0; i < 5; ++i) {
    const Clock::time_point start = Clock::now();
    BenchClasses::Work(c_uiProbe);
    best = std::min(best, secondsSince(start));
  }
  return static_cast<std::uint64_t>(c_uiProbe * c_dBusyCaseSeconds / best);
}

void printLine(const char* name, unsigned int cases, double seconds) {
  std::printf("  %-40s %5u cases  %9.1f us/case\n", name, cases, seconds * 1e6);
}

// The CPU-bound cases on one thread and on two workers; prints both and the
// speed-up. Times are from the first case start to the last case end, as
// the cases saw them, so the supervisor's last look does not count; the
// whole runs are printed beside them.
int runBusyCases() {
  BenchClasses::SetBusyIterations(busyIterations());
  const SMode modes[] = {
      {"in process, one thread", L"BenchBusy", L"busy", false, false, false, c_uiBusyCases, true},
      {"in process, two worker threads", L"BenchBusy", L"busy", false, false, true, c_uiBusyCases, true}};
  double span[2] = {1e300, 1e300}, whole[2] = {1e300, 1e300};
  for (int round = 0; round < c_iBusyRounds; ++round) {
    for (int m = 0; m < 2; ++m) {
      const Clock::time_point start = Clock::now();
      const double seconds = secondsPerCase(modes[m]);
      if (seconds < 0) {
        std::printf("unexpected: a case of \"%s\" (busy) did not pass\n", modes[m].szName);
        return 1;
      }
      span[m] = std::min(span[m], seconds);
      whole[m] = std::min(whole[m], secondsSince(start) / c_uiBusyCases);
    }
  }
  std::printf(
      "CPU-bound cases of about %.0f ms, best of %d rounds (first case start to last case end; whole "
      "run in brackets):\n",
      c_dBusyCaseSeconds * 1e3, c_iBusyRounds);
  for (int m = 0; m < 2; ++m)
    std::printf("  %-40s %5u cases  %9.1f us/case  (%.1f)\n", modes[m].szName, c_uiBusyCases, span[m] * 1e6,
                whole[m] * 1e6);
  std::printf("Speed-up of two worker threads over one thread: %.2f (whole runs %.2f; target at least 1.8)\n",
              span[0] / span[1], whole[0] / whole[1]);
  std::printf("Load average at the end: %s\n", loadAverage().c_str());
  return 0;
}

// Every mode on the trivial class and the floors beside them; prints them.
// The isolated cases are measured in pairs with their anchor, several pairs
// a round, and their ratio is the median of the pairs' ratios.
int runTrivialCases() {
  const SMode modes[] = {
      {"in process, one thread", L"BenchTrivial", L"trivial", false, false, false, c_uiCases, false},
      {"in process, two worker threads (*)", L"BenchTrivial", L"trivial", false, false, true, c_uiCases, true},
      {"External (one child)", L"BenchTrivial", L"trivial", true, false, false, c_uiCases, false}};
  const SMode isolated = {
      "External Isolated (a child per case)", L"BenchTrivial", L"trivial", true, true, false, c_uiIsolatedCases, false};
  constexpr int c_iModes = sizeof modes / sizeof modes[0];
  std::vector<double> samples[c_iModes + 2];
  std::vector<double> isolatedSamples, spawnSamples, isolatedRatios;
  for (int round = 0; round < c_iRounds; ++round) {
    for (int m = 0; m < c_iModes; ++m) {
      const double seconds = secondsPerCase(modes[m]);
      if (seconds < 0) {
        std::printf("unexpected: a case of \"%s\" did not pass\n", modes[m].szName);
        return 1;
      }
      samples[m].push_back(seconds);
    }
    for (int p = 0; p < c_iIsolatedPairs; ++p) {
      SIsolatedPair pair;
      if (!measureIsolatedPair(isolated, pair)) {
        std::printf("unexpected: an isolated case did not pass or the front end did not start\n");
        return 1;
      }
      isolatedSamples.push_back(pair.dIsolated);
      spawnSamples.push_back(pair.dSpawn);
      isolatedRatios.push_back((pair.dIsolated - samples[0].back()) / pair.dSpawn);
    }
    const double roundTrip = secondsPerRoundTrip();
    if (roundTrip < 0) {
      std::printf("unexpected: the round trip to the echo process failed\n");
      return 1;
    }
    samples[c_iModes].push_back(roundTrip);
    samples[c_iModes + 1].push_back(secondsPerAccessPair());
  }
  double median[c_iModes + 2];
  for (int i = 0; i < c_iModes + 2; ++i) median[i] = medianOf(samples[i]);
  const double isolatedCase = medianOf(isolatedSamples), spawn = medianOf(spawnSamples);
  const double isolatedRatio = medianOf(isolatedRatios);
  std::printf("Trivial cases, whole runs (Run::Run) with the console off, median of %d rounds:\n", c_iRounds);
  for (int m = 0; m < c_iModes; ++m) printLine(modes[m].szName, modes[m].uiCases, median[m]);
  printLine(isolated.szName, isolated.uiCases, isolatedCase);
  printLine("floor: block round trip to a process", c_uiCases, median[c_iModes]);
  printLine("  of it: one write and one read access", c_uiCases, median[c_iModes + 1]);
  std::printf("  %-40s %5d starts %9.1f us/start (around each isolated run)\n",
              "floor: start of the front end --version", c_iSpawns, spawn * 1e6);
  std::printf("Overhead of External over in process, one thread: %.1f us per case (floor %.1f us)\n",
              (median[2] - median[0]) * 1e6, median[c_iModes] * 1e6);
  std::printf(
      "External Isolated per case over in process, over the start of the front end: %.2f times (median of %zu "
      "side-by-side pairs, from %.2f to %.2f)\n",
      isolatedRatio, isolatedRatios.size(), *std::min_element(isolatedRatios.begin(), isolatedRatios.end()),
      *std::max_element(isolatedRatios.begin(), isolatedRatios.end()));
  const double externalOver = median[2] - median[0], floor = median[c_iModes];
  printTableRow("External over in process", withUnit(externalOver * 1e6, "us"), "round trip + 20 us",
                withUnit((floor + 20e-6) * 1e6, "us"), externalOver / (floor + 20e-6), 1.0, true);
  printTableRow("External Isolated over in process", withUnit((isolatedCase - median[0]) * 1e6, "us"),
                "front end --version", withUnit(spawn * 1e6, "us"), isolatedRatio, 1.3, true);
  std::printf(
      "(*) first case start to last case end; the whole run also waits up to 250 ms for the "
      "supervisor's last look.\n");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], c_szEchoMode) == 0) return echo(argv[2], argv[3], argv[4]);
  const CPrivateFrontEnd frontEnd;
  CFrontEndStarter starter(frontEnd.Directory());
  s_pChildStarter = &starter;
  COut::SetConsoleOut(false);
  std::printf("Load average at the start: %s\n", loadAverage().c_str());
  return runTrivialCases() != 0 ? 1 : runBusyCases();
}
