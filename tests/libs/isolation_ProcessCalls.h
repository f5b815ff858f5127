// isolation_ProcessCalls: the process calls that the isolation classes make
// on purpose to test what the runner does about them.
#pragma once

namespace IsolationProcessCalls {

// Forks a copy of this process that sleeps for `seconds` and then ends: a
// grandchild that the case leaves behind.
void LeaveSleepingProcess(unsigned int seconds);
// Sends SIGTERM to the whole process group of this process.
void TerminateOwnProcessGroup();

}  // namespace IsolationProcessCalls
