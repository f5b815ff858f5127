#include "isolation_PrivateFrontEnd.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "foundation/CString.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/NamedSemaphore.h"
#include "foundation/platform/SharedMemory.h"
#include "run/external/ExternalObjectName.h"

namespace fs = std::filesystem;

namespace {

#ifdef NDEBUG
constexpr const char* sc_szFrontEnd = "ZoTestSuiteCLI";
#else
constexpr const char* sc_szFrontEnd = "ZoTestSuiteCLID";
#endif

void linkOrCopy(const std::string& name, const std::string& directory) {
  const fs::path from = fs::path(ZO_BIN_DIR) / name;
  const fs::path to = fs::path(directory) / name;
  std::error_code error;
  fs::create_hard_link(from, to, error);
  if (error) fs::copy_file(from, to, fs::copy_options::overwrite_existing);
}

}  // namespace

CPrivateFrontEnd::CPrivateFrontEnd(const std::vector<std::string>& libraries) {
  m_sDirectory = ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary).ToUtf8() + "zo-isolation-" +
                 ZoUniqueIdT<CString>::GetUniqueID().ToUtf8() + "/";
  fs::create_directories(m_sDirectory);
  for (const char* name : {sc_szFrontEnd, "libZoTestSuite.so", "libZoFoundation.so"}) linkOrCopy(name, m_sDirectory);
  std::string list = "[";
  for (const std::string& library : libraries) {
    linkOrCopy(library + ".so", m_sDirectory);
    list += (list.size() > 1 ? ", \"" : "\"") + library + "\"";
  }
  std::ofstream(m_sDirectory + "ZoTestSuiteEnvironment.conf") << list << "]\n";
}

CPrivateFrontEnd::~CPrivateFrontEnd() {
  std::error_code error;
  fs::remove_all(m_sDirectory, error);
}

std::string CPrivateFrontEnd::Program() const { return m_sDirectory + sc_szFrontEnd; }

std::vector<int> ProcessesRunningFrom(const std::string& directory) {
  std::vector<int> ids;
  std::error_code error;
  for (fs::directory_iterator it("/proc", error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    std::error_code linkError;
    const fs::path program = fs::read_symlink(it->path() / "exe", linkError);
    if (!linkError && program.string().compare(0, directory.size(), directory) == 0) ids.push_back(std::stoi(name));
  }
  return ids;
}

std::vector<std::string> ExternalObjectsOfProcess(unsigned int pid) {
  // Every id begins with the id of the process that made it, in eight
  // hexadecimal digits.
  const std::string prefix = TestSuite::sc_szExternalObjectPrefix + FormatString(L"%08X", pid).ToUtf8();
  std::vector<std::string> names = ZoPlatform::SharedMemory::ListNames(prefix);
  for (const std::string& name : ZoPlatform::NamedSemaphore::ListNames(prefix)) names.push_back("sem:" + name);
  return names;
}
