// The front end's checks of file arguments and their refusals.
#include "FileArguments.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

TEST(FileArguments, AMissingInputIsNamed) {
  TempDirectory dir;
  dir.WriteFile(L"a.xml", "x");
  COutRecorder recorder;
  EXPECT_TRUE(CheckInputExists(dir / L"a.xml"));
  EXPECT_FALSE(CheckInputExists(dir / L"b.xml"));
  EXPECT_EQ(recorder.Text(), L"Fehler: Datei " + (dir / L"b.xml") + L" existiert nicht.\n");
}

TEST(FileArguments, AnOutputMustBeNoDirectoryInADirectoryThatExists) {
  TempDirectory dir;
  COutRecorder recorder;
  EXPECT_TRUE(CheckWritablePath(dir / L"out.xml"));
  EXPECT_TRUE(CheckWritablePath(L"relative.xml"));
  EXPECT_FALSE(CheckWritablePath(dir.Path()));
  EXPECT_FALSE(CheckWritablePath(dir / L"missing/out.xml"));
  EXPECT_EQ(recorder.Text(), L"Fehler: " + dir.Path() + L" ist ein Verzeichnis, keine Datei.\nFehler: Verzeichnis " +
                                 (dir / L"missing/") + L" existiert nicht.\n");
}

TEST(FileArguments, AnOutputThatWouldReplaceAnInputIsRefusedUnderAnySpelling) {
  TempDirectory dir;
  dir.WriteFile(L"a.xml", "x");
  dir.MakeDirectory(L"sub");
  COutRecorder recorder;
  EXPECT_TRUE(CheckOutputSparesInputs(dir / L"out.xml", {dir / L"a.xml"}, L"Die Datei"));
  EXPECT_FALSE(CheckOutputSparesInputs(dir / L"sub/../a.xml", {dir / L"a.xml"}, L"Die Trace-Datei"));
  EXPECT_EQ(recorder.Text(),
            L"Fehler: Die Trace-Datei " + (dir / L"sub/../a.xml") + L" würde eine Eingabe überschreiben.\n");
}

}  // namespace
