// run_overhead_GoogleTestCases: the anchor of the run overhead benchmark, a
// GoogleTest program of 10,000 trivial tests in 100 suites of 100 each.
//
// The tests are registered in a loop through testing::RegisterTest, which
// GoogleTest provides for tests made at run time; they run through the same
// machinery as tests written with TEST, and the program compiles in seconds
// instead of minutes. Every test passes at once.
#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int c_iSuites = 100;
constexpr int c_iTestsPerSuite = 100;

class CTrivialTest : public testing::Test {
 public:
  void TestBody() override {}
};

void registerTests() {
  for (int suite = 0; suite < c_iSuites; ++suite) {
    const std::string suiteName = std::string("Trivial").append(std::to_string(suite));
    for (int test = 0; test < c_iTestsPerSuite; ++test) {
      const std::string testName = std::string("t").append(std::to_string(test));
      testing::RegisterTest(suiteName.c_str(), testName.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                            []() -> testing::Test* { return new CTrivialTest; });
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  registerTests();
  return RUN_ALL_TESTS();
}
