// Path texts of Utils: separators at the end, the leaf and its directory,
// one-level directory creation and the per-case debug output directory.
#include <cwchar>

#include "foundation/ZoFileSystem.h"
#include "services/Utils.h"

namespace TestSuite::Utils {

namespace {

constexpr wchar_t c_Separator = L'/';

bool isSeparator(wchar_t ch) { return ch == L'/' || ch == L'\\'; }

}  // namespace

void AddBackslash(CString& path) {
  if (path.IsEmpty() || path[path.GetLength() - 1] == c_Separator) return;
  path += c_Separator;
}

void RemoveBackslashes(CString& path) {
  int length = path.GetLength();
  while (length > 0 && path[length - 1] == c_Separator) --length;
  path = path.Left(length);
}

bool AssertDirectory(const CString& path) {
  if (ZoFileSystem::Exists(path)) return true;
  return ZoFileSystem::CreateDirectoryW(path);
}

void SplitPathLeaf(const CString& path, CString& directory, CString& leaf) {
  int i = path.GetLength() - 1;
  while (i >= 0 && isSeparator(path[i])) --i;
  const int leafEnd = i + 1;
  while (i >= 0 && !isSeparator(path[i])) --i;
  directory = path.Left(i + 1);
  leaf = path.Mid(i + 1, leafEnd - (i + 1));
}

CString GetPathLeaf(const CString& path) {
  CString directory, leaf;
  SplitPathLeaf(path, directory, leaf);
  return leaf;
}

CString GetPathDirectory(const CString& path) {
  CString directory, leaf;
  SplitPathLeaf(path, directory, leaf);
  return directory;
}

namespace {

// The level named after the run's start. Every case of a run asks for the
// same one, and the local time and its formatting cost more than all the
// rest of the path: each thread keeps the last one it made.
const CString& dateLevel(const XbDateTime& dateTime) {
  thread_local std::uint64_t uiValue = 0;
  thread_local CString level;
  if (level.IsEmpty() || uiValue != dateTime.GetValue()) {
    level = dateTime.ToString(L"Y-m-d H.i.s", true) + c_Separator;
    uiValue = dateTime.GetValue();
  }
  return level;
}

}  // namespace

CString MakeCaseOutputDirectory(const CString& className, const CString& caseName, const XbDateTime& dateTime,
                                std::uint32_t repeatIndex, std::uint32_t repeatCount) {
  CString directory = ZoFileSystem::GetDirectory(ZoFileSystem::eDebugOutputRoot);
  directory += dateLevel(dateTime);
  directory += className;
  directory += c_Separator;
  const std::size_t start = directory.Str().size();
  directory += caseName;
  for (std::size_t i = start; i < directory.Str().size(); ++i) {
    wchar_t& ch = directory.Str()[i];
    // A character the file systems of other platforms forbid in a name.
    if (ch != L'\0' && std::wcschr(L"\\/:*?\"<>|", ch)) ch = L'-';
  }
  directory += c_Separator;
  if (repeatCount > 1) directory.AppendFormat(L"%03i/", repeatIndex);
  return directory;
}

}  // namespace TestSuite::Utils
