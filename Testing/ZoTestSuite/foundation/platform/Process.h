// Process: a child process started from an argument vector, which can be
// waited for with a limit, killed and reaped.
//
// A CChild owns its process: whatever happens, the process is reaped before
// the CChild goes, killed first if it is still running, so no zombie
// outlives its owner. Texts are UTF-8. Nothing here throws.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZoPlatform::Process {

// Where the child's standard input, output and error go.
enum class EStandardStreams {
  eInherit,  // the parent's three streams
  eNull,     // all three on /dev/null
};

struct SSpawnRequest {
  // The argument vector; the first word names the program. A name without
  // '/' is searched for in PATH. A relative name with '/' is taken from the
  // parent's working directory, not from the child's.
  std::vector<std::string> arguments;
  // The child's working directory; empty keeps the parent's.
  std::string sWorkingDirectory;
  EStandardStreams eStreams = EStandardStreams::eInherit;
  // The child leads a process group of its own: a signal to the parent's
  // group (a terminal's Ctrl-C, a kill(0, …) of a sibling) does not reach
  // it, and killing it kills all that it started and left in its group.
  bool bOwnProcessGroup = false;
};

// How a reaped child ended.
struct SExitStatus {
  bool bSignaled = false;  // ended by a signal rather than by exiting
  int iCode = 0;           // the exit code, or the number of the signal
};

class CChild {
 public:
  CChild() = default;
  // Kills and reaps a child that is still running.
  ~CChild();
  CChild(CChild&& other) noexcept;
  CChild& operator=(CChild&& other) noexcept;
  CChild(const CChild&) = delete;
  CChild& operator=(const CChild&) = delete;

  // Starts the child. False if it could not be started: program missing
  // or not executable, working directory missing, no words, or already
  // started; `error`, if given, receives the errno value then.
  bool Start(const SSpawnRequest& request, int* error = nullptr);

  // True while the child has been started and not yet reaped and is still
  // running; a child found to have ended is reaped here.
  bool IsRunning();
  // Waits until the child ends, at most `milliseconds` (0 only looks).
  // True if the child has ended (and is reaped), false on time-out or if
  // nothing was started.
  bool WaitFor(std::uint32_t milliseconds);
  // Sends SIGKILL to a running child (to its whole group, where it leads
  // one) and reaps it. Does nothing if nothing runs. A child that leads a
  // group and is found to have ended takes its group with it as well.
  void Kill();
  // Sends SIGKILL as Kill does and returns without waiting for the end;
  // Kill, WaitFor, IsRunning or the destructor reaps the child later. Lets
  // the kernel tear a finished child down while the caller goes on.
  void SendKill();

  bool IsStarted() const { return m_iPid > 0 || m_bReaped; }
  bool IsReaped() const { return m_bReaped; }
  // Meaningful once IsReaped.
  SExitStatus GetExitStatus() const { return m_exitStatus; }
  // The process id while the child is not reaped; 0 otherwise.
  int GetId() const { return m_iPid; }

 private:
  bool hasEnded(bool block);
  bool tryReap(bool block);
  void release();

  int m_iPid = 0;
  int m_iPidFd = -1;  // -1 where pidfd_open is not available
  bool m_bGroup = false;
  bool m_bReaped = false;
  SExitStatus m_exitStatus;
};

// True while a process of that id exists (a zombie counts).
bool Exists(std::uint32_t pid);

// Asks the kernel to kill this process when the thread that started it
// ends. False if this process's parent is no longer `expectedParent`: it
// died before the request, which then comes too late.
bool EndWithParent(std::uint32_t expectedParent);

// Kills and reaps every child of this process that no CChild owns (a
// process that a case forked in process, say), and gives their number.
unsigned int KillStrayChildren();

}  // namespace ZoPlatform::Process
