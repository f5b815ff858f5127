// The system's option record and its entry functions: the one interface a
// front end needs.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "ZoTestSuiteEnvironment.h"
#include "ZoTestSuiteRun.h"
#include "ZoTestSuiteTree.h"

namespace TestSuite {

namespace Report {
struct SData;
}

// What governs the execution of each case. This record, and only this one,
// travels into the work block of every case.
struct SRunOptions {
  bool bTrackHeap = false;
  bool bDumpLeaks = false;
  bool bReportMemLeak = true;
  bool bExternal = false;
  bool bIsolated = false;
  bool bAssertDialog = true;
  bool bShowThreadInfo = false;
  bool bDebugOption0 = false;
  bool bDebugOption1 = false;
  bool bDebugOption2 = false;
  bool bParallel = false;
  unsigned int uiThreadCount = 0;
  unsigned int uiRepeatCount = 1;
  unsigned int uiTimeOutSec = 0xFFFFFFFF;  // all ones: no limit
  std::optional<std::uint64_t> oObserveID;
  std::optional<std::uint64_t> oObserveSize;
  bool bShowTimes = true;
  bool bRecordStartTime = false;
};

enum EDuplicateAction : unsigned int { eListDuplicates = 0, eDeleteDuplicates = 1 };

// The option table of every entry function. It belongs to the caller and
// is only read.
struct SSetup {
  enum EDiffFilterMode : unsigned int { eDiffAll = 0, eDiffOnlyFailed = 1, eDiffOnlySuccessful = 2 };

  CString sDataDir;
  SCollectOptions collectOptions;
  XbArray<SUnitTest> unitTests;
  SRunOptions run;
  std::optional<CString> oXmlReport;
  std::optional<CString> oHtmlReport;
  std::optional<CString> oLogFile;
  bool bOpenHtmlReport = false;
  bool bHtmlClassesOnly = false;
  XbArray<CString> diffInputs;
  CString sDiffOutputPath;
  std::int32_t iMessageReportMax = 3;
  bool bHtmlHideWarnings = true;
  bool bFrontEndFlagA = false;
  CString sArchiveRun;
  std::optional<EDuplicateAction> oDuplicateAction;
  bool bFrontEndFlagB = false;
  XbArray<CString> dllFiles;
  CString sMemoryId;
  CString sRequestEventId;
  CString sResponseEventId;
  Run::SCallbacks callbacks;
  CString sTimeSummaryReport;
  CString sSelectionSourceReport;
  std::optional<EDiffFilterMode> oDiffFilterMode;
  bool bFrontEndFlagC = false;
  bool bFrontEndFlagD = false;
  CString sFrontEndText;
  CString sRunTag;
  // A failed or erroneous case runs again, up to this many more times.
  unsigned int uiRetryCount = 0;
  // After this many failed or erroneous cases the rest of the run is
  // cancelled; 0: no limit.
  unsigned int uiMaxFailures = 0;
  // Present: the rows run in an order drawn from this seed; the same seed
  // gives the same order.
  std::optional<std::uint64_t> oShuffleSeed;
};

// Loads the test libraries (those of the environment's configuration, then
// `setup.dllFiles`) and lists what a run with `setup` would execute: each
// class's data directory with its cases, then the data directory and the
// numbers of classes and cases. Prints nothing more when `setup.sDataDir`
// is empty. Runs nothing.
void RunQueryMode(const SSetup& setup, CEnvironment& environment);

// Loads the test libraries of the environment's configuration (not
// `setup.dllFiles`) and lists, class by class with its first contact, the
// cases that "#ExtraInfo.xml" switches off, then how many classes and cases
// that is out of all those that selection and filters leave. Runs nothing.
void ListDisabledTestCases(const SSetup& setup, CEnvironment& environment);

// Loads the test libraries of the environment's configuration (not
// `setup.dllFiles`) and looks, class by class, for data files of
// file-based classes with equal bytes. Prints "Check: NAME" for every
// class; with `setup.oDuplicateAction` set, then lists each duplicate set
// (eListDuplicates) or keeps the oldest file of each set and deletes the
// others (eDeleteDuplicates), and closes with the data directory, the
// number of classes and the number of redundant files. Files are only
// compared within one class.
void RunDuplicateDetection(const SSetup& setup, CEnvironment& environment);

// Lays the case times of the XML report `setup.sTimeSummaryReport` over the
// test tree of `setup.sDataDir` (libraries as RunQueryMode loads them) and
// prints the tree with the summed time of every directory and class that
// has one, "[hh:mm:ss.mmm]" with hours never cut, three columns deeper per
// level; with `setup.run.bShowThreadInfo`, the cases' times as well.
// Cases and report rows meet by class and case name. Prints nothing for an
// empty data directory or a report that cannot be loaded (the loader
// reports a broken file).
void GenerateTimeSummary(const SSetup& setup, CEnvironment& environment);

// The selection that lists exactly the cases of `report` that failed: every
// result but OK and CANCELED. Each listed class and the selection itself
// default to None. Never null.
std::unique_ptr<CSelectionStore::SData> CreateSelectionOfFailedCasesFromReportData(const Report::SData& report);

// Reads the XML report `setup.sSelectionSourceReport` and writes the
// selection of its failed cases to `*setup.oXmlReport`: a report without
// failures gives a file with an empty selection. Does nothing when the
// report does not load (a file that does not parse is named by the loader,
// a missing one silently) or when `oXmlReport` is absent or empty.
void GenerateSelectionFileFromReport(const SSetup& setup);

// Compares the two XML reports of `setup.diffInputs`, the base first, and
// writes the selection of the cases of the second whose result differs, or
// that the base lacks, to `setup.sDiffOutputPath`, or else to
// "DiffSelection-[first][second].xml" beside the first report.
// `oDiffFilterMode` keeps every changed case, only those that now fail, or
// only those that now pass; without it nothing happens at all. Writes no
// file when no case is listed.
void GenerateDiffSelection(const SSetup& setup);
// Compares the two XML reports of `setup.diffInputs`, the first the
// reference, on one HTML page: at `setup.sDiffOutputPath`, or else beside
// the first report as "Diff-[<name of the first>][<name of the second>].html".
// `bHtmlClassesOnly` leaves out the case table, `bHtmlHideWarnings` keeps
// gained warnings from counting, `bOpenHtmlReport` opens the page. Inputs
// that are missing or do not load are said and leave no page.
void GenerateReportDiff(const SSetup& setup);

// Traces the cases that changed between the two archived reports of
// `setup.diffInputs` back through their archive directory, to the revision
// at which each changed (Report::GenerateDiffResultTrace), and writes the
// summary to `setup.sDiffOutputPath`, or else beside the first report as
// "DiffResultTrace-[<name of the first>][<name of the second>].xml".
// `oDiffFilterMode` keeps every changed case, only those that now fail, or
// only those that now pass; without it nothing happens at all. Anything but
// two inputs is said and does nothing.
void GenerateDiffResultTrace(const SSetup& setup);

// Runs the entry of a run list that `setup.sArchiveRun` names ("FILE:NAME",
// split at the last ':') as a whole run of the front end that the entry
// names, in a child process with external execution, heap tracking and a
// per-case limit of 300 s (plus -l, -w, -v, -r, -c, --log-file and
// --run-tag as `setup` gives them), then files the run's report in the
// entry's archive directory under its archive name and updates the archive
// overview. A missing or broken list, or a missing directory, executable
// or selection file, is said as "Fehler in Config-File: ..." and runs
// nothing. Throws the plain wide character pointers "Ungültige
// Konfiguration" and "Ungültige Platform" for a list that has a bad Config
// or Platform in any entry; the file-system errors of the overview update
// leave it as well.
void RunArchiveMode(const SSetup& setup);

}  // namespace TestSuite
