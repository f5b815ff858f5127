// ZoUnitTestFileBased: a test class with one subtest per data file.
#include "ZoUnitTestFileBased.h"

#include <algorithm>
#include <string_view>

#include "ZoFileSystem.h"

XB_IMPLEMENT_DYNCREATE(ZoUnitTestFileBased, ZoUnitTest);

namespace {

// '*' matches any run of characters, '?' exactly one. Backtracks only to the
// last '*', which is enough for patterns of this kind.
bool matchesWildcard(std::wstring_view name, std::wstring_view pattern) {
  std::size_t n = 0, p = 0, starP = std::wstring_view::npos, starN = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == L'?' || pattern[p] == name[n])) {
      ++n;
      ++p;
    } else if (p < pattern.size() && pattern[p] == L'*') {
      starP = p++;
      starN = n;
    } else if (starP != std::wstring_view::npos) {
      p = starP + 1;
      n = ++starN;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == L'*') ++p;
  return p == pattern.size();
}

}  // namespace

ZoUnitTestFileBased::ZoUnitTestFileBased(const CString& wildcard) : m_sWildcard(wildcard) {}

ZoUnitTestFileBased::~ZoUnitTestFileBased() = default;

void ZoUnitTestFileBased::OnInitSubtests(XbArray<CString>& names) {
  m_filenames.RemoveAll();
  for (const ZoFileSystem::SEntry& entry : ZoFileSystem::ListDirectory(GetDataDirectory())) {
    if (!entry.bDirectory && matchesWildcard(entry.sName.Str(), m_sWildcard.Str())) m_filenames.Add(entry.sName);
  }
  std::sort(m_filenames.begin(), m_filenames.end());
  for (const CString& name : m_filenames) names.Add(name);
}

CString ZoUnitTestFileBased::GetFilePath(unsigned int index) const {
  CString path = GetDataDirectory();
  if (!path.IsEmpty() && path[path.GetLength() - 1] != L'/') path += L'/';
  return path + GetFilenames().GetAt(index);
}
