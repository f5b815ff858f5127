// The worker phase: a pool of threads executes the rows of the parallel
// list while the thread that called Run::Run supervises them and prints
// each row as it finishes.
#pragma once

#include "ZoTestSuite.h"
#include "run/ProgressOutput.h"

namespace TestSuite {

inline constexpr unsigned int sc_uiMaxWorkerThreads = 256;
inline constexpr unsigned int sc_uiSupervisionPeriodMs = 250;

// Number of threads for a requested count: at least 1, at most 256.
unsigned int ClampThreadCount(unsigned int requested);

void RunWorkerPhase(const SSetup& setup, const XbArray<SUnitTest>& classes, const SRunOptions& options,
                    const Run::SCallbacks& callbacks, const XbDateTime& date, const RowList& parallelCases);

}  // namespace TestSuite
