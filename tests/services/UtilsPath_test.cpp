#include <gtest/gtest.h>

#include <filesystem>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "services/Utils.h"

using namespace TestSuite;

namespace {

CString added(const wchar_t* path) {
  CString s(path);
  Utils::AddBackslash(s);
  return s;
}

CString removed(const wchar_t* path) {
  CString s(path);
  Utils::RemoveBackslashes(s);
  return s;
}

// Directory and leaf joined by '|', to compare both halves at once.
CString split(const wchar_t* path) {
  CString directory = L"alt", leaf = L"alt";
  Utils::SplitPathLeaf(path, directory, leaf);
  return directory + L"|" + leaf;
}

}  // namespace

TEST(UtilsPath, AddBackslashLeavesAnEmptyPathEmpty) { EXPECT_EQ(added(L""), CString(L"")); }

TEST(UtilsPath, AddBackslashAppendsOneSeparator) {
  EXPECT_EQ(added(L"/data/x"), CString(L"/data/x/"));
  EXPECT_EQ(added(L"/data/x/"), CString(L"/data/x/"));
  EXPECT_EQ(added(L"/"), CString(L"/"));
}

TEST(UtilsPath, AddBackslashDoesNotTakeTheOtherSlashForASeparator) { EXPECT_EQ(added(L"data\\"), CString(L"data\\/")); }

TEST(UtilsPath, RemoveBackslashesRemovesAllTrailingSeparators) {
  EXPECT_EQ(removed(L"/data/x///"), CString(L"/data/x"));
  EXPECT_EQ(removed(L"/data/x"), CString(L"/data/x"));
  EXPECT_EQ(removed(L"data\\"), CString(L"data\\"));
}

TEST(UtilsPath, RemoveBackslashesEmptiesAPathOfSeparatorsOnly) {
  EXPECT_EQ(removed(L"///"), CString(L""));
  EXPECT_EQ(removed(L""), CString(L""));
}

TEST(UtilsPath, SplitPathLeafOfAnEmptyPathGivesTwoEmptyHalves) { EXPECT_EQ(split(L""), CString(L"|")); }

TEST(UtilsPath, SplitPathLeafWithoutSeparatorsGivesTheWholePathAsLeaf) {
  EXPECT_EQ(split(L"Klasse"), CString(L"|Klasse"));
}

TEST(UtilsPath, SplitPathLeafOfSeparatorsOnlyGivesTwoEmptyHalves) {
  EXPECT_EQ(split(L"///"), CString(L"|"));
  EXPECT_EQ(split(L"\\/\\"), CString(L"|"));
}

TEST(UtilsPath, SplitPathLeafKeepsTheDirectorysFinalSeparator) {
  EXPECT_EQ(split(L"/data/Klasse/Fall.xml"), CString(L"/data/Klasse/|Fall.xml"));
  EXPECT_EQ(split(L"/Fall"), CString(L"/|Fall"));
}

TEST(UtilsPath, SplitPathLeafTakesTheLastNameOfADirectoryPath) {
  EXPECT_EQ(split(L"/data/Klasse//"), CString(L"/data/|Klasse"));
}

TEST(UtilsPath, SplitPathLeafCountsBothSlashesAlike) {
  EXPECT_EQ(split(L"C:\\data\\Klasse\\"), CString(L"C:\\data\\|Klasse"));
  EXPECT_EQ(split(L"a/b\\c"), CString(L"a/b\\|c"));
}

TEST(UtilsPath, GetPathLeafAndDirectoryAreTheTwoHalves) {
  EXPECT_EQ(Utils::GetPathLeaf(L"/bin/sleep"), CString(L"sleep"));
  EXPECT_EQ(Utils::GetPathDirectory(L"/bin/sleep"), CString(L"/bin/"));
  EXPECT_EQ(Utils::GetPathLeaf(L"sleep"), CString(L"sleep"));
  EXPECT_EQ(Utils::GetPathDirectory(L"sleep"), CString(L""));
}

TEST(UtilsPath, AssertDirectoryCreatesOneMissingLevel) {
  TempDirectory dir;
  const CString target = dir / L"neu";
  EXPECT_TRUE(Utils::AssertDirectory(target));
  EXPECT_TRUE(std::filesystem::is_directory(target.ToUtf8()));
  EXPECT_TRUE(Utils::AssertDirectory(target));  // an existing one is fine
}

TEST(UtilsPath, AssertDirectoryMakesNoChainOfDirectories) {
  TempDirectory dir;
  EXPECT_FALSE(Utils::AssertDirectory(dir / L"a/b"));
  EXPECT_FALSE(std::filesystem::exists((dir / L"a").ToUtf8()));
}

TEST(UtilsPath, AssertDirectoryIsContentWithAnExistingFile) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"datei", "x");
  EXPECT_TRUE(Utils::AssertDirectory(dir / L"datei"));
}

TEST(UtilsPath, MakeCaseOutputDirectoryBuildsTheLevelsInOrder) {
  const XbDateTime when(2024, 3, 9, 7, 5, 1);  // local time
  const CString result = Utils::MakeCaseOutputDirectory(L"Klasse", L"Fall", when, 0, 1);
  EXPECT_EQ(result, ZoFileSystem::GetDirectory(16) + L"2024-03-09 07.05.01/Klasse/Fall/");
  EXPECT_FALSE(std::filesystem::exists(result.ToUtf8()));  // the text only; nothing is made
}

TEST(UtilsPath, MakeCaseOutputDirectoryCleansTheCaseNameOnly) {
  const XbDateTime when(2024, 12, 31, 23, 59, 58);
  const CString result = Utils::MakeCaseOutputDirectory(L"Kl:as*s", L"a\\b/c:d*e?f\"g<h>i|j", when, 0, 1);
  const CString root = ZoFileSystem::GetDirectory(16) + L"2024-12-31 23.59.58/";
  EXPECT_EQ(result, root + L"Kl:as*s/a-b-c-d-e-f-g-h-i-j/");
}

TEST(UtilsPath, MakeCaseOutputDirectoryWithRepetitionsAddsANumberedLevel) {
  const XbDateTime when(2024, 3, 9, 7, 5, 1);
  const CString result = Utils::MakeCaseOutputDirectory(L"K", L"F", when, 7, 2);
  EXPECT_EQ(result.Right(9), CString(L"/K/F/007/"));
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"F", when, 7, 1).Right(5), CString(L"/K/F/"));
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"F", when, 1234, 2000).Right(5), CString(L"1234/"));
}

TEST(UtilsPath, MakeCaseOutputDirectoryFollowsEveryChangeOfTheDate) {
  const XbDateTime first(2024, 3, 9, 7, 5, 1);
  const XbDateTime second(2025, 1, 2, 3, 4, 5);
  const CString root = ZoFileSystem::GetDirectory(16);
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"F", first, 0, 1), root + L"2024-03-09 07.05.01/K/F/");
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"G", first, 0, 1), root + L"2024-03-09 07.05.01/K/G/");
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"F", second, 0, 1), root + L"2025-01-02 03.04.05/K/F/");
  EXPECT_EQ(Utils::MakeCaseOutputDirectory(L"K", L"F", first, 0, 1), root + L"2024-03-09 07.05.01/K/F/");
}
