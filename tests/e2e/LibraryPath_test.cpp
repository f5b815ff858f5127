// End-to-end: a test library given to --dll by the path of its file, built
// anywhere, runs its cases in process and in the child processes of
// "External" and "External Isolated".
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CliRunner.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"

using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

namespace fs = std::filesystem;

// A copy of the scripted classes' library under another name, away from the
// front end, and a data tree with a passing and a failing case.
class LibraryPathTest : public ::testing::Test {
 protected:
  LibraryPathTest() {
    m_root.MakeDirectory(L"elsewhere/lib");
    fs::copy_file(fs::path(ZO_BIN_DIR) / "cli_ScriptedClasses.so", Root() + "/elsewhere/lib/MyScripted.so");
    TestSupport::WriteScriptedClass(m_root, L"data/CliScripted", {{"a_pass.case", "pass"}, {"b_fail.case", "fail"}});
  }
  std::string Root() const {
    const std::string path = m_root.Path().ToUtf8();
    return path.substr(0, path.size() - 1);
  }
  SCliResult Run(const std::string& library, std::vector<std::string> extra) {
    std::vector<std::string> arguments = {"-d", "data", "--dll", library, "--no-times", "-v"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    return RunCli(arguments, Root());
  }

  TempDirectory m_root;
};

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST_F(LibraryPathTest, ALibraryByPathRunsInAllThreeModes) {
  const std::string library = Root() + "/elsewhere/lib/MyScripted.so";
  const struct {
    std::vector<std::string> options;
    const char* szPassTags;
  } modes[] = {{{}, " \n"}, {{"-x"}, " [P0]\n"}, {{"-x", "-l"}, " [P0]\n"}};
  for (const auto& mode : modes) {
    const SCliResult result = Run(library, mode.options);
    EXPECT_EQ(result.iExitCode, 1) << result.sStdout;
    EXPECT_TRUE(contains(result.sStdout, std::string("\ta_pass.case... OK") + mode.szPassTags)) << result.sStdout;
    EXPECT_TRUE(
        contains(result.sStdout, "\tb_fail.case... FEHLER (Die Ausführung dieses Testfalls ist fehlgeschlagen)"))
        << result.sStdout;
  }
}

TEST_F(LibraryPathTest, ARelativePathIsTakenFromTheDirectoryOfTheCommand) {
  const SCliResult result = Run("elsewhere/lib/MyScripted.so", {"-x"});
  EXPECT_EQ(result.iExitCode, 1) << result.sStdout;
  EXPECT_TRUE(contains(result.sStdout, "\ta_pass.case... OK [P0]\n")) << result.sStdout;
}

TEST_F(LibraryPathTest, APathThatNamesNoFileIsAUsageError) {
  for (const char* library : {"elsewhere/lib/Missing.so", "elsewhere/lib", "Missing.so"}) {
    const SCliResult result = Run(library, {});
    EXPECT_EQ(result.iExitCode, 2) << library;
    EXPECT_TRUE(contains(result.sStderr, std::string("--dll: '") + library + "' is no library file")) << result.sStderr;
    EXPECT_EQ(result.sStdout, "");
  }
}
