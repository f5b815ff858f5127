// ZoTestSuiteCLI: the console front end of ZoTestSuite.
#include <cstdio>

#include "CommandLine.h"
#include "FrontEnd.h"
#include "OutermostHandler.h"

namespace {

int runMain(int argc, char** argv) {
  using namespace TestSuite::CLI;
  SCommandLine commandLine;
  try {
    commandLine = ParseCommandLine(argc, argv);
  } catch (const CUsageError& error) {
    std::fprintf(stderr, "ZoTestSuiteCLI: %s\nRun with --help for the options.\n", error.what());
    return sc_iExitUsage;
  }
  if (commandLine.eMode == EMode::Help) {
    std::fputs(commandLine.sHelpText.c_str(), stdout);
    return sc_iExitPassed;
  }
  if (commandLine.eMode == EMode::Version) {
    std::printf("%s\n", GetVersionText().c_str());
    return sc_iExitPassed;
  }
  return RunFrontEnd(commandLine);
}

}  // namespace

int main(int argc, char** argv) {
  TestSuite::CLI::SetGlobalLocale();
  return TestSuite::CLI::RunWithOutermostHandler([argc, argv] { return runMain(argc, argv); });
}
