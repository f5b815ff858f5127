// Library: shared libraries through the dynamic loader.
#include <dlfcn.h>

#include "Library.h"

namespace ZoPlatform::Library {
namespace {

// dlerror() forgets its text once read; it is kept here for GetLastError.
thread_local std::string t_sLastError;

void keepError() {
  const char* text = dlerror();
  t_sLastError = text ? text : "";
}

}  // namespace

Handle Load(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
  if (!handle) keepError();
  return handle;
}

bool Unload(Handle handle) {
  if (!handle) return false;
  if (dlclose(handle) == 0) return true;
  keepError();
  return false;
}

std::string GetLastError() { return t_sLastError; }

}  // namespace ZoPlatform::Library
