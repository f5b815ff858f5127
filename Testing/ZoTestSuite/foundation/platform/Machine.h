// Machine: the facts about this computer that a report records: processor
// model, processor count and speed, physical memory, machine name and the
// name of the graphics device.
//
// Facts read from files take the root directory of the file system, "/"
// unless a test points it at a tree of its own. Nothing here throws; a fact
// that cannot be found is 0 or empty.
#pragma once

#include <cstdint>
#include <string>

namespace ZoPlatform::Machine {

// "model name" of the first processor in /proc/cpuinfo.
std::string GetCPUModelName(const std::string& root = "/");
// Logical processors online.
std::uint32_t GetLogicalProcessorCount();
// The highest speed of processor 0 in MHz (cpufreq's cpuinfo_max_freq),
// else "cpu MHz" of /proc/cpuinfo, cut to whole MHz.
std::uint32_t GetCPUSpeedMHz(const std::string& root = "/");
// Physical memory in bytes.
std::uint64_t GetTotalPhysicalMemory();
// The network name of the machine.
std::string GetMachineName();
// The "Model:" of the first NVIDIA device under /proc/driver/nvidia/gpus,
// else the first DRM device under /sys/class/drm, named by its driver
// (the card's name where no driver is linked); empty on a machine without
// either.
std::string GetGPUName(const std::string& root = "/");

}  // namespace ZoPlatform::Machine
