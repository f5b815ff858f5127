// TraceOptions: the option of the front end that traces the cases that
// changed between two archived reports back to the revision where each of
// them changed, instead of running tests.
#pragma once

#include <string>
#include <vector>

#include "ZoTestSuite.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct STraceOptionValues {
  std::vector<std::string> reports;  // --trace A.xml B.xml
};

// --trace A.xml B.xml; --diff-filter and --diff-output, shared by every
// diff mode, belong to the options of the selection tools.
void AddTraceOptions(::CLI::App& app, STraceOptionValues& values);

// Moves the two reports into the setup, each as an absolute path, so that
// both are spelled as the scan of their archive spells them; the filter is
// "all" unless --diff-filter says otherwise. Throws CUsageError when --trace
// has not exactly two reports or comes with another diff mode. True if
// --trace was given.
bool ApplyTraceOptions(const ::CLI::App& app, const STraceOptionValues& values, SSetup& setup);

// Traces and says what was written. The exit status: 0 when the summary was
// written (also when no case changed); 2 for an input that is missing, is
// no report of the first one's archive, names the same report as the other
// or does not load, and for an output that cannot be written or would
// replace an input: then nothing is written; 3 when the summary could not
// be written whole.
int RunTrace(const SSetup& setup);

}  // namespace TestSuite::CLI
