// External execution: cases run in a child process of the front end, handed
// over through a work block in shared memory and two named events.
//
// The protocol: the parent writes the block with no one else looking and
// sets the request event; the child owns the block until it sets the
// response event; then the parent reads. If the child dies or is killed,
// only the parent touches the block again.
#pragma once

#include "run/CaseExecution.h"

namespace TestSuite {

// How long the child waits for the next request before it ends: its only
// means of noticing a parent that has gone.
inline constexpr unsigned int sc_uiChildIdleMs = 5000;
// How often the parent looks at the time limit, the cancel query and the
// child while a case runs.
inline constexpr unsigned int sc_uiChildPollMs = 1000;

// Makes the child process (through the context's starter), the shared
// block and the events of the context as far as they are missing, and
// gives the shared block. With bIsolated everything of the case before is
// thrown away first, its child killed.
IWorkBuffer& AcquireSharedWorkBuffer(const CString& sDataDir, const SRunOptions& options, SCaseContext& context);

// Hands the case in the shared block to the child and waits for its answer,
// with the time limit (result 8) and the cancel query (result 7), both
// looked at once a second on the context's clock, so a case can outrun its
// limit by up to a second. A child that ended or died before it took the
// request is replaced and the case handed to the new one (twice at most); a
// child that dies while it works leaves eCaseUnknown with no output and no
// figures. Without a child the row keeps eCaseUnknown and process index -1.
void RunCaseInChild(SCaseContext& context, unsigned int uiTimeOutSec, const Run::SCallbacks& callbacks,
                    SCaseResult& row);

// The child's side: serves the cases that the parent hands over until no
// request comes for five seconds on `clock`. Run::RunExternalExecution is
// this on the system's clock.
void ServeExternalCases(const SSetup& setup, CEnvironment& env, IRunClock& clock);

}  // namespace TestSuite
