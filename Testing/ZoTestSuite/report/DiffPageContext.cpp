// The archive's diff pages.
#include "report/DiffPageContext.h"

#include "foundation/ZoFileSystem.h"
#include "report/ReportDiffWriter.h"
#include "report/XmlReportLoader.h"
#include "services/Utils.h"

namespace TestSuite::Report {

void EnsureDiffPage(SDiffPageContext& context, CString& link, const CString& reportPath, bool bIgnoreOneSided) {
  CString directory, stem, extension;
  ZoFileSystem::SplitPath(reportPath, directory, stem, extension);
  const CString fileName = FormatString(L"%s-vs-%s.html", stem, context.sName);
  link = L"diff/" + fileName;
  CString pagePath = context.sDirectory;
  Utils::AddBackslash(pagePath);
  pagePath += fileName;
  if (ZoFileSystem::Exists(pagePath)) return;
  // Load results are not looked at: a record that stays empty makes the
  // writer leave the page out.
  if (!context.pData) {
    context.pData = std::make_shared<SData>();
    LoadReportDataFromXMLFile(context.sPath, *context.pData);
  }
  SData reference;
  LoadReportDataFromXMLFile(reportPath, reference);
  WriteReportDiff(pagePath, reportPath, context.sPath, reference, *context.pData, bIgnoreOneSided, true, true);
}

}  // namespace TestSuite::Report
