// The front end's work after parsing: output set-up, one environment, one entry function, the exit status.
#include "FrontEnd.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <locale>

#include "Console.h"
#include "ReportOptions.h"
#include "SelectionToolOptions.h"
#include "TerminalSink.h"
#include "foundation/XbException.h"
#include "run/RetryPolicy.h"
#include "services/COut.h"

namespace TestSuite::CLI {

namespace {

bool wantsTerminal(const SCommandLine& commandLine) {
  const char* noColor = std::getenv("NO_COLOR");
  return commandLine.bColor && (noColor == nullptr || *noColor == '\0') && IsStandardOutputTerminal();
}

// The data directory as an absolute path: the run moves the working
// directory to the executable's directory before it reads the tree.
CString absoluteDataDir(const CString& dataDir) {
  std::error_code error;
  const auto path = std::filesystem::absolute(std::filesystem::path(dataDir.ToUtf8()), error);
  if (error) return dataDir;
  std::string text = path.lexically_normal().string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return CString::FromUtf8(text);
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

int runTests(SCommandLine& commandLine, CEnvironment& env, CTerminalSink* sink) {
  SSetup& setup = commandLine.setup;
  env.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) env.LoadDLL(name, false);
  setup.unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  if (setup.unitTests.IsEmpty()) return noCases(commandLine, env);
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

int dispatch(SCommandLine& commandLine, CTerminalSink* sink) {
  SSetup& setup = commandLine.setup;
  CEnvironment env;
  switch (commandLine.eMode) {
    case EMode::Child: Run::RunExternalExecution(setup, env); return sc_iExitPassed;
    case EMode::Recreate: return recreate(setup, env);
    case EMode::DiffSelection:
    case EMode::FailedSelection: return RunSelectionTool(commandLine.eMode, setup);
    case EMode::RerunFailed:
      return RerunFailedCases(setup, [&commandLine, &env, sink] { return runTests(commandLine, env, sink); });
    case EMode::Query: RunQueryMode(setup, env); return sc_iExitPassed;
    case EMode::DiffPage: GenerateReportDiff(setup); return sc_iExitPassed;
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
  const std::filesystem::directory_iterator entries(std::filesystem::path(path.ToUtf8()), error);
  return !error;
}

int RunFrontEnd(SCommandLine& commandLine) {
  SSetup& setup = commandLine.setup;
  // The report tools read reports only and need no data directory.
  const bool bReadsData = commandLine.eMode != EMode::Child && !IsReportToolMode(commandLine.eMode);
  if (bReadsData) setup.sDataDir = absoluteDataDir(setup.sDataDir);
  if (bReadsData && !isReadableDirectory(setup.sDataDir)) {
    std::fprintf(stderr, "ZoTestSuiteCLI: -d: '%s' is no readable directory\nRun with --help for the options.\n",
                 setup.sDataDir.ToUtf8().c_str());
    return sc_iExitUsage;
  }
  if (setup.oLogFile && !setup.oLogFile->IsEmpty()) COut::SetLogFileOut(*setup.oLogFile);
  static CTerminalSink terminal(stdout);
  CTerminalSink* sink = nullptr;
  if (commandLine.eMode != EMode::Child && wantsTerminal(commandLine)) {
    COut::SetConsoleOut(false);
    COut::AddCustomOut(&terminal);
    sink = &terminal;
  }
  InstallInterruptHandler();
  setup.callbacks.fnIsCanceled = [] { return IsInterrupted(); };
  try {
    return dispatch(commandLine, sink);
  } catch (const XbException& error) {
    std::fprintf(stderr, "ZoTestSuiteCLI: interner Fehler in %s\n", error.what());
  } catch (const std::exception& error) { std::fprintf(stderr, "ZoTestSuiteCLI: interner Fehler: %s\n", error.what()); }
  return sc_iExitInternal;
}

}  // namespace TestSuite::CLI
