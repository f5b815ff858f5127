// The scan of an archive directory by report file names.
#include "report/ArchiveScan.h"

#include <algorithm>
#include <charconv>
#include <regex>
#include <string>

#include "foundation/ZoFileSystem.h"

namespace TestSuite::Report {

namespace {

bool parseRevision(const std::wstring& digits, std::uint64_t& revision) {
  const std::string narrow(digits.begin(), digits.end());  // digits only, by the pattern
  const char* end = narrow.data() + narrow.size();
  const auto [stop, error] = std::from_chars(narrow.data(), end, revision);
  return error == std::errc() && stop == end;
}

CString withSeparator(const CString& directory) {
  if (directory.IsEmpty() || directory[directory.GetLength() - 1] == L'/') return directory;
  return directory + L"/";
}

}  // namespace

XbArray<SArchiveEntry> ScanArchive(const CString& directory) {
  static const std::wregex pattern(LR"(Report-(\d+)-\[(.+?)\](-T\[(.+?)\])?)", std::regex::ECMAScript);
  const CString base = withSeparator(directory);
  XbArray<SArchiveEntry> entries;
  for (const ZoFileSystem::SEntry& file : ZoFileSystem::ListDirectory(directory)) {
    if (file.bDirectory) continue;
    CString folder, stem, extension;
    ZoFileSystem::SplitPath(file.sName, folder, stem, extension);
    if (extension != L".xml") continue;
    const std::wstring name(stem.GetString());
    std::wsmatch match;
    if (!std::regex_match(name, match, pattern)) continue;
    SArchiveEntry entry;
    if (!parseRevision(match[1].str(), entry.revision)) continue;
    entry.path = base + file.sName;
    entry.date = match[2].str().c_str();
    if (match[4].matched) entry.tag = match[4].str().c_str();
    entries.Add(entry);
  }
  std::sort(entries.begin(), entries.end(), [](const SArchiveEntry& a, const SArchiveEntry& b) {
    if (a.revision != b.revision) return a.revision < b.revision;
    return std::wcscmp(a.date.GetString(), b.date.GetString()) < 0;
  });
  return entries;
}

}  // namespace TestSuite::Report
