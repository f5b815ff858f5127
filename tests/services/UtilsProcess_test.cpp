#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "TempDirectory.h"
#include "services/Utils.h"

using namespace TestSuite;

TEST(UtilsProcess, AChildThatEndsInTimeYieldsEmptyTextWhateverItsExitCode) {
  EXPECT_EQ(Utils::RunProcess(L"/bin/sh", L"-c \"exit 3\"", L"", 10), CString(L""));
  EXPECT_EQ(Utils::RunProcess(L"/bin/sh", L"-c \"exit 0\"", L"", 10), CString(L""));
}

TEST(UtilsProcess, AChildBeyondTheLimitIsKilledWithAWarning) {
  const auto start = std::chrono::steady_clock::now();
  const CString result = Utils::RunProcess(L"/bin/sleep", L"30", L"", 1);
  EXPECT_EQ(result, CString(L"Warnung: Prozess sleep nach 1 Sekunden abgebrochen.\n"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));  // it did not wait for sleep
}

TEST(UtilsProcess, ALimitOfZeroKillsTheChildAtOnce) {
  EXPECT_EQ(Utils::RunProcess(L"/bin/sleep", L"30", L"", 0),
            CString(L"Warnung: Prozess sleep nach 0 Sekunden abgebrochen.\n"));
}

TEST(UtilsProcess, AMissingExecutableGivesThreeWarningLines) {
  TempDirectory dir;
  const CString executable = dir / L"gibt es nicht";
  const CString result = Utils::RunProcess(L"\"" + executable + L"\"", L"-a \"b c\"", dir.Path(), 5);
  EXPECT_EQ(result, L"Warnung: Prozess \"" + executable + L"\" konnte nicht gestartet werden:\n" +
                        L"         Argumente: -a \"b c\"\n" + L"         Working Directory: " + dir.Path() + L"\n");
}

TEST(UtilsProcess, AMissingWorkingDirectoryMeansTheChildCannotStart) {
  TempDirectory dir;
  const CString missing = dir / L"fehlt";
  const CString result = Utils::RunProcess(L"/bin/sh", L"-c \"exit 0\"", missing, 5);
  EXPECT_EQ(result,
            L"Warnung: Prozess /bin/sh konnte nicht gestartet werden:\n"
            L"         Argumente: -c \"exit 0\"\n"
            L"         Working Directory: " +
                missing + L"\n");
}

TEST(UtilsProcess, TheChildRunsInTheGivenWorkingDirectory) {
  TempDirectory dir;
  ASSERT_EQ(Utils::RunProcess(L"/bin/sh", L"-c \"pwd -P > wo.txt\"", dir.Path(), 10), CString(L""));
  const std::string expected = std::filesystem::canonical(dir.Path().ToUtf8()).string() + "\n";
  EXPECT_EQ(TempDirectory::ReadBytes(dir / L"wo.txt"), expected);
}

TEST(UtilsProcess, WordsAreSplitAtBlanksOutsideQuotesAndTheQuotesRemoved) {
  TempDirectory dir;
  // $0 is "a b" as one word, $1 is c: $# counts one positional word.
  ASSERT_EQ(Utils::RunProcess(L"/bin/sh", L"-c   \"echo $#:$0:$1 > w.txt\" \"a b\"  c", dir.Path(), 10), CString(L""));
  EXPECT_EQ(TempDirectory::ReadBytes(dir / L"w.txt"), "1:a b:c\n");
}

TEST(UtilsProcess, AQuotedExecutableMayHoldBlanks) {
  TempDirectory dir;
  const CString script = dir / L"mein Programm.sh";
  TempDirectory::WriteBytes(script, "#!/bin/sh\necho \"$1\" > ergebnis.txt\n");
  std::filesystem::permissions(script.ToUtf8(), std::filesystem::perms::owner_all);
  ASSERT_EQ(Utils::RunProcess(L"\"" + script + L"\"", L"\"ü x\"", dir.Path(), 10), CString(L""));
  EXPECT_EQ(TempDirectory::ReadBytes(dir / L"ergebnis.txt"), "\xC3\xBC x\n");
}

TEST(UtilsProcess, AProgramNameWithoutDirectoryIsSearchedInThePath) {
  TempDirectory dir;
  ASSERT_EQ(Utils::RunProcess(L"sh", L"-c \"echo ok > p.txt\"", dir.Path(), 10), CString(L""));
  EXPECT_EQ(TempDirectory::ReadBytes(dir / L"p.txt"), "ok\n");
}
