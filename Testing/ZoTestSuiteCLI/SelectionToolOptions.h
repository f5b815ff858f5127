// SelectionToolOptions: the options of the front end that turn reports into
// selections of cases: the cases whose result changed between two reports,
// the failed cases of one report, and a run of exactly those failed cases.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "CommandLine.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SSelectionToolValues {
  std::vector<std::string> diffSelection;    // the base report, then the one compared with it
  std::string sDiffOutput;                   // empty: named after the two reports
  std::string sDiffFilter;                   // "all", "failed" or "successful"; empty: not given
  std::vector<std::string> failedSelection;  // the report, then the selection file to write
  std::string sRerunFailed;                  // the report whose failed cases run again
};

// --diff-selection A.xml B.xml, --diff-output FILE, --diff-filter WORD,
// --failed-selection REPORT.xml OUT.xml and --rerun-failed REPORT.xml.
void AddSelectionToolOptions(::CLI::App& app, SSelectionToolValues& values);

// Moves the values into the setup and gives the mode they ask for, or
// EMode::Run when they ask for none. --diff-selection keeps all its values,
// so that a wrong number of reports gets the diff's own message. Throws
// CUsageError for two of these modes at once, and for --rerun-failed
// together with --select or --invert-selection.
EMode ApplySelectionToolOptions(const SSelectionToolValues& values, SSetup& setup);

// Whether `mode` works on reports alone and needs no data directory.
bool IsReportToolMode(EMode mode);

// Writes the diff selection (EMode::DiffSelection) or the selection of
// failed cases (EMode::FailedSelection) and says what was written. The exit
// status: 0 when the inputs loaded, also when no case changed and so no
// file was written; 2 for an input that is missing or does not load and for
// an output directory that does not exist, and then nothing is written.
int RunSelectionTool(EMode mode, const SSetup& setup);

// Runs exactly the failed cases of the report `setup.sSelectionSourceReport`:
// points `setup` at a selection file of them in the temporary directory,
// calls `runTests`, which runs `setup`, and removes the file. Without
// failed cases it says so and gives 0; for a report that is missing or does
// not load, 2. Otherwise what `runTests` gives.
int RerunFailedCases(SSetup& setup, const std::function<int()>& runTests);

}  // namespace TestSuite::CLI
