// External execution: cases run in a child process of the front end, handed
// over through a work block in shared memory and two named events.
#pragma once

#include "CaseExecution.h"

namespace TestSuite {

// Makes the child process, the shared block and the events of the context
// as far as they are missing, and gives the shared block.
IWorkBuffer& AcquireSharedWorkBuffer(const CString& sDataDir, const SRunOptions& options, SCaseContext& context);

// Hands the case in the shared block to the child and waits for its answer,
// with the time limit and the cancel query.
void RunCaseInChild(SCaseContext& context, unsigned int uiTimeOutSec, const Run::SCallbacks& callbacks,
                    SCaseResult& row);

}  // namespace TestSuite
