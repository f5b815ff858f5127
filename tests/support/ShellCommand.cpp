// ShellCommand: quoting for /bin/sh and unique scratch file names.
#include "ShellCommand.h"

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"

namespace TestSupport {

std::string ShellQuote(const std::string& word) {
  std::string quoted(1, '\'');
  for (char c : word) {
    if (c == '\'') quoted.append("'\\''");
    else quoted.push_back(c);
  }
  quoted.push_back('\'');
  return quoted;
}

void AppendShellWord(std::string& command, const std::string& word) {
  command.push_back(' ');
  command.append(ShellQuote(word));
}

std::string ScratchFilePath(const std::string& prefix, const std::string& suffix) {
  return ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary).ToUtf8() + prefix +
         ZoUniqueIdT<CString>::GetUniqueID().ToUtf8() + suffix;
}

}  // namespace TestSupport
