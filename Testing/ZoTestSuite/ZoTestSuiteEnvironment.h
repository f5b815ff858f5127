// CEnvironment: the per-process set-up of the test system. The front end
// makes one on its main thread before any entry function and keeps it to
// the end.
#pragma once

#include <memory>

#include "foundation/CString.h"
#include "foundation/XbArray.h"

namespace Wiring {
class CContainer;
}

namespace TestSuite {

class CEnvironment {
 public:
  // How a process warms up at its start.
  enum class EWarmUp {
    eFull,  // PreallocateStaticData
    // For a child that serves a parent's cases, started once per case in
    // isolated runs: only what keeps memory after its first use there. The
    // pool is made but starts its workers with its first task; there is no
    // thread, task or file round trip, and no text formatting, which the
    // front end's own start has already used.
    eCaseChild
  };

  // Registers the product, remembers the working directory, builds the
  // container, starts the message dispatcher and warms the process up.
  // Throws XbException when there is no container or no dispatcher.
  //
  // The configuration directory holds ZoTestSuite.wiring.xml,
  // ZoTestSuiteEnvironment.conf and the libraries that LoadDLL loads; empty,
  // the default, is the directory of the executable.
  explicit CEnvironment(const CString& configurationDirectory = CString(), EWarmUp warmUp = EWarmUp::eFull);
  ~CEnvironment();
  CEnvironment(const CEnvironment&) = delete;
  CEnvironment& operator=(const CEnvironment&) = delete;

  // Loads NAME.so from the configuration directory, or, for a name with a
  // '/', the library file at that path; a missing file is silent, a failed
  // load one warning.
  void LoadDLL(const CString& name, bool fromConfiguration);
  // Loads every library that the configuration directory's
  // ZoTestSuiteEnvironment.conf names.
  void LoadTestDLLs();
  // How many libraries LoadDLL has loaded so far.
  unsigned int GetLoadedLibraryCount() const { return uiLoadedLibraries; }
  // Makes the one-time allocations of the runtime layers happen now, outside
  // any heap measurement, by using each facility that tests use once: the
  // thread pool, a thread, a temporary file, the text services, the unique
  // ids, the timer. Runs once per process and once per case thread.
  //
  // On this platform a thread start and a file round trip keep no memory
  // (the pool's workers are threads already, and the file streams free all
  // they take); they stay for the threads of a run, where they cost once.
  static void PreallocateStaticData();
  void SetExecutableDirectoryAsWorkingDirectory();
  void RestoreWorkingDirectory();

  // Ends in '/'.
  const CString& GetConfigurationDirectory() const { return sConfigurationDirectory; }

 private:
  static void warmUpProcess(EWarmUp warmUp);

  CString sConfigurationDirectory;
  CString sInitialDirectory;
  unsigned int uiLoadedLibraries = 0;
  // Both the front end and the run load the same lists: a library that
  // failed is warned about once and not tried again; the list file is read
  // once.
  XbArray<CString> failedLibraries;
  bool bConfigurationRead = false;
  std::unique_ptr<Wiring::CContainer> container;
};

}  // namespace TestSuite
