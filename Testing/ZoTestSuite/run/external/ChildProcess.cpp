// Child processes of external execution: their running number and the
// starter of the front end in its child mode.
#include "run/external/ChildProcess.h"

#include <atomic>

#include "foundation/SystemPath.h"
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

}  // namespace

unsigned int TakeChildIndex() { return s_uiChildCounter.fetch_add(1); }

CFrontEndStarter::CFrontEndStarter(const CString& directory) : m_sDirectory(directory) {
  if (!m_sDirectory.IsEmpty() && m_sDirectory.Right(1) != L"/") m_sDirectory += L"/";
}

CString CFrontEndStarter::GetProgramDirectory() const {
  if (!m_sDirectory.IsEmpty()) return m_sDirectory;
  return ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable);
}

CString CFrontEndStarter::GetProgramPath() const { return GetProgramDirectory() + sc_szChildProgram; }

std::unique_ptr<SChildProcess> CFrontEndStarter::Start(const CString& sDataDir, const SCaseContext& context) {
  Process::SSpawnRequest request;
  request.arguments.push_back(PathToSystem(GetProgramPath()));
  for (std::string& word : ComposeChildArguments(sDataDir, context)) request.arguments.push_back(std::move(word));
  request.sWorkingDirectory = PathToSystem(GetProgramDirectory());
  request.eStreams = Process::EStandardStreams::eNull;
  request.bOwnProcessGroup = true;
  Process::CChild child;
  if (!child.Start(request)) return nullptr;
  return std::make_unique<SChildProcess>(std::move(child), TakeChildIndex());
}

IChildStarter& DefaultChildStarter() {
  static CFrontEndStarter starter;
  return starter;
}

std::vector<std::string> ComposeChildArguments(const CString& sDataDir, const SCaseContext& context) {
  CString dataDir = sDataDir;
  if (!dataDir.IsEmpty() && dataDir.Right(1) == L"/") dataDir = dataDir.Left(dataDir.GetLength() - 1);
  std::vector<std::string> arguments = {"-d",
                                        PathToSystem(dataDir),
                                        "-x",
                                        "--memory-id",
                                        context.sMemoryId.ToUtf8(),
                                        "--request-event-id",
                                        context.sRequestEventId.ToUtf8(),
                                        "--response-event-id",
                                        context.sResponseEventId.ToUtf8()};
  for (const CString& library : context.libraries) {
    arguments.push_back("--dll");
    arguments.push_back(PathToSystem(library));
  }
  return arguments;
}

}  // namespace TestSuite
