// The tool mode that writes the diff page of two reports given on the
// command line.
#include "ZoTestSuite.h"
#include "report/DocumentOpener.h"
#include "report/ReportDiffWriter.h"
#include "tools/DiffInputs.h"

namespace TestSuite {

void GenerateReportDiff(const SSetup& setup) {
  Report::SData a;
  Report::SData b;
  if (!LoadDiffInputs(setup, a, b)) return;
  const CString& pathA = setup.diffInputs[0];
  const CString& pathB = setup.diffInputs[1];
  const CString outPath = GetDiffOutputPath(setup, L"Diff", L".html");
  Report::WriteReportDiff(outPath, pathA, pathB, a, b, false, setup.bHtmlClassesOnly, setup.bHtmlHideWarnings);
  if (setup.bOpenHtmlReport) Report::OpenDocument(outPath);
}

}  // namespace TestSuite
