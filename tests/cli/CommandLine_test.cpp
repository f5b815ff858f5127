#include "CommandLine.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "TempDirectory.h"
#include "cli_ParseWords.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

SCommandLine parse(std::vector<const char*> words) {
  words.insert(words.begin(), "ZoTestSuiteCLI");
  return ParseCommandLine(static_cast<int>(words.size()), words.data());
}

}  // namespace

TEST(CommandLine, OptionWordsFillTheirFields) {
  const SCommandLine c = parse({"-d",
                                "data",
                                "-v",
                                "-r",
                                "3",
                                "-c",
                                "5",
                                "--track-heap",
                                "--dump-leaks",
                                "--no-leak-warnings",
                                "--no-assert-dialog",
                                "--record-start-time",
                                "--no-times",
                                "--observe-id",
                                "7",
                                "--observe-size",
                                "64",
                                "--debug-option",
                                "2",
                                "--dll",
                                "A",
                                "--dll",
                                "B",
                                "--log-file",
                                "run.log",
                                "--run-tag",
                                "nightly"});
  const SSetup& s = c.setup;
  EXPECT_EQ(c.eMode, EMode::Run);
  EXPECT_EQ(s.sDataDir, CString(L"data"));
  EXPECT_TRUE(s.run.bShowThreadInfo);
  EXPECT_EQ(s.run.uiRepeatCount, 3u);
  EXPECT_EQ(s.collectOptions.uiCaseLimit, 5u);
  EXPECT_TRUE(s.run.bTrackHeap && s.run.bDumpLeaks && s.run.bRecordStartTime);
  EXPECT_FALSE(s.run.bReportMemLeak || s.run.bAssertDialog || s.run.bShowTimes);
  EXPECT_EQ(s.run.oObserveID, std::optional<std::uint64_t>(7));
  EXPECT_EQ(s.run.oObserveSize, std::optional<std::uint64_t>(64));
  EXPECT_TRUE(s.run.bDebugOption2);
  EXPECT_FALSE(s.run.bDebugOption0 || s.run.bDebugOption1);
  ASSERT_EQ(s.dllFiles.GetCount(), 2u);
  EXPECT_EQ(s.dllFiles[1], CString(L"B"));
  EXPECT_EQ(s.oLogFile, std::optional<CString>(CString(L"run.log")));
  EXPECT_EQ(s.sRunTag, CString(L"nightly"));
}

TEST(CommandLine, DefaultsStandWithoutOptions) {
  const SCommandLine c = parse({"-d", "data"});
  EXPECT_FALSE(c.setup.run.bParallel);
  EXPECT_FALSE(c.setup.oLogFile.has_value());
  EXPECT_TRUE(c.setup.run.bShowTimes);
  EXPECT_EQ(c.setup.collectOptions.uiCaseLimit, 0xFFFFFFFFu);
}

TEST(CommandLine, ModesAndUsageErrors) {
  EXPECT_EQ(parse({"-d", "data", "--recreate"}).eMode, EMode::Recreate);
  EXPECT_EQ(parse({"--version"}).eMode, EMode::Version);
  EXPECT_EQ(parse({"--help"}).eMode, EMode::Help);
  EXPECT_THROW(parse({"-d", "data", "--debug-option", "3"}), CUsageError);
  EXPECT_THROW(parse({"-d", "data", "-r", "x"}), CUsageError);
  EXPECT_THROW(parse({"-v"}), CUsageError);
  EXPECT_THROW(parse({"-d", "data", "stray"}), CUsageError);
}

TEST(CommandLine, ALibraryPathBecomesAbsoluteAndANameStaysAName) {
  TempDirectory directory;
  directory.WriteFile(L"My Tests.so", "not really a library");
  const std::string path = (directory / L"My Tests.so").ToUtf8();
  const SSetup setup = parse({"-d", "data", "--dll", "Plain", "--dll", path.c_str()}).setup;
  ASSERT_EQ(setup.dllFiles.GetCount(), 2u);
  EXPECT_EQ(setup.dllFiles[0], CString(L"Plain"));
  EXPECT_EQ(setup.dllFiles[1], CString::FromUtf8(path));
  const std::string relative = std::filesystem::relative(path, std::filesystem::current_path()).string();
  EXPECT_EQ(parse({"-d", "data", "--dll", relative.c_str()}).setup.dllFiles[0], CString::FromUtf8(path));
}

TEST(CommandLine, ALibraryPathThatNamesNoFileIsAUsageError) {
  TempDirectory directory;
  const std::string missing = (directory / L"Missing.so").ToUtf8();
  EXPECT_EQ(CliParse::UsageError({"--dll", missing.c_str()}), "--dll: '" + missing + "' is no library file");
  const std::string folder = directory.Path().ToUtf8();
  EXPECT_EQ(CliParse::UsageError({"--dll", folder.c_str()}), "--dll: '" + folder + "' is no library file");
}
