// The renaming of a report directory into an archive.
#include "report/ArchiveNormalizer.h"

#include "foundation/ZoFileSystem.h"
#include "report/ArchiveOverview.h"
#include "report/FileSystemError.h"
#include "report/ReportNames.h"
#include "report/XmlReportLoader.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

void normalizeReport(const CString& folder, const CString& fileName) {
  const CString path = folder + fileName;
  SData data;
  if (!LoadReportDataFromXMLFile(path, data)) return;
  const std::optional<CString> name = GetArchiveName(data);
  if (!name) return;
  const CString target = folder + *name + L".xml";
  if (ZoFileSystem::Exists(target)) return;
  if (!ZoFileSystem::MoveFileW(path, target)) ThrowFileSystemError("rename(p1, p2): invalid arguments", path, target);
}

}  // namespace

void NormalizeArchiveDir(const CString& directory) {
  CString folder = directory;
  Utils::AddBackslash(folder);
  for (const ZoFileSystem::SEntry& file : ZoFileSystem::ListDirectory(directory)) {
    if (file.bDirectory) continue;
    CString unused, stem, extension;
    ZoFileSystem::SplitPath(file.sName, unused, stem, extension);
    if (extension == L".xml") normalizeReport(folder, file.sName);
  }
  WriteArchiveOverview(directory);
}

}  // namespace TestSuite::Report
