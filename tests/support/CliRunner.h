// CliRunner: runs the real ZoTestSuiteCLI as a process and gives back its
// exit status and what it printed; plus the normalisation and the golden
// files of tests/e2e/golden that its console text is compared with.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace CliTest {

struct SCliResult {
  bool bSignaled = false;  // ended by a signal
  int iExitCode = -1;      // exit code, or the signal's number
  bool bTimedOut = false;
  std::string sStdout;
  std::string sStderr;
};

// The front end in the build's binary directory.
std::string CliPath();

// Runs the front end with `arguments` in `workingDirectory`, standard
// output and error captured, killed after `timeoutSeconds`. `environment`
// holds "NAME=value" entries set for the child only.
SCliResult RunCli(const std::vector<std::string>& arguments, const std::string& workingDirectory = "",
                  unsigned int timeoutSeconds = 120, const std::vector<std::string>& environment = {});

// The console text without what changes from run to run, each of `paths`
// replaced by its name ("<DATA>"); see TestSupport::NormalizeRunText.
std::string Normalize(std::string text, const std::vector<std::pair<std::string, std::string>>& paths = {});

// Compares `actual` with tests/e2e/golden/<name>; ZO_UPDATE_GOLDEN=1 in the
// environment rewrites the file instead.
void ExpectGolden(const std::string& name, const std::string& actual);

// Reads a whole file; empty if it cannot be read.
std::string ReadText(const std::string& path);

}  // namespace CliTest
