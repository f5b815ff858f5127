// RunControlOptions: parsing the retries, the failure limit and the shuffled order into the setup.
#include "RunControlOptions.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <random>

#include "CommandLine.h"

namespace TestSuite::CLI {
namespace {

const char* const c_sGroup = "Run control";  // the heading in --help

std::uint64_t parseSeed(const std::string& text) {
  std::uint64_t seed = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seed);
  if (error != std::errc() || stop != end)
    throw CUsageError("--shuffle: '" + text + "' is not a seed (a whole number from 0 to 18446744073709551615)");
  return seed;
}

// A fresh seed for a run that asked for none; printed at the start of the
// run and kept in its reports, so that the order can be repeated.
std::uint64_t drawSeed() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 32 | device()) % 1000000000u;
}

}  // namespace

void AddRunControlOptions(::CLI::App& app, SRunControlValues& values) {
  app.add_option("--retries", values.uiRetries,
                 "Run a failed case again, up to N more times; a case that passes on a later attempt "
                 "is OK with a warning (flaky)")
      ->type_name("N")
      ->group(c_sGroup);
  app.add_option("--max-failures", values.uiMaxFailures,
                 "Cancel the rest of the run after N failed cases (summary and reports are still written)")
      ->type_name("N")
      ->group(c_sGroup);
  app.add_option("--shuffle", values.sShuffleSeed,
                 "Run the cases in a random order; the same SEED gives the same order (no SEED: one is drawn "
                 "and printed)")
      ->expected(0, 1)
      ->type_name("[SEED]")
      ->group(c_sGroup);
}

void ApplyRunControlOptions(const ::CLI::App& app, const SRunControlValues& values, SSetup& setup) {
  if (app.count("--max-failures") > 0 && values.uiMaxFailures == 0)
    throw CUsageError("--max-failures: N must be at least 1");
  setup.uiRetryCount = values.uiRetries;
  setup.uiMaxFailures = values.uiMaxFailures;
  if (app.count("--shuffle") > 0)
    setup.oShuffleSeed = values.sShuffleSeed.empty() ? drawSeed() : parseSeed(values.sShuffleSeed);
}

}  // namespace TestSuite::CLI
