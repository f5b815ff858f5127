// IsolationCli: a run of a front end (the build's own or a private copy,
// see isolation_PrivateFrontEnd.h) in the background, with its output
// captured, so that a test can watch it and interrupt it like a user at the
// console.
#pragma once

#include <string>
#include <vector>

#include "CliRunner.h"
#include "foundation/platform/Process.h"

namespace CliTest {

class CCliProcess {
 public:
  // Starts `program` with `arguments` in `workingDirectory` (empty: this
  // process's); standard output and error go to files, standard input is
  // /dev/null. `environment` holds "NAME=value" entries for the child only.
  CCliProcess(const std::string& program, const std::vector<std::string>& arguments,
              const std::string& workingDirectory = "", const std::vector<std::string>& environment = {});
  // Kills the front end if it still runs and removes the files.
  ~CCliProcess();
  CCliProcess(const CCliProcess&) = delete;
  CCliProcess& operator=(const CCliProcess&) = delete;

  bool IsStarted() { return m_child.IsStarted(); }
  // The front end's process id, also after it has ended.
  unsigned int GetId() const { return m_uiId; }
  // What it has written to standard output so far.
  std::string Output() const;
  // Waits until the output holds `text`, at most `timeoutSeconds`.
  bool WaitForOutput(const std::string& text, unsigned int timeoutSeconds);
  // Sends SIGINT, as Ctrl-C at the console does, to the front end alone.
  bool Interrupt() { return SendSignal("INT"); }
  // Sends the signal of that name ("TERM", "HUP", …) to the front end alone.
  bool SendSignal(const std::string& name);
  // Waits for the end, killing the front end after `timeoutSeconds`.
  SCliResult Finish(unsigned int timeoutSeconds);

 private:
  ZoPlatform::Process::CChild m_child;
  unsigned int m_uiId = 0;
  std::string m_sOut;
  std::string m_sErr;
};

// One run to its end: the same as a CCliProcess that is only finished.
SCliResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      unsigned int timeoutSeconds = 60);

}  // namespace CliTest
