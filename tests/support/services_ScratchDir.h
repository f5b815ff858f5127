// services_ScratchDir: a fresh, empty directory below the temporary
// directory, removed with all it holds when the test is done.
#pragma once

#include <string>

#include "foundation/CString.h"

class ServicesScratchDir {
 public:
  ServicesScratchDir();
  ~ServicesScratchDir();
  ServicesScratchDir(const ServicesScratchDir&) = delete;
  ServicesScratchDir& operator=(const ServicesScratchDir&) = delete;

  // The directory, ending in '/'.
  const CString& Path() const { return m_sPath; }
  // `name` below the directory.
  CString operator/(const wchar_t* name) const { return m_sPath + name; }

  // Whole contents of a file as bytes; empty if it cannot be read.
  static std::string ReadBytes(const CString& path);
  static void WriteBytes(const CString& path, const std::string& bytes);

 private:
  CString m_sPath;
};
