// CFile: opening only what can be read as a file, reading in blocks,
// length and times of the open file.
#include "foundation/CFile.h"

#include <gtest/gtest.h>

#include <string>

#include "SpecialFiles.h"
#include "TempDirectory.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"

namespace {

constexpr unsigned int c_uiReadOnly = CFile::modeRead | CFile::typeBinary;

}  // namespace

TEST(CFile, ReadsTheWholeFileInBlocksAndFewerBytesOnlyAtTheEnd) {
  TempDirectory dir;
  std::string bytes(100000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  dir.WriteFile(L"daten.bin", bytes);
  CFile file;
  ASSERT_TRUE(file.Open(dir / L"daten.bin", c_uiReadOnly));
  EXPECT_EQ(file.GetLength(), 100000u);
  std::string read(60000, 'x');
  EXPECT_EQ(file.Read(read.data(), 60000), 60000u);
  EXPECT_EQ(file.Read(read.data(), 0), 0u);
  std::string rest(60000, 'x');
  EXPECT_EQ(file.Read(rest.data(), 60000), 40000u);
  EXPECT_EQ(read + rest.substr(0, 40000), bytes);
  EXPECT_EQ(file.Read(rest.data(), 10), 0u);
}

TEST(CFile, AnEmptyFileHasLengthZeroAndReadsNothing) {
  TempDirectory dir;
  dir.WriteFile(L"leer");
  CFile file;
  ASSERT_TRUE(file.Open(dir / L"leer", c_uiReadOnly));
  EXPECT_EQ(file.GetLength(), 0u);
  char byte = 'x';
  EXPECT_EQ(file.Read(&byte, 1), 0u);
}

TEST(CFile, StatusGivesTheCreationTimeAsTheFileSystemDoesAndTheSize) {
  TempDirectory dir;
  dir.WriteFile(L"datei", "12345");
  CFile file;
  ASSERT_TRUE(file.Open(dir / L"datei", c_uiReadOnly));
  CFile::SStatus status;
  ASSERT_TRUE(file.GetStatus(status));
  EXPECT_EQ(status.uiCreationTime, ZoFileSystem::GetCreationTime(dir / L"datei"));
  EXPECT_NE(status.uiCreationTime, 0u);
  EXPECT_LE(status.uiCreationTime, status.uiModificationTime);
  EXPECT_EQ(status.uiSize, 5u);
}

TEST(CFile, WhatIsNoReadableRegularFileDoesNotOpen) {
  TempDirectory dir;
  dir.MakeDirectory(L"verzeichnis");
  EXPECT_FALSE(CFile().Open(dir / L"fehlt", c_uiReadOnly));
  EXPECT_FALSE(CFile().Open(dir / L"verzeichnis", c_uiReadOnly));
  // A FIFO without a writer would block an ordinary open for ever.
  ASSERT_TRUE(MakeFifo((dir / L"fifo").ToUtf8()));
  EXPECT_FALSE(CFile().Open(dir / L"fifo", c_uiReadOnly));
}

TEST(CFile, OnlyReadingIsOffered) {
  TempDirectory dir;
  dir.WriteFile(L"datei", "x");
  CFile file;
  EXPECT_FALSE(file.Open(dir / L"datei", 0x0001));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(file.Open(dir / L"datei", CFile::modeRead));
  EXPECT_TRUE(file.IsOpen());
}

TEST(CFile, AClosedFileThrowsOnReadAndLengthAndHasNoStatus) {
  TempDirectory dir;
  dir.WriteFile(L"datei", "x");
  CFile file;
  char byte;
  EXPECT_THROW(file.Read(&byte, 1), XbException);
  EXPECT_THROW(file.GetLength(), XbException);
  CFile::SStatus status;
  EXPECT_FALSE(file.GetStatus(status));
  ASSERT_TRUE(file.Open(dir / L"datei", c_uiReadOnly));
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_THROW(file.Read(&byte, 1), XbException);
}

TEST(CFile, OpeningAgainClosesTheFirstFile) {
  TempDirectory dir;
  dir.WriteFile(L"eins", "1");
  dir.WriteFile(L"zwei", "22");
  CFile file;
  ASSERT_TRUE(file.Open(dir / L"eins", c_uiReadOnly));
  ASSERT_TRUE(file.Open(dir / L"zwei", c_uiReadOnly));
  EXPECT_EQ(file.GetLength(), 2u);
  EXPECT_FALSE(file.Open(dir / L"fehlt", c_uiReadOnly));
  EXPECT_FALSE(file.IsOpen());
}
