// The front end's work after parsing: output set-up, one environment, one entry function, the exit status.
#include "FrontEnd.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <locale>

#include "ArchiveRunOptions.h"
#include "Console.h"
#include "MergeOptions.h"
#include "NormalizeArchiveOptions.h"
#include "ReportOptions.h"
#include "SelectionToolOptions.h"
#include "ShardOptions.h"
#include "TerminalSink.h"
#include "TraceOptions.h"
#include "foundation/SystemPath.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/Process.h"
#include "run/RetryPolicy.h"
#include "run/external/ExternalObjectSweep.h"
#include "services/COut.h"

namespace TestSuite::CLI {

namespace {

bool wantsTerminal(const SCommandLine& commandLine) {
  const char* noColor = std::getenv("NO_COLOR");
  return commandLine.bColor && (noColor == nullptr || *noColor == '\0') && IsStandardOutputTerminal();
}

unsigned int countRows(const XbArray<SUnitTest>& classes, unsigned int repeat) {
  unsigned int rows = 0;
  for (const SUnitTest& unitTest : classes) rows += unitTest.Cases.GetCount() * repeat;
  return rows;
}

// A run that found nothing: a mistyped filter or a missing library passes
// no CI job, unless the user says that an empty run is fine.
int noCases(const SCommandLine& commandLine, const CEnvironment& env) {
  const SSetup& setup = commandLine.setup;
  COut::Write(L"Keine Testfälle gefunden in %s.\n", setup.sDataDir).Color(ZoColorRGBA::c_GOLDENROD);
  if (env.GetLoadedLibraryCount() == 0)
    COut::Write(
        L"Hinweis: Keine Testbibliothek geladen; --dll NAME lädt NAME.so neben ZoTestSuiteCLI, "
        L"--dll PFAD die Bibliothek an diesem Pfad, oder ZoTestSuiteEnvironment.conf nennt sie.\n")
        .Color(ZoColorRGBA::c_GRAY);
  return commandLine.bAllowEmpty ? sc_iExitPassed : sc_iExitNoCases;
}

// A part of a sharded run that gets no case, while the whole set has some,
// still runs: its reports, empty, are what the merge of the parts expects.
bool isEmptyPart(const SSetup& setup) {
  if (!IsSharded(setup)) return false;
  SCollectOptions whole = setup.collectOptions;
  whole.shard = SShard();
  if (CollectUnitTests(setup.sDataDir, whole).IsEmpty()) return false;
  COut::Write(L"Teil %d von %d erhält keinen Testfall.\n", setup.collectOptions.shard.uiIndex + 1,
              setup.collectOptions.shard.uiCount)
      .Color(ZoColorRGBA::c_GRAY);
  return true;
}

int runTests(SCommandLine& commandLine, CEnvironment& env, CTerminalSink* sink) {
  SSetup& setup = commandLine.setup;
  env.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
  setup.unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  if (setup.unitTests.IsEmpty() && !isEmptyPart(setup)) return noCases(commandLine, env);
  if (sink) {
    sink->BeginRun(countRows(setup.unitTests, setup.run.uiRepeatCount));
    setup.callbacks.fnCaseFinished = [sink](Run::ECaseResult result) { sink->CaseFinished(IsFailedResult(result)); };
  }
  const Run::SResult result = Run::Run(setup, env);
  WriteJUnitReportOfRun(setup, result);
  if (sink) sink->EndRun();
  bool failed = IsInterrupted();
  for (const SCaseResult& row : result.cases) failed = failed || row.eResult != Run::eCaseOk;
  return failed ? sc_iExitFailed : sc_iExitPassed;
}

int recreate(SSetup& setup, CEnvironment& env) {
  env.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
  const XbArray<SUnitTest> classes = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  Run::Recreate(env, classes, setup.callbacks);
  return IsInterrupted() ? sc_iExitFailed : sc_iExitPassed;
}

// The child goes when its parent goes, even one killed with SIGKILL. The
// parent made the block, so the block's id names the parent; a parent that
// died before the request was made leaves nothing to serve.
int serveParent(const SSetup& setup, CEnvironment& env) {
  const std::uint32_t parent = GetUniqueIdProcessId(setup.sMemoryId);
  if (parent != 0 && !ZoPlatform::Process::EndWithParent(parent)) return sc_iExitPassed;
  Run::RunExternalExecution(setup, env);
  return sc_iExitPassed;
}

int dispatch(SCommandLine& commandLine, CTerminalSink* sink) {
  SSetup& setup = commandLine.setup;
  CEnvironment env(
      CString(), commandLine.eMode == EMode::Child ? CEnvironment::EWarmUp::eCaseChild : CEnvironment::EWarmUp::eFull);
  if (commandLine.eMode != EMode::Child && !IsReportToolMode(commandLine.eMode) && !PrepareShard(commandLine))
    return sc_iExitUsage;
  switch (commandLine.eMode) {
    case EMode::Child: return serveParent(setup, env);
    case EMode::Recreate: return recreate(setup, env);
    case EMode::DiffSelection:
    case EMode::FailedSelection: return RunSelectionTool(commandLine.eMode, setup);
    case EMode::RerunFailed:
      return RerunFailedCases(setup, [&commandLine, &env, sink] { return runTests(commandLine, env, sink); });
    case EMode::Query: RunQueryMode(setup, env); return sc_iExitPassed;
    case EMode::DiffPage: GenerateReportDiff(setup); return sc_iExitPassed;
    case EMode::NormalizeArchive: return RunNormalizeArchive(commandLine);
    case EMode::Trace: return RunTrace(setup);
    case EMode::ArchiveRun: return RunArchive(setup);
    case EMode::MergeReports: return RunMergeReports(setup);
    case EMode::ListDisabled:
      // The listing loads only the configured libraries; those of --dll
      // are loaded here so that it sees the same classes as --query.
      for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
      ListDisabledTestCases(setup, env);
      return sc_iExitPassed;
    case EMode::TimeSummary: GenerateTimeSummary(setup, env); return sc_iExitPassed;
    case EMode::Duplicates:
      // Like the listing, the detection loads only the configured libraries.
      for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
      RunDuplicateDetection(setup, env);
      return sc_iExitPassed;
    default: return runTests(commandLine, env, sink);
  }
}

}  // namespace

CString MakeAbsolutePath(const CString& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(std::filesystem::path(PathToSystem(path)), error);
  if (error) return path;
  std::string text = absolute.lexically_normal().string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return PathFromSystem(text);
}

void SetGlobalLocale() {
  try {
    std::locale fromEnvironment("");
    if (fromEnvironment.name() != "C" && fromEnvironment.name() != "POSIX") {
      std::locale::global(fromEnvironment);
      return;
    }
  } catch (const std::exception&) {}
  try {
    std::locale::global(std::locale("C.UTF-8"));
  } catch (const std::exception&) {}
}

// A data directory that does not exist, is no directory or cannot be read
// is a usage error: a mistyped path must not pass as a run of nothing.
bool isReadableDirectory(const CString& path) {
  std::error_code error;
  const std::filesystem::directory_iterator entries(std::filesystem::path(PathToSystem(path)), error);
  return !error;
}

int RunFrontEnd(SCommandLine& commandLine) {
  SSetup& setup = commandLine.setup;
  // The data directory as an absolute path: the run moves the working
  // directory to the executable's directory before it reads the tree.
  const bool bReadsData = commandLine.eMode != EMode::Child && NeedsDataDirectory(commandLine.eMode);
  if (bReadsData) setup.sDataDir = MakeAbsolutePath(setup.sDataDir);
  if (bReadsData && !isReadableDirectory(setup.sDataDir)) {
    std::fprintf(stderr, "ZoTestSuiteCLI: -d: '%s' is no readable directory\nRun with --help for the options.\n",
                 setup.sDataDir.ToUtf8().c_str());
    return sc_iExitUsage;
  }
  // An archive run hands its log file on to the run that it starts, which
  // writes it; two processes must not write one file.
  if (setup.oLogFile && !setup.oLogFile->IsEmpty() && commandLine.eMode != EMode::ArchiveRun)
    COut::SetLogFileOut(*setup.oLogFile);
  static CTerminalSink terminal(stdout);
  CTerminalSink* sink = nullptr;
  if (commandLine.eMode != EMode::Child && wantsTerminal(commandLine)) {
    COut::SetConsoleOut(false);
    COut::AddCustomOut(&terminal);
    sink = &terminal;
  }
  InstallInterruptHandler();
  setup.callbacks.fnIsCanceled = [] { return IsInterrupted(); };
  // A run killed before it could clean up left its names; they go with the
  // next start. A child leaves that to its parent.
  if (commandLine.eMode != EMode::Child) RemoveStaleExternalObjects();
  // Processes that cases forked in this process do not outlive the run, even
  // when an exception leaves it for the outermost handler of main().
  struct SStrayChildren {
    ~SStrayChildren() { ZoPlatform::Process::KillStrayChildren(); }
  } strayChildren;
  return dispatch(commandLine, sink);
}

}  // namespace TestSuite::CLI
