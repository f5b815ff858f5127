// Library: loading and unloading shared libraries at run time, by UTF-8
// path. Nothing here throws.
//
// Loading a test library is what registers its test classes; unloading it
// removes them again.
#pragma once

#include <string>

namespace ZoPlatform::Library {

using Handle = void*;

// Loads the shared library at `path` with all its symbols bound at once and
// visible to libraries loaded later. Loading one library twice counts one
// more reference. Null on failure; GetLastError then tells why.
Handle Load(const std::string& path);
// Gives up one reference; the library leaves the process with its last one.
// False for a null handle or when the system refuses.
bool Unload(Handle handle);
// The system's text for the last failure of Load or Unload on this thread,
// without a line end; empty if there was none.
std::string GetLastError();

}  // namespace ZoPlatform::Library
