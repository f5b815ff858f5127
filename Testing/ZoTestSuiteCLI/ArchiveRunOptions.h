// ArchiveRunOptions: the option of the front end that runs one entry of a
// run list as a whole run of a front end build and files its report in the
// entry's report archive, instead of running tests itself.
#pragma once

#include <string>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SArchiveRunValues {
  std::string sArchiveRun;  // FILE:NAME
};

// --archive-run FILE:NAME.
void AddArchiveRunOptions(::CLI::App& app, SArchiveRunValues& values);

// Moves the value into `sArchiveRun`. True if --archive-run was given.
bool ApplyArchiveRunOptions(const ::CLI::App& app, const SArchiveRunValues& values, SSetup& setup);

// Runs the entry. The exit status: 0 when the run's report was filed; 1
// when the run left no report that could be filed (it did not start, ran
// out of time, or its build has no revision); 2 for a run list that is
// missing or broken, an entry that is not there, or a directory, executable
// or selection file of the entry that is missing. The two messages about a
// bad Config or Platform leave as exceptions for the front end's outermost
// handler.
int RunArchive(const SSetup& setup);

}  // namespace TestSuite::CLI
