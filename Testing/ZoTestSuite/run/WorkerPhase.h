// The worker phase: a pool of threads executes the rows of the parallel
// list while the thread that called Run::Run supervises them and prints
// each row as it finishes.
#pragma once

#include "ZoTestSuite.h"
#include "run/ProgressOutput.h"
#include "run/RunContext.h"

namespace TestSuite {

inline constexpr unsigned int sc_uiMaxWorkerThreads = 256;
inline constexpr unsigned int sc_uiSupervisionPeriodMs = 250;

// Number of threads for a requested count: at least 1, at most 256.
unsigned int ClampThreadCount(unsigned int requested);

// The supervisor sleeps on the run's clock between its looks at the
// finished rows.
void RunWorkerPhase(const SRunContext& run, const RowList& parallelCases);

}  // namespace TestSuite
