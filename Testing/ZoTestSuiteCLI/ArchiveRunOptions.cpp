// The option of the archive mode and the front end's side of it.
#include "ArchiveRunOptions.h"

#include <CLI/CLI.hpp>

#include "FrontEnd.h"
#include "foundation/SystemPath.h"
#include "tools/ArchiveMode.h"

namespace TestSuite::CLI {

void AddArchiveRunOptions(::CLI::App& app, SArchiveRunValues& values) {
  app.add_option("--archive-run", values.sArchiveRun,
                 "Instead of a test run, run the entry NAME of the run list FILE with the front end it names and "
                 "file the report in its archive (-l, -w, -v, -r, -c, --log-file and --run-tag are handed on)")
      ->type_name("FILE:NAME")
      ->group("Report archive");
}

bool ApplyArchiveRunOptions(const ::CLI::App& app, const SArchiveRunValues& values, SSetup& setup) {
  if (app.count("--archive-run") == 0) return false;
  setup.sArchiveRun = PathFromSystem(values.sArchiveRun);
  return true;
}

int RunArchive(const SSetup& setup) {
  switch (RunArchiveEntry(setup)) {
    case EArchiveRunOutcome::Filed: return sc_iExitPassed;
    case EArchiveRunOutcome::NotFiled: return sc_iExitFailed;
    default: return sc_iExitUsage;
  }
}

}  // namespace TestSuite::CLI
