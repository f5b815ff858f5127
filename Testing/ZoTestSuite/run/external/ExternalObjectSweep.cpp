// The sweep of shared blocks and events whose creator has ended.
#include "run/external/ExternalObjectSweep.h"

#include <cstring>
#include <string>

#include "foundation/ZoUniqueId.h"
#include "foundation/platform/NamedSemaphore.h"
#include "foundation/platform/Process.h"
#include "foundation/platform/SharedMemory.h"
#include "run/external/ExternalObjectName.h"

namespace TestSuite {

namespace {

// A name's creator has ended if the id behind the prefix names a process
// that no longer exists; a name that names none is not this system's.
bool isStale(const std::string& name) {
  const std::size_t prefix = std::strlen(sc_szExternalObjectPrefix);
  const std::uint32_t creator = GetUniqueIdProcessId(CString::FromUtf8(name.substr(prefix)));
  return creator != 0 && !ZoPlatform::Process::Exists(creator);
}

}  // namespace

unsigned int RemoveStaleExternalObjects() {
  unsigned int removed = 0;
  for (const std::string& name : ZoPlatform::SharedMemory::ListNames(sc_szExternalObjectPrefix))
    if (isStale(name) && ZoPlatform::SharedMemory::Remove(name)) ++removed;
  for (const std::string& name : ZoPlatform::NamedSemaphore::ListNames(sc_szExternalObjectPrefix))
    if (isStale(name) && ZoPlatform::NamedSemaphore::Remove(name)) ++removed;
  return removed;
}

}  // namespace TestSuite
