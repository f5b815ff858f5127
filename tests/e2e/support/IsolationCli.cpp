#include "IsolationCli.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"

namespace CliTest {

namespace Process = ZoPlatform::Process;

namespace {

std::string quoted(const std::string& word) {
  std::string text(1, '\'');
  for (char c : word) {
    if (c == '\'') text.append("'\\''");
    else text.push_back(c);
  }
  text.push_back('\'');
  return text;
}

void appendWord(std::string& command, const std::string& word) {
  command.push_back(' ');
  command.append(quoted(word));
}

std::string scratchFile(const char* suffix) {
  return ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary).ToUtf8() + "zo-isolation-cli-" +
         ZoUniqueIdT<CString>::GetUniqueID().ToUtf8() + suffix;
}

}  // namespace

CCliProcess::CCliProcess(const std::string& program, const std::vector<std::string>& arguments)
    : m_sOut(scratchFile(".out")), m_sErr(scratchFile(".err")) {
  // The shell only redirects and then becomes the front end (exec), so the
  // child's id is the front end's.
  std::string command("exec");
  appendWord(command, program);
  for (const std::string& argument : arguments) appendWord(command, argument);
  command.append(" </dev/null >");
  command.append(quoted(m_sOut));
  command.append(" 2>");
  command.append(quoted(m_sErr));
  if (m_child.Start({{"/bin/sh", "-c", command}, "", Process::EStandardStreams::eInherit}))
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
