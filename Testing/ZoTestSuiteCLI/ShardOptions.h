// ShardOptions: the options of the front end that run one part of a test
// set spread over machines (--shard, --shard-times, --shard-count), and
// the front end's work before such a run.
#pragma once

#include <optional>
#include <string>

#include "CommandLine.h"
#include "discovery/ShardEngines.h"

namespace CLI {
class App;
}

namespace TestSuite::CLI {

// Option values before they are applied to the setup.
struct SShardOptionValues {
  std::string sShard;                  // "I/N" or "auto"; empty: not given
  std::string sShardTimes;             // the report whose case times balance the parts
  std::optional<unsigned int> oCount;  // --shard-count: the parts for an engine that gives only an index
};

// --shard I/N|auto, --shard-times REPORT.xml, --shard-count N.
void AddShardOptions(::CLI::App& app, SShardOptionValues& values);

// Puts the part into the collection options of the setup, reading the CI
// engine's variables through `getVariable` for "auto", and tags the run
// "shard 2 of 4" unless it has a tag. Throws CUsageError for a part that
// does not exist, for "auto" without an engine's variables, and for
// --shard-times or --shard-count without what they belong to.
void ApplyShardOptions(const SShardOptionValues& values, SCommandLine& commandLine, const FnGetVariable& getVariable);

// What a sharded run needs before it collects: the case times of
// --shard-times and Bazel's status file. False, after a red line, when the
// report does not load or the status file cannot be made.
bool PrepareShard(SCommandLine& commandLine);

// Whether the setup asks for one part of several.
bool IsSharded(const SSetup& setup);

}  // namespace TestSuite::CLI
