// A unique scratch directory per test, made with the standard library.
#include "services_ScratchDir.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

ServicesScratchDir::ServicesScratchDir() {
  static std::atomic<unsigned> s_counter{0};
  std::random_device random;
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
      ("zo-services-" + std::to_string(random()) + "-" + std::to_string(++s_counter));
  std::filesystem::create_directories(path);
  m_sPath = CString::FromUtf8(path.string() + "/");
}

ServicesScratchDir::~ServicesScratchDir() {
  std::error_code error;
  std::filesystem::remove_all(m_sPath.ToUtf8(), error);
}

std::string ServicesScratchDir::ReadBytes(const CString& path) {
  std::ifstream in(path.ToUtf8(), std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

void ServicesScratchDir::WriteBytes(const CString& path, const std::string& bytes) {
  std::ofstream(path.ToUtf8(), std::ios::binary | std::ios::trunc) << bytes;
}
