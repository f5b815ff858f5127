// run_overhead_bench: what one in-process case costs the front end. Runs
// ZoTestSuiteCLI on a generated tree of 10,000 trivial cases (the test
// library run_overhead_BenchClasses), with and without --track-heap, and
// subtracts a run with the case limit 0, which does everything but run the
// cases (start-up, loading, discovery). Prints the time per case.
//
// Two layouts of the same 10,000 cases: 100 class directories of 100 cases
// each, which shows the harness's own cost per case, and one directory of
// 10,000, where every run of a case also lists the class's 10,000 subtests
// anew and finds its own among them by name, as the test-class contract
// demands.
//
// The anchor is run_overhead_GoogleTestCases, a GoogleTest program of
// 10,000 trivial tests in 100 suites, run in the same rounds as the spread
// layout; its cost per test subtracts a run that filters every test out.
// Both sides print to /dev/null the same kind of thing: a line per case
// ("\tNAME... OK" under a line per class from the front end, "[ RUN ]" and
// "[ OK ]" lines per test with a line per suite from GoogleTest), no times
// (--no-times, --gtest_print_time=0), and a summary. Every figure is the
// median of the rounds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "BenchTable.h"
#include "foundation/ZoUniqueId.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned int c_uiCases = 10000;
constexpr double c_dTargetMicroseconds = 20.0;
constexpr double c_dAnchorRatio = 2.0;  // at most twice GoogleTest's cost per test

// Joins texts by appending (the "literal" + std::string operators draw a
// false -Wrestrict from g++ 12 at -O3).
std::string join(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text.append(part);
  return text;
}

std::string quote(const std::string& word) { return join({"'", word, "'"}); }

struct SLayout {
  const char* szName;
  unsigned int uiDirectories;
  int iRounds;  // whole runs of each kind
  bool bWithAnchor;
};

// The commands of one round: the front end with case limit 0 (and
// --allow-empty, as a run without cases fails otherwise), plain and
// tracking the heap; then, for a layout with the anchor, GoogleTest with
// every test filtered out and with all.
enum ECommand { eLimitZero, ePlain, eTracked, eAnchorNone, eAnchorAll, eCommands };

// Makes `layout` below `root`: directories "gN-COUNT/RunOverheadTrivial".
fs::path makeTree(const fs::path& root, const SLayout& layout) {
  const fs::path tree = root / layout.szName;
  const unsigned int perDirectory = c_uiCases / layout.uiDirectories;
  for (unsigned int d = 0; d < layout.uiDirectories; ++d)
    fs::create_directories(tree / join({"g", std::to_string(d), "-", std::to_string(perDirectory)}) /
                           "RunOverheadTrivial");
  return tree;
}

std::string frontEndCommand(const fs::path& cli, const fs::path& tree, const std::string& options) {
  return join(
      {quote(cli.string()), " -d ", quote(tree.string()), " --dll run_overhead_BenchClasses --no-times ", options});
}

// Seconds of one whole run of `command`; negative if it failed.
double timeRun(const std::string& command) {
  const auto start = std::chrono::steady_clock::now();
  const int status = std::system(join({command, " >/dev/null 2>&1"}).c_str());
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return status == 0 ? elapsed.count() : -1.0;
}

std::string anchorCommand(const fs::path& anchor, bool all) {
  return join({quote(anchor.string()), " --gtest_print_time=0", all ? "" : " --gtest_filter=-*"});
}

// One run of `command` with its output kept: it must say `expected`.
bool checkRunsAll(const std::string& command, const std::string& expected, const fs::path& scratch) {
  const fs::path output = scratch / "check.txt";
  if (std::system(join({command, " >", quote(output.string()), " 2>&1"}).c_str()) != 0) return false;
  std::ifstream file(output);
  std::stringstream text;
  text << file.rdbuf();
  if (text.str().find(expected) != std::string::npos) return true;
  std::printf("unexpected output of %s:\n%s\n", command.c_str(), text.str().c_str());
  return false;
}

// The median seconds of each command over the layout's rounds, taken in
// turns; false if a run failed.
bool timeRounds(const std::string (&commands)[eCommands], int count, int rounds, double (&median)[eCommands]) {
  std::vector<double> samples[eCommands];
  for (int round = 0; round < rounds; ++round) {
    for (int c = 0; c < count; ++c) {
      const double seconds = timeRun(commands[c]);
      if (seconds < 0) {
        std::printf("the run of %s failed\n", commands[c].c_str());
        return false;
      }
      samples[c].push_back(seconds);
    }
  }
  for (int c = 0; c < eCommands; ++c) median[c] = medianOf(samples[c]);
  return true;
}

// Measures and prints one layout; false if a run failed. `perCase` gets the
// microseconds per case without tracking, `perTest` GoogleTest's per test
// (negative without the anchor).
bool measure(const fs::path& cli, const fs::path& anchor, const fs::path& scratch, const SLayout& layout,
             double& perCase, double& perTest) {
  const fs::path tree = makeTree(scratch, layout);
  const bool withAnchor = layout.bWithAnchor && fs::exists(anchor);
  const std::string commands[eCommands] = {frontEndCommand(cli, tree, "-c 0 --allow-empty"),
                                           frontEndCommand(cli, tree, ""), frontEndCommand(cli, tree, "--track-heap"),
                                           anchorCommand(anchor, false), anchorCommand(anchor, true)};
  if (!checkRunsAll(commands[ePlain], join({"Erfolgreich:\t", std::to_string(c_uiCases), " Tests"}), scratch) ||
      (withAnchor &&
       !checkRunsAll(commands[eAnchorAll], join({"PASSED  ] ", std::to_string(c_uiCases), " tests"}), scratch)))
    return false;
  double median[eCommands];
  if (!timeRounds(commands, withAnchor ? eCommands : eAnchorNone, layout.iRounds, median)) return false;
  const double plain = (median[ePlain] - median[eLimitZero]) / c_uiCases * 1e6;
  const double tracked = (median[eTracked] - median[eLimitZero]) / c_uiCases * 1e6;
  std::printf("%s (%u directories of %u cases each), median of %d whole runs:\n", layout.szName, layout.uiDirectories,
              c_uiCases / layout.uiDirectories, layout.iRounds);
  std::printf("  start-up and discovery (-c 0)   %8.1f ms\n", median[eLimitZero] * 1e3);
  std::printf("  %u cases                     %8.1f ms   %6.2f us per case\n", c_uiCases, median[ePlain] * 1e3, plain);
  std::printf("  %u cases, --track-heap       %8.1f ms   %6.2f us per case   %.2fx\n", c_uiCases,
              median[eTracked] * 1e3, tracked, tracked / plain);
  perCase = plain;
  perTest = withAnchor ? (median[eAnchorAll] - median[eAnchorNone]) / c_uiCases * 1e6 : -1.0;
  if (withAnchor) {
    std::printf("  GoogleTest, all filtered out    %8.1f ms\n", median[eAnchorNone] * 1e3);
    std::printf("  GoogleTest, %u tests         %8.1f ms   %6.2f us per test\n", c_uiCases, median[eAnchorAll] * 1e3,
                perTest);
  }
  return true;
}

}  // namespace

int main(int, char** argv) {
  const fs::path bin = fs::canonical(fs::path(argv[0])).parent_path();
  const fs::path cli = bin / "ZoTestSuiteCLI";
  if (!fs::exists(cli) || !fs::exists(bin / "run_overhead_BenchClasses.so")) {
    std::printf("ZoTestSuiteCLI or run_overhead_BenchClasses.so is missing in %s\n", bin.string().c_str());
    return 1;
  }
  const fs::path scratch =
      fs::temp_directory_path() / join({"zo-run-overhead-", ZoUniqueIdT<CString>::GetUniqueID().ToUtf8()});
  const SLayout layouts[] = {{"spread", 100, 7, true}, {"one-directory", 1, 2, false}};
  double perCase[2] = {0.0, 0.0}, perTest[2] = {-1.0, -1.0};
  std::printf("Load average at the start: %s\n", loadAverage().c_str());
  bool ok = true;
  for (int l = 0; l < 2 && ok; ++l)
    ok = measure(cli, bin / "run_overhead_GoogleTestCases", scratch, layouts[l], perCase[l], perTest[l]);
  std::error_code ignored;
  fs::remove_all(scratch, ignored);
  if (!ok) return 1;
  std::printf("Load average at the end: %s\n", loadAverage().c_str());
  std::printf("per case without tracking, spread layout: %.2f us (target: under %.0f us) %s\n", perCase[0],
              c_dTargetMicroseconds, perCase[0] < c_dTargetMicroseconds ? "met" : "MISSED");
  if (perTest[0] <= 0) {
    std::printf("GoogleTest anchor missing (run_overhead_GoogleTestCases was not built or measured nothing)\n");
    return 0;
  }
  printTableRow("in process per case", withUnit(perCase[0], "us"), "GoogleTest per test", withUnit(perTest[0], "us"),
                perCase[0] / perTest[0], c_dAnchorRatio, true);
  return 0;
}
