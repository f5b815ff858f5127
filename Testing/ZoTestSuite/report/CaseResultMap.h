// CCaseResultMap: the results of one report's cases by class name and case
// name, through which the diff modes find a case of one report in another.
#pragma once

#include "foundation/XbMap.h"
#include "report/ReportData.h"

namespace TestSuite::Report {

class CCaseResultMap {
 public:
  // Takes every row of `data.Cases`; of two rows with the same names the
  // later one counts.
  explicit CCaseResultMap(const SData& data);

  // The result of the case, null if the report has no such case.
  const Run::ECaseResult* Find(const CString& className, const CString& caseName) const;

 private:
  // A pair of names rather than one joined text, so that a colon inside a
  // name cannot make two cases one.
  XbMap<CString, XbMap<CString, Run::ECaseResult>> m_results;
};

// Whether a diff mode keeps a changed case whose result is now `result`:
// every one (eDiffAll), only a failing one (eDiffOnlyFailed) or only a
// passing one (eDiffOnlySuccessful).
bool PassesDiffFilter(SSetup::EDiffFilterMode mode, Run::ECaseResult result);

}  // namespace TestSuite::Report
