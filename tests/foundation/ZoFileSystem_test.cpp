#include "foundation/ZoFileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "foundation/XbDateTime.h"
#include "foundation_TestFiles.h"

using FoundationTest::CScopedEnvironment;
using FoundationTest::CScratchDirectory;
using FoundationTest::ReadBytes;
using FoundationTest::Wide;
using FoundationTest::WriteBytes;

TEST(ZoFileSystem, TemporaryDirectoryIsTmpdirElseTmp) {
  const CScratchDirectory dir;
  {
    const CScopedEnvironment tmp("TMPDIR", dir / "");  // ends in '/'
    EXPECT_EQ(ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary), Wide(dir / ""));
  }
  {
    const CScopedEnvironment tmp("TMPDIR", dir.Path().string());  // no '/' at the end
    EXPECT_EQ(ZoFileSystem::GetDirectory(0), Wide(dir / ""));
    EXPECT_EQ(ZoFileSystem::GetDirectory(16), Wide(dir / "ZoTestSuiteDebug/"));
  }
  {
    const CScopedEnvironment tmp("TMPDIR", std::nullopt);
    EXPECT_EQ(ZoFileSystem::GetDirectory(0), CString(L"/tmp/"));
    EXPECT_EQ(ZoFileSystem::GetDirectory(16), CString(L"/tmp/ZoTestSuiteDebug/"));
  }
  const CScopedEnvironment tmp("TMPDIR", "");  // empty is unset
  EXPECT_EQ(ZoFileSystem::GetDirectory(0), CString(L"/tmp/"));
}

TEST(ZoFileSystem, DocumentsDirectoryFallsBackToDocumentsInHomeThenHome) {
  const CScratchDirectory home;
  const CScopedEnvironment homeVar("HOME", home.Path().string());
  {
    const CScopedEnvironment xdg("XDG_DOCUMENTS_DIR", home / "papers");
    EXPECT_EQ(ZoFileSystem::GetDirectory(ZoFileSystem::eDocuments), Wide(home / "papers/"));
  }
  const CScopedEnvironment xdg("XDG_DOCUMENTS_DIR", std::nullopt);
  EXPECT_EQ(ZoFileSystem::GetDirectory(5), Wide(home / ""));  // no Documents yet
  WriteBytes(home / "Documents", "a file is not a directory");
  EXPECT_EQ(ZoFileSystem::GetDirectory(5), Wide(home / ""));
  std::filesystem::remove(home / "Documents");
  std::filesystem::create_directory(home / "Documents");
  EXPECT_EQ(ZoFileSystem::GetDirectory(5), Wide(home / "Documents/"));
  const CScopedEnvironment homeWithSlash("HOME", home / "");
  EXPECT_EQ(ZoFileSystem::GetDirectory(5), Wide(home / "Documents/"));
}

TEST(ZoFileSystem, LocalAppDataIsXdgDataHomeElseLocalShare) {
  const CScratchDirectory home;
  const CScopedEnvironment homeVar("HOME", home.Path().string());
  {
    const CScopedEnvironment xdg("XDG_DATA_HOME", home / "data");
    EXPECT_EQ(ZoFileSystem::GetDirectory(ZoFileSystem::eLocalAppData), Wide(home / "data/"));
  }
  const CScopedEnvironment xdg("XDG_DATA_HOME", std::nullopt);
  EXPECT_EQ(ZoFileSystem::GetDirectory(6), Wide(home / ".local/share/"));
}

// A fresh account has no ~/.local/share yet; the system's folders below it
// are made one level at a time, so it must be there.
TEST(ZoFileSystem, TheDefaultLocalAppDataIsMadeWhenMissing) {
  const CScratchDirectory home;
  const CScopedEnvironment homeVar("HOME", home.Path().string());
  const CScopedEnvironment xdg("XDG_DATA_HOME", std::nullopt);
  ASSERT_FALSE(std::filesystem::exists(home / ".local"));
  EXPECT_EQ(ZoFileSystem::GetDirectory(ZoFileSystem::eLocalAppData), Wide(home / ".local/share/"));
  EXPECT_TRUE(std::filesystem::is_directory(home / ".local/share"));
}

TEST(ZoFileSystem, ExecutableDirectoryHoldsThisProgram) {
  const CString dir = ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable);
  ASSERT_FALSE(dir.IsEmpty());
  EXPECT_EQ(dir[dir.GetLength() - 1], L'/');
  EXPECT_TRUE(std::filesystem::equivalent(dir.ToUtf8(), ZO_BIN_DIR));
}

TEST(ZoFileSystem, EverySpecialDirectoryEndsInASeparatorAndOthersAreEmpty) {
  for (int number : {0, 5, 6, 16, 18}) {
    const CString dir = ZoFileSystem::GetDirectory(number);
    ASSERT_FALSE(dir.IsEmpty()) << number;
    EXPECT_EQ(dir[dir.GetLength() - 1], L'/') << number;
  }
  for (int number : {-1, 1, 4, 17, 19, 99}) EXPECT_TRUE(ZoFileSystem::GetDirectory(number).IsEmpty()) << number;
}

TEST(ZoFileSystem, InterpretEnvironmentReplacesTheExecutablePlaceholder) {
  const CString exe = ZoFileSystem::GetDirectory(18);
  EXPECT_EQ(ZoFileSystem::InterpretEnvironment(L"%EXECUTABLE%ZoTestSuiteEnvironment.conf"),
            exe + L"ZoTestSuiteEnvironment.conf");
  EXPECT_EQ(ZoFileSystem::InterpretEnvironment(L"%EXECUTABLE%a;%EXECUTABLE%b"), exe + L"a;" + exe + L"b");
  EXPECT_EQ(ZoFileSystem::InterpretEnvironment(L"plain/%HOME%/x"), CString(L"plain/%HOME%/x"));
  EXPECT_EQ(ZoFileSystem::InterpretEnvironment(L"%executable%"), CString(L"%executable%"));
  EXPECT_EQ(ZoFileSystem::InterpretEnvironment(L""), CString());
}

TEST(ZoFileSystem, SplitPathKeepsTheSeparatorOnTheDirectory) {
  struct SRow {
    const wchar_t *path, *dir, *name, *ext;
  };
  const SRow rows[] = {
      {L"dir/sub/name.ext", L"dir/sub/", L"name", L".ext"},
      {L"/abs/Report-1-[a.b].xml", L"/abs/", L"Report-1-[a.b]", L".xml"},
      {L"name.ext", L"", L"name", L".ext"},
      {L"dir/name", L"dir/", L"name", L""},
      {L"a.b/c", L"a.b/", L"c", L""},
      {L"archive.tar.gz", L"", L"archive.tar", L".gz"},
      {L"dir/", L"dir/", L"", L""},
      {L"/", L"/", L"", L""},
      {L".hidden", L"", L"", L".hidden"},
      {L"name.", L"", L"name", L"."},
      {L"", L"", L"", L""},
  };
  for (const SRow& row : rows) {
    CString dir(L"old"), name(L"old"), ext(L"old");
    ZoFileSystem::SplitPath(row.path, dir, name, ext);
    EXPECT_EQ(dir, CString(row.dir)) << CString(row.path).ToUtf8();
    EXPECT_EQ(name, CString(row.name)) << CString(row.path).ToUtf8();
    EXPECT_EQ(ext, CString(row.ext)) << CString(row.path).ToUtf8();
  }
}

TEST(ZoFileSystem, ExistsAndIsDirectory) {
  const CScratchDirectory dir;
  WriteBytes(dir / "file", "x");
  EXPECT_TRUE(ZoFileSystem::Exists(Wide(dir / "file")));
  EXPECT_FALSE(ZoFileSystem::IsDirectory(Wide(dir / "file")));
  EXPECT_TRUE(ZoFileSystem::Exists(Wide(dir / "")));
  EXPECT_TRUE(ZoFileSystem::IsDirectory(Wide(dir / "")));
  EXPECT_TRUE(ZoFileSystem::IsDirectory(Wide(dir.Path().string())));
  EXPECT_FALSE(ZoFileSystem::Exists(Wide(dir / "missing")));
  EXPECT_FALSE(ZoFileSystem::IsDirectory(Wide(dir / "missing")));
  EXPECT_FALSE(ZoFileSystem::Exists(CString()));
}

TEST(ZoFileSystem, NonAsciiNamesReachTheSystemAsUtf8) {
  const CScratchDirectory dir;
  const CString path = Wide(dir / "") + L"\u00E4\u20AC \U0001F600.txt";
  WriteBytes(path.ToUtf8(), "abc");
  EXPECT_TRUE(std::filesystem::exists(dir / "\xC3\xA4\xE2\x82\xAC \xF0\x9F\x98\x80.txt"));
  EXPECT_TRUE(ZoFileSystem::Exists(path));
  EXPECT_EQ(ZoFileSystem::GetFileSize(path), 3);
  const auto entries = ZoFileSystem::ListDirectory(Wide(dir / ""));
  ASSERT_EQ(entries.GetCount(), 1u);
  EXPECT_EQ(entries[0].sName, CString(L"\u00E4\u20AC \U0001F600.txt"));
}

TEST(ZoFileSystem, CreateDirectoryMakesOneLevel) {
  const CScratchDirectory dir;
  EXPECT_TRUE(ZoFileSystem::CreateDirectoryW(Wide(dir / "new")));
  EXPECT_TRUE(ZoFileSystem::IsDirectory(Wide(dir / "new")));
  EXPECT_FALSE(ZoFileSystem::CreateDirectoryW(Wide(dir / "new")));  // exists already
  EXPECT_TRUE(ZoFileSystem::CreateDirectoryW(Wide(dir / "slash/")));
  EXPECT_FALSE(ZoFileSystem::CreateDirectoryW(Wide(dir / "a/b")));  // no parent
  EXPECT_FALSE(ZoFileSystem::Exists(Wide(dir / "a")));
}

TEST(ZoFileSystem, DeleteFileRemovesFilesOnly) {
  const CScratchDirectory dir;
  WriteBytes(dir / "file", "x");
  EXPECT_TRUE(ZoFileSystem::DeleteFileW(Wide(dir / "file")));
  EXPECT_FALSE(ZoFileSystem::Exists(Wide(dir / "file")));
  EXPECT_FALSE(ZoFileSystem::DeleteFile(Wide(dir / "file")));
  std::filesystem::create_directory(dir / "sub");
  EXPECT_FALSE(ZoFileSystem::DeleteFile(Wide(dir / "sub")));
  EXPECT_TRUE(ZoFileSystem::IsDirectory(Wide(dir / "sub")));
}

TEST(ZoFileSystem, CopyFileHonoursFailIfExists) {
  const CScratchDirectory dir;
  const std::string bytes("bin\0ary\xFF", 8);
  WriteBytes(dir / "from", bytes);
  EXPECT_TRUE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "to"), true));
  EXPECT_EQ(ReadBytes(dir / "to"), bytes);
  WriteBytes(dir / "to", "older and longer content");
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "to"), true));
  EXPECT_EQ(ReadBytes(dir / "to"), "older and longer content");
  EXPECT_TRUE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "to"), false));
  EXPECT_EQ(ReadBytes(dir / "to"), bytes);
  WriteBytes(dir / "empty", "");
  EXPECT_TRUE(ZoFileSystem::CopyFileW(Wide(dir / "empty"), Wide(dir / "to"), false));
  EXPECT_EQ(ReadBytes(dir / "to"), "");
}

TEST(ZoFileSystem, CopyFileFailures) {
  const CScratchDirectory dir;
  WriteBytes(dir / "from", "keep");
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "missing"), Wide(dir / "to"), false));
  EXPECT_FALSE(ZoFileSystem::Exists(Wide(dir / "to")));
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "no/to"), false));
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "from"), false));  // onto itself
  EXPECT_EQ(ReadBytes(dir / "from"), "keep");
  std::filesystem::create_directory(dir / "sub");
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "sub"), Wide(dir / "to"), false));
  EXPECT_FALSE(ZoFileSystem::CopyFileW(Wide(dir / "from"), Wide(dir / "sub"), false));
}

TEST(ZoFileSystem, MoveFileRenamesAndNeverReplaces) {
  const CScratchDirectory dir;
  WriteBytes(dir / "from", "moved");
  EXPECT_TRUE(ZoFileSystem::MoveFileW(Wide(dir / "from"), Wide(dir / "to")));
  EXPECT_FALSE(ZoFileSystem::Exists(Wide(dir / "from")));
  EXPECT_EQ(ReadBytes(dir / "to"), "moved");
  WriteBytes(dir / "other", "kept");
  EXPECT_FALSE(ZoFileSystem::MoveFileW(Wide(dir / "other"), Wide(dir / "to")));
  EXPECT_EQ(ReadBytes(dir / "to"), "moved");
  EXPECT_EQ(ReadBytes(dir / "other"), "kept");
  EXPECT_FALSE(ZoFileSystem::MoveFileW(Wide(dir / "missing"), Wide(dir / "new")));
  EXPECT_FALSE(ZoFileSystem::MoveFileW(Wide(dir / "other"), Wide(dir / "no/new")));
  EXPECT_EQ(ReadBytes(dir / "other"), "kept");
}

TEST(ZoFileSystem, GetFileSizeAndReadFile) {
  const CScratchDirectory dir;
  const std::string bytes("a\0\r\n\xE4", 5);
  WriteBytes(dir / "file", bytes);
  WriteBytes(dir / "empty", "");
  EXPECT_EQ(ZoFileSystem::GetFileSize(Wide(dir / "file")), 5);
  EXPECT_EQ(ZoFileSystem::GetFileSize(Wide(dir / "empty")), 0);
  EXPECT_EQ(ZoFileSystem::GetFileSize(Wide(dir / "missing")), -1);
  EXPECT_EQ(ZoFileSystem::GetFileSize(Wide(dir / "")), -1);
  std::string read = "stale";
  EXPECT_TRUE(ZoFileSystem::ReadFile(Wide(dir / "file"), read));
  EXPECT_EQ(read, bytes);
  EXPECT_TRUE(ZoFileSystem::ReadFile(Wide(dir / "empty"), read));
  EXPECT_EQ(read, "");
  read = "stale";
  EXPECT_FALSE(ZoFileSystem::ReadFile(Wide(dir / "missing"), read));
  EXPECT_EQ(read, "");
  EXPECT_FALSE(ZoFileSystem::ReadFile(Wide(dir / ""), read));
  const std::string large(300000, 'z');  // several reads
  WriteBytes(dir / "large", large);
  EXPECT_TRUE(ZoFileSystem::ReadFile(Wide(dir / "large"), read));
  EXPECT_EQ(read, large);
}

TEST(ZoFileSystem, CreationTimeIsNotTheModificationTime) {
  const CScratchDirectory dir;
  const auto before = XbDateTime::Now().GetValue();
  WriteBytes(dir / "file", "x");
  const auto after = XbDateTime::Now().GetValue();
  const std::uint64_t slack = 2'000'000;  // file times follow a coarse clock
  const auto created = ZoFileSystem::GetCreationTime(Wide(dir / "file"));
  EXPECT_GE(created + slack, before);
  EXPECT_LE(created, after + slack);
  EXPECT_EQ(ZoFileSystem::GetCreationTime(Wide(dir / "missing")), 0u);

  // Move the modification time a day back: a file system that keeps the
  // birth time still gives the creation; one that does not gives the change.
  const auto day = std::chrono::hours(24);
  std::filesystem::last_write_time(dir / "file", std::filesystem::last_write_time(dir / "file") - day);
  const auto later = ZoFileSystem::GetCreationTime(Wide(dir / "file"));
  const auto dayMicros = static_cast<std::uint64_t>(std::chrono::microseconds(day).count());
  EXPECT_TRUE(later == created || later + dayMicros == created) << later << " " << created;
}

TEST(ZoFileSystem, ListDirectoryGivesNamesAndKinds) {
  const CScratchDirectory dir;
  WriteBytes(dir / "b.txt", "");
  WriteBytes(dir / "a.txt", "");
  std::filesystem::create_directory(dir / "sub");
  std::filesystem::create_directory_symlink(dir / "sub", dir / "link");
  auto entries = ZoFileSystem::ListDirectory(Wide(dir / ""));
  std::sort(entries.begin(), entries.end(), [](const auto& x, const auto& y) { return x.sName < y.sName; });
  ASSERT_EQ(entries.GetCount(), 4u);  // no "." or ".."
  EXPECT_EQ(entries[0].sName, CString(L"a.txt"));
  EXPECT_FALSE(entries[0].bDirectory);
  EXPECT_EQ(entries[1].sName, CString(L"b.txt"));
  EXPECT_EQ(entries[2].sName, CString(L"link"));
  EXPECT_TRUE(entries[2].bDirectory);  // a link counts as what it points to
  EXPECT_EQ(entries[3].sName, CString(L"sub"));
  EXPECT_TRUE(entries[3].bDirectory);
  EXPECT_EQ(ZoFileSystem::ListDirectory(Wide(dir.Path().string())).GetCount(), 4u);
  EXPECT_TRUE(ZoFileSystem::ListDirectory(Wide(dir / "sub")).IsEmpty());
  EXPECT_TRUE(ZoFileSystem::ListDirectory(Wide(dir / "missing")).IsEmpty());
  EXPECT_TRUE(ZoFileSystem::ListDirectory(Wide(dir / "a.txt")).IsEmpty());
}

TEST(ZoFileSystem, CurrentDirectoryCanBeSetAndRead) {
  const CScratchDirectory dir;
  const CString previous = ZoFileSystem::GetCurrentDirectoryW();
  ASSERT_FALSE(previous.IsEmpty());
  ASSERT_TRUE(ZoFileSystem::SetCurrentDirectoryW(Wide(dir / "")));
  const CString now = ZoFileSystem::GetCurrentDirectoryW();
  EXPECT_TRUE(ZoFileSystem::SetCurrentDirectoryW(previous));
  EXPECT_TRUE(std::filesystem::equivalent(now.ToUtf8(), dir.Path()));
  EXPECT_EQ(ZoFileSystem::GetCurrentDirectoryW(), previous);
  EXPECT_FALSE(ZoFileSystem::SetCurrentDirectoryW(Wide(dir / "missing")));
  EXPECT_FALSE(ZoFileSystem::SetCurrentDirectoryW(CString()));
  EXPECT_EQ(ZoFileSystem::GetCurrentDirectoryW(), previous);
}
