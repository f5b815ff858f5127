// Facts of Utils about the build and the machine.
#include <thread>

#include "services/Utils.h"

namespace TestSuite::Utils {

CString GetBuildConfiguration() {
#ifdef NDEBUG
  return CString(L"Release x64");
#else
  return CString(L"Debug x64");
#endif
}

unsigned int GetDefaultThreadCount() {
  const unsigned int count = std::thread::hardware_concurrency();
  return count == 0 ? 1 : count;
}

}  // namespace TestSuite::Utils
