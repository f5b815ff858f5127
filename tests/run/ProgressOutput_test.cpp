#include "run/ProgressOutput.h"

#include <gtest/gtest.h>

#include "RunTestClasses.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

TEST(FormatTime, ChoosesTheUnitByTheFirstRuleThatHolds) {
  EXPECT_EQ(FormatTime(0.0, 2), CString(L"0 s"));
  EXPECT_EQ(FormatTime(0.0123, 2), CString(L"12.30ms"));
  EXPECT_EQ(FormatTime(2.5, 2), CString(L"2.50s"));
  EXPECT_EQ(FormatTime(5400.0, 2), CString(L"5400.00s"));
  EXPECT_EQ(FormatTime(0.0000005, 2), CString(L"500.00ns"));
  EXPECT_EQ(FormatTime(0.0005, 2), CString(L"500.00µs"));
  EXPECT_EQ(FormatTime(-1.0, 2), CString(L"-1000000000.00ns"));
}

// The digits are those of "%.*f", rounding of halves included.
TEST(FormatTime, RoundsAsPrintfDoes) {
  for (const double seconds : {1.005, 2.675, 1.125, 1.375, 3.14159265, 1.0 + 1e-12, 99.995, 12345.6789}) {
    for (int digits = 0; digits <= 4; ++digits)
      EXPECT_EQ(FormatTime(seconds, digits), FormatString(L"%.*f", digits, seconds) + L"s")
          << seconds << " with " << digits << " digits";
  }
}

TEST(PrintCase, SequentialRunOfOneClassWithTwoCases) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"Klasse", {L"eins", L"zwei"});
  SCaseResult rows[2];
  rows[1].uiCaseIndex = 1;
  RowList list;
  list.Add(&rows[0]);
  list.Add(&rows[1]);
  COutRecorder recorder;
  for (unsigned int i = 0; i < 2; ++i) {
    rows[i].eResult = Run::eCaseOk;
    rows[i].dTime = 0.0123;
    PrintCaseHead(SRunOptions(), unitTest, unitTest.Cases[i], list, i);
    PrintCaseResult(rows[i], true, false);
  }
  EXPECT_EQ(recorder.Text(), CString(L"Klasse\n\teins... OK [12.30ms]\n\tzwei... OK [12.30ms]\n"));
  const auto messages = recorder.Messages();
  EXPECT_TRUE(messages[0].bBold);
  EXPECT_EQ(messages[0].sText, CString(L"Klasse"));
  ASSERT_EQ(messages.size(), 8u);
  EXPECT_EQ(messages[2].sText, CString(L"\teins... ")) << "the usual case head is one piece";
  EXPECT_EQ(messages[3].color, ZoColorRGBA::c_GREEN);
}

TEST(PrintCase, RepetitionsAndStartTimes) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"K", {L"c"});
  SRunOptions options;
  options.uiRepeatCount = 3;
  SCaseResult rows[3];
  RowList list;
  for (unsigned int r = 0; r < 3; ++r) {
    rows[r].uiRepetition = r;
    list.Add(&rows[r]);
  }
  rows[2].sStartTime = L"2026-11-22 10:00:00.123";
  COutRecorder recorder;
  for (unsigned int r = 0; r < 3; ++r) PrintCaseHead(options, unitTest, unitTest.Cases[0], list, r);
  EXPECT_EQ(recorder.Text(), CString(L"K\n\t(1/3) c... \t(2/3) c... [2026-11-22 10:00:00.123] (3/3) c... "));
}

TEST(PrintCase, ClassHeadingComesAgainWhenTheClassChanges) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"A", {L"c"});
  SCaseResult rows[3];
  rows[1].uiClassIndex = 1;
  RowList list;
  for (auto& row : rows) list.Add(&row);
  COutRecorder recorder;
  PrintCaseHead(SRunOptions(), unitTest, unitTest.Cases[0], list, 2);
  EXPECT_EQ(recorder.Text(), CString(L"A\n\tc... "));
}

TEST(PrintCase, ResultTextsAndColours) {
  struct SExpected {
    Run::ECaseResult eResult;
    const wchar_t* sText;
    ZoColorRGBA color;
  };
  const SExpected table[] = {
      {Run::eCaseError, L"FEHLER (Die Ausführung dieses Testfalls ist fehlgeschlagen)", ZoColorRGBA::c_RED},
      {Run::eCaseException, L"FEHLER (Während der Ausführung dieses Testfalls wurde eine Exception geworfen)",
       ZoColorRGBA::c_RED},
      {Run::eCaseNoInput, L"FEHLER (Die Datei mit den Testdaten konnte nicht geladen werden)", ZoColorRGBA::c_RED},
      {Run::eCaseDifferent, L"FEHLER (Output unterscheidet sich von der Referenz-Ausführung)", ZoColorRGBA::c_RED},
      {Run::eCaseUnknown, L"FEHLER (Unbekannter Fehler)", ZoColorRGBA::c_RED},
      {Run::eCaseNotFound, L"FEHLER (Keinen passenden Testfall gefunden.)", ZoColorRGBA::c_RED},
      {Run::eCaseCanceled, L"WARNUNG (Ausführung des Testfalls vom Benutzer abgebrochen)", ZoColorRGBA::c_GOLDENROD},
      {Run::eCaseTimeout, L"FEHLER (Ausführung nach Erreichen des Zeitlimits abgebrochen.)", ZoColorRGBA::c_RED},
      {static_cast<Run::ECaseResult>(9), L"FEHLER (Unbekannter Fehler)", ZoColorRGBA::c_RED},
      {static_cast<Run::ECaseResult>(-1), L"FEHLER (Unbekannter Fehler)", ZoColorRGBA::c_RED},
  };
  for (const SExpected& expected : table) {
    SCaseResult row;
    row.eResult = expected.eResult;
    COutRecorder recorder;
    PrintCaseResult(row, false, false);
    const auto messages = recorder.Messages();
    ASSERT_EQ(messages.size(), 2u) << "no piece for an empty output";
    EXPECT_EQ(messages[0].sText, CString(expected.sText));
    EXPECT_EQ(messages[0].color, expected.color);
    EXPECT_EQ(messages[1].sText, CString(L"\n"));
  }
}

TEST(PrintCase, WarningTimesTagsAndOutput) {
  SCaseResult row;
  row.eResult = Run::eCaseOk;
  row.bWarning = true;
  row.iMemoryDelta = 100;
  row.sOutput = L"INFO:  x\n";
  COutRecorder recorder;
  PrintCaseResult(row, true, true);
  const auto messages = recorder.Messages();
  // dTime exactly 0 reads "0 s"; neither tag set leaves one trailing blank.
  EXPECT_EQ(messages[0].sText, CString(L"WARNUNG (Ein Speicheranstieg von 100 Bytes wurde entdeckt) [0 s] "));
  EXPECT_EQ(messages[0].color, ZoColorRGBA::c_GOLDENROD);
  EXPECT_EQ(messages[2].sText, CString(L"INFO:  x\n"));
  EXPECT_FALSE(messages[2].bHasColor);
  recorder.Clear();
  row.bWarning = false;
  row.iThreadIndex = 3;
  row.iProcessIndex = 12;
  PrintCaseResult(row, false, true);
  EXPECT_EQ(recorder.Messages()[0].sText, CString(L"OK [T3][P12]"));
}

TEST(PrintSummary, NothingRan) {
  SRunStatistics statistics;
  COutRecorder recorder;
  PrintSummary({}, false, statistics);
  EXPECT_EQ(recorder.Text(),
            CString(L"\nZusammenfassung\n\tAusgeführt:\t0 Tests, 0 Klassen\n\tErfolgreich:\t0 Tests, 0 Klassen\n"));
  const auto messages = recorder.Messages();
  EXPECT_TRUE(messages[1].bBold);
  EXPECT_TRUE(messages[1].bUnderlined);
  EXPECT_EQ(messages[1].color, ZoColorRGBA::c_DARKBLUE);
}

TEST(PrintSummary, OneTestInOneClassWithTime) {
  SRunStatistics statistics;
  statistics.total.uiTotal = 1;
  statistics.total.uiResults[0] = 1;
  statistics.uiClassesRun = statistics.uiClassesOk = statistics.uiClassesClean = 1;
  statistics.dTimeTotal = 2.5;
  COutRecorder recorder;
  PrintSummary({}, true, statistics);
  EXPECT_EQ(recorder.Text(), CString(L"\nZusammenfassung\n\tLaufzeit:\t\t2.50s\n\tAusgeführt:\t1 Test, 1 Klasse\n"
                                     L"\tErfolgreich:\t1 Test, 1 Klasse\n"));
}

TEST(PrintSummary, FailuresWarningsAndFailedClasses) {
  XbArray<SUnitTest> classes;
  classes.Add(RunTestClasses::MakeClass(L"Gut", {}));
  classes.Add(RunTestClasses::MakeClass(L"Schlecht", {}));
  SRunStatistics statistics;
  statistics.classes.SetCount(2);
  statistics.classes[0].uiTotal = 2;
  statistics.classes[0].uiResults[0] = 2;
  statistics.classes[0].uiWarnings = 1;
  statistics.classes[1].uiTotal = 1;
  statistics.classes[1].uiResults[1] = 1;
  statistics.total.uiTotal = 3;
  statistics.total.uiResults[0] = 2;
  statistics.total.uiWarnings = 1;
  statistics.uiClassesRun = 2;
  statistics.uiClassesOk = 1;
  statistics.uiClassesClean = 0;
  COutRecorder recorder;
  PrintSummary(classes, false, statistics);
  EXPECT_EQ(recorder.Text(),
            CString(L"\nZusammenfassung\n\tAusgeführt:\t3 Tests, 2 Klassen\n\tErfolgreich:\t2 Tests, 1 Klasse\n"
                    L"\tFehlerhaft:\t1 Test, 1 Klasse\n\tMit Warnung:\t1 Test, 2 Klassen\n\nFehlerhafte Klassen:\n"
                    L"\tSchlecht: 1 fehlerhafte Testfälle\n"));
}

// Output cut at its limit ends mid-line; the next case line must not start
// behind it.
TEST(PrintCase, OutputThatEndsMidLineIsFollowedByALineEnd) {
  SCaseResult row;
  row.eResult = Run::eCaseOk;
  row.sOutput = L"INFO:  erste\nabgeschnitt";
  COutRecorder recorder;
  PrintCaseResult(row, false, false);
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 4u);
  EXPECT_EQ(messages[2].sText, CString(L"INFO:  erste\nabgeschnitt"));
  EXPECT_EQ(messages[3].sText, CString(L"\n"));
  recorder.Clear();
  row.sOutput = L"INFO:  ganz\n";
  PrintCaseResult(row, false, false);
  EXPECT_EQ(recorder.Messages().size(), 3u);
}

TEST(PrintCase, AFlakyCaseSaysOnWhichAttemptItPassed) {
  SCaseResult row;
  row.eResult = Run::eCaseOk;
  row.bWarning = true;
  row.iMemoryDelta = 100;
  row.uiAttempts = 3;
  COutRecorder recorder;
  PrintCaseResult(row, false, false);
  EXPECT_EQ(recorder.Messages()[0].sText, CString(L"WARNUNG (Erst im 3. Versuch erfolgreich)"));
  EXPECT_EQ(recorder.Messages()[0].color, ZoColorRGBA::c_GOLDENROD);
  recorder.Clear();
  row.eResult = Run::eCaseError;
  PrintCaseResult(row, false, false);
  EXPECT_EQ(recorder.Messages()[0].sText, CString(L"FEHLER (Die Ausführung dieses Testfalls ist fehlgeschlagen)"));
}

TEST(PrintSummary, FlakyCasesAndTheFailureLimitThatStoppedTheRun) {
  SRunStatistics statistics;
  statistics.total.uiTotal = 3;
  statistics.total.uiResults[0] = 3;
  statistics.total.uiWarnings = 1;
  statistics.uiClassesRun = statistics.uiClassesOk = 1;
  statistics.uiFlaky = 1;
  statistics.uiFailureLimit = 2;
  COutRecorder recorder;
  PrintSummary({}, false, statistics);
  EXPECT_EQ(recorder.Text(),
            CString(L"\nZusammenfassung\n\tAusgeführt:\t3 Tests, 1 Klasse\n\tErfolgreich:\t3 Tests, 1 Klasse\n"
                    L"\tMit Warnung:\t1 Test, 1 Klasse\n"
                    L"\tInstabil:\t1 Test (erst nach Wiederholung erfolgreich)\n"
                    L"\tAbgebrochen:\tnach dem 2. fehlerhaften Test (Fehlergrenze)\n"));
  const auto messages = recorder.Messages();
  EXPECT_EQ(messages[messages.size() - 2].color, ZoColorRGBA::c_GOLDENROD);
  EXPECT_EQ(messages.back().color, ZoColorRGBA::c_GOLDENROD);
}
