// AllocationScript: the code under test of AllocationScriptTest, a little
// interpreter of scripts that allocate, resize and free named blocks of
// memory, to show what the heap tracker sees of a case.
//
// One command a line; blank lines and lines that begin with '#' are skipped:
//   new NAME BYTES      malloc a block and fill it
//   resize NAME BYTES   realloc the block
//   delete NAME         free the block
//   churn COUNT BYTES   malloc and free COUNT blocks, one after the other
//   keep NAME           let go of the block without freeing it: a leak, on
//                       purpose
// A script is correct when every command can be carried out and no block is
// left at its end that was neither deleted nor kept.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Showcase {

struct SScriptOutcome {
  bool bOk = false;
  std::string sError;               // the first problem, with its line; empty when bOk
  std::uint64_t uiAllocations = 0;  // malloc and realloc calls
  std::uint64_t uiPeakBytes = 0;    // most bytes held by the script's blocks at once
  std::uint64_t uiKeptBytes = 0;    // bytes let go of by "keep"
};

// Runs the script. Blocks left at the end are freed (and make it fail).
SScriptOutcome RunAllocationScript(std::string_view script);

}  // namespace Showcase
