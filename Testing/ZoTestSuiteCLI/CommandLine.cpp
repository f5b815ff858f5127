// The command line of ZoTestSuiteCLI, parsed into the setup and the front end's own choices.
#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "ArchiveRunOptions.h"
#include "BuildInfo.h"
#include "DiffOptions.h"
#include "MergeOptions.h"
#include "NormalizeArchiveOptions.h"
#include "ReportOptions.h"
#include "RunControlOptions.h"
#include "SelectionOptions.h"
#include "SelectionToolOptions.h"
#include "ShardOptions.h"
#include "ToolOptions.h"
#include "TraceOptions.h"
#include "foundation/SystemPath.h"
#include "services/Utils.h"

namespace TestSuite::CLI {

namespace {

// Option values before they are moved into the setup.
struct SRawOptions {
  std::string sDataDir;
  std::string sWorkers;
  unsigned int uiRepeat = 1;
  unsigned int uiCaseLimit = 0xFFFFFFFF;
  unsigned int uiTimeOut = 0xFFFFFFFF;
  std::string sLogFile;
  std::string sRunTag;
  std::string sMemoryId, sRequestEventId, sResponseEventId;
  std::vector<std::string> dlls;
  std::vector<unsigned int> debugOptions;
  std::uint64_t uiObserveID = 0, uiObserveSize = 0;
};

CString wide(const std::string& text) { return CString::FromUtf8(text); }
// A path of the command line: bytes, kept as they are.
CString path(const std::string& bytes) { return PathFromSystem(bytes); }

void addRunOptions(::CLI::App& app, SRawOptions& raw, SSetup& setup) {
  SRunOptions& run = setup.run;
  app.add_option("-d,--data-dir", raw.sDataDir, "Root directory of the test data")->type_name("DIR");
  app.add_option("-w,--workers", raw.sWorkers, "Run cases on N worker threads (no N: one per processor)")
      ->expected(0, 1)
      ->type_name("[N]");
  app.add_flag("-x,--external", run.bExternal, "Run every case in a child process");
  app.add_flag("-l,--isolated", run.bIsolated, "With -x: a fresh child process for each case");
  app.add_option("-t,--timeout", raw.uiTimeOut, "Time limit of one case in seconds (child processes only)")
      ->type_name("SEC");
  app.add_option("-r,--repeat", raw.uiRepeat, "Run each case N times")->type_name("N");
  app.add_option("-c,--case-limit", raw.uiCaseLimit, "Run at most the first N cases")->type_name("N");
  app.add_flag("-v,--thread-info", run.bShowThreadInfo, "Show the thread and process of each case");
  app.add_flag("--track-heap", run.bTrackHeap, "Track the heap of each case and warn about leaks");
  app.add_flag("--dump-leaks", run.bDumpLeaks, "With --track-heap: list the live blocks of a leaking case");
  app.add_flag_callback(
      "--no-leak-warnings", [&run] { run.bReportMemLeak = false; }, "Do not turn a leak into a warning");
  app.add_option("--observe-id", raw.uiObserveID, "Stop in the debugger at the allocation with this ID")
      ->type_name("N");
  app.add_option("--observe-size", raw.uiObserveSize, "Stop in the debugger at an allocation of this size")
      ->type_name("N");
  app.add_option("--debug-option", raw.debugOptions, "Switch on debug option K (0, 1 or 2) of the test classes")
      ->check(::CLI::Range(0u, 2u))
      ->type_name("K");
  app.add_flag_callback(
      "--no-assert-dialog", [&run] { run.bAssertDialog = false; },
      "Failed assertions print and go on instead of stopping in the debugger");
  app.add_flag("--record-start-time", run.bRecordStartTime, "Show the wall-clock start of each case");
  app.add_flag_callback(
      "--no-times", [&run] { run.bShowTimes = false; }, "Do not show times");
}

void addProcessOptions(::CLI::App& app, SRawOptions& raw, SCommandLine& commandLine, bool& recreate) {
  app.add_option("--dll", raw.dlls,
                 "Load the test library NAME.so beside the front end, or the library file at PATH "
                 "(repeatable; child processes load it too)")
      ->type_name("NAME|PATH");
  app.add_option("--log-file", raw.sLogFile, "Write everything that is printed to FILE as well")->type_name("FILE");
  app.add_option("--run-tag", raw.sRunTag, "Tag of this run, carried into its reports")->type_name("TAG");
  app.add_flag("--recreate", recreate, "Renew the reference data of the cases instead of running them");
  app.add_flag_callback(
      "--no-color", [&commandLine] { commandLine.bColor = false; }, "Plain output even on a terminal");
  app.add_flag("--allow-empty", commandLine.bAllowEmpty,
               "A run that finds no case passes (exit status 0 instead of 5)");
  app.add_option("--memory-id", raw.sMemoryId, "Child side: name of the shared work block")->group("");
  app.add_option("--request-event-id", raw.sRequestEventId, "Child side: name of the request event")->group("");
  app.add_option("--response-event-id", raw.sResponseEventId, "Child side: name of the response event")->group("");
}

// A library name stays a name; a path (with a '/' or ending in ".so") must
// name a file and becomes absolute, since the run and its children work in
// the executable's directory.
CString libraryArgument(const std::string& dll) {
  const bool bPath = dll.find('/') != std::string::npos || (dll.size() > 3 && dll.ends_with(".so"));
  if (!bPath) return wide(dll);
  std::error_code error;
  if (!std::filesystem::is_regular_file(dll, error)) throw CUsageError("--dll: '" + dll + "' is no library file");
  return path(std::filesystem::absolute(dll, error).lexically_normal().string());
}

void applyRaw(const ::CLI::App& app, const SRawOptions& raw, SSetup& setup) {
  setup.sDataDir = path(raw.sDataDir);
  if (app.count("-w") > 0) {
    setup.run.bParallel = true;
    setup.run.uiThreadCount =
        raw.sWorkers.empty() ? Utils::GetDefaultThreadCount() : static_cast<unsigned int>(std::stoul(raw.sWorkers));
  }
  setup.run.uiRepeatCount = raw.uiRepeat;
  setup.run.uiTimeOutSec = raw.uiTimeOut;
  setup.collectOptions.uiCaseLimit = raw.uiCaseLimit;
  if (app.count("--observe-id") > 0) setup.run.oObserveID = raw.uiObserveID;
  if (app.count("--observe-size") > 0) setup.run.oObserveSize = raw.uiObserveSize;
  for (unsigned int key : raw.debugOptions) {
    if (key == 0) setup.run.bDebugOption0 = true;
    if (key == 1) setup.run.bDebugOption1 = true;
    if (key == 2) setup.run.bDebugOption2 = true;
  }
  for (const auto& dll : raw.dlls) setup.dllFiles.Add(libraryArgument(dll));
  if (app.count("--log-file") > 0) setup.oLogFile = path(raw.sLogFile);
  setup.sRunTag = wide(raw.sRunTag);
  setup.sMemoryId = wide(raw.sMemoryId);
  setup.sRequestEventId = wide(raw.sRequestEventId);
  setup.sResponseEventId = wide(raw.sResponseEventId);
}

// The mode option beside the tool modes that was given, empty if none.
std::string otherModeOption(const SSelectionOptionValues& selection, bool recreate) {
  if (selection.bQuery) return "--query";
  if (selection.bListDisabled) return "--list-disabled";
  return recreate ? "--recreate" : "";
}

void checkWorkers(const std::string& workers) {
  if (workers.empty()) return;
  if (workers.find_first_not_of("0123456789") != std::string::npos || workers.size() > 9)
    throw CUsageError("-w: '" + workers + "' is not a number of threads");
}

}  // namespace

bool NeedsDataDirectory(EMode mode) {
  return mode != EMode::Version && mode != EMode::ArchiveRun && !IsReportToolMode(mode);
}

std::string GetVersionText() {
  return std::string("ZoTestSuiteCLI ") + ZO_VERSION + " (revision " + ZO_REVISION + ", " +
         Utils::GetBuildConfiguration().ToUtf8() + ")";
}

SCommandLine ParseCommandLine(int argc, const char* const* argv) {
  SCommandLine commandLine;
  SRawOptions raw;
  bool recreate = false, version = false;
  ::CLI::App app(
      "Runs data-driven C++ tests: every directory named after a registered test class is a class, "
      "and the class lists its cases.",
      "ZoTestSuiteCLI");
  app.footer(
      "Exit status: 0 every case passed (or a tool mode came to its end), 1 a case failed or the run was "
      "cancelled, 2 a bad command line or data directory, 3 an error left the harness (printed on standard "
      "error), 5 the run found no case.");
  app.set_version_flag("", "");
  app.add_flag("--version", version, "Print the version and the build's revision");
  addRunOptions(app, raw, commandLine.setup);
  addProcessOptions(app, raw, commandLine, recreate);
  SReportOptionValues reportOptions;
  AddReportOptions(app, reportOptions);
  SSelectionOptionValues selectionOptions;
  AddSelectionOptions(app, selectionOptions);
  SToolOptionValues toolOptions;
  AddToolOptions(app, toolOptions);
  SSelectionToolValues selectionTools;
  AddSelectionToolOptions(app, selectionTools);
  SDiffOptionValues diffOptions;
  AddDiffOptions(app, diffOptions);
  std::string archiveDirectory;
  AddNormalizeArchiveOptions(app, archiveDirectory);
  STraceOptionValues traceOptions;
  AddTraceOptions(app, traceOptions);
  SArchiveRunValues archiveRun;
  AddArchiveRunOptions(app, archiveRun);
  SShardOptionValues shardOptions;
  AddShardOptions(app, shardOptions);
  SMergeOptionValues mergeOptions;
  AddMergeOptions(app, mergeOptions);
  SRunControlValues runControl;
  AddRunControlOptions(app, runControl);
  try {
    app.parse(argc, argv);
  } catch (const ::CLI::CallForHelp&) {
    commandLine.eMode = EMode::Help;
    commandLine.sHelpText = app.help();
    return commandLine;
  } catch (const ::CLI::ParseError& error) { throw CUsageError(error.what()); }
  checkWorkers(raw.sWorkers);
  applyRaw(app, raw, commandLine.setup);
  ApplyReportOptions(app, reportOptions, commandLine.setup);
  ApplyRunControlOptions(app, runControl, commandLine.setup);
  ApplySelectionOptions(selectionOptions, commandLine.setup);
  const bool bToolMode = ApplyToolOptions(toolOptions, otherModeOption(selectionOptions, recreate), commandLine.setup);
  const EMode selectionToolMode = ApplySelectionToolOptions(selectionTools, commandLine.setup);
  const bool diffPage = ApplyDiffOptions(app, diffOptions, commandLine.setup);
  const bool trace = ApplyTraceOptions(app, traceOptions, commandLine.setup);
  const bool archive = ApplyArchiveRunOptions(app, archiveRun, commandLine.setup);
  ApplyShardOptions(shardOptions, commandLine, GetProcessVariables());
  if (version) commandLine.eMode = EMode::Version;
  else if (!raw.sMemoryId.empty()) commandLine.eMode = EMode::Child;
  else if (bToolMode) commandLine.eMode = toolOptions.oDuplicates ? EMode::Duplicates : EMode::TimeSummary;
  else if (selectionToolMode != EMode::Run) commandLine.eMode = selectionToolMode;
  else if (selectionOptions.bQuery) commandLine.eMode = EMode::Query;
  else if (selectionOptions.bListDisabled) commandLine.eMode = EMode::ListDisabled;
  else if (recreate) commandLine.eMode = EMode::Recreate;
  else if (diffPage) commandLine.eMode = EMode::DiffPage;
  else if (trace) commandLine.eMode = EMode::Trace;
  else if (archive) commandLine.eMode = EMode::ArchiveRun;
  commandLine.eMode = ApplyMergeOptions(app, mergeOptions, commandLine.eMode, commandLine.setup);
  if (commandLine.eMode != EMode::Version) ApplyNormalizeArchiveOptions(app, archiveDirectory, commandLine);
  if (NeedsDataDirectory(commandLine.eMode) && commandLine.setup.sDataDir.IsEmpty())
    throw CUsageError("-d: the data directory is missing (ZoTestSuiteCLI -d DIR)");
  return commandLine;
}

}  // namespace TestSuite::CLI
