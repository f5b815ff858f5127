// DiffResultTrace: the trace of the cases that changed between two archived
// reports back through the archive, to the revision at which each of them
// changed, written as a ResultDiffSummary file grouped by class with the
// class's contact.
#pragma once

#include <cstdint>

#include "ZoTestSuite.h"

namespace TestSuite::Report {

// What a trace did, for a front end that tells the user; the exported
// function itself says only what goes wrong.
struct STraceOutcome {
  bool bTraced = false;   // both reports were found and loaded, and the walk was done
  bool bWritten = false;  // the summary file was written whole
  std::uint64_t uiBeginRevision = 0;
  std::uint64_t uiEndRevision = 0;
  unsigned int uiTraceCount = 0;     // cases in the summary
  unsigned int uiReportsWalked = 0;  // reports between end and begin loaded by the walk, the begin included
};

// Both reports must be archive reports in the directory of `reportA`,
// spelled as the archive scan spells their paths; the older one is the
// begin, whatever the order of the arguments. Traces every case of the end
// report that `mode` keeps and whose result differs from the begin report
// (or that the begin report lacks), walking back from the end to the begin
// until no trace is open, and writes the summary to `outPath`. Says
// "Fehler: Eingabe-XMLs sind keine gültigen Archivreport-XMLs." when an
// input is not in the scan and "Fehler: die beiden Eingabe-XMLs müssen sich
// unterscheiden." when both name the same report; a report that does not
// load stops it (the loader has said why). A summary that cannot be written
// is left as far as it came, without a word.
void GenerateDiffResultTrace(SSetup::EDiffFilterMode mode, const CString& reportA, const CString& reportB,
                             const CString& outPath);
// GenerateDiffResultTrace, with its outcome.
STraceOutcome TraceDiffResults(SSetup::EDiffFilterMode mode, const CString& reportA, const CString& reportB,
                               const CString& outPath);

}  // namespace TestSuite::Report
