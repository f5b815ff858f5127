#include <gtest/gtest.h>

#include <thread>

#include "services/Utils.h"

using namespace TestSuite;

TEST(UtilsBuild, BuildConfigurationNamesConfigurationAndPlatform) {
#ifdef NDEBUG
  EXPECT_EQ(Utils::GetBuildConfiguration(), CString(L"Release x64"));
#else
  EXPECT_EQ(Utils::GetBuildConfiguration(), CString(L"Debug x64"));
#endif
}

TEST(UtilsBuild, DefaultThreadCountIsTheHardwareConcurrencyAndNeverZero) {
  const unsigned int hardware = std::thread::hardware_concurrency();
  EXPECT_EQ(Utils::GetDefaultThreadCount(), hardware == 0 ? 1u : hardware);
  EXPECT_GE(Utils::GetDefaultThreadCount(), 1u);
}
