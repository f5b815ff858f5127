// The diff result trace: which cases changed between two archived reports,
// and at which revision each of them changed.
#include "report/DiffResultTrace.h"

#include <algorithm>

#include "report/ArchiveScan.h"
#include "report/CaseResultMap.h"
#include "report/ResultDiffSummary.h"
#include "report/TraceLists.h"
#include "report/XmlReportLoader.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

constexpr unsigned int c_uiNotFound = 0xFFFFFFFF;

bool succeeded(Run::ECaseResult result) { return result == Run::eCaseOk; }

// The index of the last scanned report whose path is exactly `path`.
unsigned int findReport(const XbArray<SArchiveEntry>& entries, const CString& path) {
  unsigned int found = c_uiNotFound;
  for (unsigned int i = 0; i < entries.GetCount(); ++i)
    if (entries[i].path == path) found = i;
  return found;
}

// An open trace for every case of `end` that the filter keeps and whose
// exact result `begin` does not have.
void openTraces(const SData& begin, const SData& end, SSetup::EDiffFilterMode mode, std::uint64_t endRevision,
                COpenTraceList& open) {
  const CCaseResultMap beginResults(begin);
  for (const SCaseData& row : end.Cases) {
    if (!PassesDiffFilter(mode, row.ResultType)) continue;
    const Run::ECaseResult* before = beginResults.Find(row.ClassName, row.CaseName);
    if (before && *before == row.ResultType) continue;
    open.Append(
        STrace{row.ClassName, row.CaseName, std::nullopt, SRevisionResult{endRevision, succeeded(row.ResultType)}});
  }
}

// One step back: a case with the outcome of the end report stretches its
// After to `revision`; one with the other outcome has found its Before and
// is finished. Only success or failure counts here, not the exact result.
void stepBack(const SData& report, std::uint64_t revision, COpenTraceList& open, CTraceGroups& finished) {
  const CCaseResultMap results(report);
  open.RemoveIf([&](STrace& trace) {
    const Run::ECaseResult* result = results.Find(trace.Class, trace.Case);
    if (!result) return false;
    const bool bSucceeded = succeeded(*result);
    if (bSucceeded == trace.After.Succeeded) {
      trace.After.Revision = revision;
      return false;
    }
    trace.Before = SRevisionResult{revision, bSucceeded};
    finished.Add(std::move(trace));
    return true;
  });
}

// Walks from the report before `hi` down to `lo`, both reports included,
// until no trace is open; then finishes the traces left without a Before.
unsigned int walk(const XbArray<SArchiveEntry>& entries, unsigned int lo, unsigned int hi, COpenTraceList& open,
                  CTraceGroups& finished) {
  unsigned int uiWalked = 0;
  for (unsigned int i = hi; i-- > lo && !open.IsEmpty();) {
    SData report;
    ++uiWalked;
    // A report that does not load is a revision that is not looked at.
    if (!LoadReportDataFromXMLFile(entries[i].path, report)) continue;
    stepBack(report, entries[i].revision, open, finished);
  }
  open.RemoveIf([&finished](STrace& trace) {
    finished.Add(std::move(trace));
    return true;
  });
  return uiWalked;
}

}  // namespace

STraceOutcome TraceDiffResults(SSetup::EDiffFilterMode mode, const CString& reportA, const CString& reportB,
                               const CString& outPath) {
  STraceOutcome outcome;
  const XbArray<SArchiveEntry> entries = ScanArchive(Utils::GetPathDirectory(reportA));
  const unsigned int indexA = findReport(entries, reportA);
  const unsigned int indexB = findReport(entries, reportB);
  if (indexA == c_uiNotFound || indexB == c_uiNotFound) {
    COut::Write(L"Fehler: Eingabe-XMLs sind keine gültigen Archivreport-XMLs.\n");
    return outcome;
  }
  const unsigned int lo = std::min(indexA, indexB);
  const unsigned int hi = std::max(indexA, indexB);
  if (lo == hi) {
    COut::Write(L"Fehler: die beiden Eingabe-XMLs müssen sich unterscheiden.\n");
    return outcome;
  }
  SData begin, end;
  if (!LoadReportDataFromXMLFile(entries[lo].path, begin) || !LoadReportDataFromXMLFile(entries[hi].path, end))
    return outcome;
  COpenTraceList open;
  openTraces(begin, end, mode, entries[hi].revision, open);
  CTraceGroups finished;
  outcome.uiReportsWalked = walk(entries, lo, hi, open, finished);
  outcome.bTraced = true;
  outcome.uiTraceCount = finished.GetTraceCount();
  outcome.uiBeginRevision = entries[lo].revision;
  outcome.uiEndRevision = entries[hi].revision;
  outcome.bWritten = WriteResultDiffSummary(outPath, outcome.uiBeginRevision, outcome.uiEndRevision, finished, end);
  return outcome;
}

void GenerateDiffResultTrace(SSetup::EDiffFilterMode mode, const CString& reportA, const CString& reportB,
                             const CString& outPath) {
  TraceDiffResults(mode, reportA, reportB, outPath);
}

}  // namespace TestSuite::Report
