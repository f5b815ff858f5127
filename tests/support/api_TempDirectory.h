// api_TempDirectory: a fresh directory below the temporary directory for the
// tests of the test-author API, removed with all it holds at the end.
#pragma once

#include <string>

#include "foundation/CString.h"

class ApiTempDirectory {
 public:
  ApiTempDirectory();
  ~ApiTempDirectory();
  ApiTempDirectory(const ApiTempDirectory&) = delete;
  ApiTempDirectory& operator=(const ApiTempDirectory&) = delete;

  // The directory, ending in '/'.
  const CString& Path() const { return m_sPath; }
  // Writes `bytes` as the file `name` in the directory.
  void WriteFile(const CString& name, const std::string& bytes = std::string()) const;
  // Makes the directory `name` in the directory.
  void MakeDirectory(const CString& name) const;

 private:
  CString m_sPath;
};
