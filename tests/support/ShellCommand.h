// ShellCommand: the pieces of a /bin/sh command line that tests build for
// the processes they start, and the names of the scratch files those
// processes write to.
#pragma once

#include <string>

namespace TestSupport {

// `word` in single quotes, so that the shell takes it as one word, as is.
std::string ShellQuote(const std::string& word);

// Appends a blank and `word`, quoted, to `command`.
void AppendShellWord(std::string& command, const std::string& word);

// A path in the temporary directory that no other test uses: `prefix`, a
// unique id, `suffix`. Nothing is created; whoever writes the file removes it.
std::string ScratchFilePath(const std::string& prefix, const std::string& suffix);

}  // namespace TestSupport
