// The front end's work once its command line is parsed: output set-up, one
// environment, one entry function, and the exit status.
#pragma once

#include "CommandLine.h"

namespace TestSuite::CLI {

// Exit statuses.
inline constexpr int sc_iExitPassed = 0;  // every executed case passed (or none was found with --allow-empty)
inline constexpr int sc_iExitFailed = 1;  // a case failed, or the run was cancelled
inline constexpr int sc_iExitUsage = 2;   // a bad command line, or a data directory that cannot be read
// An exception left the library: a failure of the harness itself, a file
// system that refused an operation, a message that a tool mode throws past
// its own frame. The outermost handler prints it and exits with this.
inline constexpr int sc_iExitInternal = 3;
inline constexpr int sc_iExitNoCases = 5;  // the run found no case to execute

// Dispatches to the entry function of the mode. Exceptions of the library
// pass through; main() hands them to RunWithOutermostHandler.
int RunFrontEnd(SCommandLine& commandLine);

// `path` as an absolute, lexically normal path without a trailing '/'; as
// it stands if that cannot be worked out.
CString MakeAbsolutePath(const CString& path);

// Sets the global locale from the environment, falling back to C.UTF-8
// where that fails or is the plain C locale.
void SetGlobalLocale();

}  // namespace TestSuite::CLI
