// CEnvironment: the per-process set-up of the test system.
#include <nlohmann/json.hpp>
#include <thread>

#include "BuiltInWiring.inc"
#include "ZoTestSuiteEnvironment.h"
#include "core/WiringContainer.h"
#include "foundation/SystemPath.h"
#include "foundation/WrCProduct.h"
#include "foundation/XbDateTime.h"
#include "foundation/XbException.h"
#include "foundation/XbSingleton.h"
#include "foundation/XbStream.h"
#include "foundation/XbThreadPool.h"
#include "foundation/XbTimer.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoMessageDispatcher.h"
#include "foundation/ZoStreamFile.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/Library.h"
#include "services/CHeapTracker.h"
#include "services/COut.h"

namespace TestSuite {

namespace {

// The built-in wiring, unscrambled byte by byte.
std::string builtInWiring() {
  std::string text;
  text.reserve(kBuiltInWiringSize);
  for (unsigned int i = 0; i < kBuiltInWiringSize; ++i)
    text += static_cast<char>(kBuiltInWiring[i] ^ kBuiltInWiringKey);
  return text;
}

// Ends in '/'; empty is the executable's directory.
CString resolveConfigurationDirectory(const CString& directory) {
  if (directory.IsEmpty()) return ZoFileSystem::InterpretEnvironment(L"%EXECUTABLE%");
  return directory.Right(1) == L"/" ? directory : directory + L"/";
}

void warmUpFileStreams() {
  const CString path = ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary) + L"ZoTestSuite-" +
                       ZoUniqueIdT<CString>::GetUniqueID() + L".tmp";
  try {
    ZoStreamWriteASCIIFile(path, 0, 1, 0) << L"";
  } catch (const XbException&) {
    return;  // no temporary directory: nothing to warm up
  }
  std::string bytes;
  ZoFileSystem::ReadFile(path, bytes);
  // At once: a child process ends by SIGKILL and would leave it behind.
  ZoFileSystem::DeleteFileW(path);
}

void warmUpTextServices() {
  XbStreamWriteASCIIStringT<CString> stream;
  stream << FormatString(L"%s %d %I64u %f %S", L"a", 1, std::uint64_t{2}, 3.0, "b") << std::uint64_t{4};
  XbDateTime::Now().ToString(L"Y-m-d H:i:s.v", true);
}

// The names of a library list file: a JSON array of texts. False for a
// file that cannot be read, is no JSON, or has another shape; nothing of
// such a file is used.
bool readLibraryList(const CString& path, XbArray<CString>& libraries) {
  std::string text;
  if (!ZoFileSystem::ReadFile(path, text)) return false;
  const nlohmann::json names = nlohmann::json::parse(text, nullptr, false);
  if (!names.is_array()) return false;
  for (const auto& name : names) {
    if (!name.is_string()) return false;
    libraries.Add(PathFromSystem(name.get<std::string>()));
  }
  return true;
}

}  // namespace

CEnvironment::CEnvironment(const CString& configurationDirectory, EWarmUp warmUp)
    : sConfigurationDirectory(resolveConfigurationDirectory(configurationDirectory)) {
  WrCProduct::Set(WrSProductInfo{19, L"ZoTestSuite", L"1.0", L"", 0}, false);
  sInitialDirectory = ZoFileSystem::GetCurrentDirectoryW();
  const CString wiringPath = sConfigurationDirectory + L"./ZoTestSuite.wiring.xml";
  if (ZoFileSystem::Exists(wiringPath)) container = std::make_unique<Wiring::CContainer>(wiringPath.GetString(), true);
  if (!container || container->IsEmpty())
    container = std::make_unique<Wiring::CContainer>(builtInWiring().c_str(), true);
  if (container->IsEmpty()) XB_THROW("TestSuite::CEnvironment::CEnvironment");
  ZoMessageDispatcher& dispatcher = XbSingleton<ZoMessageDispatcher>::GetInstance();
  if (!dispatcher.IsRunning() && !dispatcher.Start()) XB_THROW("TestSuite::CEnvironment::CEnvironment");
  warmUpProcess(warmUp);
}

CEnvironment::~CEnvironment() {
  if (XbSingleton<ZoMessageDispatcher>::HasInstance())
    XbSingleton<ZoMessageDispatcher>::GetInstance().ShutdownAndWait(0xFFFFFFFF);
  if (XbSingleton<XbThreadPool>::HasInstance()) XbSingleton<XbThreadPool>::GetInstance().ShutdownAndWait(0xFFFFFFFF);
  container.reset();
  CHeapTracker::UnhookAll();
}

void CEnvironment::LoadDLL(const CString& name, bool fromConfiguration) {
  static_cast<void>(fromConfiguration);  // both callers load the same way
  // A name with a '/' is the path of the library file itself.
  const bool bPath = name.Find(L'/') >= 0;
  const CString fileName = bPath ? name : name + L".so";
  const CString path = bPath ? name : sConfigurationDirectory + fileName;
  if (!ZoFileSystem::Exists(path)) return;
  for (const CString& failed : failedLibraries)
    if (failed == path) return;
  if (ZoPlatform::Library::Load(PathToSystem(path))) {
    ++uiLoadedLibraries;
    return;
  }
  failedLibraries.Add(path);
  COut::Write(L"DLL '%s' konnte nicht geladen werden: %s", fileName,
              CString::FromUtf8(ZoPlatform::Library::GetLastError() + "\n"))
      .Color(ZoColorRGBA::c_GOLDENROD);
}

void CEnvironment::LoadTestDLLs() {
  if (bConfigurationRead) return;
  bConfigurationRead = true;
  const CString path = sConfigurationDirectory + L"ZoTestSuiteEnvironment.conf";
  if (!ZoFileSystem::Exists(path)) return;
  XbArray<CString> libraries;
  if (!readLibraryList(path, libraries)) {
    COut::Write(L"Warnung: %s ist keine JSON-Liste von Bibliotheksnamen und wird übergangen.\n", path)
        .Color(ZoColorRGBA::c_GOLDENROD);
    return;
  }
  for (const CString& name : libraries) LoadDLL(name, true);
}

void CEnvironment::PreallocateStaticData() { warmUpProcess(EWarmUp::eFull); }

void CEnvironment::warmUpProcess(EWarmUp warmUp) {
  XbThreadPool& pool = XbSingleton<XbThreadPool>::GetInstance();
  if (warmUp == EWarmUp::eFull) {
    if (auto task = pool.AddTask([] {}, 1)) task->Wait();
    std::thread([] {}).join();
    warmUpFileStreams();
    warmUpTextServices();
  }
  XbTimer timer(1000);
  static_cast<void>(timer.GetElapsedSeconds());
}

void CEnvironment::SetExecutableDirectoryAsWorkingDirectory() {
  ZoFileSystem::SetCurrentDirectoryW(ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable));
}

void CEnvironment::RestoreWorkingDirectory() { ZoFileSystem::SetCurrentDirectoryW(sInitialDirectory); }

}  // namespace TestSuite
