// End-to-end: in the mode "External" the parent and its child keep their
// view of the work block for many cases, so a case must find nothing of the
// case before it in the block: not the full output of the one before, and
// not what a crashed child left behind. The front end is a private copy
// whose children load isolation_CrashClasses.
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "CliRunner.h"
#include "IsolationCli.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"

using CliTest::ExpectGolden;
using CliTest::SCliResult;

namespace {

// Runs of at least 1,000 'x' become "<N x>", process ids "pid=<PID>".
std::string normalizeFloodsAndPids(const std::string& text) {
  std::string shortened;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of('x', at), text.size());
    if (text[at] == 'x' && end - at >= 1000) {
      shortened.append("<").append(std::to_string(end - at)).append(" x>");
      at = end;
    } else {
      shortened += text[at++];
    }
  }
  return std::regex_replace(shortened, std::regex("pid=[0-9]+"), "pid=<PID>");
}

// The process ids that the cases of IsoPass printed, in order.
std::vector<std::string> passPids(const std::string& text) {
  static const std::regex pid("pid=([0-9]+)");
  std::vector<std::string> pids;
  for (std::sregex_iterator it(text.begin(), text.end(), pid), end; it != end; ++it) pids.push_back((*it)[1]);
  return pids;
}

class ExternalBlockReuse : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_frontEnd = std::make_unique<CPrivateFrontEnd>(std::vector<std::string>{"isolation_CrashClasses"});
  }
  static void TearDownTestSuite() { s_frontEnd.reset(); }

  // One external run, on one thread, of the class directories `classes`:
  // its exit code, the three cases of IsoPass all in one child, and the
  // console text as the golden file `golden` has it.
  static void expectExternalRun(std::initializer_list<const wchar_t*> classes, int exitCode, const char* golden) {
    TempDirectory data;
    for (const wchar_t* name : classes) data.MakeDirectory(name);
    std::string root = data.Path().ToUtf8();
    root.pop_back();
    const SCliResult result =
        CliTest::RunProgram(s_frontEnd->Program(), {"-d", root, "-x", "-v", "--no-times", "--no-color"}, 120);
    ASSERT_FALSE(result.bTimedOut);
    EXPECT_EQ(result.iExitCode, exitCode) << result.sStderr;
    const std::vector<std::string> pids = passPids(result.sStdout);
    ASSERT_EQ(pids.size(), 3u);
    EXPECT_EQ(pids[0], pids[1]);
    EXPECT_EQ(pids[1], pids[2]);
    ExpectGolden(golden, normalizeFloodsAndPids(result.sStdout));
  }

  static std::unique_ptr<CPrivateFrontEnd> s_frontEnd;
};

std::unique_ptr<CPrivateFrontEnd> ExternalBlockReuse::s_frontEnd;

}  // namespace

// "limit" and "beyondLimit" fill the output to its limit; the cases of
// IsoPass that follow in the same child print one short line each.
TEST_F(ExternalBlockReuse, ACaseAfterOneThatFilledTheOutputFindsOnlyItsOwnOutput) {
  expectExternalRun({L"IsoOutput", L"IsoPass"}, 0, "external_block_after_full_output.txt");
}

// Each case of IsoCrash ends its child while it owns the block; the parent
// keeps its view, and the next child attaches to the same block. The case
// after each crash, and the full outputs and short lines after the last one,
// must find their own case in the block and nothing else.
TEST_F(ExternalBlockReuse, AfterACrashTheNextCaseInANewChildFindsACleanBlock) {
  expectExternalRun({L"IsoCrash", L"IsoOutput", L"IsoPass"}, 1, "external_block_after_crash.txt");
}
