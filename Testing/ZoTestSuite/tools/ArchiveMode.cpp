// The archive mode: one entry of a run list becomes one more report in its
// archive.
#include "tools/ArchiveMode.h"

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "report/ArchiveOverview.h"
#include "report/ReportNames.h"
#include "report/XmlReportLoader.h"
#include "services/BuildInformation.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite {

namespace {

// Texts thrown inside the mode's own frame, which prints them.
[[noreturn]] void fail(const CString& text) { throw text; }

void assertExists(const CString& directory) {
  if (!ZoFileSystem::Exists(directory)) fail(FormatString(L"Verzeichnis %s existiert nicht", directory));
}

// The checked entry: directories with their separator, the executable and
// the selection file found.
void checkRun(SArchiveRun& run) {
  Utils::AddBackslash(run.BinaryDir);
  assertExists(run.BinaryDir);
  Utils::AddBackslash(run.DataDir);
  assertExists(run.DataDir);
  Utils::AddBackslash(run.OutDir);
  // A directory that cannot be made is not said here: the run's report then
  // has nowhere to go, which shows when it is filed.
  if (Utils::AssertDirectory(run.OutDir)) assertExists(run.OutDir);
  const CString executable = GetArchiveRunExecutable(run);
  if (!ZoFileSystem::Exists(executable)) fail(FormatString(L"Fehler: Executable %s nicht gefunden.\n", executable));
  if (!run.SelectionFile.IsEmpty() && !ZoFileSystem::Exists(run.SelectionFile))
    fail(FormatString(L"Datei %s nicht gefunden", run.SelectionFile));
}

CString makeTemporaryReportPath() {
  const CString directory = GetLocalTestSuiteDir() + L"Temp/";
  Utils::AssertDirectory(directory);
  return directory + L"Temp-" + ZoUniqueIdT<CString>::GetUniqueID() + L"-Report.xml";
}

// Files the child's report under its archive name and removes the
// temporary one. A report without a revision, or none at all, is not filed.
// True if it was filed.
bool fileReport(const CString& temporaryReport, const CString& outDir) {
  Utils::AssertDirectory(outDir);
  Report::SData data;
  Report::LoadReportDataFromXMLFile(temporaryReport, data);
  bool bFiled = false;
  if (const std::optional<CString> name = Report::GetArchiveName(data))
    bFiled = ZoFileSystem::CopyFileW(temporaryReport, outDir + *name + L".xml", false);
  ZoFileSystem::DeleteFileW(temporaryReport);
  return bFiled;
}

bool runEntry(const SSetup& setup, SArchiveRun run) {
  checkRun(run);
  const CString executable = GetArchiveRunExecutable(run);
  const CString temporaryReport = makeTemporaryReportPath();
  Utils::RemoveBackslashes(run.DataDir);
  const CString arguments = ComposeArchiveRunArguments(setup, run, temporaryReport);
  COut::Write(L"Ausführung...\n");
  COut::Write(L"%s %s\n", executable, arguments);
  // A child that could not start or ran out of time leaves no report, and
  // that is how it shows: the warning itself is not printed.
  Utils::RunProcess(executable, arguments, run.BinaryDir, sc_uiArchiveRunTimeOutSec);
  const bool bFiled = fileReport(temporaryReport, run.OutDir);
  Report::WriteArchiveOverview(run.OutDir);
  return bFiled;
}

}  // namespace

CString GetArchiveRunExecutable(const SArchiveRun& run) {
  return run.BinaryDir + (run.Config == CString(L"Debug") ? L"ZoTestSuiteCLID" : L"ZoTestSuiteCLI");
}

CString ComposeArchiveRunArguments(const SSetup& setup, const SArchiveRun& run, const CString& reportPath) {
  CString arguments = FormatString(L" -d \"%s\"", run.DataDir);
  if (!run.SelectionFile.IsEmpty()) arguments.AppendFormat(L" --select \"%s\"", run.SelectionFile);
  arguments.AppendFormat(L" --xml \"%s\"", reportPath);
  arguments.AppendFormat(L" -x --track-heap --no-assert-dialog -t %u", sc_uiArchiveCaseTimeOutSec);
  if (setup.run.bIsolated) arguments += L" -l";
  if (setup.run.bParallel) arguments.AppendFormat(L" -w %d", setup.run.uiThreadCount);
  if (setup.run.bShowThreadInfo) arguments += L" -v";
  if (setup.run.uiRepeatCount > 1) arguments.AppendFormat(L" -r %u", setup.run.uiRepeatCount);
  if (setup.collectOptions.uiCaseLimit != 0xFFFFFFFF)
    arguments.AppendFormat(L" -c %d", setup.collectOptions.uiCaseLimit);
  if (setup.oLogFile && !setup.oLogFile->IsEmpty()) arguments.AppendFormat(L" --log-file %s", *setup.oLogFile);
  if (!setup.sRunTag.IsEmpty()) arguments.AppendFormat(L" --run-tag %s", setup.sRunTag);
  return arguments;
}

EArchiveRunOutcome RunArchiveEntry(const SSetup& setup) {
  CString file, runName;
  SplitArchiveRun(setup.sArchiveRun, file, runName);
  try {
    if (!ZoFileSystem::Exists(file)) fail(FormatString(L"Datei %s nicht gefunden", file));
    const XbArray<SArchiveRun> runs = ReadArchiveRunList(file);
    const SArchiveRun* run = FindArchiveRun(runs, runName);
    if (!run) {
      COut::Write(L"Fehler: Run Eintrag '%s' nicht gefunden\n", runName);
      return EArchiveRunOutcome::RunNotFound;
    }
    return runEntry(setup, *run) ? EArchiveRunOutcome::Filed : EArchiveRunOutcome::NotFiled;
  } catch (const CString& text) {
    COut::Write(L"Fehler in Config-File: %s\n", text);
    return EArchiveRunOutcome::ConfigError;
  }
}

void RunArchiveMode(const SSetup& setup) { RunArchiveEntry(setup); }

}  // namespace TestSuite
