// Machine facts of the platform on Linux: /proc, /sys and sysconf.
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "Machine.h"
#include "System.h"

namespace ZoPlatform::Machine {

namespace {

namespace fs = std::filesystem;

std::string trim(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// The value of the first line "key<blanks>:value" of a file, trimmed.
std::string findValue(const fs::path& file, const std::string& key) {
  std::ifstream stream(file);
  std::string line;
  while (std::getline(stream, line)) {
    const auto colon = line.find(':');
    if (colon != std::string::npos && trim(line.substr(0, colon)) == key) return trim(line.substr(colon + 1));
  }
  return std::string();
}

std::string readFirstLine(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return trim(line);
}

// The entries of a directory sorted by name; empty if it cannot be read.
std::vector<fs::path> sortedEntries(const fs::path& directory) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error))
    entries.push_back(it->path());
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::string nvidiaModel(const fs::path& root) {
  for (const fs::path& gpu : sortedEntries(root / "proc/driver/nvidia/gpus")) {
    std::string model = findValue(gpu / "information", "Model");
    if (!model.empty()) return model;
  }
  return std::string();
}

// "card0", "card1" ..., but not the connectors ("card0-HDMI-A-1").
bool isCard(const std::string& name) {
  return name.size() > 4 && name.compare(0, 4, "card") == 0 &&
         name.find_first_not_of("0123456789", 4) == std::string::npos;
}

std::string drmDevice(const fs::path& root) {
  for (const fs::path& entry : sortedEntries(root / "sys/class/drm")) {
    const std::string name = entry.filename().string();
    if (!isCard(name)) continue;
    std::error_code error;
    const fs::path driver = fs::read_symlink(entry / "device/driver", error);
    return error || driver.filename().empty() ? name : driver.filename().string();
  }
  return std::string();
}

}  // namespace

std::string GetCPUModelName(const std::string& root) {
  return findValue(fs::path(root) / "proc/cpuinfo", "model name");
}

std::uint32_t GetLogicalProcessorCount() {
  const long count = ::sysconf(_SC_NPROCESSORS_ONLN);
  return count > 0 ? static_cast<std::uint32_t>(count) : 0;
}

std::uint32_t GetCPUSpeedMHz(const std::string& root) {
  const fs::path base(root);
  const std::string maxFrequency = readFirstLine(base / "sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
  if (!maxFrequency.empty()) {
    try {
      return static_cast<std::uint32_t>(std::stoull(maxFrequency) / 1000);
    } catch (const std::exception&) {}
  }
  // The kernel writes a decimal point whatever the process's locale.
  const std::string megahertz = findValue(base / "proc/cpuinfo", "cpu MHz");
  double value = 0.0;
  std::from_chars(megahertz.data(), megahertz.data() + megahertz.size(), value);
  return value > 0.0 && value < 4294967296.0 ? static_cast<std::uint32_t>(value) : 0;
}

std::uint64_t GetTotalPhysicalMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES), pageSize = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) return 0;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
}

std::string GetMachineName() { return System::GetHostName(); }

std::string GetGPUName(const std::string& root) {
  const std::string model = nvidiaModel(fs::path(root));
  return model.empty() ? drmDevice(fs::path(root)) : model;
}

}  // namespace ZoPlatform::Machine
