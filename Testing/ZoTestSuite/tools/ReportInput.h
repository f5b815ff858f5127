// ReportInput: the loading of an XML report that a tool mode was given on
// the command line, with the one red line that says why it failed.
#pragma once

#include "report/ReportData.h"

namespace TestSuite {

// Loads the report `path` into `data`. False after "Fehler: Datei %s
// existiert nicht.\n" for a missing file, or "Fehler: Daten der Datei %s
// konnten nicht geladen werden.\n" (after the loader's own line) for one
// that does not load.
bool LoadReportInput(const CString& path, Report::SData& data);

}  // namespace TestSuite
