// TempDirectory: a fresh, empty directory below the temporary directory for
// one test, removed with everything in it when the object goes.
#pragma once

#include <string>

#include "foundation/CString.h"

class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  // The directory, ending in '/'.
  const CString& Path() const { return m_sPath; }
  // `name` below the directory.
  CString operator/(const wchar_t* name) const { return m_sPath + name; }
  // Writes `bytes` as the file `name` (which may hold '/') below the directory.
  void WriteFile(const CString& name, const std::string& bytes = std::string()) const;
  // Makes the directory `name` below the directory, with its parents.
  void MakeDirectory(const CString& name) const;

  // Whole contents of a file as bytes; empty if it cannot be read.
  static std::string ReadBytes(const CString& path);
  static void WriteBytes(const CString& path, const std::string& bytes);

 private:
  CString m_sPath;
};
