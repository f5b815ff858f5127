// Progress and summary output: the case lines, the class headings and the summary of a run.
#include "run/ProgressOutput.h"

#include <fmt/xchar.h>

#include "services/COut.h"

namespace TestSuite {

namespace {

struct SResultText {
  const wchar_t* sText;
  ZoColorRGBA color;
};

SResultText resultText(Run::ECaseResult result) {
  switch (result) {
    case Run::eCaseOk: return {L"OK", ZoColorRGBA::c_GREEN};
    case Run::eCaseError: return {L"FEHLER (Die Ausführung dieses Testfalls ist fehlgeschlagen)", ZoColorRGBA::c_RED};
    case Run::eCaseException:
      return {L"FEHLER (Während der Ausführung dieses Testfalls wurde eine Exception geworfen)", ZoColorRGBA::c_RED};
    case Run::eCaseNoInput:
      return {L"FEHLER (Die Datei mit den Testdaten konnte nicht geladen werden)", ZoColorRGBA::c_RED};
    case Run::eCaseDifferent:
      return {L"FEHLER (Output unterscheidet sich von der Referenz-Ausführung)", ZoColorRGBA::c_RED};
    case Run::eCaseNotFound: return {L"FEHLER (Keinen passenden Testfall gefunden.)", ZoColorRGBA::c_RED};
    case Run::eCaseCanceled:
      return {L"WARNUNG (Ausführung des Testfalls vom Benutzer abgebrochen)", ZoColorRGBA::c_GOLDENROD};
    case Run::eCaseTimeout:
      return {L"FEHLER (Ausführung nach Erreichen des Zeitlimits abgebrochen.)", ZoColorRGBA::c_RED};
    default: return {L"FEHLER (Unbekannter Fehler)", ZoColorRGBA::c_RED};
  }
}

CString countText(unsigned int count, const wchar_t* one, const wchar_t* many) {
  return FormatString(L"%d %s", count, count == 1 ? one : many);
}

void printFailedClasses(const XbArray<SUnitTest>& classes, const SRunStatistics& statistics) {
  COut::Write(L"\n");
  COut::Write(L"Fehlerhafte Klassen:\n");
  for (unsigned int i = 0; i < classes.GetCount() && i < statistics.classes.GetCount(); ++i) {
    const SCaseCounters& counters = statistics.classes[i];
    if (counters.uiTotal != counters.uiResults[Run::eCaseOk])
      COut::Write(L"\t%s: %d fehlerhafte Testfälle\n", classes[i].Name,
                  counters.uiTotal - counters.uiResults[Run::eCaseOk])
          .Color(ZoColorRGBA::c_RED);
  }
}

// The text of an OK row with its warning: a case that passed only on a
// later attempt says so before a leak does.
CString warningText(const SCaseResult& row) {
  if (row.uiAttempts > 1) return FormatString(L"WARNUNG (Erst im %d. Versuch erfolgreich)", row.uiAttempts);
  return FormatString(L"WARNUNG (Ein Speicheranstieg von %d Bytes wurde entdeckt)", row.iMemoryDelta);
}

}  // namespace

void PrintCaseHead(const SRunOptions& options, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                   const RowList& list, unsigned int position) {
  const SCaseResult& row = *list[position];
  if (position == 0 || list[position - 1]->uiClassIndex != row.uiClassIndex) {
    COut::Write(L"%s", unitTest.Name).Bold();
    COut::Write(L"\n");
  }
  // One piece of text for the usual case head, which comes with every case.
  const bool bRepeated = options.uiRepeatCount >= 2;
  if (row.sStartTime.IsEmpty() && !bRepeated) {
    COut::Write(L"\t%s... ", testCase.Name);
  } else {
    if (!row.sStartTime.IsEmpty()) COut::Write(L"[%s] ", row.sStartTime);
    else COut::Write(L"\t");
    if (!bRepeated) COut::Write(L"%s... ", testCase.Name);
    else COut::Write(L"(%d/%d) %s... ", row.uiRepetition + 1, options.uiRepeatCount, testCase.Name);
  }
  COut::Flush();
}

void PrintCaseResult(const SCaseResult& row, bool bShowTimes, bool bShowThreadInfo) {
  const SResultText text = resultText(row.eResult);
  const bool bOkWithWarning = row.eResult == Run::eCaseOk && row.bWarning;
  CString line = bOkWithWarning ? warningText(row) : CString(text.sText);
  const ZoColorRGBA color = bOkWithWarning ? ZoColorRGBA::c_GOLDENROD : text.color;
  if (bShowTimes) line.AppendFormat(L" [%s]", FormatTime(row.dTime, 2));
  if (bShowThreadInfo) {
    line += L' ';
    if (row.iThreadIndex >= 0) line.AppendFormat(L"[T%d]", row.iThreadIndex);
    if (row.iProcessIndex >= 0) line.AppendFormat(L"[P%d]", row.iProcessIndex);
  }
  COut::Write(L"%s", line).Color(color);
  COut::Write(L"\n");
  // Output cut at its limit (or never ended) ends mid-line: the next case
  // line starts on a line of its own.
  const CString& output = row.sOutput;
  if (output.IsEmpty()) return;
  COut::Write(L"%s", output);
  if (output[output.GetLength() - 1] != L'\n') COut::Write(L"\n");
}

CString FormatTime(double x, int digits) {
  if (x == 0.0) return CString(L"0 s");
  struct SUnit {
    double dScale;
    const wchar_t* sUnit;
  };
  const SUnit unit = x < 1e-6    ? SUnit{1e9, L"ns"}
                     : x < 0.001 ? SUnit{1e6, L"µs"}
                     : x < 1.0   ? SUnit{1000.0, L"ms"}
                                 : SUnit{1.0, L"s"};
  // The same digits as "%.*f" gives; this is printed for every case.
  return CString(fmt::format(L"{:.{}f}", x * unit.dScale, digits)) + unit.sUnit;
}

void PrintSummary(const XbArray<SUnitTest>& classes, bool bShowTimes, const SRunStatistics& statistics) {
  const SCaseCounters& total = statistics.total;
  const auto tests = [](unsigned int n) { return countText(n, L"Test", L"Tests"); };
  const auto klassen = [](unsigned int n) { return countText(n, L"Klasse", L"Klassen"); };
  COut::Write(L"\n");
  COut::Write(L"Zusammenfassung\n").Bold().Underlined().Color(ZoColorRGBA::c_DARKBLUE);
  if (bShowTimes) COut::Write(L"\tLaufzeit:\t\t%s\n", FormatTime(statistics.dTimeTotal, 2));
  COut::Write(L"\tAusgeführt:\t%s, %s\n", tests(total.uiTotal), klassen(statistics.uiClassesRun))
      .Color(ZoColorRGBA::c_DARKBLUE);
  COut::Write(L"\tErfolgreich:\t%s, %s\n", tests(total.uiResults[Run::eCaseOk]), klassen(statistics.uiClassesOk))
      .Color(ZoColorRGBA::c_GREEN);
  if (total.uiResults[Run::eCaseOk] < total.uiTotal)
    COut::Write(L"\tFehlerhaft:\t%s, %s\n", tests(total.uiTotal - total.uiResults[Run::eCaseOk]),
                klassen(statistics.uiClassesRun - statistics.uiClassesOk))
        .Color(ZoColorRGBA::c_RED);
  if (total.uiWarnings != 0)
    COut::Write(L"\tMit Warnung:\t%s, %s\n", tests(total.uiWarnings),
                klassen(statistics.uiClassesRun - statistics.uiClassesClean))
        .Color(ZoColorRGBA::c_GOLDENROD);
  if (statistics.uiFlaky != 0)
    COut::Write(L"\tInstabil:\t%s (erst nach Wiederholung erfolgreich)\n", tests(statistics.uiFlaky))
        .Color(ZoColorRGBA::c_GOLDENROD);
  if (statistics.uiFailureLimit != 0)
    COut::Write(L"\tAbgebrochen:\tnach dem %d. fehlerhaften Test (Fehlergrenze)\n", statistics.uiFailureLimit)
        .Color(ZoColorRGBA::c_GOLDENROD);
  if (statistics.uiClassesOk < statistics.uiClassesRun) printFailedClasses(classes, statistics);
}

}  // namespace TestSuite
