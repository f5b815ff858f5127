// select_DataTree: a data tree in a temporary directory for the tests of
// selection and the listing modes, with the test classes of the library
// discovery_TestClasses (DiscoveryListedCases and its further names Alpha,
// alpha, Beta, Zulu, "Größe Prüfung" ...), which list one subtest per line
// of "cases.txt" in their data directory.
#pragma once

#include <initializer_list>
#include <string>

#include "TempDirectory.h"
#include "foundation/CString.h"

// Loads the test library `name`.so from the build's binary directory for
// the whole process (never unloaded). Gives an error text, empty on success.
std::string LoadTestLibrary(const char* name);
// LoadTestLibrary of discovery_TestClasses, once.
std::string LoadSelectTestClasses();

class SelectDataTree {
 public:
  // The root, ending in '/'.
  const CString& Path() const { return m_dir.Path(); }
  // Makes the directory `relative` (with '/' inside) and gives its path,
  // ending in '/'.
  CString Dir(const CString& relative) const;
  // Makes a class directory whose subtests are `cases`, UTF-8, in order.
  CString Class(const CString& relative, std::initializer_list<const char*> cases) const;
  // Writes "#ExtraInfo.xml" into the directory `relative`.
  void ExtraInfo(const CString& relative, const std::string& xml) const;
  // Writes a file below the root and gives its path.
  CString File(const CString& relative, const std::string& bytes) const;

 private:
  TempDirectory m_dir;
};
