// The diff inputs and derived output names shared by the report diff, the diff result trace
// and the diff selection.
#include "tools/DiffInputs.h"

#include "foundation/ZoFileSystem.h"
#include "report/XmlReportLoader.h"
#include "services/COut.h"

namespace TestSuite {

bool LoadDiffInputs(const SSetup& setup, Report::SData& first, Report::SData& second) {
  if (setup.diffInputs.GetCount() != 2) {
    COut::Write(L"Fehler Diff: Es müssen zwei Dateien angegeben werden.\n");
    return false;
  }
  for (const CString& path : setup.diffInputs) {
    if (!ZoFileSystem::Exists(path)) {
      COut::Write(L"Fehler Diff: Datei %s existiert nicht.\n", path);
      return false;
    }
  }
  Report::SData* const targets[] = {&first, &second};
  for (unsigned int i = 0; i < 2; ++i) {
    if (!Report::LoadReportDataFromXMLFile(setup.diffInputs[i], *targets[i])) {
      COut::Write(L"Fehler Diff: Daten der Datei %s konnten nicht geladen werden.\n", setup.diffInputs[i]);
      return false;
    }
  }
  return true;
}

CString GetDiffOutputPath(const SSetup& setup, const wchar_t* prefix, const wchar_t* extension) {
  if (!setup.sDiffOutputPath.IsEmpty()) return setup.sDiffOutputPath;
  CString firstDirectory, firstName, secondDirectory, secondName, ignored;
  ZoFileSystem::SplitPath(setup.diffInputs[0], firstDirectory, firstName, ignored);
  ZoFileSystem::SplitPath(setup.diffInputs[1], secondDirectory, secondName, ignored);
  return FormatString(L"%s%s-[%s][%s]%s", firstDirectory, prefix, firstName, secondName, extension);
}

}  // namespace TestSuite
