// cli_ParseWords: the command line of the front-end tests as a list of
// words after "ZoTestSuiteCLI -d data", parsed, or its usage error.
#pragma once

#include <string>
#include <vector>

#include "CommandLine.h"

namespace CliParse {

inline TestSuite::CLI::SCommandLine ParseWithData(std::vector<const char*> words) {
  words.insert(words.begin(), {"ZoTestSuiteCLI", "-d", "data"});
  return TestSuite::CLI::ParseCommandLine(static_cast<int>(words.size()), words.data());
}

// The usage error's text, empty if there is none.
inline std::string UsageError(std::vector<const char*> words) {
  try {
    ParseWithData(std::move(words));
  } catch (const TestSuite::CLI::CUsageError& error) { return error.what(); }
  return std::string();
}

}  // namespace CliParse
