// Report::SData from a run: tallies, class and case rows, the line limit of
// case output, and the result vocabulary.
#include "report/ReportData.h"

#include <gtest/gtest.h>

#include <regex>

#include "UnitTestRecords.h"
#include "run/RunDriver.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;

SUnitTest makeClass(const wchar_t* name, std::initializer_list<const wchar_t*> cases) {
  return TestSupport::MakeClass(name, CString(L"/data/") + name + L"/", cases);
}

SCaseResult makeRow(unsigned int classIndex, unsigned int caseIndex, Run::ECaseResult result,
                    const wchar_t* output = L"") {
  SCaseResult row;
  row.uiClassIndex = classIndex;
  row.uiCaseIndex = caseIndex;
  row.eResult = result;
  row.sOutput = output;
  row.dTime = 0.5;
  row.uiMemoryPeak = 100;
  return row;
}

// A run as Run::Run leaves it: the rows and the statistics made from them.
struct SRun {
  SSetup setup;
  XbArray<SUnitTest> classes;
  Run::SResult result;

  SData Build() {
    ComputeStatistics(result.cases, classes.GetCount(), result.statistics);
    SData data;
    BuildReportData(data, setup, classes, result.cases, result.statistics);
    return data;
  }
};

struct SLine {
  std::wstring text;
  bool isError;
  bool operator==(const SLine& other) const { return text == other.text && isError == other.isError; }
};

std::vector<SLine> split(const wchar_t* output, unsigned int limit) {
  std::vector<SLine> lines;
  SplitCaseMessages(output, limit, [&lines](const CString& text, bool isError) {
    lines.push_back(SLine{text.Str(), isError});
  });
  return lines;
}

const wchar_t* const c_fourLines = L"INFO:  a\nb\nERROR: c\nd\n";

TEST(ReportDataTest, RunOfOnlyCancelledCasesHasNoCasesButEveryClass) {
  SRun run;
  run.classes = {makeClass(L"A", {L"a1", L"a2"}), makeClass(L"B", {L"b1"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseCanceled), makeRow(0, 1, Run::eCaseCanceled),
                      makeRow(1, 0, Run::eCaseCanceled)};
  const SData data = run.Build();
  EXPECT_EQ(data.CasesTotal, 0u);
  EXPECT_EQ(data.TimeAvg, 0.0);
  EXPECT_EQ(data.MemoryAvg, 0u);
  EXPECT_TRUE(data.Cases.IsEmpty());
  ASSERT_EQ(data.Classes.GetCount(), 2u);
  EXPECT_EQ(data.Classes[0].Name, L"A");
  EXPECT_EQ(data.Classes[1].Name, L"B");
  EXPECT_EQ(data.ClassesTotal, 0u);
}

TEST(ReportDataTest, ClassWhoseCasesWereAllCancelledHasARowButDoesNotCount) {
  SRun run;
  run.classes = {makeClass(L"Cancelled", {L"x", L"y"}), makeClass(L"Ran", {L"z"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseCanceled), makeRow(0, 1, Run::eCaseCanceled),
                      makeRow(1, 0, Run::eCaseOk)};
  const SData data = run.Build();
  ASSERT_EQ(data.Classes.GetCount(), 2u);
  EXPECT_EQ(data.Classes[0].CasesTotal, 0u);
  EXPECT_EQ(data.Classes[1].CasesTotal, 1u);
  EXPECT_EQ(data.ClassesTotal, 1u);
  EXPECT_EQ(data.ClassesSuccessful, 1u);
  EXPECT_EQ(data.CasesTotal, 1u);
}

TEST(ReportDataTest, ResultFiveCountsUnderErrorsAndResultOneUnderFailures) {
  SRun run;
  run.classes = {makeClass(L"A", {L"unknown", L"error", L"ok"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseUnknown), makeRow(0, 1, Run::eCaseError), makeRow(0, 2, Run::eCaseOk)};
  const SData data = run.Build();
  EXPECT_EQ(data.Errors, 1u);
  EXPECT_EQ(data.Failures, 1u);
  EXPECT_EQ(data.Successful, 1u);
  EXPECT_EQ(data.Classes[0].Errors, 1u);
  EXPECT_EQ(data.Classes[0].Failures, 1u);
  EXPECT_EQ(data.Classes[0].Successful, 1u);
}

TEST(ReportDataTest, EveryResultFallsIntoItsGroup) {
  SRun run;
  run.classes = {makeClass(L"A", {L"r0", L"r1", L"r2", L"r3", L"r4", L"r5", L"r6", L"r7", L"r8"})};
  for (unsigned int i = 0; i < 9; ++i) run.result.cases.Add(makeRow(0, i, static_cast<Run::ECaseResult>(i)));
  const SData data = run.Build();
  EXPECT_EQ(data.CasesTotal, 8u);  // the cancelled row is left out
  EXPECT_EQ(data.Failures, 4u);
  EXPECT_EQ(data.Errors, 3u);
  EXPECT_EQ(data.Successful, 1u);
  EXPECT_EQ(data.Classes[0].CasesTotal, 8u);
  EXPECT_EQ(data.ClassesNotClean, 1u);
}

TEST(ReportDataTest, CaseRowsKeepTheirTableIndexAsIdAndSkipCancelledRows) {
  SRun run;
  run.classes = {makeClass(L"A", {L"first", L"second"}), makeClass(L"B", {L"third"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseOk), makeRow(0, 1, Run::eCaseCanceled), makeRow(1, 0, Run::eCaseError)};
  run.result.cases[2].iMemoryDelta = 12;
  run.result.cases[2].bWarning = true;
  const SData data = run.Build();
  ASSERT_EQ(data.Cases.GetCount(), 2u);
  EXPECT_EQ(data.Cases[0].Id, 0u);
  EXPECT_EQ(data.Cases[0].CaseName, L"first");
  EXPECT_EQ(data.Cases[1].Id, 2u);
  EXPECT_EQ(data.Cases[1].ClassName, L"B");
  EXPECT_EQ(data.Cases[1].CaseName, L"third");
  EXPECT_EQ(data.Cases[1].ResultType, Run::eCaseError);
  EXPECT_EQ(data.Cases[1].MemoryDelta, 12);
  EXPECT_TRUE(data.Cases[1].Warning);
  EXPECT_EQ(data.Cases[1].Time, 0.5);
  EXPECT_EQ(data.Cases[1].Memory, 100u);
}

TEST(ReportDataTest, LeakOfZeroLeavesMessageEmptyAndNegativeDeltaStillGivesIt) {
  EXPECT_TRUE(MakeLeakMessage(0).IsEmpty());
  EXPECT_EQ(MakeLeakMessage(100), L"Speicherleck von 100 Bytes detektiert.");
  EXPECT_EQ(MakeLeakMessage(-24), L"Speicherleck von -24 Bytes detektiert.");

  SRun run;
  run.classes = {makeClass(L"A", {L"none", L"negative"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseOk), makeRow(0, 1, Run::eCaseOk)};
  run.result.cases[1].iMemoryDelta = -24;
  const SData data = run.Build();
  EXPECT_TRUE(data.Cases[0].Message.IsEmpty());
  EXPECT_EQ(data.Cases[1].Message, L"Speicherleck von -24 Bytes detektiert.");
}

TEST(ReportDataTest, SetupFieldsAndExecutionMode) {
  SRun run;
  run.setup.sDataDir = L"/data/tree";
  run.setup.sRunTag = L"tag 1";
  run.setup.run.uiTimeOutSec = 30;
  run.setup.run.uiThreadCount = 6;
  EXPECT_EQ(run.Build().ExecutionMode, L"Internal");
  EXPECT_EQ(run.Build().ThreadCount, 1u);  // not parallel
  run.setup.run.bParallel = true;
  run.setup.run.bExternal = true;
  EXPECT_EQ(run.Build().ExecutionMode, L"External");
  run.setup.run.bIsolated = true;
  const SData data = run.Build();
  EXPECT_EQ(data.ExecutionMode, L"External Isolated");
  EXPECT_EQ(data.ThreadCount, 6u);
  EXPECT_EQ(data.TimeOut, 30u);
  EXPECT_EQ(data.RunTag, L"tag 1");
  EXPECT_EQ(data.DataDirectory, L"/data/tree");
  EXPECT_EQ(data.BuildConfiguration, L"Release x64");
}

TEST(ReportDataTest, MachineDescriptionFollowsItsFormat) {
  SRun run;
  const SData data = run.Build();
  const std::wregex format(LR"(Model: .*, Cores: [1-9][0-9]*, Speed [0-9]+\.[0-9]{3} GHz, Memory [0-9]+\.[0-9] GB)");
  EXPECT_TRUE(std::regex_match(data.Processor.Str(), format)) << data.Processor;
  EXPECT_FALSE(data.MachineName.IsEmpty());
}

TEST(ReportDataTest, BuildInformationComesFromTheLibrary) {
  SRun run;
  const SData data = run.Build();
  EXPECT_EQ(data.PscmInfo != nullptr, GetPscmInfo() != nullptr);
  EXPECT_EQ(data.SvnInfo, nullptr);
}

TEST(ReportDataTest, TimesMemoryAndDatesComeFromTheStatistics) {
  SRun run;
  run.classes = {makeClass(L"A", {L"a", L"b"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseOk), makeRow(0, 1, Run::eCaseOk)};
  run.result.cases[1].dTime = 1.5;
  run.result.cases[1].uiMemoryPeak = 301;
  run.result.statistics.dTimeTotal = 3.0;
  run.result.statistics.dateBegin = XbDateTime(2021, 5, 4, 12, 34, 56);
  run.result.statistics.dateEnd = XbDateTime(2021, 5, 4, 12, 35, 1);
  const SData data = run.Build();
  EXPECT_EQ(data.TimeAvg, 1.0);
  EXPECT_EQ(data.TimeMax, 1.5);
  EXPECT_EQ(data.TimeMin, 0.5);
  EXPECT_EQ(data.TimeTotal, 3.0);
  EXPECT_EQ(data.MemoryAvg, 200u);  // integer division of 401 by 2
  EXPECT_EQ(data.MemoryMax, 301u);
  EXPECT_EQ(data.MemoryMin, 100u);
  EXPECT_EQ(data.DateBegin, L"2021-05-04 12:34:56");
  EXPECT_EQ(data.DateEnd, L"2021-05-04 12:35:01");
}

TEST(ReportDataTest, ClassRowTakesTheFirstContact) {
  SRun run;
  run.classes = {makeClass(L"A", {L"a"}), makeClass(L"B", {L"b"})};
  run.classes[0].Contacts = {SUnitTest::SContact{L"Anna", L"anna@example.com", L"owner"},
                             SUnitTest::SContact{L"Ben", L"ben@example.com", L""}};
  run.result.cases = {makeRow(0, 0, Run::eCaseOk), makeRow(1, 0, Run::eCaseOk)};
  run.result.cases[1].bWarning = true;
  const SData data = run.Build();
  EXPECT_EQ(data.Classes[0].ContactName, L"Anna");
  EXPECT_EQ(data.Classes[0].ContactEMail, L"anna@example.com");
  EXPECT_TRUE(data.Classes[1].ContactName.IsEmpty());
  EXPECT_EQ(data.Classes[1].Warnings, 1u);
  EXPECT_EQ(data.ClassesSuccessful, 2u);
  EXPECT_EQ(data.ClassesNotClean, 1u);
}

TEST(ReportDataTest, OutputIsCutToTheRunsLimitAndEscaped) {
  SRun run;
  run.setup.iMessageReportMax = 2;
  run.classes = {makeClass(L"A", {L"a"})};
  run.result.cases = {makeRow(0, 0, Run::eCaseError, L"ERROR: x < y\nINFO:  Grüße\nthird\n")};
  const SData data = run.Build();
  ASSERT_EQ(data.Cases[0].Dumps.GetCount(), 3u);
  EXPECT_EQ(data.Cases[0].Dumps[0].Text, L"x &lt; y");
  EXPECT_TRUE(data.Cases[0].Dumps[0].IsError);
  EXPECT_EQ(data.Cases[0].Dumps[1].Text, L"Gr&#252;&#223;e");
  EXPECT_FALSE(data.Cases[0].Dumps[1].IsError);
  EXPECT_EQ(data.Cases[0].Dumps[2].Text, L"...");
}

TEST(ReportDataTest, CaseParameterMessageReportMaxOfZeroGivesOnlyTheEllipsis) {
  SRun run;
  run.classes = {makeClass(L"A", {L"output", L"empty"})};
  run.classes[0].Cases[0].Params.SetAt(L"MessageReportMax", XbVariant(std::uint32_t{0}));
  run.classes[0].Cases[1].Params.SetAt(L"MessageReportMax", XbVariant(std::uint32_t{0}));
  run.result.cases = {makeRow(0, 0, Run::eCaseOk, L"one\ntwo\n"), makeRow(0, 1, Run::eCaseOk, L"")};
  const SData data = run.Build();
  ASSERT_EQ(data.Cases[0].Dumps.GetCount(), 1u);
  EXPECT_EQ(data.Cases[0].Dumps[0].Text, L"...");
  EXPECT_FALSE(data.Cases[0].Dumps[0].IsError);
  EXPECT_TRUE(data.Cases[1].Dumps.IsEmpty());
}

TEST(ReportDataTest, CaseParameterMessageReportMaxOverridesTheRunsLimit) {
  SRun run;
  run.setup.iMessageReportMax = 0;
  run.classes = {makeClass(L"A", {L"a"})};
  run.classes[0].Cases[0].Params.SetAt(L"MessageReportMax", XbVariant(std::uint32_t{5}));
  run.result.cases = {makeRow(0, 0, Run::eCaseOk, L"1\n2\n3\n")};
  EXPECT_EQ(run.Build().Cases[0].Dumps.GetCount(), 3u);
}

TEST(SplitCaseMessagesTest, TagsDecideTheKindAndUntaggedLinesInheritIt) {
  const std::vector<SLine> expected = {{L"a", false}, {L"b", false}, {L"c", true}, {L"d", true}};
  EXPECT_EQ(split(c_fourLines, 10), expected);
}

TEST(SplitCaseMessagesTest, LimitEndsWithOneInfoEllipsis) {
  const std::vector<SLine> expected = {{L"a", false}, {L"b", false}, {L"...", false}};
  EXPECT_EQ(split(c_fourLines, 2), expected);
}

TEST(SplitCaseMessagesTest, OutputOfExactlyTheLimitHasNoEllipsis) { EXPECT_EQ(split(c_fourLines, 4).size(), 4u); }

TEST(SplitCaseMessagesTest, LastLineWithoutLineEndIsLost) {
  const std::vector<SLine> expected = {{L"a", false}, {L"b", false}, {L"c", true}};
  EXPECT_EQ(split(L"INFO:  a\nb\nERROR: c\nd", 10), expected);
  EXPECT_TRUE(split(L"only line", 10).empty());
}

TEST(SplitCaseMessagesTest, LimitOfZeroGivesOneEllipsisOrNothing) {
  const std::vector<SLine> expected = {{L"...", false}};
  EXPECT_EQ(split(L"x\n", 0), expected);
  EXPECT_TRUE(split(L"", 0).empty());
  EXPECT_TRUE(split(L"unterminated", 0).empty());
}

TEST(SplitCaseMessagesTest, EmptyLinesVanishAndDoNotCount) {
  const std::vector<SLine> expected = {{L"one", true}, {L"two", true}};
  EXPECT_EQ(split(L"\n\none\n\n\ntwo\n", 2), expected);
}

TEST(SplitCaseMessagesTest, FirstUntaggedLineIsAnErrorAndTextBeforeATagGoes) {
  const std::vector<SLine> expected = {{L"plain", true}, {L"msg", false}, {L"INFO: one blank", false}};
  EXPECT_EQ(split(L"plain\n[t1] INFO:  msg\nINFO: one blank\n", 10), expected);
}

TEST(SplitCaseMessagesTest, TextsAreCleaned) {
  const std::vector<SLine> expected = {{L"&quot;a&quot; &amp; b", true}};
  EXPECT_EQ(split(L"ERROR: \"a\" & b\x01\n", 10), expected);
}

TEST(ResultVocabularyTest, WordsLabelsAndGroups) {
  const wchar_t* const words[] = {L"OK",      L"ERROR",   L"EXCEPTION", L"NOINPUT", L"DIFFERENT",
                                  L"UNKNOWN", L"UNKNOWN", L"CANCELED",  L"TIMEOUT"};
  const wchar_t* const labels[] = {L"Ok",
                                   L"Fehler",
                                   L"Exception",
                                   L"Fehlende Datei",
                                   L"Unterschiede zur Referenz-Ausführung",
                                   L"Unvollständige Ausführung",
                                   L"Unbekannt",
                                   L"Externer Unterbruch des Ausführung",
                                   L"Zeitlimit überschritten"};
  const EResultGroup groups[] = {eGroupOk,    eGroupFailure, eGroupFailure, eGroupFailure, eGroupFailure,
                                 eGroupError, eGroupError,   eGroupError,   eGroupError};
  for (int i = 0; i < 9; ++i) {
    const auto result = static_cast<Run::ECaseResult>(i);
    EXPECT_EQ(GetResultWord(result), words[i]) << i;
    EXPECT_EQ(GetResultLabel(result), labels[i]) << i;
    EXPECT_EQ(GetResultGroup(result), groups[i]) << i;
  }
  EXPECT_EQ(GetResultWord(static_cast<Run::ECaseResult>(9)), L"UNKNOWN");
  EXPECT_EQ(GetResultLabel(static_cast<Run::ECaseResult>(-1)), L"Unbekannt");
  EXPECT_EQ(GetResultGroup(static_cast<Run::ECaseResult>(42)), eGroupError);
}

}  // namespace
