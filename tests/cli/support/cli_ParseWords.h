// cli_ParseWords: the command line of the front-end tests as a list of
// words after "ZoTestSuiteCLI" (or after "ZoTestSuiteCLI -d data"), parsed,
// or its usage error.
#pragma once

#include <string>
#include <vector>

#include "CommandLine.h"

namespace CliParse {

inline TestSuite::CLI::SCommandLine Parse(std::vector<const char*> words) {
  words.insert(words.begin(), "ZoTestSuiteCLI");
  return TestSuite::CLI::ParseCommandLine(static_cast<int>(words.size()), words.data());
}

inline TestSuite::CLI::SCommandLine ParseWithData(std::vector<const char*> words) {
  words.insert(words.begin(), {"-d", "data"});
  return Parse(std::move(words));
}

// The usage error's text, empty if there is none; `withData` puts
// "-d data" in front of the words.
inline std::string UsageError(std::vector<const char*> words, bool withData = true) {
  try {
    if (withData) ParseWithData(std::move(words));
    else Parse(std::move(words));
  } catch (const TestSuite::CLI::CUsageError& error) { return error.what(); }
  return std::string();
}

}  // namespace CliParse
