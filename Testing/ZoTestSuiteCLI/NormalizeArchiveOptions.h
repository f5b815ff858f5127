// NormalizeArchiveOptions: the option of the front end that turns a
// directory of XML reports into a report archive, named by revision and
// date, with its browsable overview, instead of running tests.
#pragma once

#include <string>

#include "CommandLine.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// --normalize-archive DIR, into `directory`.
void AddNormalizeArchiveOptions(::CLI::App& app, std::string& directory);

// Sets EMode::NormalizeArchive and the directory when the option was given
// and tells whether it was. Throws CUsageError for an empty directory and
// when `commandLine` has chosen another mode already.
bool ApplyNormalizeArchiveOptions(const ::CLI::App& app, const std::string& directory, SCommandLine& commandLine);

// Renames the reports of the directory and rebuilds the overview; says
// where the overview is. Errors of the file system are not caught here:
// they reach the outermost handler.
int RunNormalizeArchive(const SCommandLine& commandLine);

}  // namespace TestSuite::CLI
