// The run list of the archive mode: the split of "FILE:NAME", the fields of
// an entry, and the refusals of a broken list and of bad words in any entry.
#include "tools/ArchiveRunList.h"

#include <gtest/gtest.h>

#include <string>

#include "TempDirectory.h"

namespace TestSuite {
namespace {

std::string runXml(const char* name, const char* config, const char* platform, const char* more = "") {
  return std::string("\t<Run name=\"") + name + "\">\n\t\t<BinaryDir>/opt/zo/bin</BinaryDir>\n\t\t<Config>" + config +
         "</Config>\n\t\t<Platform>" + platform + "</Platform>\n\t\t<DataDir>/data</DataDir>\n" +
         "\t\t<OutDir>/archive</OutDir>\n" + more + "\t</Run>\n";
}

CString writeList(const TempDirectory& dir, const std::string& runs) {
  const CString path = dir / L"runs.xml";
  TempDirectory::WriteBytes(path, "<?xml version=\"1.0\"?>\n<ArchiveRun>\n" + runs + "</ArchiveRun>\n");
  return path;
}

TEST(ArchiveRunList, OnlyTheLastColonSplitsSoADriveLetterStays) {
  CString file, name;
  SplitArchiveRun(L"C:/lists/runs.xml:Nightly", file, name);
  EXPECT_EQ(file, CString(L"C:/lists/runs.xml"));
  EXPECT_EQ(name, CString(L"Nightly"));
  SplitArchiveRun(L"runs.xml:", file, name);
  EXPECT_EQ(file, CString(L"runs.xml"));
  EXPECT_TRUE(name.IsEmpty());
}

TEST(ArchiveRunList, WithoutAColonTheFileIsEmptyAndTheTextIsTheName) {
  CString file = L"x", name;
  SplitArchiveRun(L"Nightly", file, name);
  EXPECT_TRUE(file.IsEmpty());
  EXPECT_EQ(name, CString(L"Nightly"));
}

TEST(ArchiveRunList, ReadsEveryRunWithItsSixFields) {
  TempDirectory dir;
  const XbArray<SArchiveRun> runs = ReadArchiveRunList(
      writeList(dir, runXml("Nightly", "Release", "x64", "\t\t<SelectionFile>/sel.xml</SelectionFile>\n") +
                         runXml("Debug build", "Debug", "Win32")));
  ASSERT_EQ(runs.GetCount(), 2u);
  EXPECT_EQ(runs[0].name, CString(L"Nightly"));
  EXPECT_EQ(runs[0].BinaryDir, CString(L"/opt/zo/bin"));
  EXPECT_EQ(runs[0].Config, CString(L"Release"));
  EXPECT_EQ(runs[0].Platform, CString(L"x64"));
  EXPECT_EQ(runs[0].DataDir, CString(L"/data"));
  EXPECT_EQ(runs[0].OutDir, CString(L"/archive"));
  EXPECT_EQ(runs[0].SelectionFile, CString(L"/sel.xml"));
  EXPECT_EQ(runs[1].name, CString(L"Debug build"));
  EXPECT_TRUE(runs[1].SelectionFile.IsEmpty());
}

TEST(ArchiveRunList, UnknownChildrenAreIgnoredTheLastOfTwoCountsAndAMissingOneIsEmpty) {
  TempDirectory dir;
  const XbArray<SArchiveRun> runs = ReadArchiveRunList(writeList(
      dir,
      "\t<Comment>not a run</Comment>\n\t<run name=\"lower\"><Config>Debug</Config></run>\n"
      "\t<Run name=\"A\">\n\t\t<Config>Release</Config><Platform>x64</Platform>\n"
      "\t\t<DataDir>/first</DataDir><DataDir>/second</DataDir><Colour>blue</Colour><binarydir>/x</binarydir>\n"
      "\t</Run>\n"));
  ASSERT_EQ(runs.GetCount(), 1u);
  EXPECT_EQ(runs[0].DataDir, CString(L"/second"));
  EXPECT_TRUE(runs[0].BinaryDir.IsEmpty());
  EXPECT_TRUE(runs[0].OutDir.IsEmpty());
}

TEST(ArchiveRunList, ABrokenListOrAnotherRootThrowsTheSyntaxText) {
  TempDirectory dir;
  const CString broken = dir / L"broken.xml";
  TempDirectory::WriteBytes(broken, "<ArchiveRun><Run name=\"A\">");
  try {
    ReadArchiveRunList(broken);
    ADD_FAILURE() << "no exception";
  } catch (const CString& text) { EXPECT_EQ(text, CString(L"XML-Syntax Fehler")); }
  const CString otherRoot = dir / L"other.xml";
  TempDirectory::WriteBytes(otherRoot, "<Config><Run name=\"A\"/></Config>");
  EXPECT_THROW(ReadArchiveRunList(otherRoot), CString);
}

TEST(ArchiveRunList, ABadConfigInAnyEntryThrowsAPlainPointer) {
  TempDirectory dir;
  const CString path = writeList(dir, runXml("Wanted", "Release", "x64") + runXml("Other", "release", "x64"));
  try {
    ReadArchiveRunList(path);
    ADD_FAILURE() << "no exception";
  } catch (const wchar_t* text) { EXPECT_EQ(CString(text), CString(L"Ungültige Konfiguration")); }
}

TEST(ArchiveRunList, ABadPlatformInAnyEntryThrowsAPlainPointer) {
  TempDirectory dir;
  const CString path = writeList(dir, runXml("Other", "Debug", "arm64") + runXml("Wanted", "Release", "x64"));
  try {
    ReadArchiveRunList(path);
    ADD_FAILURE() << "no exception";
  } catch (const wchar_t* text) { EXPECT_EQ(CString(text), CString(L"Ungültige Platform")); }
}

TEST(ArchiveRunList, OfTwoRunsOfOneNameTheFirstIsFound) {
  TempDirectory dir;
  const XbArray<SArchiveRun> runs =
      ReadArchiveRunList(writeList(dir, runXml("Twice", "Release", "x64") + runXml("Twice", "Debug", "x64")));
  const SArchiveRun* run = FindArchiveRun(runs, L"Twice");
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->Config, CString(L"Release"));
  EXPECT_EQ(FindArchiveRun(runs, L"twice"), nullptr);
}

}  // namespace
}  // namespace TestSuite
