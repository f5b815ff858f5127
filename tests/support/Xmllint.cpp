// Xmllint: XML files checked by xmllint.
#include "Xmllint.h"

#include <cstdio>
#include <cstdlib>

#include "ShellCommand.h"
#include "WholeFile.h"

namespace TestSupport {

int RunXmllint(const std::string& arguments, std::string& messages) {
  const std::string log = ScratchFilePath("zo-xmllint-", ".log");
  const int status = std::system(("xmllint --noout " + arguments + " >" + ShellQuote(log) + " 2>&1").c_str());
  messages = ReadWholeFile(log);
  std::remove(log.c_str());
  return status;
}

int CheckWellFormed(const std::string& path, std::string& messages) { return RunXmllint(ShellQuote(path), messages); }

int ValidateJUnitFile(const std::string& path, std::string& messages) {
  const std::string schema = std::string(ZO_SOURCE_DIR) + "/tests/report/data/junit-10.xsd";
  return RunXmllint("--schema " + ShellQuote(schema) + " " + ShellQuote(path), messages);
}

}  // namespace TestSupport
