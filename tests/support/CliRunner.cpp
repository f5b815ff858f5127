// CliRunner: one run of the front end to its end, and its console text
// against golden files.
#include "CliRunner.h"

#include "GoldenFile.h"
#include "IsolationCli.h"
#include "WholeFile.h"

namespace CliTest {

std::string CliPath() { return std::string(ZO_BIN_DIR) + "/ZoTestSuiteCLI"; }

std::string ReadText(const std::string& path) { return TestSupport::ReadWholeFile(path); }

SCliResult RunCli(const std::vector<std::string>& arguments, const std::string& workingDirectory,
                  unsigned int timeoutSeconds, const std::vector<std::string>& environment) {
  CCliProcess process(CliPath(), arguments, workingDirectory, environment);
  return process.Finish(timeoutSeconds);
}

std::string Normalize(std::string text, const std::vector<std::pair<std::string, std::string>>& paths) {
  return TestSupport::NormalizeRunText(std::move(text), paths);
}

void ExpectGolden(const std::string& name, const std::string& actual) {
  TestSupport::ExpectGoldenFile("e2e/golden/" + name, actual);
}

}  // namespace CliTest
