// ReportInput: a report named on the command line, loaded or refused.
#include "tools/ReportInput.h"

#include "foundation/ZoFileSystem.h"
#include "report/XmlReportLoader.h"
#include "services/COut.h"

namespace TestSuite {

bool LoadReportInput(const CString& path, Report::SData& data) {
  if (!ZoFileSystem::Exists(path)) {
    COut::Write(L"Fehler: Datei %s existiert nicht.\n", path).Color(ZoColorRGBA::c_RED);
    return false;
  }
  if (Report::LoadReportDataFromXMLFile(path, data)) return true;
  COut::Write(L"Fehler: Daten der Datei %s konnten nicht geladen werden.\n", path).Color(ZoColorRGBA::c_RED);
  return false;
}

}  // namespace TestSuite
