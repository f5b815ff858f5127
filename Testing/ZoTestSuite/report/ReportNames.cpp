// Report file names from the revision and the begin of a run.
#include "report/ReportNames.h"

#include <cerrno>
#include <cwchar>

#include "foundation/ZoFileSystem.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

CString revisionText(const SData& data) {
  if (data.PscmInfo) return data.PscmInfo->Changeset;
  if (data.SvnInfo) return data.SvnInfo->LastChangedRev;
  return CString();
}

CString defaultReportDirectory() {
  CString directory = ZoFileSystem::GetDirectory(ZoFileSystem::eDocuments) + L"ZoTestSuite/";
  Utils::AssertDirectory(directory);
  directory += L"Reports/";
  Utils::AssertDirectory(directory);
  return directory;
}

}  // namespace

std::optional<std::int64_t> GetRevision(const SData& data) {
  const CString text = revisionText(data);
  const wchar_t* begin = text.GetString();
  wchar_t* end = nullptr;
  errno = 0;
  const long long value = std::wcstoll(begin, &end, 10);
  if (end == begin || errno == ERANGE) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

CString MakeFileDate(const CString& date) {
  CString result(date);
  result.Replace(L'-', L'.');
  result.Replace(L':', L'.');
  result.Replace(L' ', L'-');
  return result;
}

std::optional<CString> GetArchiveName(const SData& data) {
  const std::optional<std::int64_t> revision = GetRevision(data);
  if (!revision) return std::nullopt;
  CString name = FormatString(L"Report-%d-[%s]", *revision, MakeFileDate(data.DateBegin));
  if (!data.RunTag.IsEmpty()) name.AppendFormat(L"-T[%s]", data.RunTag);
  return name;
}

CString ResolveReportPath(const CString& requested, const SData& data, const wchar_t* extension) {
  if (!requested.IsEmpty()) return requested;
  const CString directory = defaultReportDirectory();
  if (const std::optional<CString> name = GetArchiveName(data))
    return FormatString(L"%s%s.%s", directory, *name, extension);
  return FormatString(L"%sReport-[%s].%s", directory, MakeFileDate(data.DateBegin), extension);
}

}  // namespace TestSuite::Report
