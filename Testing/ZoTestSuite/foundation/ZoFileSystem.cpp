// ZoFileSystem: the foundation's file-system operations over the platform's file calls.
#include "ZoFileSystem.h"

#include <optional>
#include <string>

#include "SystemPath.h"
#include "platform/Files.h"

namespace Files = ZoPlatform::Files;

namespace {

std::string toSystem(const CString& path) { return PathToSystem(path); }
CString fromSystem(const std::string& path) { return PathFromSystem(path); }

CString withSeparator(CString directory) {
  if (directory.IsEmpty() || directory[directory.GetLength() - 1] != L'/') directory += L'/';
  return directory;
}

// The value of an environment variable that names a directory; an unset or
// empty variable is none.
std::optional<CString> directoryFromEnvironment(const char* name) {
  const auto value = Files::GetEnvironmentVariable(name);
  if (!value || value->empty()) return std::nullopt;
  return withSeparator(fromSystem(*value));
}

CString home() { return withSeparator(fromSystem(Files::GetHomeDirectory())); }

CString temporaryDirectory() { return directoryFromEnvironment("TMPDIR").value_or(CString(L"/tmp/")); }

CString documentsDirectory() {
  if (auto documents = directoryFromEnvironment("XDG_DOCUMENTS_DIR")) return *documents;
  const CString documents = home() + L"Documents/";
  return ZoFileSystem::IsDirectory(documents) ? documents : home();
}

// The per-user data directory. The default, ~/.local/share/, is made with
// its parents when it is missing, as on a fresh account: the system's own
// folders below it are made one level at a time by their users.
CString localAppDataDirectory() {
  if (auto data = directoryFromEnvironment("XDG_DATA_HOME")) return *data;
  const CString local = home() + L".local/";
  if (!ZoFileSystem::IsDirectory(local)) Files::MakeDirectory(toSystem(local));
  const CString data = local + L"share/";
  if (!ZoFileSystem::IsDirectory(data)) Files::MakeDirectory(toSystem(data));
  return data;
}

CString executableDirectory() {
  const CString path = fromSystem(Files::GetExecutablePath());
  const int slash = path.ReverseFind(L'/');
  return slash < 0 ? CString() : path.Left(slash + 1);
}

}  // namespace

bool ZoFileSystem::Exists(const CString& path) { return !path.IsEmpty() && Files::Exists(toSystem(path)); }

bool ZoFileSystem::IsDirectory(const CString& path) {
  const auto status = Files::GetStatus(toSystem(path));
  return status && status->bDirectory;
}

bool ZoFileSystem::CreateDirectoryW(const CString& path) { return Files::MakeDirectory(toSystem(path)); }

bool ZoFileSystem::DeleteFileW(const CString& path) { return Files::RemoveFile(toSystem(path)); }

bool ZoFileSystem::CopyFileW(const CString& from, const CString& to, bool failIfExists) {
  return Files::CopyFile(toSystem(from), toSystem(to), failIfExists);
}

bool ZoFileSystem::GetFileIdentity(const CString& path, SFileIdentity& identity) {
  const auto status = Files::GetStatus(toSystem(path));
  if (!status) return false;
  identity = {status->uiDevice, status->uiInode};
  return true;
}

bool ZoFileSystem::MoveFileW(const CString& from, const CString& to) {
  return Files::RenameWithoutReplacing(toSystem(from), toSystem(to));
}

std::int64_t ZoFileSystem::GetFileSize(const CString& path) {
  const auto status = Files::GetStatus(toSystem(path));
  return status && !status->bDirectory ? status->iSize : -1;
}

std::uint64_t ZoFileSystem::GetCreationTime(const CString& path) {
  const auto status = Files::GetStatus(toSystem(path));
  if (!status) return 0;
  return status->GetCreationTime();
}

XbArray<ZoFileSystem::SEntry> ZoFileSystem::ListDirectory(const CString& path) {
  XbArray<SEntry> result;
  std::vector<Files::SDirectoryEntry> entries;
  if (!Files::ListDirectory(toSystem(path), entries)) return result;
  for (const auto& entry : entries) result.Add({fromSystem(entry.sName), entry.bDirectory});
  return result;
}

bool ZoFileSystem::ReadFile(const CString& path, std::string& bytes) {
  return Files::ReadWholeFile(toSystem(path), bytes);
}

CString ZoFileSystem::GetDirectory(int specialDirectory) {
  switch (specialDirectory) {
    case eTemporary: return temporaryDirectory();
    case eDocuments: return documentsDirectory();
    case eLocalAppData: return localAppDataDirectory();
    case eDebugOutputRoot: return temporaryDirectory() + L"ZoTestSuiteDebug/";
    case eExecutable: return executableDirectory();
    default: return CString();
  }
}

void ZoFileSystem::SplitPath(const CString& path, CString& directory, CString& name, CString& extension) {
  const int slash = path.ReverseFind(L'/');
  directory = path.Left(slash + 1);
  const CString leaf = path.Mid(slash + 1);
  const int dot = leaf.ReverseFind(L'.');
  name = dot < 0 ? leaf : leaf.Left(dot);
  extension = dot < 0 ? CString() : leaf.Mid(dot);
}

CString ZoFileSystem::InterpretEnvironment(const CString& text) {
  CString result(text);
  if (result.Find(L"%EXECUTABLE%") >= 0) result.Replace(L"%EXECUTABLE%", GetDirectory(eExecutable));
  return result;
}

CString ZoFileSystem::GetCurrentDirectoryW() { return fromSystem(Files::GetWorkingDirectory()); }

bool ZoFileSystem::SetCurrentDirectoryW(const CString& path) {
  return !path.IsEmpty() && Files::SetWorkingDirectory(toSystem(path));
}
