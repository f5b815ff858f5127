// End-to-end: zo_add_data_tests of the CMake package, tried the way a user
// tries it. This build is installed into a temporary prefix, a copy of
// examples/writing-tests is configured and built against it, and its CTest
// run shows one test per class (and, registered beside it, one per case).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "IsolationCli.h"
#include "TempDirectory.h"

namespace {

namespace fs = std::filesystem;
using CliTest::SCliResult;

// The names of the tests that a ctest run reports with `verdict`
// ("Passed", or "Failed" for a test whose command failed).
std::set<std::string> testsWith(const std::string& ctestOutput, const std::string& verdict) {
  static const std::regex line("Test +#[0-9]+: (\\S+) \\.+[^\\n]*?(Passed|\\*\\*\\*Failed)");
  std::set<std::string> names;
  for (std::sregex_iterator it(ctestOutput.begin(), ctestOutput.end(), line), end; it != end; ++it)
    if (((*it)[2] == "Passed") == (verdict == "Passed")) names.insert((*it)[1]);
  return names;
}

void writeFile(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

void appendFile(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::app) << text;
}

class DataTestsTest : public ::testing::Test {
 protected:
  DataTestsTest()
      : m_root(m_dir.Path().ToUtf8()),
        m_prefix(m_root / "prefix"),
        m_source(m_root / "example"),
        m_build(m_root / "build") {}

  // A command of the tool chain; its output goes into the failure message.
  // A compiler cache, if the project uses one, sees every copy of the
  // example as the same sources, so that a second run compiles nothing.
  SCliResult Run(const std::string& program, const std::vector<std::string>& arguments) {
    CliTest::CCliProcess process(program, arguments, "", {"CCACHE_BASEDIR=" + m_root.string(), "CCACHE_NOHASHDIR=1"});
    const SCliResult result = process.Finish(280);
    EXPECT_FALSE(result.bTimedOut) << program;
    return result;
  }
  bool Succeeds(const std::string& program, const std::vector<std::string>& arguments) {
    const SCliResult result = Run(program, arguments);
    EXPECT_EQ(result.iExitCode, 0) << program << "\n" << result.sStdout << result.sStderr;
    return result.iExitCode == 0;
  }
  bool InstallAndConfigure() {
    fs::copy(fs::path(ZO_SOURCE_DIR) / "examples/writing-tests", m_source, fs::copy_options::recursive);
    std::vector<std::string> configure = {"-S",
                                          m_source.string(),
                                          "-B",
                                          m_build.string(),
                                          "-G",
                                          ZO_CMAKE_GENERATOR,
                                          "-DCMAKE_BUILD_TYPE=Release",
                                          "-DCMAKE_CXX_COMPILER=" ZO_CXX_COMPILER,
                                          "-DCMAKE_PREFIX_PATH=" + m_prefix.string()};
    if (std::string(ZO_CXX_COMPILER_LAUNCHER) != "")
      configure.push_back("-DCMAKE_CXX_COMPILER_LAUNCHER=" ZO_CXX_COMPILER_LAUNCHER);
    return Succeeds(ZO_CMAKE_COMMAND, {"--install", ZO_BUILD_DIR, "--prefix", m_prefix.string()}) &&
           Succeeds(ZO_CMAKE_COMMAND, configure);
  }
  bool Build() { return Succeeds(ZO_CMAKE_COMMAND, {"--build", m_build.string()}); }
  SCliResult Ctest() { return Run(ZO_CTEST_COMMAND, {"--test-dir", m_build.string(), "-j2"}); }

  TempDirectory m_dir;
  fs::path m_root, m_prefix, m_source, m_build;
};

}  // namespace

TEST_F(DataTestsTest, TheExampleRegistersEveryClassAndAFailingCaseFailsExactlyItsTest) {
  ASSERT_TRUE(InstallAndConfigure());
  // Beside the example's classes, its cases under a prefix of their own.
  appendFile(m_source / "CMakeLists.txt",
             "zo_add_data_tests(TARGET WordCountTests DATA_DIR data ARGS --no-times PER_CASE TEST_PREFIX case.)\n");
  ASSERT_TRUE(Build());
  // An installed front end's directory is not written into.
  EXPECT_TRUE(fs::exists(m_build / "WordCountTests.so"));
  EXPECT_FALSE(fs::exists(m_prefix / "bin/WordCountTests.so"));

  const SCliResult passing = Ctest();
  EXPECT_EQ(passing.iExitCode, 0) << passing.sStdout;
  EXPECT_EQ(testsWith(passing.sStdout, "Passed"),
            (std::set<std::string>{"WordCountTest", "case.WordCountTest:empty.txt", "case.WordCountTest:fox.txt",
                                   "case.WordCountTest:greeting.txt"}))
      << passing.sStdout;
  EXPECT_EQ(testsWith(passing.sStdout, "Failed"), std::set<std::string>{});

  // A new case is found at the next build of the library; a relink is enough.
  writeFile(m_source / "data/WordCountTest/broken.txt", "two words\n");
  writeFile(m_source / "data/WordCountTest/broken.count", "3\n");
  fs::remove(m_build / "WordCountTests.so");
  ASSERT_TRUE(Build());
  const SCliResult failing = Ctest();
  EXPECT_NE(failing.iExitCode, 0);
  EXPECT_EQ(testsWith(failing.sStdout, "Failed"),
            (std::set<std::string>{"WordCountTest", "case.WordCountTest:broken.txt"}))
      << failing.sStdout;
  EXPECT_EQ(testsWith(failing.sStdout, "Passed"),
            (std::set<std::string>{"case.WordCountTest:empty.txt", "case.WordCountTest:fox.txt",
                                   "case.WordCountTest:greeting.txt"}))
      << failing.sStdout;
}
