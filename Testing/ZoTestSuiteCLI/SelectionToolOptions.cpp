// SelectionToolOptions: parsing the report-to-selection options, and the
// front end's side of those modes: checks before anything is written, the
// messages about what was written, the exit status.
#include "SelectionToolOptions.h"

#include <CLI/CLI.hpp>

#include "FileArguments.h"
#include "FrontEnd.h"
#include "foundation/SystemPath.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUniqueId.h"
#include "report/ReportData.h"
#include "services/COut.h"
#include "tools/ReportInput.h"
#include "tools/SelectionGenerators.h"

namespace TestSuite::CLI {
namespace {

const char* const c_sGroup = "Selections from reports";  // the heading in --help
const wchar_t* const c_szSelectionFile = L"Die Auswahldatei";

SSetup::EDiffFilterMode filterMode(const std::string& word) {
  if (word == "failed") return SSetup::eDiffOnlyFailed;
  if (word == "successful") return SSetup::eDiffOnlySuccessful;
  return SSetup::eDiffAll;
}

void checkCombinations(const SSelectionToolValues& values, const SSetup& setup) {
  const int modes = (values.diffSelection.empty() ? 0 : 1) + (values.failedSelection.empty() ? 0 : 1) +
                    (values.sRerunFailed.empty() ? 0 : 1);
  if (modes > 1) throw CUsageError("--diff-selection, --failed-selection and --rerun-failed exclude each other");
  if (values.failedSelection.size() == 1)
    throw CUsageError("--failed-selection needs two files: the report to read and the selection file to write");
  if (!values.sRerunFailed.empty() && !setup.collectOptions.sSelectionFile.IsEmpty())
    throw CUsageError("--rerun-failed and --select exclude each other");
  if (!values.sRerunFailed.empty() && setup.collectOptions.eSelectionMode != 0)
    throw CUsageError("--rerun-failed and --invert-selection exclude each other");
}

int reportOutcome(const SSelectionFileOutcome& outcome) {
  if (!outcome.bLoaded) return sc_iExitUsage;
  if (outcome.sPath.IsEmpty()) {
    COut::Write(L"Keine geänderten Testfälle: keine Auswahldatei geschrieben.\n");
    return sc_iExitPassed;
  }
  // The selection store has said so when it could not write the file.
  if (!ZoFileSystem::Exists(outcome.sPath)) return sc_iExitFailed;
  COut::Write(L"Auswahldatei geschrieben: %s (Testfälle: %d)\n", outcome.sPath, outcome.uiCaseCount);
  return sc_iExitPassed;
}

int runDiffSelection(const SSetup& setup) {
  if (!setup.sDiffOutputPath.IsEmpty()) {
    if (!CheckWritablePath(setup.sDiffOutputPath)) return sc_iExitUsage;
    if (!CheckOutputSparesInputs(setup.sDiffOutputPath, setup.diffInputs, c_szSelectionFile)) return sc_iExitUsage;
  }
  return reportOutcome(WriteDiffSelection(setup));
}

int runFailedSelection(const SSetup& setup) {
  const CString& report = setup.sSelectionSourceReport;
  const CString& output = *setup.oXmlReport;
  if (!CheckInputExists(report) || !CheckWritablePath(output) ||
      !CheckOutputSparesInputs(output, {report}, c_szSelectionFile))
    return sc_iExitUsage;
  const SSelectionFileOutcome outcome = WriteSelectionOfFailedCases(setup);
  if (!outcome.bLoaded)
    COut::Write(L"Fehler: Daten der Datei %s konnten nicht geladen werden.\n", report).Color(ZoColorRGBA::c_RED);
  return reportOutcome(outcome);
}

// A selection file in the temporary directory, removed when it goes.
class CTemporarySelection {
 public:
  explicit CTemporarySelection(const CSelectionStore::SData& data)
      : m_sPath(ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary) + L"ZoTestSuite-Rerun-" +
                ZoUniqueIdT<CString>::GetUniqueID() + L".xml") {
    CSelectionStore::Write(data, m_sPath);
  }
  ~CTemporarySelection() { ZoFileSystem::DeleteFile(m_sPath); }
  CTemporarySelection(const CTemporarySelection&) = delete;
  CTemporarySelection& operator=(const CTemporarySelection&) = delete;

  const CString& Path() const { return m_sPath; }

 private:
  CString m_sPath;
};

unsigned int countCases(const CSelectionStore::SData& selection) {
  unsigned int count = 0;
  for (const auto& unitTest : selection.unitTests) count += unitTest.cases.GetCount();
  return count;
}

void warnAboutOtherDataDirectory(const Report::SData& report, const SSetup& setup) {
  if (report.DataDirectory.IsEmpty() || report.DataDirectory == setup.sDataDir) return;
  COut::Write(L"Warnung: Der Report stammt aus dem Datenverzeichnis %s.\n", report.DataDirectory)
      .Color(ZoColorRGBA::c_GOLDENROD);
}

}  // namespace

void AddSelectionToolOptions(::CLI::App& app, SSelectionToolValues& values) {
  app.add_option("--diff-selection", values.diffSelection,
                 "Write a selection of the cases whose result changed from report A.xml to report B.xml")
      ->expected(0, -1)
      ->type_name("A.xml B.xml")
      ->group(c_sGroup);
  app.add_option("--diff-output", values.sDiffOutput,
                 "Write the result of a diff mode to FILE (default: beside A.xml, named after both reports)")
      ->type_name("FILE")
      ->group(c_sGroup);
  app.add_option("--diff-filter", values.sDiffFilter,
                 "Which changed cases a diff keeps: all (default), failed (those that now fail) "
                 "or successful (those that now pass)")
      ->check(::CLI::IsMember({"all", "failed", "successful"}))
      ->type_name("WORD")
      ->group(c_sGroup);
  app.add_option("--failed-selection", values.failedSelection,
                 "Write a selection of the failed cases of REPORT.xml to OUT.xml")
      ->expected(1, 2)  // the count is checked when applied, with a message of its own
      ->type_name("REPORT.xml OUT.xml")
      ->group(c_sGroup);
  app.add_option("--rerun-failed", values.sRerunFailed,
                 "Run exactly the cases that failed in REPORT.xml again (with -d and any run options)")
      ->type_name("REPORT.xml")
      ->group(c_sGroup);
}

EMode ApplySelectionToolOptions(const SSelectionToolValues& values, SSetup& setup) {
  checkCombinations(values, setup);
  setup.sDiffOutputPath = PathFromSystem(values.sDiffOutput);
  if (!values.sDiffFilter.empty()) setup.oDiffFilterMode = filterMode(values.sDiffFilter);
  if (!values.diffSelection.empty()) {
    for (const std::string& input : values.diffSelection) setup.diffInputs.Add(PathFromSystem(input));
    if (!setup.oDiffFilterMode) setup.oDiffFilterMode = SSetup::eDiffAll;
    return EMode::DiffSelection;
  }
  if (values.failedSelection.size() == 2) {
    setup.sSelectionSourceReport = PathFromSystem(values.failedSelection[0]);
    setup.oXmlReport = PathFromSystem(values.failedSelection[1]);
    return EMode::FailedSelection;
  }
  if (!values.sRerunFailed.empty()) {
    setup.sSelectionSourceReport = PathFromSystem(values.sRerunFailed);
    return EMode::RerunFailed;
  }
  return EMode::Run;
}

bool IsReportToolMode(EMode mode) {
  return mode == EMode::DiffSelection || mode == EMode::FailedSelection || mode == EMode::DiffPage ||
         mode == EMode::NormalizeArchive || mode == EMode::Trace || mode == EMode::MergeReports;
}

int RunSelectionTool(EMode mode, const SSetup& setup) {
  return mode == EMode::DiffSelection ? runDiffSelection(setup) : runFailedSelection(setup);
}

int RerunFailedCases(SSetup& setup, const std::function<int()>& runTests) {
  const CString report = setup.sSelectionSourceReport;
  Report::SData data;
  if (!LoadReportInput(report, data)) return sc_iExitUsage;
  const std::unique_ptr<CSelectionStore::SData> selection = CreateSelectionOfFailedCasesFromReportData(data);
  const unsigned int uiCount = countCases(*selection);
  if (uiCount == 0) {
    COut::Write(L"Keine fehlgeschlagenen Testfälle in %s.\n", report).Color(ZoColorRGBA::c_GREEN);
    return sc_iExitPassed;
  }
  warnAboutOtherDataDirectory(data, setup);
  COut::Write(L"Fehlgeschlagene Testfälle aus %s: %d\n", report, uiCount);
  const CTemporarySelection file(*selection);
  if (!ZoFileSystem::Exists(file.Path())) return sc_iExitInternal;  // the selection store has said why
  setup.collectOptions.sSelectionFile = file.Path();
  return runTests();
}

}  // namespace TestSuite::CLI
