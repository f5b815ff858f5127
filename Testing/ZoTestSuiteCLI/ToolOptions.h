// ToolOptions: the options of the front end that choose a tool mode instead
// of a run: the time summary of a past run's report over the present tree,
// and the search for data files with equal bytes.
#pragma once

#include <optional>
#include <string>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SToolOptionValues {
  std::string sTimeSummaryReport;          // --time-summary REPORT.xml
  std::optional<std::string> oDuplicates;  // --duplicates [list|delete]; "" without a value
};

// --time-summary REPORT.xml and --duplicates [list|delete].
void AddToolOptions(::CLI::App& app, SToolOptionValues& values);

// Moves the parsed values into the setup and tells whether a tool mode was
// chosen. `otherMode` names another mode option given on the same command
// line (empty if none). Throws CUsageError for both tool modes at once, for
// a tool mode beside `otherMode`, and for a report that cannot be read.
bool ApplyToolOptions(const SToolOptionValues& values, const std::string& otherMode, SSetup& setup);

}  // namespace TestSuite::CLI
