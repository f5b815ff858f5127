// isolation_PrivateFrontEnd: a private copy of the front end in a temporary
// directory, with the test libraries it is to load and the
// ZoTestSuiteEnvironment.conf that names them. Child processes are started
// from the front end's own directory and load only what that file names, so
// this is how a test gets its classes into child processes without
// touching the build's own directory. Plus the looks at the machine that
// tell whether a run left anything behind.
#pragma once

#include <string>
#include <vector>

class CPrivateFrontEnd {
 public:
  // Links (or copies) the front end, its two libraries and `libraries`
  // (names without ".so") from the build's binary directory.
  explicit CPrivateFrontEnd(const std::vector<std::string>& libraries);
  // Removes the directory.
  ~CPrivateFrontEnd();
  CPrivateFrontEnd(const CPrivateFrontEnd&) = delete;
  CPrivateFrontEnd& operator=(const CPrivateFrontEnd&) = delete;

  // The directory, ending in '/'.
  const std::string& Directory() const { return m_sDirectory; }
  // The front end in it.
  std::string Program() const;

 private:
  std::string m_sDirectory;
};

// Ids of the live processes whose program lies in `directory`.
std::vector<int> ProcessesRunningFrom(const std::string& directory);

// The shared memory blocks and semaphores of external execution that
// process `pid` made and that still exist.
std::vector<std::string> ExternalObjectsOfProcess(unsigned int pid);
