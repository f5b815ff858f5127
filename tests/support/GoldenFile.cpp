// GoldenFile: golden files of the source tree and the normalised console text.
#include "GoldenFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

#include "WholeFile.h"

namespace TestSupport {

namespace {

bool updateRequested() {
  const char* update = std::getenv("ZO_UPDATE_GOLDEN");
  return update && std::string(update) == "1";
}

}  // namespace

void ExpectGoldenFile(const std::string& relativePath, const std::string& actual) {
  const std::string path = std::string(ZO_SOURCE_DIR) + "/tests/" + relativePath;
  if (updateRequested()) {
    EXPECT_TRUE(WriteWholeFile(path, actual)) << path << " cannot be written";
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(path)) << path << " is missing (ZO_UPDATE_GOLDEN=1 writes it)";
  EXPECT_EQ(actual, ReadWholeFile(path)) << "golden file " << path
                                         << " differs (ZO_UPDATE_GOLDEN=1 rewrites it; review the diff)";
}

std::string NormalizeRunText(std::string text, const Replacements& replacements) {
  for (const auto& [from, name] : replacements) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + name.size()))
      text.replace(at, from.size(), name);
  }
  static const std::regex time(R"(\[(-?[0-9]+\.[0-9]+(ns|µs|ms|s)|0 s)\])");
  text = std::regex_replace(text, time, "[TIME]");
  static const std::regex runTime("(\tLaufzeit:\t\t)[^\n]*");
  text = std::regex_replace(text, runTime, "$1TIME");
  static const std::regex start(R"(\[[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3}\])");
  return std::regex_replace(text, start, "[START]");
}

}  // namespace TestSupport
