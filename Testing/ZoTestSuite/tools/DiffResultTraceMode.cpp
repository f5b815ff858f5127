// The tool mode of the diff result trace.
#include "tools/DiffResultTraceMode.h"

#include "services/COut.h"
#include "tools/DiffInputs.h"

namespace TestSuite {

SDiffResultTraceRun RunDiffResultTrace(const SSetup& setup) {
  SDiffResultTraceRun run;
  if (!setup.oDiffFilterMode) return run;
  if (setup.diffInputs.GetCount() != 2) {
    COut::Write(L"Fehler: es werden zwei Diff-Eingaben benötigt.\n");
    return run;
  }
  run.sPath = GetDiffOutputPath(setup, L"DiffResultTrace", L".xml");
  run.outcome = Report::TraceDiffResults(*setup.oDiffFilterMode, setup.diffInputs[0], setup.diffInputs[1], run.sPath);
  return run;
}

void GenerateDiffResultTrace(const SSetup& setup) { RunDiffResultTrace(setup); }

}  // namespace TestSuite
