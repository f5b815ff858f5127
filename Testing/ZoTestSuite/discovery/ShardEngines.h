// ShardEngines: the part of a sharded run as the CI engine that started it
// says, read from the variables that Bazel, GitLab, CircleCI, Buildkite and
// Kubernetes set for each of the parallel jobs of one test step.
//
// The first pair that is set wins, in this order:
//   Bazel       TEST_SHARD_INDEX (from 0)        TEST_TOTAL_SHARDS
//   GitLab      CI_NODE_INDEX (from 1)           CI_NODE_TOTAL
//   CircleCI    CIRCLE_NODE_INDEX (from 0)       CIRCLE_NODE_TOTAL
//   Buildkite   BUILDKITE_PARALLEL_JOB (from 0)  BUILDKITE_PARALLEL_JOB_COUNT
//   Kubernetes  JOB_COMPLETION_INDEX (from 0)    the count given by the caller
// A variable that is empty counts as unset. Bazel also asks that the file
// named by TEST_SHARD_STATUS_FILE exists when the runner shards.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/CString.h"

namespace TestSuite {

// The value of an environment variable; nullopt when it is unset.
using FnGetVariable = std::function<std::optional<std::string>(const char* name)>;

struct SEngineShard {
  unsigned int uiIndex = 0;  // counted from 0
  unsigned int uiCount = 1;
  CString sEngine;      // "Bazel", "GitLab", "CircleCI", "Buildkite" or "Kubernetes"
  CString sStatusFile;  // Bazel's TEST_SHARD_STATUS_FILE, when set
  // Not empty when the variables give no part: then it says why, in the
  // words of the front end's usage messages, naming the variables.
  std::string sError;
};

// Reads the part from `getVariable`. `oShardCount` is the number of parts
// for an engine that gives only the index (Kubernetes); an engine that gives
// its own total must agree with it. An index outside the parts, a total of
// 0 or a value that is no decimal number is an error, and so is finding no
// pair at all.
SEngineShard ReadEngineShard(const FnGetVariable& getVariable, std::optional<unsigned int> oShardCount);

// The variables of this process.
FnGetVariable GetProcessVariables();

// Makes sure that the file `path` exists (an existing one is left as it
// is), as Bazel's sharding protocol asks; false if it cannot be made.
bool TouchShardStatusFile(const CString& path);

}  // namespace TestSuite
