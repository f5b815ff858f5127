// The front end's view of its console and of Ctrl-C.
#pragma once

namespace TestSuite::CLI {

// True when standard output is a terminal.
bool IsStandardOutputTerminal();
// Width of the terminal in columns, 80 when it cannot be told.
int GetTerminalWidth();

// Installs the Ctrl-C handler, which also takes SIGTERM and SIGHUP: the
// first signal raises the cancel flag, a second one kills the known children,
// removes the names the process made in /dev/shm and ends the process at
// once with status 130. SIGPIPE is ignored.
void InstallInterruptHandler();
bool IsInterrupted();

}  // namespace TestSuite::CLI
