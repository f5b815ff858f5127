// SChildProcess: a child process of external execution, the front end
// started in its child mode, with its running number; and the starters
// that a case context asks for one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/platform/Process.h"
#include "run/CaseExecution.h"

namespace TestSuite {

// Owns the process: whether or not it has ended, it is killed and reaped
// when the SChildProcess goes, so no process and no zombie outlives it.
// A stand-in for a child (in tests) derives from it and holds no process.
struct SChildProcess {
  ZoPlatform::Process::CChild process;
  unsigned int uiIndex = 0;  // the running number, shown as [P%d]

  SChildProcess(ZoPlatform::Process::CChild child, unsigned int index) : process(std::move(child)), uiIndex(index) {}
  virtual ~SChildProcess() { process.Kill(); }
  SChildProcess(const SChildProcess&) = delete;
  SChildProcess& operator=(const SChildProcess&) = delete;

  // True while the process has not ended.
  virtual bool IsAlive() { return process.IsRunning(); }
};

// The running number for the next child: a process-wide counter that
// starts at 0 and goes up by one with each child that started.
unsigned int TakeChildIndex();

// Starts the child of a case context. Called from the context's thread
// only, but one starter serves the contexts of all threads of a run.
class IChildStarter {
 public:
  virtual ~IChildStarter() = default;
  // A child for the context's block and events; null if it cannot be
  // started, and nothing is printed then.
  virtual std::unique_ptr<SChildProcess> Start(const CString& sDataDir, const SCaseContext& context) = 0;
};

// Starts the front end (ZoTestSuiteCLI, ZoTestSuiteCLID in a debug build)
// that stands in a directory, runs it there in a process group of its own
// and puts its streams on /dev/null. The directory is the one that holds the
// ZoTestSuiteEnvironment.conf naming the test libraries; empty means the
// directory of this process's executable.
class CFrontEndStarter : public IChildStarter {
 public:
  explicit CFrontEndStarter(const CString& directory = CString());

  std::unique_ptr<SChildProcess> Start(const CString& sDataDir, const SCaseContext& context) override;

  // The directory, with a trailing '/'.
  CString GetProgramDirectory() const;
  CString GetProgramPath() const;

 private:
  CString m_sDirectory;
};

// The front end beside this process's executable: the starter of a run
// unless it is given another.
IChildStarter& DefaultChildStarter();

// The child's argument vector after the program: "-d", the data directory
// without one trailing '/', "-x" and the three ids of the context, then
// "--dll" with each of the context's libraries, which the child loads
// beside those of its ZoTestSuiteEnvironment.conf. The run's other options
// are not passed: a case brings them in its block.
std::vector<std::string> ComposeChildArguments(const CString& sDataDir, const SCaseContext& context);

}  // namespace TestSuite
