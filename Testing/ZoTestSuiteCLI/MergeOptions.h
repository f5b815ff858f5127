// MergeOptions: the option of the front end that merges the reports of the
// parts of a sharded run into one, and the front end's side of that mode:
// checks before anything is written, the exit status.
#pragma once

#include <string>
#include <vector>

#include "CommandLine.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SMergeOptionValues {
  std::vector<std::string> mergeReports;  // the merged report, then the parts
};

// --merge-reports OUT.xml IN.xml...
void AddMergeOptions(::CLI::App& app, SMergeOptionValues& values);

// Moves the values into the setup: the parts into `diffInputs`, the merged
// report into `oXmlReport`; gives EMode::MergeReports, or `mode`, the mode
// that the other options chose, when --merge-reports is not given. Throws
// CUsageError without at least one part, beside --xml, which the merged
// report replaces, beside --shard, and beside any other mode.
EMode ApplyMergeOptions(const ::CLI::App& app, const SMergeOptionValues& values, EMode mode, SSetup& setup);

// Writes the merged report, its HTML page when --html asks (no FILE:
// beside it) and its JUnit file when --junit asks. 0 when it was written;
// 2, with nothing written, for a part that is missing or does not load,
// for an output in a directory that does not exist, and for an output that
// would replace a part.
int RunMergeReports(const SSetup& setup);

}  // namespace TestSuite::CLI
