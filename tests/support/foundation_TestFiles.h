// foundation_TestFiles: a scratch directory that lives as long as a test,
// and a scoped change of an environment variable, for the tests of the
// foundation's file, stream and time classes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <system_error>

namespace FoundationTest {

// A new, empty directory under the system's temporary directory, removed
// with everything in it when the object goes.
class CScratchDirectory {
 public:
  CScratchDirectory() {
    const char* base = std::getenv("TMPDIR");
    std::filesystem::path root = base && *base ? base : "/tmp";
    std::random_device random;
    for (;;) {
      m_path = root / ("zo-foundation-test-" + std::to_string(random()));
      if (std::filesystem::create_directory(m_path)) break;
    }
  }
  ~CScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  CScratchDirectory(const CScratchDirectory&) = delete;
  CScratchDirectory& operator=(const CScratchDirectory&) = delete;

  const std::filesystem::path& Path() const { return m_path; }
  // The path of `name` inside, as UTF-8 text; `name` may be empty.
  std::string operator/(const std::string& name) const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};

// Sets (or, with nullopt, unsets) an environment variable until the end
// of the scope, then puts back what was there.
class CScopedEnvironment {
 public:
  CScopedEnvironment(const char* name, std::optional<std::string> value) : m_sName(name) {
    if (const char* previous = std::getenv(name)) m_oPrevious = previous;
    Set(value);
  }
  ~CScopedEnvironment() { Set(m_oPrevious); }
  CScopedEnvironment(const CScopedEnvironment&) = delete;
  CScopedEnvironment& operator=(const CScopedEnvironment&) = delete;

 private:
  void Set(const std::optional<std::string>& value) {
    if (value) ::setenv(m_sName.c_str(), value->c_str(), 1);
    else ::unsetenv(m_sName.c_str());
  }
  std::string m_sName;
  std::optional<std::string> m_oPrevious;
};

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace FoundationTest
