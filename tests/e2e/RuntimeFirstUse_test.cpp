// The first use of a runtime facility in a fresh child process, through the
// real front end: every case of IsoRuntime (a thread, the thread pool, a
// temporary file, formatted text, a unique id) shows the same heap figures
// when it runs in process, in one child for all cases and in a child of its
// own, so what a child leaves out of its warm-up costs no case anything.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>
#include <vector>

#include "IsolationCli.h"
#include "TempDirectory.h"
#include "isolation_PrivateFrontEnd.h"
#include "services/platform/HeapHooks.h"

namespace {

struct SHeapFigures {
  std::string sPeak;
  std::string sGrowth;
  std::string sResult;
  bool operator==(const SHeapFigures&) const = default;
};

std::ostream& operator<<(std::ostream& out, const SHeapFigures& figures) {
  return out << "peak " << figures.sPeak << ", growth " << figures.sGrowth << ", " << figures.sResult;
}

// Case name to its figures, from the testcase elements of an XML report.
std::map<std::string, SHeapFigures> heapFiguresOf(const std::string& xml) {
  static const std::regex row(
      "<testcase [^>]*name=\"([^\"]*)\">\\s*<time>[^<]*</time>\\s*<memory>([^<]*)</memory>\\s*"
      "<memorydelta>([^<]*)</memorydelta>\\s*<result ([^>]*)>");
  std::map<std::string, SHeapFigures> figures;
  for (auto it = std::sregex_iterator(xml.begin(), xml.end(), row); it != std::sregex_iterator(); ++it)
    figures[(*it)[1]] = SHeapFigures{(*it)[2], (*it)[3], (*it)[4]};
  return figures;
}

class RuntimeFirstUse : public ::testing::Test {
 protected:
  // The figures of a run of IsoRuntime with heap tracking and `options`.
  std::map<std::string, SHeapFigures> run(const std::vector<std::string>& options) {
    const std::string report = m_dir.Path().ToUtf8() + "report.xml";
    std::vector<std::string> arguments = {
        "-d", m_dir.Path().ToUtf8() + "data", "--no-times", "--no-color", "--track-heap", "--xml", report};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const CliTest::SCliResult result = CliTest::RunProgram(m_frontEnd.Program(), arguments, 60);
    EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
    EXPECT_EQ(result.sStdout.find("WARNUNG"), std::string::npos) << result.sStdout;
    return heapFiguresOf(CliTest::ReadText(report));
  }

  CPrivateFrontEnd m_frontEnd{{"isolation_CrashClasses"}};
  TempDirectory m_dir;
};

}  // namespace

TEST_F(RuntimeFirstUse, EveryFacilityCostsACaseInAFreshChildWhatItCostsInProcess) {
  if (!TestSuite::HeapHooks::IsAvailable()) GTEST_SKIP() << "a sanitizer's allocator is not tracked";
  m_dir.MakeDirectory(L"data/IsoRuntime");
  const std::map<std::string, SHeapFigures> inProcess = run({});
  ASSERT_EQ(inProcess.size(), 5u);
  for (const auto& [name, figures] : inProcess) {
    EXPECT_EQ(figures.sGrowth, "0") << name;
    EXPECT_EQ(figures.sResult, "type=\"OK\"") << name;
  }
  EXPECT_NE(inProcess.at("pool").sPeak, "0");  // the figures are real: the pool's task takes memory
  EXPECT_EQ(run({"-x"}), inProcess);
  EXPECT_EQ(run({"-x", "-l"}), inProcess);
}
