// The tool mode that writes the diff page of two reports given on the
// command line.
#include "ZoTestSuite.h"
#include "foundation/ZoFileSystem.h"
#include "report/DocumentOpener.h"
#include "report/ReportDiffWriter.h"
#include "tools/DiffInputs.h"

namespace TestSuite {

namespace {

CString defaultDiffPath(const CString& pathA, const CString& pathB) {
  CString directoryA, nameA, extensionA, directoryB, nameB, extensionB;
  ZoFileSystem::SplitPath(pathA, directoryA, nameA, extensionA);
  ZoFileSystem::SplitPath(pathB, directoryB, nameB, extensionB);
  return FormatString(L"%sDiff-[%s][%s].html", directoryA, nameA, nameB);
}

}  // namespace

void GenerateReportDiff(const SSetup& setup) {
  Report::SData a;
  Report::SData b;
  if (!LoadDiffInputs(setup, a, b)) return;
  const CString& pathA = setup.diffInputs[0];
  const CString& pathB = setup.diffInputs[1];
  const CString outPath = setup.sDiffOutputPath.IsEmpty() ? defaultDiffPath(pathA, pathB) : setup.sDiffOutputPath;
  Report::WriteReportDiff(outPath, pathA, pathB, a, b, false, setup.bHtmlClassesOnly, setup.bHtmlHideWarnings);
  if (setup.bOpenHtmlReport) Report::OpenDocument(outPath);
}

}  // namespace TestSuite
