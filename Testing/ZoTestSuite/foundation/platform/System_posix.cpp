// Process and machine facts of the platform on Linux.
#include <unistd.h>

#include <csignal>

#include "System.h"

namespace ZoPlatform::System {

std::uint32_t GetProcessId() { return static_cast<std::uint32_t>(::getpid()); }

void RaiseTrap() { std::raise(SIGTRAP); }

std::string GetHostName() {
  char name[256] = {};
  if (::gethostname(name, sizeof name - 1) != 0) return std::string();
  return name;
}

}  // namespace ZoPlatform::System
