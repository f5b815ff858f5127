// DiffOptions: the option of the front end that compares two reports on
// one page instead of running tests.
#pragma once

#include <string>
#include <vector>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SDiffOptionValues {
  std::vector<std::string> diffPage;  // --diff A.xml B.xml
};

// --diff A.xml B.xml (A the reference); --diff-output, which names the
// page, belongs to the options of the selection tools, shared by every
// diff mode.
void AddDiffOptions(::CLI::App& app, SDiffOptionValues& values);

// Moves the parsed values into the setup. Throws CUsageError when --diff
// has not exactly two reports. True if --diff asks for the diff page.
bool ApplyDiffOptions(const ::CLI::App& app, const SDiffOptionValues& values, SSetup& setup);

}  // namespace TestSuite::CLI
