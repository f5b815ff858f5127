// isolation_ProcessCalls on Linux: fork and kill.
#include <signal.h>
#include <unistd.h>

#include "isolation_ProcessCalls.h"

namespace IsolationProcessCalls {

void LeaveSleepingProcess(unsigned int seconds) {
  // The copy only sleeps and leaves: nothing that is unsafe after a fork
  // of a process with threads.
  if (::fork() == 0) {
    ::sleep(seconds);
    ::_exit(0);
  }
}

void TerminateOwnProcessGroup() { ::kill(0, SIGTERM); }

}  // namespace IsolationProcessCalls
