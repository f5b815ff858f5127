// FuzzInput: the bytes of one fuzz input as a file, for the readers that take
// a path.
//
// Every input of a process goes to the same name in one scratch directory of
// that process, which is removed when the process ends normally.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "TempDirectory.h"
#include "foundation/CString.h"

namespace FuzzSupport {

// The scratch directory of this process, ending in '/'.
inline const CString& ScratchDirectory() {
  static const TempDirectory s_directory;
  return s_directory.Path();
}

inline std::string Bytes(const std::uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

// Writes the input as the file `name` of the scratch directory; gives its path.
inline CString WriteInput(const wchar_t* name, const std::uint8_t* data, std::size_t size) {
  const CString path = ScratchDirectory() + name;
  TempDirectory::WriteBytes(path, Bytes(data, size));
  return path;
}

}  // namespace FuzzSupport
