// DiffPageContext: what the report archive knows of the newer of two
// archived reports when it asks for a diff page against an older one, and
// the page maker that answers it.
#pragma once

#include <memory>

#include "report/ReportData.h"

namespace TestSuite::Report {

struct SDiffPageContext {
  CString sName;                 // file stem of the newer report, the "B" of every page
  CString sDirectory;            // where the diff pages lie; a separator is added if missing
  CString sPath;                 // the newer report's XML file
  std::shared_ptr<SData> pData;  // its record, loaded by the first page that needs it; empty until then
};

// The page that compares the report at `reportPath` (reference A) with the
// context's report (B): "<stem of reportPath>-vs-<sName>.html" in
// sDirectory, without case table and with warnings hidden. `link` becomes
// "diff/" and that file name. A page that exists is not made again. A
// report that does not load leaves no page, while the link is given all
// the same.
void EnsureDiffPage(SDiffPageContext& context, CString& link, const CString& reportPath, bool bIgnoreOneSided);

}  // namespace TestSuite::Report
