// ZoDebugSerializationGeneric: where test code writes its debug output. A
// process-wide default directory, and a per-thread directory that the case
// runner sets for each case so that parallel cases never mix their files.
#pragma once

#include "CString.h"

class ZoDebugSerializationGeneric {
 public:
  static void SetDefaultOutputDirectory(const CString& directory);
  static CString GetDefaultOutputDirectory();
  static void SetThreadLocalOutputDirectory(const CString& directory);
  // The calling thread's directory, or the default where none was set.
  static CString GetOutputDirectory();
};
