// external_execution_bench: what running a case in a child process costs.
// Runs 2,000 trivial cases in process on one thread, in process on two
// worker threads, and in one child process ("External"), and 100 in a child
// process each ("External Isolated"); and measures the floor under External:
// the round trip of a work block between two processes through shared
// memory and two named events, with nothing done in between. Prints the time
// per case and the overhead of External over the run in process.
//
// The children are a private copy of the front end in a temporary
// directory, whose ZoTestSuiteEnvironment.conf names the library with the
// trivial class.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "ChildProcess.h"
#include "ExternalExecution.h"
#include "NamedEvent.h"
#include "SharedMemoryWorkBuffer.h"
#include "ZoTestSuite.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "external_execution_BenchClasses.h"
#include "foundation/platform/Process.h"
#include "services/COut.h"

namespace {

namespace fs = std::filesystem;
using namespace TestSuite;
using Clock = std::chrono::steady_clock;

constexpr unsigned int c_uiCases = 2000;
constexpr unsigned int c_uiIsolatedCases = 100;
constexpr int c_iRounds = 3;  // the best round counts: other processes only ever add time
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
    for (const std::string& name : {GetChildProgramPath().ToUtf8(), std::string("libZoTestSuite.so"),
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
  bool bExternal;
  bool bIsolated;
  bool bParallel;
  unsigned int uiCases;
  // From the start of the first case to the end of the last, as the cases
  // in this process saw it, instead of the whole run: a run on workers ends
  // with the supervisor's next look, up to 250 ms after its last case.
  bool bCaseSpan;
};

// Seconds per case of one run, or a negative value if a case did not pass.
double secondsPerCase(const SMode& mode) {
  SSetup setup;
  setup.sDataDir = L"/nonexistent/";
  SUnitTest unitTest;
  unitTest.Name = L"BenchTrivial";
  unitTest.DataDir = L"/nonexistent/BenchTrivial/";
  unitTest.Cases.Add(SUnitTest::SCase{L"trivial", {}});
  setup.unitTests.Add(unitTest);
  setup.run.bExternal = mode.bExternal;
  setup.run.bIsolated = mode.bIsolated;
  setup.run.bParallel = mode.bParallel;
  setup.run.uiThreadCount = 2;
  setup.run.uiRepeatCount = mode.uiCases;
  CEnvironment env;
  BenchClasses::Reset();
  const Run::SResult result = Run::Run(setup, env);
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
// read the block; each access maps the block anew, as a case does.
double secondsPerRoundTrip() {
  const CString memoryId = ZoUniqueIdT<CString>::GetUniqueID();
  const CString requestId = ZoUniqueIdT<CString>::GetUniqueID();
  const CString responseId = ZoUniqueIdT<CString>::GetUniqueID();
  CSharedMemoryWorkBuffer buffer(memoryId, false);
  CNamedEvent request(requestId, false), response(responseId, false);
  ZoPlatform::Process::CChild child;
  const std::string self =
      (ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable) + L"external_execution_bench").ToUtf8();
  if (!child.Start({{self, c_szEchoMode, memoryId.ToUtf8(), requestId.ToUtf8(), responseId.ToUtf8()}, "",
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

void printLine(const char* name, unsigned int cases, double seconds) {
  std::printf("  %-40s %5u cases  %9.1f us/case\n", name, cases, seconds * 1e6);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], c_szEchoMode) == 0) return echo(argv[2], argv[3], argv[4]);
  const CPrivateFrontEnd frontEnd;
  SetChildProgramDirectory(frontEnd.Directory());
  COut::SetConsoleOut(false);
  const SMode modes[] = {{"in process, one thread", false, false, false, c_uiCases, false},
                         {"in process, two worker threads (*)", false, false, true, c_uiCases, true},
                         {"External (one child)", true, false, false, c_uiCases, false},
                         {"External Isolated (a child per case)", true, true, false, c_uiIsolatedCases, false}};
  constexpr int c_iModes = sizeof modes / sizeof modes[0];
  double best[c_iModes + 2];
  std::fill(best, best + c_iModes + 2, 1e300);
  for (int round = 0; round < c_iRounds; ++round) {
    for (int m = 0; m < c_iModes; ++m) {
      const double seconds = secondsPerCase(modes[m]);
      if (seconds < 0) {
        std::printf("unexpected: a case of \"%s\" did not pass\n", modes[m].szName);
        return 1;
      }
      best[m] = std::min(best[m], seconds);
    }
    const double roundTrip = secondsPerRoundTrip();
    if (roundTrip < 0) {
      std::printf("unexpected: the round trip to the echo process failed\n");
      return 1;
    }
    best[c_iModes] = std::min(best[c_iModes], roundTrip);
    best[c_iModes + 1] = std::min(best[c_iModes + 1], secondsPerAccessPair());
  }
  std::printf("Trivial cases, whole runs (Run::Run) with the console off, best of %d rounds:\n", c_iRounds);
  for (int m = 0; m < c_iModes; ++m) printLine(modes[m].szName, modes[m].uiCases, best[m]);
  printLine("floor: block round trip to a process", c_uiCases, best[c_iModes]);
  printLine("  of it: one write and one read access", c_uiCases, best[c_iModes + 1]);
  std::printf("Overhead of External over in process, one thread: %.1f us per case (floor %.1f us)\n",
              (best[2] - best[0]) * 1e6, best[c_iModes] * 1e6);
  std::printf("(*) first case start to last case end; the whole run also waits up to 250 ms for the "
              "supervisor's last look.\n");
  return 0;
}
