// foundation_TestFiles: a scratch directory that lives as long as a test,
// a scoped change of an environment variable and the conversions of paths
// and contents, for the tests of the foundation's file, stream and time
// classes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "TempDirectory.h"
#include "WholeFile.h"

namespace FoundationTest {

// A new, empty directory under the system's temporary directory, removed
// with everything in it when the object goes: a TempDirectory seen as a
// std::filesystem path.
class CScratchDirectory {
 public:
  CScratchDirectory() : m_path(m_dir.Path().ToUtf8()) { m_path = m_path.parent_path(); }
  CScratchDirectory(const CScratchDirectory&) = delete;
  CScratchDirectory& operator=(const CScratchDirectory&) = delete;

  const std::filesystem::path& Path() const { return m_path; }
  // The path of `name` inside, as UTF-8 text; `name` may be empty.
  std::string operator/(const std::string& name) const { return (m_path / name).string(); }

 private:
  TempDirectory m_dir;
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

// UTF-8 text, such as a path of std::filesystem, as the foundation's text.
inline CString Wide(const std::string& utf8) { return CString::FromUtf8(utf8); }

inline void WriteBytes(const std::string& path, const std::string& bytes) { TestSupport::WriteWholeFile(path, bytes); }

inline std::string ReadBytes(const std::string& path) { return TestSupport::ReadWholeFile(path); }

}  // namespace FoundationTest
