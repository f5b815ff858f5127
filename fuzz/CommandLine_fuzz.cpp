// CommandLine_fuzz: the front end's command-line parser on arbitrary
// arguments, one per line of the input. A usage error is the parser's answer
// to a bad command line; anything else that escapes it would end the front end.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = FuzzSupport::Bytes(data, size);
  std::vector<std::string> arguments{"ZoTestSuiteCLI"};
  for (std::size_t uiStart = 0; uiStart <= text.size();) {
    const std::size_t uiEnd = std::min(text.find('\n', uiStart), text.size());
    arguments.push_back(text.substr(uiStart, uiEnd - uiStart));
    uiStart = uiEnd + 1;
  }
  std::vector<const char*> argv;
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  try {
    TestSuite::CLI::ParseCommandLine(static_cast<int>(argv.size()), argv.data());
  } catch (const TestSuite::CLI::CUsageError&) {}
  return 0;
}
