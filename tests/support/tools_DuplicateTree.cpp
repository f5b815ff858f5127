// tools_DuplicateTree: data trees for the duplicate detection tests.
#include "tools_DuplicateTree.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include "SpecialFiles.h"
#include "foundation/XbDateTime.h"
#include "foundation/ZoFileSystem.h"
#include "select_DataTree.h"

namespace fs = std::filesystem;

std::string LoadDuplicateTestClasses() {
  static const std::string s_sError = LoadTestLibrary("cli_ScriptedClasses") + LoadSelectTestClasses();
  return s_sError;
}

CString DuplicateTree::Write(const CString& relative, const std::string& bytes) const {
  const CString path = m_dir.Path() + relative;
  fs::create_directories(fs::path(path.ToUtf8()).parent_path());
  ZoFileSystem::DeleteFile(path);
  TempDirectory::WriteBytes(path, bytes);
  return path;
}

CString DuplicateTree::WriteYounger(const CString& relative, const std::string& bytes, const CString& older) const {
  for (;;) {
    const CString path = Write(relative, bytes);
    if (TimeText(older).Str() < TimeText(path).Str()) return path;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

void DuplicateTree::WriteInOneSecond(const std::vector<std::pair<CString, std::string>>& files) const {
  for (;;) {
    std::vector<CString> paths;
    for (const auto& [relative, bytes] : files) paths.push_back(Write(relative, bytes));
    bool bSame = true;
    for (const CString& path : paths) bSame = bSame && TimeText(path) == TimeText(paths.front());
    if (bSame) return;
  }
}

CString DuplicateTree::MakeDanglingLink(const CString& relative) const {
  const CString path = m_dir.Path() + relative;
  fs::create_symlink("nirgends", fs::path(path.ToUtf8()));
  return path;
}

CString DuplicateTree::MakeFifo(const CString& relative) const {
  const CString path = m_dir.Path() + relative;
  return ::MakeFifo(path.ToUtf8()) ? path : CString();
}

CString DuplicateTree::TimeText(const CString& path) {
  return XbDateTime(ZoFileSystem::GetCreationTime(path)).ToString(L"Y.m.d-H:i:s");
}
