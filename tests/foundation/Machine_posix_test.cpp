// Machine facts, from this machine and from a made-up file tree.
#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/platform/Machine.h"
#include "foundation_TestFiles.h"

namespace {

using namespace ZoPlatform::Machine;
using FoundationTest::CScratchDirectory;

void writeFile(const CScratchDirectory& root, const std::string& name, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(root / name).parent_path());
  FoundationTest::WriteBytes(root / name, text);
}

const char* const c_cpuinfo =
    "processor\t: 0\nvendor_id\t: Test\nmodel name\t: Test CPU 3000 @ 3.00GHz\ncpu MHz\t\t: 2994.375\n\n"
    "processor\t: 1\nmodel name\t: Other CPU\ncpu MHz\t\t: 1000.000\n";

TEST(MachineTest, ThisMachineHasProcessorsMemoryAndAName) {
  EXPECT_GT(GetLogicalProcessorCount(), 0u);
  EXPECT_GT(GetTotalPhysicalMemory(), 0u);
  EXPECT_FALSE(GetMachineName().empty());
  EXPECT_NO_THROW(GetGPUName());
  EXPECT_NO_THROW(GetCPUSpeedMHz());
}

TEST(MachineTest, ModelAndSpeedComeFromTheFirstProcessorOfCpuinfo) {
  CScratchDirectory root;
  writeFile(root, "proc/cpuinfo", c_cpuinfo);
  EXPECT_EQ(GetCPUModelName(root / ""), "Test CPU 3000 @ 3.00GHz");
  EXPECT_EQ(GetCPUSpeedMHz(root / ""), 2994u);
}

TEST(MachineTest, MaximumFrequencyOfCpufreqComesFirst) {
  CScratchDirectory root;
  writeFile(root, "proc/cpuinfo", c_cpuinfo);
  writeFile(root, "sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "4200000\n");
  EXPECT_EQ(GetCPUSpeedMHz(root / ""), 4200u);
}

TEST(MachineTest, MissingFilesGiveEmptyFacts) {
  CScratchDirectory root;
  EXPECT_EQ(GetCPUModelName(root / ""), "");
  EXPECT_EQ(GetCPUSpeedMHz(root / ""), 0u);
  EXPECT_EQ(GetGPUName(root / ""), "");
}

TEST(MachineTest, NvidiaModelComesBeforeDrmDevices) {
  CScratchDirectory root;
  writeFile(root, "proc/driver/nvidia/gpus/0000:01:00.0/information", "Model: \t\t NVIDIA Test 4000\nIRQ:   42\n");
  std::filesystem::create_directories(root / "sys/class/drm/card0");
  EXPECT_EQ(GetGPUName(root / ""), "NVIDIA Test 4000");
}

TEST(MachineTest, FirstDrmCardIsNamedByItsDriver) {
  CScratchDirectory root;
  std::filesystem::create_directories(root / "sys/class/drm/card1-HDMI-A-1");
  std::filesystem::create_directories(root / "sys/class/drm/card1/device");
  std::filesystem::create_directories(root / "sys/class/drm/card2/device");
  std::filesystem::create_directories(root / "drivers/testgpu");
  std::filesystem::create_directory_symlink(root / "drivers/testgpu", root / "sys/class/drm/card1/device/driver");
  EXPECT_EQ(GetGPUName(root / ""), "testgpu");
}

TEST(MachineTest, DrmCardWithoutDriverIsNamedByItself) {
  CScratchDirectory root;
  std::filesystem::create_directories(root / "sys/class/drm/renderD128");
  std::filesystem::create_directories(root / "sys/class/drm/card0");
  EXPECT_EQ(GetGPUName(root / ""), "card0");
}

}  // namespace
