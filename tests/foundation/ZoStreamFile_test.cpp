#include "foundation/ZoStreamFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "foundation/XbException.h"
#include "foundation_TestFiles.h"

using FoundationTest::CScratchDirectory;
using FoundationTest::ReadBytes;
using FoundationTest::Wide;
using FoundationTest::WriteBytes;

TEST(ZoStreamWriteASCIIFile, WritesEachCharacterAsOneIso88591Byte) {
  const CScratchDirectory dir;
  {
    ZoStreamWriteASCIIFile file(Wide(dir / "out.txt"));
    file << CString(L"a\u00E4\u00FF\u0100\u20AC\U0001F600\n") << L"\t\r\n";
  }
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "a\xE4\xFF???\n\t\r\n");  // no line-end translation
}

TEST(ZoStreamWriteASCIIFile, ChainsTextsCharactersAndNumbers) {
  const CScratchDirectory dir;
  {
    ZoStreamWriteASCIIFile file(Wide(dir / "out.txt"), 0, 0, 0);
    const wchar_t* none = nullptr;
    file << L"i=" << -5 << L' ' << 7u << L' ' << std::int64_t{-9'000'000'000} << L' '
         << std::uint64_t{18'000'000'000'000'000'000u} << L' ' << 1.5 << none << CString() << L"|";
    file.Write(L"xyz", 2);
    file.Write(nullptr, 3);
    file.Write(L"ignored", 0);
  }
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "i=-5 7 -9000000000 18000000000000000000 1.500000|xy");
}

TEST(ZoStreamWriteASCIIFile, ReplacesAnExistingFile) {
  const CScratchDirectory dir;
  WriteBytes(dir / "out.txt", "a much longer old content");
  {
    ZoStreamWriteASCIIFile file(Wide(dir / "out.txt"));
    file << L"new";
  }
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "new");
  { ZoStreamWriteASCIIFile file(Wide(dir / "out.txt")); }
  EXPECT_TRUE(std::filesystem::exists(dir / "out.txt"));
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "");  // made even when nothing is written
}

TEST(ZoStreamWriteASCIIFile, ThrowsWhenTheFileCannotBeMade) {
  const CScratchDirectory dir;
  EXPECT_THROW(ZoStreamWriteASCIIFile{Wide(dir / "missing/out.txt")}, XbException);
  EXPECT_THROW(ZoStreamWriteASCIIFile{Wide(dir / "")}, XbException);  // a directory
  EXPECT_THROW(ZoStreamWriteASCIIFile{CString()}, XbException);
}

TEST(ZoStreamWriteASCIIFile, CloseFlushesAndLaterWritesAreDropped) {
  const CScratchDirectory dir;
  ZoStreamWriteASCIIFile file(Wide(dir / "out.txt"));
  file << L"before";
  file.Close();
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "before");
  file << L"after";
  file.Close();  // a second Close does nothing
  EXPECT_EQ(ReadBytes(dir / "out.txt"), "before");
}

TEST(ZoStreamWriteASCIIFile, WritesMoreThanItsBufferHolds) {
  const CScratchDirectory dir;
  const CString chunk(L'\u00E9', 1000);
  {
    ZoStreamWriteASCIIFile file(Wide(dir / "big.txt"));
    for (int i = 0; i < 300; ++i) file << chunk;
  }
  EXPECT_EQ(ReadBytes(dir / "big.txt"), std::string(300'000, '\xE9'));
}

TEST(ZoStreamWriteASCIIFile, PathIsUtf8OnTheSystem) {
  const CScratchDirectory dir;
  {
    ZoStreamWriteASCIIFile file(Wide(dir / "") + L"\u00FC\u20AC.xml");
    file << L"x";
  }
  EXPECT_EQ(ReadBytes(dir / "\xC3\xBC\xE2\x82\xAC.xml"), "x");
}

TEST(ZoStreamReadASCIIString, ReadsLinesWithoutTheirEnds) {
  ZoStreamReadASCIIStringT<> reader("a\nb\r\nc");
  std::string line;
  EXPECT_FALSE(reader.IsEndOfStream());
  ASSERT_TRUE(reader.ReadLine(line));
  EXPECT_EQ(line, "a");
  ASSERT_TRUE(reader.ReadLine(line));
  EXPECT_EQ(line, "b");
  ASSERT_TRUE(reader.ReadLine(line));
  EXPECT_EQ(line, "c");
  EXPECT_TRUE(reader.IsEndOfStream());
  line = "unchanged";
  EXPECT_FALSE(reader.ReadLine(line));
  EXPECT_EQ(line, "unchanged");
}

TEST(ZoStreamReadASCIIString, EdgeCases) {
  std::string line;
  ZoStreamReadASCIIStringT<> empty("");
  EXPECT_TRUE(empty.IsEndOfStream());
  EXPECT_FALSE(empty.ReadLine(line));

  ZoStreamReadASCIIStringT<> trailing("a\n");  // no empty line after the last end
  EXPECT_TRUE(trailing.ReadLine(line));
  EXPECT_EQ(line, "a");
  EXPECT_TRUE(trailing.IsEndOfStream());
  EXPECT_FALSE(trailing.ReadLine(line));

  ZoStreamReadASCIIStringT<> blank("\n\r\nx");
  EXPECT_TRUE(blank.ReadLine(line));
  EXPECT_EQ(line, "");
  EXPECT_TRUE(blank.ReadLine(line));
  EXPECT_EQ(line, "");
  EXPECT_TRUE(blank.ReadLine(line));
  EXPECT_EQ(line, "x");

  ZoStreamReadASCIIStringT<> bytes(std::string("k\r=\xE4\0z\n", 7));  // a lone CR stays
  EXPECT_TRUE(bytes.ReadLine(line));
  EXPECT_EQ(line, std::string("k\r=\xE4\0z", 6));
  EXPECT_TRUE(bytes.IsEndOfStream());
}

TEST(ZoStreamWriteASCIIFile, CloseOnAFullDiskThrows) {
  ZoStreamWriteASCIIFile stream(L"/dev/full");
  stream << L"nicht gespeichert";
  EXPECT_THROW(stream.Close(), XbException);
}

TEST(ZoStreamWriteASCIIFile, WriteBeyondTheBufferOnAFullDiskThrows) {
  ZoStreamWriteASCIIFile stream(L"/dev/full");
  const CString block(std::wstring(1 << 17, L'x').c_str());
  EXPECT_THROW(stream << block, XbException);
}
