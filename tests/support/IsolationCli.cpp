// IsolationCli: a front end run in the background and watched.
#include "IsolationCli.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include "ShellCommand.h"

namespace CliTest {

namespace Process = ZoPlatform::Process;

CCliProcess::CCliProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& workingDirectory, const std::vector<std::string>& environment)
    : m_sOut(TestSupport::ScratchFilePath("zo-cli-", ".out")), m_sErr(TestSupport::ScratchFilePath("zo-cli-", ".err")) {
  // The shell only redirects and then becomes the front end (exec, and env
  // execs too), so the child's id is the front end's.
  std::string command("exec");
  if (!environment.empty()) command.append(" env");
  for (const std::string& entry : environment) TestSupport::AppendShellWord(command, entry);
  TestSupport::AppendShellWord(command, program);
  for (const std::string& argument : arguments) TestSupport::AppendShellWord(command, argument);
  command.append(" </dev/null >");
  command.append(TestSupport::ShellQuote(m_sOut));
  command.append(" 2>");
  command.append(TestSupport::ShellQuote(m_sErr));
  if (m_child.Start({{"/bin/sh", "-c", command}, workingDirectory, Process::EStandardStreams::eInherit}))
    m_uiId = static_cast<unsigned int>(m_child.GetId());
}

CCliProcess::~CCliProcess() {
  m_child.Kill();
  std::remove(m_sOut.c_str());
  std::remove(m_sErr.c_str());
}

std::string CCliProcess::Output() const { return ReadText(m_sOut); }

bool CCliProcess::WaitForOutput(const std::string& text, unsigned int timeoutSeconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds);
  while (Output().find(text) == std::string::npos) {
    if (std::chrono::steady_clock::now() > end || !m_child.IsRunning()) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

bool CCliProcess::SendSignal(const std::string& name) {
  if (!m_child.IsRunning()) return false;
  Process::CChild kill;
  std::string command("kill -" + name + " ");
  command.append(std::to_string(m_uiId));
  if (!kill.Start({{"/bin/sh", "-c", command}, "", Process::EStandardStreams::eNull})) return false;
  return kill.WaitFor(10000) && kill.GetExitStatus().iCode == 0 && !kill.GetExitStatus().bSignaled;
}

SCliResult CCliProcess::Finish(unsigned int timeoutSeconds) {
  SCliResult result;
  if (!m_child.IsStarted()) return result;
  if (!m_child.WaitFor(timeoutSeconds * 1000)) {
    result.bTimedOut = true;
    m_child.Kill();
  }
  result.bSignaled = m_child.GetExitStatus().bSignaled;
  result.iExitCode = m_child.GetExitStatus().iCode;
  result.sStdout = ReadText(m_sOut);
  result.sStderr = ReadText(m_sErr);
  return result;
}

SCliResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      unsigned int timeoutSeconds) {
  CCliProcess process(program, arguments);
  return process.Finish(timeoutSeconds);
}

}  // namespace CliTest
