// RunControlOptions: the options of the front end that steer a run as a
// whole: retries of failed cases, a limit of failed cases after which the
// run stops, and a shuffled order of the cases.
#pragma once

#include <string>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SRunControlValues {
  unsigned int uiRetries = 0;
  unsigned int uiMaxFailures = 0;
  std::string sShuffleSeed;  // empty: a seed is drawn
};

// --retries N, --max-failures N and --shuffle [SEED].
void AddRunControlOptions(::CLI::App& app, SRunControlValues& values);

// Moves the values into the setup; --shuffle without SEED draws one.
// Throws CUsageError for a seed that is no unsigned 64-bit number and for
// --max-failures 0.
void ApplyRunControlOptions(const ::CLI::App& app, const SRunControlValues& values, SSetup& setup);

}  // namespace TestSuite::CLI
