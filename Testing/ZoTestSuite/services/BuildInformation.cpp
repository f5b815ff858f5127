// Reading the build information back from the library's text resources.
#include "services/BuildInformation.h"

#include <utility>

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoStreamFile.h"
#include "resources/TextResourceTable.h"
#include "services/Utils.h"

namespace TestSuite {

namespace {

template <typename TRecord>
std::unique_ptr<TRecord> parseInfo(const std::string& text) {
  if (text.empty()) return nullptr;
  auto record = std::make_unique<TRecord>();
  ZoStreamReadASCIIStringT<std::string> reader(text);
  std::string line;
  while (reader.ReadLine(line)) {
    const auto colon = line.find(':');
    if (colon == std::string::npos) continue;
    const std::string key = line.substr(0, colon);
    for (const SBuildInfoField<TRecord>& entry : BuildInfoFields<TRecord>()) {
      if (key != entry.szKey) continue;
      CString value(std::string_view(line).substr(colon + 1));
      (*record).*entry.pField = value.Trim();
    }
  }
  return record;
}

std::string findResource(const Resources::STextResource* list, std::size_t count, const std::string& name,
                         const std::string& type) {
  for (std::size_t i = 0; i < count; ++i) {
    const Resources::STextResource& resource = list[i];
    if (name == resource.sName && type == resource.sType)
      return std::string(reinterpret_cast<const char*>(resource.pBytes), resource.uiSize);
  }
  return std::string();
}

}  // namespace

std::unique_ptr<SSvnInfo> ParseSvnInfo(const std::string& text) { return parseInfo<SSvnInfo>(text); }

std::unique_ptr<SPscmInfo> ParsePscmInfo(const std::string& text) { return parseInfo<SPscmInfo>(text); }

std::unique_ptr<SSvnInfo> GetSvnInfo() { return ParseSvnInfo(LoadTextResource(L"IDR_SVNINFO", L"SVNINFOFILE")); }

std::unique_ptr<SPscmInfo> GetPscmInfo() { return ParsePscmInfo(LoadTextResource(L"IDR_PSCMINFO", L"PSCMINFOFILE")); }

CString GetLocalTestSuiteDir() {
  CString directory = ZoFileSystem::GetDirectory(ZoFileSystem::eLocalAppData) + L"ZoTestSuite/";
  Utils::AssertDirectory(directory);
  directory += L"Orvane/";
  Utils::AssertDirectory(directory);
  return directory;
}

std::string LoadTextResource(const CString& name, const CString& type) {
  const std::string sName = name.ToUtf8(), sType = type.ToUtf8();
  std::string text = findResource(Resources::c_ReportResources, Resources::c_uiReportResourceCount, sName, sType);
  if (text.empty())
    text = findResource(Resources::c_BuildInfoResources, Resources::c_uiBuildInfoResourceCount, sName, sType);
  return text;
}

}  // namespace TestSuite
