// TempDirectory: a scratch directory of one test.
#include "TempDirectory.h"

#include <atomic>
#include <filesystem>
#include <random>
#include <stdexcept>

#include "WholeFile.h"
#include "foundation/SystemPath.h"

namespace fs = std::filesystem;

TempDirectory::TempDirectory() {
  static std::atomic<unsigned int> s_uiCounter{0};
  const std::string leaf = "zo-test-" + std::to_string(std::random_device()()) + "-" + std::to_string(s_uiCounter++);
  const fs::path path = fs::temp_directory_path() / leaf;
  fs::create_directories(path);
  m_sPath = CString::FromUtf8(path.string() + "/");
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  fs::remove_all(fs::path(PathToSystem(m_sPath)), ignored);
}

// The directories on the way to the file are made as needed.
void TempDirectory::WriteFile(const CString& name, const std::string& bytes) const {
  const fs::path path(PathToSystem(m_sPath + name));
  std::error_code ignored;
  fs::create_directories(path.parent_path(), ignored);
  WriteBytes(m_sPath + name, bytes);
}

void TempDirectory::MakeDirectory(const CString& name) const {
  fs::create_directories(fs::path(PathToSystem(m_sPath + name)));
}

std::string TempDirectory::ReadBytes(const CString& path) { return TestSupport::ReadWholeFile(PathToSystem(path)); }

void TempDirectory::WriteBytes(const CString& path, const std::string& bytes) {
  // A scratch file that cannot be written would let a test go on with
  // data it did not get; the exception fails the test that wrote it.
  if (!TestSupport::WriteWholeFile(PathToSystem(path), bytes))
    throw std::runtime_error(PathToSystem(path) + " cannot be written");
}
