// The checks of output files named on the command line: a directory, a
// directory that does not exist, and an output that would replace an input,
// each refused with its red line.
#include "FileArguments.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

TEST(FileArguments, WritablePaths) {
  TempDirectory directory;
  directory.MakeDirectory(L"sub");
  COutRecorder recorder;
  EXPECT_TRUE(IsWritablePath(directory / L"new.xml"));
  EXPECT_TRUE(IsWritablePath(L"relative.xml"));
  EXPECT_EQ(recorder.Text(), L"");
  EXPECT_FALSE(IsWritablePath(directory / L"sub"));
  EXPECT_FALSE(IsWritablePath(directory / L"none/new.xml"));
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0].sText, FormatString(L"Fehler: %s ist ein Verzeichnis, keine Datei.\n", directory / L"sub"));
  EXPECT_EQ(messages[1].sText, FormatString(L"Fehler: Verzeichnis %s existiert nicht.\n", directory / L"none/"));
  EXPECT_EQ(messages[1].color, ZoColorRGBA::c_RED);
}

TEST(FileArguments, AnOutputThatWouldReplaceAnInput) {
  TempDirectory directory;
  directory.MakeDirectory(L"sub");
  directory.WriteFile(L"in.xml", "x");
  COutRecorder recorder;
  EXPECT_TRUE(OutputSparesInputs(directory / L"out.xml", {directory / L"in.xml"}, L"Der Report"));
  EXPECT_FALSE(OutputSparesInputs(directory / L"sub/../in.xml", {directory / L"in.xml"}, L"Der Report"));
  EXPECT_EQ(recorder.Text(),
            FormatString(L"Fehler: Der Report %s würde eine Eingabe überschreiben.\n", directory / L"sub/../in.xml"));
}
