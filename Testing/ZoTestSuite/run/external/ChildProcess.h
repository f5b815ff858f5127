// SChildProcess: a child process of external execution, the front end
// started in its child mode, with its running number; and StartChild,
// which starts one for a case context.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/platform/Process.h"
#include "run/CaseExecution.h"

namespace TestSuite {

// Owns the process: whether or not it has ended, it is killed and reaped
// when the SChildProcess goes, so no process and no zombie outlives it.
struct SChildProcess {
  ZoPlatform::Process::CChild process;
  unsigned int uiIndex = 0;  // the running number, shown as [P%d]

  SChildProcess(ZoPlatform::Process::CChild child, unsigned int index) : process(std::move(child)), uiIndex(index) {}
  ~SChildProcess() { process.Kill(); }
  SChildProcess(const SChildProcess&) = delete;
  SChildProcess& operator=(const SChildProcess&) = delete;

  // True while the process has not ended.
  bool IsAlive() { return process.IsRunning(); }
};

// The running number for the next child: a process-wide counter that
// starts at 0 and goes up by one with each child that started.
unsigned int TakeChildIndex();

// The directory from which children are started and in which they run: the
// one that holds the front end and the ZoTestSuiteEnvironment.conf that
// names the test libraries. Empty, the default, is the directory of this
// process's executable. A host program that does not stand beside the
// front end (a test program, for one) sets it before its runs begin.
void SetChildProgramDirectory(const CString& directory);
CString GetChildProgramDirectory();
// The front end in that directory: ZoTestSuiteCLI, ZoTestSuiteCLID in a
// debug build.
CString GetChildProgramPath();

// The child's argument vector after the program: "-d", the data directory
// without one trailing '/', "-x" and the three ids of the context. The
// run's other options are not passed: a case brings them in its block.
std::vector<std::string> ComposeChildArguments(const CString& sDataDir, const SCaseContext& context);

// Starts a child for the context's block and events, its streams on
// /dev/null. Null if it cannot be started; nothing is printed then.
std::unique_ptr<SChildProcess> StartChild(const CString& sDataDir, const SCaseContext& context);

}  // namespace TestSuite
