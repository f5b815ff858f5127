// What the file-system interface promises beyond what ZoFileSystem shows.
#include <gtest/gtest.h>

#include <filesystem>

#include "SpecialFiles.h"
#include "foundation/platform/Files.h"
#include "foundation_TestFiles.h"

using FoundationTest::CScopedEnvironment;
using FoundationTest::CScratchDirectory;
using FoundationTest::WriteBytes;
namespace Files = ZoPlatform::Files;

TEST(Files, AnUnsetVariableDiffersFromAnEmptyOne) {
  {
    const CScopedEnvironment unset("ZO_FOUNDATION_TEST_VARIABLE", std::nullopt);
    EXPECT_FALSE(Files::GetEnvironmentVariable("ZO_FOUNDATION_TEST_VARIABLE").has_value());
  }
  const CScopedEnvironment empty("ZO_FOUNDATION_TEST_VARIABLE", "");
  EXPECT_EQ(Files::GetEnvironmentVariable("ZO_FOUNDATION_TEST_VARIABLE"), std::optional<std::string>(""));
  const CScopedEnvironment set("ZO_FOUNDATION_TEST_VARIABLE", "\xC3\xA4 value");
  EXPECT_EQ(Files::GetEnvironmentVariable("ZO_FOUNDATION_TEST_VARIABLE"), std::optional<std::string>("\xC3\xA4 value"));
}

TEST(Files, HomeIsTheVariableElseTheUsersEntry) {
  const CScratchDirectory dir;
  {
    const CScopedEnvironment home("HOME", dir.Path().string());
    EXPECT_EQ(Files::GetHomeDirectory(), dir.Path().string());
  }
  const CScopedEnvironment home("HOME", std::nullopt);
  const std::string fromEntry = Files::GetHomeDirectory();
  EXPECT_FALSE(fromEntry.empty());
  EXPECT_EQ(fromEntry.front(), '/');
}

TEST(Files, ExecutablePathNamesThisProgram) {
  const std::string path = Files::GetExecutablePath();
  ASSERT_FALSE(path.empty());
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::path(path).parent_path(), ZO_BIN_DIR));
  EXPECT_TRUE(std::filesystem::is_regular_file(path));
}

TEST(Files, CopyKeepsThePermissionBits) {
  const CScratchDirectory dir;
  WriteBytes(dir / "script", "#!/bin/sh\n");
  const auto perms =
      std::filesystem::perms::owner_read | std::filesystem::perms::owner_write | std::filesystem::perms::owner_exec;
  std::filesystem::permissions(dir / "script", perms);
  ASSERT_TRUE(Files::CopyFile(dir / "script", dir / "copy", true));
  EXPECT_EQ(std::filesystem::status(dir / "copy").permissions(), perms);
}

TEST(Files, StatusOfFilesDirectoriesAndLinks) {
  const CScratchDirectory dir;
  WriteBytes(dir / "file", "12345");
  std::filesystem::create_symlink(dir / "file", dir / "link");
  std::filesystem::create_symlink(dir / "missing", dir / "dangling");
  const auto file = Files::GetStatus(dir / "link");  // follows the link
  ASSERT_TRUE(file.has_value());
  EXPECT_FALSE(file->bDirectory);
  EXPECT_EQ(file->iSize, 5);
  EXPECT_GT(file->uiModificationTime, 0u);
  const auto directory = Files::GetStatus(dir / "");
  ASSERT_TRUE(directory.has_value());
  EXPECT_TRUE(directory->bDirectory);
  EXPECT_FALSE(Files::GetStatus(dir / "dangling").has_value());
  EXPECT_FALSE(Files::Exists(dir / "dangling"));
  EXPECT_TRUE(Files::Exists(dir / "link"));
}

TEST(Files, ReadWholeFileRefusesAFifoWithoutWaiting) {
  const CScratchDirectory dir;
  const std::string fifo = (dir.Path() / "fifo").string();
  ASSERT_TRUE(MakeFifo(fifo));
  std::string bytes = "old";
  EXPECT_FALSE(Files::ReadWholeFile(fifo, bytes));
  EXPECT_EQ(bytes, "");
}
