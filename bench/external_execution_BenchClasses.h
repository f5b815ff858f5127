// external_execution_BenchClasses: the test classes of the external
// execution benchmark (a trivial one and a CPU-bound one), and when their
// cases ran in this process.
#pragma once

#include <cstdint>

namespace BenchClasses {

// Steady-clock nanoseconds of the first start and the last end of a case
// in this process since the last Reset.
std::int64_t FirstStart();
std::int64_t LastEnd();
void Reset();

// Arithmetic that takes time in proportion to `iterations` and cannot be
// left out by the compiler; returns its result.
std::uint64_t Work(std::uint64_t iterations);
// How many iterations of Work each case of BenchBusy does in this process.
void SetBusyIterations(std::uint64_t iterations);

}  // namespace BenchClasses
