// ZoDebugSerializationGeneric: the per-thread directory where test code writes its debug output.
#include "ZoDebugSerializationGeneric.h"

#include "XbCriticalSection.h"

namespace {

XbCriticalSection& defaultLock() {
  static XbCriticalSection lock;
  return lock;
}

CString& defaultDirectory() {
  static CString directory;
  return directory;
}

thread_local CString t_threadDirectory;

}  // namespace

void ZoDebugSerializationGeneric::SetDefaultOutputDirectory(const CString& directory) {
  XbScopedLock lock(defaultLock());
  defaultDirectory() = directory;
}

CString ZoDebugSerializationGeneric::GetDefaultOutputDirectory() {
  XbScopedLock lock(defaultLock());
  return defaultDirectory();
}

void ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(const CString& directory) {
  t_threadDirectory = directory;
}

CString ZoDebugSerializationGeneric::GetOutputDirectory() {
  if (!t_threadDirectory.IsEmpty()) return t_threadDirectory;
  return GetDefaultOutputDirectory();
}
