// The run driver's stages, shared by Run::Run, the child side of external
// execution and the tests.
#pragma once

#include "ZoTestSuite.h"
#include "run/ProgressOutput.h"

namespace TestSuite {

// Loads the libraries, sets the assertion dialog and moves to the
// executable's directory.
void PrepareProcess(const SSetup& setup, CEnvironment& env);
// Builds one row per case and repetition, sorts the rows into the worker
// pool and the sequential loop, and gets every row executed.
void ScheduleCases(const SSetup& setup, const XbArray<SUnitTest>& classes, const SRunOptions& options,
                   const Run::SCallbacks& callbacks, const XbDateTime& date, Run::SResult& result);
void RunSequentialPhase(const SSetup& setup, const XbArray<SUnitTest>& classes, const SRunOptions& options,
                        const Run::SCallbacks& callbacks, const XbDateTime& date, const RowList& rows);
// Cancelled rows count nowhere.
void ComputeStatistics(const XbArray<SCaseResult>& cases, unsigned int classCount, SRunStatistics& statistics);

}  // namespace TestSuite
