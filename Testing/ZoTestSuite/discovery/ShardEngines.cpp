// ShardEngines: the table of CI engines and the reading of their variables.
#include "discovery/ShardEngines.h"

#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoStreamFile.h"
#include "foundation/platform/Files.h"

namespace TestSuite {
namespace {

struct SEngine {
  const wchar_t* sName;
  const char* sIndexVariable;
  const char* sTotalVariable;  // nullptr: the caller gives the count
  unsigned int uiFirstIndex;   // what the engine calls its first job
};

const SEngine c_engines[] = {
    {L"Bazel", "TEST_SHARD_INDEX", "TEST_TOTAL_SHARDS", 0},
    {L"GitLab", "CI_NODE_INDEX", "CI_NODE_TOTAL", 1},
    {L"CircleCI", "CIRCLE_NODE_INDEX", "CIRCLE_NODE_TOTAL", 0},
    {L"Buildkite", "BUILDKITE_PARALLEL_JOB", "BUILDKITE_PARALLEL_JOB_COUNT", 0},
    {L"Kubernetes", "JOB_COMPLETION_INDEX", nullptr, 0},
};

const char* const c_sPrefix = "--shard auto: ";

std::optional<std::string> valueOf(const FnGetVariable& getVariable, const char* name) {
  std::optional<std::string> value = getVariable(name);
  if (value && value->empty()) return std::nullopt;
  return value;
}

// A decimal number of at most nine digits, so that it fits.
std::optional<unsigned int> parseNumber(const std::string& text) {
  if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  return static_cast<unsigned int>(std::stoul(text));
}

SEngineShard failure(std::string text) {
  SEngineShard result;
  result.sError = c_sPrefix + std::move(text);
  return result;
}

SEngineShard fromNumbers(const SEngine& engine, const std::string& indexText, unsigned int uiCount,
                         const std::string& countSource) {
  const std::optional<unsigned int> index = parseNumber(indexText);
  if (!index) return failure(std::string(engine.sIndexVariable) + "='" + indexText + "' is no index");
  if (uiCount == 0) return failure(countSource + " gives no parts");
  const unsigned int uiFirst = engine.uiFirstIndex;
  if (*index < uiFirst || *index - uiFirst >= uiCount)
    return failure(std::string(engine.sIndexVariable) + "=" + indexText + " is outside " + std::to_string(uiFirst) +
                   " to " + std::to_string(uiFirst + uiCount - 1) + " (" + CString(engine.sName).ToUtf8() +
                   " counts from " + std::to_string(uiFirst) + ")");
  SEngineShard result;
  result.uiIndex = *index - uiFirst;
  result.uiCount = uiCount;
  result.sEngine = engine.sName;
  return result;
}

// The part from an engine whose index variable is set; nullopt when its
// total is not set, so that the pair does not count.
std::optional<SEngineShard> readEngine(const SEngine& engine, const std::string& index,
                                       const FnGetVariable& getVariable, std::optional<unsigned int> oShardCount) {
  if (!engine.sTotalVariable) {
    if (!oShardCount)
      return failure(std::string(engine.sIndexVariable) + " is set (" + CString(engine.sName).ToUtf8() +
                     "): --shard-count N must give the number of parts");
    return fromNumbers(engine, index, *oShardCount, "--shard-count 0");
  }
  const std::optional<std::string> total = valueOf(getVariable, engine.sTotalVariable);
  if (!total) return std::nullopt;
  const std::optional<unsigned int> count = parseNumber(*total);
  if (!count) return failure(std::string(engine.sTotalVariable) + "='" + *total + "' is no number of parts");
  if (oShardCount && *oShardCount != *count)
    return failure("--shard-count " + std::to_string(*oShardCount) + " disagrees with " + engine.sTotalVariable + "=" +
                   *total);
  return fromNumbers(engine, index, *count, std::string(engine.sTotalVariable) + "=" + *total);
}

}  // namespace

SEngineShard ReadEngineShard(const FnGetVariable& getVariable, std::optional<unsigned int> oShardCount) {
  for (const SEngine& engine : c_engines) {
    const std::optional<std::string> index = valueOf(getVariable, engine.sIndexVariable);
    if (!index) continue;
    std::optional<SEngineShard> result = readEngine(engine, *index, getVariable, oShardCount);
    if (!result) continue;
    if (result->sError.empty() && &engine == &c_engines[0])
      result->sStatusFile = CString::FromUtf8(valueOf(getVariable, "TEST_SHARD_STATUS_FILE").value_or(""));
    return *result;
  }
  return failure(
      "none of the CI engines' variables is set (TEST_SHARD_INDEX and TEST_TOTAL_SHARDS, CI_NODE_INDEX and "
      "CI_NODE_TOTAL, CIRCLE_NODE_INDEX and CIRCLE_NODE_TOTAL, BUILDKITE_PARALLEL_JOB and "
      "BUILDKITE_PARALLEL_JOB_COUNT, or JOB_COMPLETION_INDEX with --shard-count N)");
}

FnGetVariable GetProcessVariables() {
  return [](const char* name) { return ZoPlatform::Files::GetEnvironmentVariable(name); };
}

bool TouchShardStatusFile(const CString& path) {
  if (ZoFileSystem::Exists(path)) return true;
  try {
    ZoStreamWriteASCIIFile file(path);
    file.Close();
  } catch (const XbException&) { return false; }
  return ZoFileSystem::Exists(path);
}

}  // namespace TestSuite
