// CaseOrder: the order in which a shuffled run executes its rows, drawn
// from a seed by a generator of its own, so that a seed gives the same
// order on every build and every machine.
#pragma once

#include <cstdint>
#include <vector>

#include "run/ProgressOutput.h"

namespace TestSuite {

// A permutation of 0 .. count - 1 drawn from `seed` (Fisher-Yates over
// SplitMix64, unbiased bounded draws).
std::vector<unsigned int> ShuffledOrder(unsigned int count, std::uint64_t seed);

// Puts `rows` into the order ShuffledOrder gives for their count.
void ShuffleRows(RowList& rows, std::uint64_t seed);

}  // namespace TestSuite
