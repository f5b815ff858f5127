// The row tables of a report diff: which rows there are, in which order,
// their ratios, and the judgement of every row of both tables.
#include "report/ReportDiff.h"

#include <gtest/gtest.h>

#include "report_Fixtures.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

// A record with one class "C" and one case "C:x" of the given outcome.
SData oneCase(Run::ECaseResult result, bool warning = false) {
  SData data = MakeEmptyReport();
  const bool failed = result != Run::eCaseOk;
  AddClass(data, L"C", 1, failed ? 1 : 0, 0, warning ? 1 : 0);
  AddCase(data, 0, L"C", L"x", result, warning);
  return data;
}

EDiffRowState judgeCase(const SData& a, const SData& b, bool hideWarnings, bool ignoreOneSided = false) {
  const std::vector<SDiffCaseRow> rows = BuildDiffCaseRows(a, b, ignoreOneSided, hideWarnings);
  EXPECT_EQ(rows.size(), 1u);
  return rows.empty() ? eDiffNone : rows[0].State;
}

EDiffRowState judgeClass(const SData& a, const SData& b, bool hideWarnings, bool ignoreOneSided = false) {
  const std::vector<SDiffClassRow> rows = BuildDiffClassRows(a, b, ignoreOneSided, hideWarnings);
  EXPECT_EQ(rows.size(), 1u);
  return rows.empty() ? eDiffNone : rows[0].State;
}

SData oneClass(unsigned int cases, unsigned int failures, unsigned int errors, unsigned int warnings) {
  SData data = MakeEmptyReport();
  AddClass(data, L"C", cases, failures, errors, warnings);
  return data;
}

TEST(ReportDiffTest, RowTagsAndTexts) {
  EXPECT_STREQ(GetDiffRowTag(eDiffNone), L"<tr>");
  EXPECT_STREQ(GetDiffRowTag(eDiffDifferent), L"<tr class=\"diff\">");
  EXPECT_STREQ(GetDiffRowTag(eDiffWorse), L"<tr class=\"worse\">");
  EXPECT_STREQ(GetDiffRowTag(eDiffBetter), L"<tr class=\"better\">");
  EXPECT_STREQ(GetDiffRowText(eDiffNone), L"");
  EXPECT_STREQ(GetDiffRowText(eDiffDifferent), L"Different");
  EXPECT_STREQ(GetDiffRowText(eDiffWorse), L"Worse");
  EXPECT_STREQ(GetDiffRowText(eDiffBetter), L"Improved");
}

TEST(ReportDiffTest, IdenticalReportsGivePlainRowsWithRatiosOfOne) {
  const SData report = MakeFixedReport();
  for (const SDiffCaseRow& row : BuildDiffCaseRows(report, report, false, false)) {
    EXPECT_EQ(row.State, eDiffNone) << row.Key;
    EXPECT_DOUBLE_EQ(row.TimeRatio, 1.0) << row.Key;
    EXPECT_FLOAT_EQ(row.MemoryRatio, 1.0f) << row.Key;
  }
  for (const SDiffClassRow& row : BuildDiffClassRows(report, report, false, false))
    EXPECT_EQ(row.State, eDiffNone) << row.Name;
}

TEST(ReportDiffTest, RowsAreSortedByKeyWithBothIndices) {
  SData a = MakeEmptyReport();
  AddCase(a, 0, L"B", L"y", Run::eCaseOk);
  AddCase(a, 1, L"A", L"z", Run::eCaseOk);
  SData b = MakeEmptyReport();
  AddCase(b, 0, L"C", L"w", Run::eCaseOk);
  AddCase(b, 1, L"B", L"y", Run::eCaseOk);
  const std::vector<SDiffCaseRow> rows = BuildDiffCaseRows(a, b, false, true);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].Key, L"A:z");
  EXPECT_EQ(rows[0].IndexA, 1u);
  EXPECT_EQ(rows[0].IndexB, c_DiffMissing);
  EXPECT_EQ(rows[1].Key, L"B:y");
  EXPECT_EQ(rows[1].IndexA, 0u);
  EXPECT_EQ(rows[1].IndexB, 1u);
  EXPECT_EQ(rows[2].Key, L"C:w");
  EXPECT_EQ(rows[2].IndexA, c_DiffMissing);
  EXPECT_EQ(rows[2].IndexB, 0u);
}

TEST(ReportDiffTest, ClassNamesDifferingInCaseAreTwoClasses) {
  SData a = MakeEmptyReport();
  AddClass(a, L"name", 1, 0, 0, 0);
  SData b = MakeEmptyReport();
  AddClass(b, L"Name", 1, 0, 0, 0);
  const std::vector<SDiffClassRow> rows = BuildDiffClassRows(a, b, false, true);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].Name, L"Name");  // upper case sorts first
  EXPECT_EQ(rows[0].State, eDiffDifferent);
  EXPECT_EQ(rows[1].Name, L"name");
  EXPECT_EQ(rows[1].State, eDiffDifferent);
}

TEST(ReportDiffTest, OfTwoEqualKeysOnlyTheFirstIsCompared) {
  SData a = oneCase(Run::eCaseOk);
  AddCase(a, 1, L"C", L"x", Run::eCaseError);
  SData b = oneCase(Run::eCaseOk);
  AddCase(b, 1, L"C", L"x", Run::eCaseTimeout);
  const std::vector<SDiffCaseRow> rows = BuildDiffCaseRows(a, b, false, true);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].IndexA, 0u);
  EXPECT_EQ(rows[0].IndexB, 0u);
  EXPECT_EQ(rows[0].State, eDiffNone);
  AddClass(a, L"C", 5, 5, 0, 0);
  const std::vector<SDiffClassRow> classRows = BuildDiffClassRows(a, b, false, true);
  ASSERT_EQ(classRows.size(), 1u);
  EXPECT_EQ(classRows[0].IndexA, 0u);
  EXPECT_EQ(classRows[0].State, eDiffNone);
}

TEST(ReportDiffTest, RatiosAreBOverAAndZeroWhereANeedsNothing) {
  SData a = oneCase(Run::eCaseOk);
  SData b = oneCase(Run::eCaseOk);
  a.Cases[0].Time = 2.0;
  b.Cases[0].Time = 3.0;
  a.Cases[0].Memory = 0;
  b.Cases[0].Memory = 500;
  std::vector<SDiffCaseRow> rows = BuildDiffCaseRows(a, b, false, true);
  EXPECT_DOUBLE_EQ(rows[0].TimeRatio, 1.5);
  EXPECT_EQ(rows[0].MemoryRatio, 0.0f);
  EXPECT_EQ(rows[0].State, eDiffNone);  // time and memory never judge
  a.Cases[0].Time = 0.0;
  a.Cases[0].Memory = 3;
  b.Cases[0].Memory = 1;
  rows = BuildDiffCaseRows(a, b, false, true);
  EXPECT_EQ(rows[0].TimeRatio, 0.0);
  EXPECT_EQ(rows[0].MemoryRatio, static_cast<float>(1.0 / 3.0));
}

TEST(ReportDiffTest, OneSidedRowsHaveNoRatio) {
  const std::vector<SDiffCaseRow> rows = BuildDiffCaseRows(oneCase(Run::eCaseOk), MakeEmptyReport(), false, true);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].TimeRatio, 1.0);
  EXPECT_EQ(rows[0].MemoryRatio, 1.0f);
}

TEST(ReportDiffTest, FromOneFailureToAnotherIsDifferent) {
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseError), oneCase(Run::eCaseDifferent), true), eDiffDifferent);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseTimeout), oneCase(Run::eCaseException), false), eDiffDifferent);
}

TEST(ReportDiffTest, TimeOutToOkIsBetterAndBack) {
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseTimeout), oneCase(Run::eCaseOk), true), eDiffBetter);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk), oneCase(Run::eCaseTimeout), true), eDiffWorse);
}

TEST(ReportDiffTest, WarningLostIsBetterEvenWithWarningsHidden) {
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk, true), oneCase(Run::eCaseOk), true), eDiffBetter);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk, true), oneCase(Run::eCaseOk), false), eDiffBetter);
  // Only the same result is asked for: a failure that lost its warning is
  // better too, while a changed failure is only different.
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseError, true), oneCase(Run::eCaseError), true), eDiffBetter);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseError, true), oneCase(Run::eCaseDifferent), true), eDiffDifferent);
}

TEST(ReportDiffTest, WarningGainedIsWorseOnlyWithWarningsShown) {
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk), oneCase(Run::eCaseOk, true), false), eDiffWorse);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk), oneCase(Run::eCaseOk, true), true), eDiffNone);
}

TEST(ReportDiffTest, BetterResultWinsOverAGainedWarning) {
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseError), oneCase(Run::eCaseOk, true), false), eDiffBetter);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk, true), oneCase(Run::eCaseError), false), eDiffWorse);
}

TEST(ReportDiffTest, OneSidedCases) {
  const SData empty = MakeEmptyReport();
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk), empty, true), eDiffDifferent);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseError), empty, false), eDiffDifferent);
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseError), true), eDiffWorse);
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseOk), false), eDiffDifferent);
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseOk, true), false), eDiffDifferent);
  // The reversed warning test: a new passing case with a warning is worse
  // only while warnings are hidden.
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseOk, true), true), eDiffWorse);
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseOk), true), eDiffDifferent);
  EXPECT_EQ(judgeCase(empty, oneCase(Run::eCaseError), true, true), eDiffNone);
  EXPECT_EQ(judgeCase(oneCase(Run::eCaseOk), empty, true, true), eDiffNone);
}

TEST(ReportDiffTest, ClassWithOneFailureLessAndMoreWarningsIsBetter) {
  EXPECT_EQ(judgeClass(oneClass(4, 2, 0, 0), oneClass(4, 1, 0, 3), false), eDiffBetter);
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 3), oneClass(4, 1, 1, 0), false), eDiffWorse);
}

TEST(ReportDiffTest, ClassWarningsCountOnlyWhenShown) {
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 0), oneClass(4, 0, 1, 2), false), eDiffWorse);
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 2), oneClass(4, 0, 1, 0), false), eDiffBetter);
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 0), oneClass(4, 0, 1, 2), true), eDiffNone);
}

TEST(ReportDiffTest, ClassWithOtherCaseCountIsDifferent) {
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 0), oneClass(5, 1, 0, 0), true), eDiffDifferent);
  EXPECT_EQ(judgeClass(oneClass(4, 1, 0, 1), oneClass(5, 1, 0, 1), false), eDiffDifferent);
}

TEST(ReportDiffTest, OneSidedClasses) {
  const SData empty = MakeEmptyReport();
  EXPECT_EQ(judgeClass(oneClass(2, 1, 0, 0), empty, false), eDiffDifferent);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 1, 0, 0), true), eDiffWorse);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 0, 1, 0), true), eDiffWorse);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 0, 0, 1), false), eDiffWorse);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 0, 0, 1), true), eDiffDifferent);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 0, 0, 0), false), eDiffDifferent);
  EXPECT_EQ(judgeClass(empty, oneClass(2, 1, 0, 0), true, true), eDiffNone);
  EXPECT_EQ(judgeClass(oneClass(2, 1, 0, 0), empty, true, true), eDiffNone);
}

}  // namespace
