// The option of the diff result trace and the front end's side of it.
#include "TraceOptions.h"

#include <CLI/CLI.hpp>

#include "CommandLine.h"
#include "FileArguments.h"
#include "FrontEnd.h"
#include "foundation/SystemPath.h"
#include "services/COut.h"
#include "tools/DiffResultTraceMode.h"

namespace TestSuite::CLI {

void AddTraceOptions(::CLI::App& app, STraceOptionValues& values) {
  // Any number of values is taken, so that a wrong number gets a message
  // that says what --trace needs rather than the parser's own.
  app.add_option("--trace", values.reports,
                 "Instead of a test run, trace the cases that changed from archived report A to B back through "
                 "their archive to the revision where each changed (default output: "
                 "DiffResultTrace-[A][B].xml beside A)")
      ->expected(0, -1)
      ->type_name("A.xml B.xml")
      ->group("Report archive");
}

bool ApplyTraceOptions(const ::CLI::App& app, const STraceOptionValues& values, SSetup& setup) {
  if (app.count("--trace") == 0) return false;
  if (!setup.diffInputs.IsEmpty()) throw CUsageError("--trace, --diff and --diff-selection exclude each other");
  std::vector<std::string> reports;
  for (const std::string& path : values.reports)
    if (!path.empty()) reports.push_back(path);
  if (reports.size() != 2) {
    throw CUsageError("--trace: two reports of one archive are needed (" + std::to_string(reports.size()) +
                      " given): ZoTestSuiteCLI --trace ARCHIVE/A.xml ARCHIVE/B.xml");
  }
  for (const std::string& path : reports) setup.diffInputs.Add(MakeAbsolutePath(PathFromSystem(path)));
  if (!setup.oDiffFilterMode) setup.oDiffFilterMode = SSetup::eDiffAll;
  return true;
}

int RunTrace(const SSetup& setup) {
  for (const CString& input : setup.diffInputs)
    if (!CheckInputExists(input)) return sc_iExitUsage;
  if (!setup.sDiffOutputPath.IsEmpty() &&
      (!CheckWritablePath(setup.sDiffOutputPath) ||
       !CheckOutputSparesInputs(setup.sDiffOutputPath, setup.diffInputs, L"Die Trace-Datei")))
    return sc_iExitUsage;
  const SDiffResultTraceRun run = RunDiffResultTrace(setup);
  if (!run.outcome.bTraced) return sc_iExitUsage;  // the trace has said why
  if (!run.outcome.bWritten) {
    COut::Write(L"Fehler: Die Trace-Datei %s konnte nicht geschrieben werden.\n", run.sPath).Color(ZoColorRGBA::c_RED);
    return sc_iExitInternal;
  }
  COut::Write(L"Trace von Revision %I64u bis %I64u geschrieben: %s (Testfälle: %d, Reports gelesen: %d)\n",
              run.outcome.uiBeginRevision, run.outcome.uiEndRevision, run.sPath, run.outcome.uiTraceCount,
              run.outcome.uiReportsWalked);
  return sc_iExitPassed;
}

}  // namespace TestSuite::CLI
