// The selection generators: failed cases of one report, changed cases
// between two.
#include "tools/SelectionGenerators.h"

#include <utility>

#include "foundation/XbMap.h"
#include "report/CaseResultMap.h"
#include "report/XmlReportLoader.h"
#include "tools/DiffInputs.h"

namespace TestSuite {
namespace {

// Builds a selection that lists cases one by one, each class once, in the
// order in which the classes first appear.
class CListedSelection {
 public:
  CListedSelection() : m_data(std::make_unique<CSelectionStore::SData>()) {}

  void Add(const Report::SCaseData& row) {
    unsigned int uiClass = 0;
    if (!m_classIndex.Lookup(row.ClassName, uiClass)) {
      uiClass = m_data->unitTests.GetCount();
      CSelectionStore::SData::SUnitTestSelection unitTest;
      unitTest.sName = row.ClassName;
      m_data->unitTests.Add(std::move(unitTest));
      m_classIndex.SetAt(row.ClassName, uiClass);
    }
    CSelectionStore::SData::SCaseSelection testCase;
    testCase.sName = row.CaseName;
    testCase.bSelect = true;
    m_data->unitTests[uiClass].cases.Add(std::move(testCase));
    ++m_uiCaseCount;
  }

  unsigned int GetCaseCount() const { return m_uiCaseCount; }
  std::unique_ptr<CSelectionStore::SData> Release() { return std::move(m_data); }

 private:
  std::unique_ptr<CSelectionStore::SData> m_data;
  XbMap<CString, unsigned int> m_classIndex;
  unsigned int m_uiCaseCount = 0;
};

// The changed cases of `second` against `first` that the filter keeps.
CListedSelection changedCases(const Report::SData& first, const Report::SData& second, SSetup::EDiffFilterMode mode) {
  const Report::CCaseResultMap firstResults(first);
  CListedSelection selection;
  for (const Report::SCaseData& row : second.Cases) {
    const Run::ECaseResult* before = firstResults.Find(row.ClassName, row.CaseName);
    if (before && *before == row.ResultType) continue;
    if (Report::PassesDiffFilter(mode, row.ResultType)) selection.Add(row);
  }
  return selection;
}

}  // namespace

std::unique_ptr<CSelectionStore::SData> CreateSelectionOfFailedCasesFromReportData(const Report::SData& report) {
  CListedSelection selection;
  for (const Report::SCaseData& row : report.Cases)
    if (row.ResultType != Run::eCaseOk && row.ResultType != Run::eCaseCanceled) selection.Add(row);
  return selection.Release();
}

SSelectionFileOutcome WriteSelectionOfFailedCases(const SSetup& setup) {
  SSelectionFileOutcome outcome;
  Report::SData report;
  if (!Report::LoadReportDataFromXMLFile(setup.sSelectionSourceReport, report)) return outcome;
  outcome.bLoaded = true;
  if (!setup.oXmlReport || setup.oXmlReport->IsEmpty()) return outcome;
  const std::unique_ptr<CSelectionStore::SData> selection = CreateSelectionOfFailedCasesFromReportData(report);
  for (const auto& unitTest : selection->unitTests) outcome.uiCaseCount += unitTest.cases.GetCount();
  CSelectionStore::Write(*selection, *setup.oXmlReport);
  outcome.sPath = *setup.oXmlReport;
  return outcome;
}

void GenerateSelectionFileFromReport(const SSetup& setup) { WriteSelectionOfFailedCases(setup); }

CString GetDiffSelectionPath(const SSetup& setup) { return GetDiffOutputPath(setup, L"DiffSelection", L".xml"); }

SSelectionFileOutcome WriteDiffSelection(const SSetup& setup) {
  SSelectionFileOutcome outcome;
  if (!setup.oDiffFilterMode) return outcome;
  Report::SData first, second;
  if (!LoadDiffInputs(setup, first, second)) return outcome;
  outcome.bLoaded = true;
  CListedSelection selection = changedCases(first, second, *setup.oDiffFilterMode);
  if (selection.GetCaseCount() == 0) return outcome;
  outcome.uiCaseCount = selection.GetCaseCount();
  outcome.sPath = GetDiffSelectionPath(setup);
  CSelectionStore::Write(*selection.Release(), outcome.sPath);
  return outcome;
}

void GenerateDiffSelection(const SSetup& setup) { WriteDiffSelection(setup); }

}  // namespace TestSuite
