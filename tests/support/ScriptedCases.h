// ScriptedCases: class directories for the scripted test classes of the
// library cli_ScriptedClasses (CliScripted, CliSecond, ...), which list the
// "*.case" files of their directory and do what the first word of each
// says ("pass", "fail", "leak 100", ...).
#pragma once

#include <initializer_list>
#include <utility>

#include "TempDirectory.h"

namespace TestSupport {

// Makes the directory `classDir` below `root` (with its parents) and writes
// into it one file for each of `cases`: its name and its script.
void WriteScriptedClass(const TempDirectory& root, const CString& classDir,
                        std::initializer_list<std::pair<const char*, const char*>> cases);

}  // namespace TestSupport
