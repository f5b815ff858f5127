// The case results of a report by class and case name, and the diff filter.
#include "report/CaseResultMap.h"

namespace TestSuite::Report {

CCaseResultMap::CCaseResultMap(const SData& data) {
  for (const SCaseData& row : data.Cases) m_results[row.ClassName].SetAt(row.CaseName, row.ResultType);
}

const Run::ECaseResult* CCaseResultMap::Find(const CString& className, const CString& caseName) const {
  const auto* classResults = m_results.Find(className);
  return classResults ? classResults->Find(caseName) : nullptr;
}

bool PassesDiffFilter(SSetup::EDiffFilterMode mode, Run::ECaseResult result) {
  if (mode == SSetup::eDiffOnlySuccessful) return result == Run::eCaseOk;
  if (mode == SSetup::eDiffOnlyFailed) return result != Run::eCaseOk;
  return true;
}

}  // namespace TestSuite::Report
