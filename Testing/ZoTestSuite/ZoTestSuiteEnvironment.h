// CEnvironment: the per-process set-up of the test system. The front end
// makes one on its main thread before any entry function and keeps it to
// the end.
#pragma once

#include <memory>

#include "foundation/CString.h"

namespace Wiring {
class CContainer;
}

namespace TestSuite {

class CEnvironment {
 public:
  // Registers the product, remembers the working directory, builds the
  // container, starts the message dispatcher and warms the process up.
  // Throws XbException when there is no container or no dispatcher.
  CEnvironment();
  ~CEnvironment();
  CEnvironment(const CEnvironment&) = delete;
  CEnvironment& operator=(const CEnvironment&) = delete;

  // Loads NAME.so from the executable's directory; a missing file is
  // silent, a failed load one warning.
  void LoadDLL(const CString& name, bool fromConfiguration);
  // Loads every library that ZoTestSuiteEnvironment.conf names.
  void LoadTestDLLs();
  // How many libraries LoadDLL has loaded so far.
  unsigned int GetLoadedLibraryCount() const { return uiLoadedLibraries; }
  // Makes the one-time allocations of the runtime layers happen now, outside
  // any heap measurement. Runs once per process and once per case thread.
  static void PreallocateStaticData();
  void SetExecutableDirectoryAsWorkingDirectory();
  void RestoreWorkingDirectory();

 private:
  CString sInitialDirectory;
  unsigned int uiLoadedLibraries = 0;
  std::unique_ptr<Wiring::CContainer> container;
};

}  // namespace TestSuite
