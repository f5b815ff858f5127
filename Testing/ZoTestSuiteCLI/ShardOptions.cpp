// ShardOptions: parsing the part of a sharded run and preparing the run.
#include "ShardOptions.h"

#include <CLI/CLI.hpp>
#include <regex>

#include "discovery/ShardSelection.h"
#include "services/COut.h"
#include "tools/ShardTimes.h"

namespace TestSuite::CLI {
namespace {

const char* const c_sGroup = "Sharding across machines";  // the heading in --help

// "I/N" with 0 <= I < N.
SShard parsePart(const std::string& text) {
  static const std::regex c_form("([0-9]{1,9})/([0-9]{1,9})");
  std::smatch match;
  if (!std::regex_match(text, match, c_form))
    throw CUsageError("--shard: '" + text + "' is neither I/N (part I of N, counted from 0) nor auto");
  SShard shard;
  shard.uiIndex = static_cast<unsigned int>(std::stoul(match[1]));
  shard.uiCount = static_cast<unsigned int>(std::stoul(match[2]));
  if (shard.uiCount == 0) throw CUsageError("--shard: '" + text + "' has no parts");
  if (shard.uiIndex >= shard.uiCount)
    throw CUsageError("--shard: '" + text + "' has no part " + match[1].str() + ": the parts of " + match[2].str() +
                      " are 0/" + match[2].str() + " to " + std::to_string(shard.uiCount - 1) + "/" + match[2].str());
  return shard;
}

SShard fromEngine(const SShardOptionValues& values, SCommandLine& commandLine, const FnGetVariable& getVariable) {
  const SEngineShard engine = ReadEngineShard(getVariable, values.oCount);
  if (!engine.sError.empty()) throw CUsageError(engine.sError);
  commandLine.sShardStatusFile = engine.sStatusFile;
  SShard shard;
  shard.uiIndex = engine.uiIndex;
  shard.uiCount = engine.uiCount;
  return shard;
}

}  // namespace

void AddShardOptions(::CLI::App& app, SShardOptionValues& values) {
  app.add_option("--shard", values.sShard,
                 "Run part I of N disjoint parts of the cases (I counted from 0), placed by a stable hash of each "
                 "case; 'auto' takes the part from the CI engine's variables (Bazel, GitLab, CircleCI, Buildkite, "
                 "Kubernetes). The reports are tagged 'shard I+1 of N' unless --run-tag is given")
      ->type_name("I/N|auto")
      ->group(c_sGroup);
  app.add_option("--shard-times", values.sShardTimes,
                 "With --shard: balance the parts by the case times of an earlier XML report (cases it lacks count "
                 "with its median time)")
      ->type_name("REPORT.xml")
      ->group(c_sGroup);
  app.add_option_function<unsigned int>(
         "--shard-count", [&values](const unsigned int& count) { values.oCount = count; },
         "With --shard auto: the number of parts where the engine gives only an index "
         "(Kubernetes JOB_COMPLETION_INDEX)")
      ->type_name("N")
      ->group(c_sGroup);
}

void ApplyShardOptions(const SShardOptionValues& values, SCommandLine& commandLine, const FnGetVariable& getVariable) {
  if (values.sShard.empty()) {
    if (!values.sShardTimes.empty()) throw CUsageError("--shard-times needs --shard I/N or --shard auto");
    if (values.oCount) throw CUsageError("--shard-count goes with --shard auto");
    return;
  }
  if (values.oCount && values.sShard != "auto") throw CUsageError("--shard-count goes with --shard auto");
  const SShard part = values.sShard == "auto" ? fromEngine(values, commandLine, getVariable) : parsePart(values.sShard);
  SSetup& setup = commandLine.setup;
  setup.collectOptions.shard.uiIndex = part.uiIndex;
  setup.collectOptions.shard.uiCount = part.uiCount;
  commandLine.sShardTimesReport = CString::FromUtf8(values.sShardTimes);
  if (setup.sRunTag.IsEmpty()) setup.sRunTag = MakeShardRunTag(part.uiIndex, part.uiCount);
}

bool PrepareShard(SCommandLine& commandLine) {
  if (!commandLine.sShardTimesReport.IsEmpty() &&
      !LoadShardTimes(commandLine.sShardTimesReport, commandLine.setup.collectOptions.shard))
    return false;
  if (commandLine.sShardStatusFile.IsEmpty() || TouchShardStatusFile(commandLine.sShardStatusFile)) return true;
  COut::Write(L"Fehler: Die Statusdatei %s (TEST_SHARD_STATUS_FILE) konnte nicht angelegt werden.\n",
              commandLine.sShardStatusFile)
      .Color(ZoColorRGBA::c_RED);
  return false;
}

bool IsSharded(const SSetup& setup) { return setup.collectOptions.shard.uiCount > 1; }

}  // namespace TestSuite::CLI
