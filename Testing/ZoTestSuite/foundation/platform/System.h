// System: facts about the running process and the machine, and the
// breakpoint trap.
#pragma once

#include <cstdint>
#include <string>

namespace ZoPlatform::System {

// The operating system's id of this process.
std::uint32_t GetProcessId();
// Raises SIGTRAP in this process: a debugger stops here; without one the
// process ends.
void RaiseTrap();
// The machine's network name; empty if it cannot be read.
std::string GetHostName();

}  // namespace ZoPlatform::System
