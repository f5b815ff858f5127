// SelectionOptions: the options of the front end that choose what runs: a
// selection file, include and exclude patterns in command-line order, the
// case limit's neighbours, and the two listing modes that show the choice
// without running it.
#pragma once

#include <string>
#include <vector>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SSelectionOptionValues {
  struct SPattern {
    bool bExclude = false;
    bool bRegex = false;  // else a wildcard
    std::string sText;
  };

  std::string sSelectionFile;
  bool bInvertSelection = false;
  std::vector<SPattern> patterns;  // in the order the command line gave them
  bool bFullMatch = false;
  bool bKeepDisabled = false;
  bool bQuery = false;
  bool bListDisabled = false;
};

// --select FILE, --invert-selection, --include / --exclude WILDCARD,
// --include-regex / --exclude-regex REGEX (each repeatable, mixed in any
// order), --full-match, --keep-disabled, --query and --list-disabled.
void AddSelectionOptions(::CLI::App& app, SSelectionOptionValues& values);

// Moves the parsed values into the setup's collection options, compiling
// every pattern: a wildcard ('*' any text, '?' one character) ignores case,
// a regular expression (ECMAScript) does not. Throws CUsageError naming the
// pattern and the compiler's message for a pattern that does not compile,
// and for --query together with --list-disabled.
void ApplySelectionOptions(const SSelectionOptionValues& values, SSetup& setup);

}  // namespace TestSuite::CLI
