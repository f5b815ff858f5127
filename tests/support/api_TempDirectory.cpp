// api_TempDirectory: a scratch directory for the tests of the test-author API.
#include "api_TempDirectory.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

ApiTempDirectory::ApiTempDirectory() {
  static std::atomic<unsigned int> s_uiCounter{0};
  const std::string leaf =
      "zo-api-" + std::to_string(std::random_device()()) + "-" + std::to_string(s_uiCounter++);
  const fs::path path = fs::temp_directory_path() / leaf;
  fs::create_directories(path);
  m_sPath = CString::FromUtf8(path.string() + "/");
}

ApiTempDirectory::~ApiTempDirectory() {
  std::error_code ignored;
  fs::remove_all(fs::path(m_sPath.ToUtf8()), ignored);
}

void ApiTempDirectory::WriteFile(const CString& name, const std::string& bytes) const {
  std::ofstream out((m_sPath + name).ToUtf8(), std::ios::binary);
  out << bytes;
}

void ApiTempDirectory::MakeDirectory(const CString& name) const {
  fs::create_directories(fs::path((m_sPath + name).ToUtf8()));
}
