// The command line of ZoTestSuiteCLI: what the user asked for, parsed into
// the system's option record and the few choices that belong to the front
// end alone.
#pragma once

#include <stdexcept>
#include <string>

#include "ZoTestSuite.h"

namespace TestSuite::CLI {

enum class EMode {
  Run,               // a test run (the default)
  Child,             // the child side of external execution
  Recreate,          // renew reference data
  Query,             // --query: list what would run
  ListDisabled,      // --list-disabled: list the disabled cases
  TimeSummary,       // --time-summary: the times of a report over the tree
  Duplicates,        // --duplicates: data files with equal bytes
  DiffSelection,     // --diff-selection: select the cases that changed between two reports
  FailedSelection,   // --failed-selection: select the failed cases of a report
  RerunFailed,       // --rerun-failed: run the failed cases of a report again
  DiffPage,          // --diff: the diff page of two reports
  NormalizeArchive,  // --normalize-archive: name the reports of a directory for the archive, write its overview
  Trace,             // --trace: the revisions where the cases changed between two archived reports
  ArchiveRun,        // --archive-run: one entry of a run list, filed in its archive
  MergeReports,      // --merge-reports: one report of the reports of a sharded run's parts
  Help,              // --help was printed
  Version,           // --version was printed
};

struct SCommandLine {
  EMode eMode = EMode::Run;
  SSetup setup;
  bool bColor = true;         // --no-color clears it; NO_COLOR and a non-terminal also turn colour off
  bool bAllowEmpty = false;   // --allow-empty: a run that finds no case passes
  CString sArchiveDirectory;  // --normalize-archive DIR
  std::string sHelpText;
  CString sShardTimesReport;  // --shard-times: the report whose case times balance the parts
  CString sShardStatusFile;   // Bazel's TEST_SHARD_STATUS_FILE, made before the run
};

// A bad command line: the message names the option and the problem.
class CUsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Whether `mode` reads a data directory given with -d: not --version, the
// report tools, or the archive run, whose data directory stands in its run
// list.
bool NeedsDataDirectory(EMode mode);

// Parses argv. Throws CUsageError for anything it cannot accept.
SCommandLine ParseCommandLine(int argc, const char* const* argv);

// The version line: version and the build's revision.
std::string GetVersionText();

}  // namespace TestSuite::CLI
