// The run driver's stages, shared by Run::Run, the child side of external
// execution and the tests.
#pragma once

#include "ZoTestSuite.h"
#include "run/ProgressOutput.h"
#include "run/RunContext.h"

namespace TestSuite {

// Loads the libraries, sets the assertion dialog and moves to the
// executable's directory.
void PrepareProcess(const SSetup& setup, CEnvironment& env);
// Builds one row per case and repetition, sorts the rows into the worker
// pool and the sequential loop, and gets every row executed.
void ScheduleCases(const SRunContext& run, Run::SResult& result);
void RunSequentialPhase(const SRunContext& run, const RowList& rows);
// Run::Run with its time taken on `clock` and its children started by
// `childStarter`.
Run::SResult RunTests(const SSetup& setup, CEnvironment& env, IRunClock& clock, IChildStarter& childStarter);
// Cancelled rows count nowhere.
void ComputeStatistics(const XbArray<SCaseResult>& cases, unsigned int classCount, SRunStatistics& statistics);

}  // namespace TestSuite
