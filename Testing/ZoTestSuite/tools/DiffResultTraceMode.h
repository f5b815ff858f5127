// DiffResultTraceMode: the tool mode that traces the changed cases between
// two archived reports given on the command line.
#pragma once

#include "ZoTestSuite.h"
#include "report/DiffResultTrace.h"

namespace TestSuite {

// GenerateDiffResultTrace, with the trace's outcome and the file it wrote
// to (empty when it did not get that far).
struct SDiffResultTraceRun {
  Report::STraceOutcome outcome;
  CString sPath;
};
SDiffResultTraceRun RunDiffResultTrace(const SSetup& setup);

}  // namespace TestSuite
