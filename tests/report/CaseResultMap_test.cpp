// The case results of a report by class and case name, and the diff filter.
#include "report/CaseResultMap.h"

#include <gtest/gtest.h>

#include "report_Fixtures.h"

namespace TestSuite::Report {
namespace {

TEST(CaseResultMap, FindsACaseByBothNamesAndTheLaterRowOfOneNameCounts) {
  SData data = ReportTest::MakeEmptyReport();
  ReportTest::AddCase(data, 0, L"Mesh", L"torus", Run::eCaseError);
  ReportTest::AddCase(data, 1, L"Mesh", L"plane", Run::eCaseOk);
  ReportTest::AddCase(data, 2, L"Mesh", L"torus", Run::eCaseTimeout);
  const CCaseResultMap results(data);
  ASSERT_NE(results.Find(L"Mesh", L"torus"), nullptr);
  EXPECT_EQ(*results.Find(L"Mesh", L"torus"), Run::eCaseTimeout);
  EXPECT_EQ(*results.Find(L"Mesh", L"plane"), Run::eCaseOk);
  EXPECT_EQ(results.Find(L"Mesh", L"cube"), nullptr);
  EXPECT_EQ(results.Find(L"Io", L"torus"), nullptr);
}

TEST(CaseResultMap, AColonInANameDoesNotJoinTwoCases) {
  SData data = ReportTest::MakeEmptyReport();
  ReportTest::AddCase(data, 0, L"A:B", L"c", Run::eCaseError);
  const CCaseResultMap results(data);
  EXPECT_EQ(results.Find(L"A", L"B:c"), nullptr);
  EXPECT_NE(results.Find(L"A:B", L"c"), nullptr);
}

TEST(PassesDiffFilter, EachModeKeepsItsResults) {
  EXPECT_TRUE(PassesDiffFilter(SSetup::eDiffAll, Run::eCaseOk));
  EXPECT_TRUE(PassesDiffFilter(SSetup::eDiffAll, Run::eCaseTimeout));
  EXPECT_TRUE(PassesDiffFilter(SSetup::eDiffOnlyFailed, Run::eCaseCanceled));
  EXPECT_FALSE(PassesDiffFilter(SSetup::eDiffOnlyFailed, Run::eCaseOk));
  EXPECT_TRUE(PassesDiffFilter(SSetup::eDiffOnlySuccessful, Run::eCaseOk));
  EXPECT_FALSE(PassesDiffFilter(SSetup::eDiffOnlySuccessful, Run::eCaseError));
}

}  // namespace
}  // namespace TestSuite::Report
