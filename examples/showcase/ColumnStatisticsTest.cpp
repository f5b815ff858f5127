// ColumnStatisticsTest: each "*.in" file of the class's directory is a
// column of numbers; its description by DescribeColumn must equal the
// reference file of the same name ending in ".ref".
#include "ColumnStatistics.h"
#include "ReferenceFileTest.h"

class ColumnStatisticsTest : public ReferenceFileTest {
  XB_DECLARE_DYNCREATE(ColumnStatisticsTest)

  ColumnStatisticsTest() : ReferenceFileTest(L"*.in", L".ref") {}

 protected:
  std::optional<std::string> Compute(const std::string& input) const override {
    return Showcase::DescribeColumn(input);
  }
};

XB_IMPLEMENT_DYNCREATE(ColumnStatisticsTest, ReferenceFileTest);
