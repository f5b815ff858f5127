// report_ArchiveFixture: scratch archives for the archive tests.
#include "report_ArchiveFixture.h"

#include <chrono>
#include <filesystem>

#include "WholeFile.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"

namespace ReportTest {

using namespace TestSuite;
using namespace TestSuite::Report;

SData MakeArchivedReport(unsigned int successful, unsigned int failed, const wchar_t* date, bool withExtraClass) {
  SData data = MakeEmptyReport();
  data.DateBegin = date;
  AddClass(data, L"Geometry", successful + failed, failed, 0, 0);
  for (unsigned int i = 0; i < successful + failed; ++i)
    AddCase(data, i, L"Geometry", FormatString(L"c%u", i), i < successful ? Run::eCaseOk : Run::eCaseDifferent);
  if (withExtraClass) {
    AddClass(data, L"Extra", 1, 0, 0, 0);
    AddCase(data, successful + failed, L"Extra", L"e0", Run::eCaseOk);
  }
  data.ClassesTotal = data.Classes.GetCount();
  data.ClassesSuccessful = (failed == 0 ? 1 : 0) + (withExtraClass ? 1 : 0);
  data.CasesTotal = data.Cases.GetCount();
  data.Successful = successful + (withExtraClass ? 1 : 0);
  data.Failures = failed;
  return data;
}

CString WriteArchivedReport(const CString& directory, const wchar_t* fileName, const SData& data) {
  const CString path = directory + fileName;
  WriteXmlReport(path, data);
  return path;
}

std::map<std::string, SFileStamp> SnapshotFiles(const CString& directory) {
  namespace fs = std::filesystem;
  std::map<std::string, SFileStamp> files;
  const fs::path root(directory.ToUtf8());
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    SFileStamp stamp;
    stamp.iModified =
        std::chrono::duration_cast<std::chrono::nanoseconds>(entry.last_write_time().time_since_epoch()).count();
    stamp.sBytes = TestSupport::ReadWholeFile(entry.path().string());
    files[fs::relative(entry.path(), root).string()] = stamp;
  }
  return files;
}

void AgeFiles(const CString& directory) {
  namespace fs = std::filesystem;
  const auto past = fs::file_time_type::clock::now() - std::chrono::hours(24 * 365);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(fs::path(directory.ToUtf8())))
    if (entry.is_regular_file()) fs::last_write_time(entry.path(), past);
}

}  // namespace ReportTest
