#include "CliRunner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/Process.h"

namespace CliTest {

namespace {

std::string shellQuote(const std::string& word) {
  std::string quoted(1, '\'');
  for (char c : word) {
    if (c == '\'') quoted.append("'\\''");
    else quoted.push_back(c);
  }
  quoted.push_back('\'');
  return quoted;
}

void appendWord(std::string& command, const std::string& word) {
  command.push_back(' ');
  command.append(shellQuote(word));
}

std::string scratchFile(const char* suffix) {
  return ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary).ToUtf8() + "zo-cli-" +
         ZoUniqueIdT<CString>::GetUniqueID().ToUtf8() + suffix;
}

}  // namespace

std::string CliPath() { return std::string(ZO_BIN_DIR) + "/ZoTestSuiteCLI"; }

std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

SCliResult RunCli(const std::vector<std::string>& arguments, const std::string& workingDirectory,
                  unsigned int timeoutSeconds, const std::vector<std::string>& environment) {
  const std::string out = scratchFile(".out"), err = scratchFile(".err");
  std::string command = "exec env";
  for (const auto& entry : environment) appendWord(command, entry);
  appendWord(command, CliPath());
  for (const auto& argument : arguments) appendWord(command, argument);
  command.append(" </dev/null >");
  command.append(shellQuote(out));
  command.append(" 2>");
  command.append(shellQuote(err));
  ZoPlatform::Process::CChild child;
  SCliResult result;
  if (!child.Start({{"/bin/sh", "-c", command}, workingDirectory, ZoPlatform::Process::EStandardStreams::eInherit}))
    return result;
  if (!child.WaitFor(timeoutSeconds * 1000)) {
    result.bTimedOut = true;
    child.Kill();
  }
  result.bSignaled = child.GetExitStatus().bSignaled;
  result.iExitCode = child.GetExitStatus().iCode;
  result.sStdout = ReadText(out);
  result.sStderr = ReadText(err);
  std::remove(out.c_str());
  std::remove(err.c_str());
  return result;
}

std::string Normalize(std::string text, const std::vector<std::pair<std::string, std::string>>& paths) {
  for (const auto& [path, name] : paths) {
    for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path, at + name.size()))
      text.replace(at, path.size(), name);
  }
  static const std::regex time(R"(\[(-?[0-9]+\.[0-9]+(ns|µs|ms|s)|0 s)\])");
  text = std::regex_replace(text, time, "[TIME]");
  static const std::regex runTime("(\tLaufzeit:\t\t)[^\n]*");
  return std::regex_replace(text, runTime, "$1TIME");
}

void ExpectGolden(const std::string& name, const std::string& actual) {
  const std::string path = std::string(ZO_SOURCE_DIR) + "/tests/e2e/golden/" + name;
  const char* update = std::getenv("ZO_UPDATE_GOLDEN");
  if (update && std::string(update) == "1") {
    std::ofstream(path, std::ios::binary) << actual;
    return;
  }
  EXPECT_EQ(actual, ReadText(path)) << "golden file " << path
                                    << " differs (ZO_UPDATE_GOLDEN=1 rewrites it; review the diff)";
}

}  // namespace CliTest
