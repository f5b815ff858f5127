// SystemPath: file names that are no UTF-8 survive the way from the system
// into the wide text and back, byte for byte.
#include "SystemPath.h"

#include <gtest/gtest.h>

#include <string>

#include "TempDirectory.h"
#include "ZoFileSystem.h"

TEST(SystemPath, Utf8NamesDecodeAsUtf8) {
  EXPECT_EQ(PathFromSystem("/tmp/Gr\xC3\xB6sse"), CString(L"/tmp/Gr\u00F6sse"));
  EXPECT_EQ(PathToSystem(CString(L"/tmp/Gr\u00F6sse")), "/tmp/Gr\xC3\xB6sse");
}

TEST(SystemPath, AnUndecodableByteIsCarriedAsALowSurrogateAndGivenBack) {
  const std::string bytes = "Gr\xF6sse/x\xE4.case\x80\xFF";
  const CString wide = PathFromSystem(bytes);
  EXPECT_EQ(wide, CString(L"Gr\xDCF6sse/x\xDCE4.case\xDC80\xDCFF"));
  EXPECT_EQ(PathToSystem(wide), bytes);
}

TEST(SystemPath, AHalfSequenceBeforeValidUtf8KeepsBoth) {
  const std::string bytes = "\xC3\xC3\xA4";
  EXPECT_EQ(PathFromSystem(bytes), CString(L"\xDCC3\u00E4"));
  EXPECT_EQ(PathToSystem(PathFromSystem(bytes)), bytes);
}

TEST(SystemPath, AnEscapedBytePrintsAsTheReplacementCharacterAndAsAQuestionMarkIn8Bit) {
  const CString wide = PathFromSystem("x\xE4.case");
  EXPECT_EQ(wide.ToUtf8(), "x\xEF\xBF\xBD.case");
  EXPECT_EQ(wide.ToLatin1(), "x?.case");
}

TEST(SystemPath, ADirectoryListingOpensWhatItNames) {
  TempDirectory directory;
  const CString name = PathFromSystem("x\xE4.case");
  directory.WriteFile(name, "fail");
  const XbArray<ZoFileSystem::SEntry> entries = ZoFileSystem::ListDirectory(directory.Path());
  ASSERT_EQ(entries.GetCount(), 1u);
  EXPECT_EQ(entries[0].sName, name);
  std::string bytes;
  ASSERT_TRUE(ZoFileSystem::ReadFile(directory.Path() + entries[0].sName, bytes));
  EXPECT_EQ(bytes, "fail");
}
