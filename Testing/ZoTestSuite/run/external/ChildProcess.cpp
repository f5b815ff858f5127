#include "run/external/ChildProcess.h"

#include <atomic>
#include <mutex>

#include "foundation/ZoFileSystem.h"

namespace TestSuite {

namespace Process = ZoPlatform::Process;

namespace {

std::atomic<unsigned int> s_uiChildCounter{0};

#ifdef NDEBUG
constexpr const wchar_t* sc_szChildProgram = L"ZoTestSuiteCLI";
#else
constexpr const wchar_t* sc_szChildProgram = L"ZoTestSuiteCLID";
#endif

struct SProgramDirectory {
  std::mutex lock;
  CString sDirectory;
};

SProgramDirectory& programDirectory() {
  static SProgramDirectory directory;
  return directory;
}

}  // namespace

unsigned int TakeChildIndex() { return s_uiChildCounter.fetch_add(1); }

void SetChildProgramDirectory(const CString& directory) {
  CString text = directory;
  if (!text.IsEmpty() && text.Right(1) != L"/") text += L"/";
  std::lock_guard<std::mutex> lock(programDirectory().lock);
  programDirectory().sDirectory = text;
}

CString GetChildProgramDirectory() {
  {
    std::lock_guard<std::mutex> lock(programDirectory().lock);
    if (!programDirectory().sDirectory.IsEmpty()) return programDirectory().sDirectory;
  }
  return ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable);
}

CString GetChildProgramPath() { return GetChildProgramDirectory() + sc_szChildProgram; }

std::vector<std::string> ComposeChildArguments(const CString& sDataDir, const SCaseContext& context) {
  CString dataDir = sDataDir;
  if (!dataDir.IsEmpty() && dataDir.Right(1) == L"/") dataDir = dataDir.Left(dataDir.GetLength() - 1);
  return {"-d",
          dataDir.ToUtf8(),
          "-x",
          "--memory-id",
          context.sMemoryId.ToUtf8(),
          "--request-event-id",
          context.sRequestEventId.ToUtf8(),
          "--response-event-id",
          context.sResponseEventId.ToUtf8()};
}

std::unique_ptr<SChildProcess> StartChild(const CString& sDataDir, const SCaseContext& context) {
  Process::SSpawnRequest request;
  request.arguments.push_back(GetChildProgramPath().ToUtf8());
  for (std::string& word : ComposeChildArguments(sDataDir, context)) request.arguments.push_back(std::move(word));
  request.sWorkingDirectory = GetChildProgramDirectory().ToUtf8();
  request.eStreams = Process::EStandardStreams::eNull;
  Process::CChild child;
  if (!child.Start(request)) return nullptr;
  return std::make_unique<SChildProcess>(std::move(child), TakeChildIndex());
}

}  // namespace TestSuite
