// WholeFile: reading and writing a file in one piece, as bytes, for tests
// and test libraries alike (it needs nothing beyond the standard library).
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace TestSupport {

// The whole contents of the file at `path`; empty if it cannot be read.
inline std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Replaces the file at `path` by `bytes`; gives false if it cannot be written.
inline bool WriteWholeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
  return static_cast<bool>(out.flush());
}

}  // namespace TestSupport
