#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "foundation/platform/System.h"

TEST(System, HostNameIsTheKernelsName) {
  std::ifstream kernel("/proc/sys/kernel/hostname");
  std::string expected;
  std::getline(kernel, expected);
  ASSERT_FALSE(expected.empty());
  EXPECT_EQ(ZoPlatform::System::GetHostName(), expected);
}

TEST(System, ProcessIdIsOurOwn) {
  std::ifstream stat("/proc/self/stat");  // begins with the process id
  std::uint32_t expected = 0;
  stat >> expected;
  EXPECT_EQ(ZoPlatform::System::GetProcessId(), expected);
  GTEST_FLAG_SET(death_test_style, "fast");
  const std::uint32_t parent = ZoPlatform::System::GetProcessId();
  EXPECT_EXIT(std::_Exit(ZoPlatform::System::GetProcessId() != parent ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(System, RaiseTrapEndsAProcessWithoutADebugger) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(ZoPlatform::System::RaiseTrap(), testing::KilledBySignal(SIGTRAP), "");
}
