// ArchiveMode: the tool mode that runs one configured entry of a run list as
// a whole run of the front end in a child process and files its report in
// the entry's report archive.
#pragma once

#include "ZoTestSuite.h"
#include "tools/ArchiveRunList.h"

namespace TestSuite {

// Per-case time-out of the archive runs, and the limit of one whole run.
inline constexpr unsigned int sc_uiArchiveCaseTimeOutSec = 300;
inline constexpr unsigned int sc_uiArchiveRunTimeOutSec = 57600;  // 16 hours

// The front end's executable of `run`: "ZoTestSuiteCLID" for the Debug
// configuration, else "ZoTestSuiteCLI", in `run.BinaryDir` (which ends in
// '/').
CString GetArchiveRunExecutable(const SArchiveRun& run);

// The child's arguments, each beginning with its blank: the data directory
// (as it stands), the selection file if the entry names one, the XML report
// `reportPath`, the fixed "-x --track-heap --no-assert-dialog -t 300", then
// what `setup` asks for of -l, -w, -v, -r (above 1), -c (not all ones),
// --log-file (not empty) and --run-tag (not empty); the last two unquoted.
CString ComposeArchiveRunArguments(const SSetup& setup, const SArchiveRun& run, const CString& reportPath);

// How an archive run ended, for a front end that sets its exit status.
enum class EArchiveRunOutcome {
  Filed,        // the run's report is in the archive under its archive name
  NotFiled,     // the run left no report, or one without a revision, or it could not be copied
  ConfigError,  // "Fehler in Config-File: ..." was said; nothing ran
  RunNotFound,  // the list has no entry of that name; nothing ran
};

// RunArchiveMode, with its outcome; throws what RunArchiveMode throws.
EArchiveRunOutcome RunArchiveEntry(const SSetup& setup);

}  // namespace TestSuite
