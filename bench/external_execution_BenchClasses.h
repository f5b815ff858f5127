// external_execution_BenchClasses: the trivial test class of the external
// execution benchmark, and when its cases ran in this process.
#pragma once

#include <cstdint>

namespace BenchClasses {

// Steady-clock nanoseconds of the first start and the last end of a case
// in this process since the last Reset.
std::int64_t FirstStart();
std::int64_t LastEnd();
void Reset();

}  // namespace BenchClasses
