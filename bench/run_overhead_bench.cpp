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

#include "foundation/ZoUniqueId.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned int c_uiCases = 10000;
constexpr double c_dTargetMicroseconds = 20.0;

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
  int iRounds;  // whole runs of each kind; the best counts, as other processes only ever add time
};

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

// One run with its output kept: it must have executed every case.
bool checkRunsAll(const fs::path& cli, const fs::path& tree, const fs::path& scratch) {
  const fs::path output = scratch / "check.txt";
  if (std::system(join({frontEndCommand(cli, tree, ""), " >", quote(output.string()), " 2>&1"}).c_str()) != 0)
    return false;
  std::ifstream file(output);
  std::stringstream text;
  text << file.rdbuf();
  const std::string expected = join({"Erfolgreich:\t", std::to_string(c_uiCases), " Tests"});
  if (text.str().find(expected) != std::string::npos) return true;
  std::printf("unexpected output of %s:\n%s\n", tree.string().c_str(), text.str().c_str());
  return false;
}

// Measures and prints one layout; false if a run failed. `perCase` gets the
// microseconds per case without tracking.
bool measure(const fs::path& cli, const fs::path& scratch, const SLayout& layout, double& perCase) {
  const fs::path tree = makeTree(scratch, layout);
  if (!checkRunsAll(cli, tree, scratch)) return false;
  const std::string options[3] = {"-c 0", "", "--track-heap"};
  double best[3] = {1e300, 1e300, 1e300};
  for (int round = 0; round < layout.iRounds; ++round) {
    for (int o = 0; o < 3; ++o) {
      const double seconds = timeRun(frontEndCommand(cli, tree, options[o]));
      if (seconds < 0) {
        std::printf("the run with '%s' failed\n", options[o].c_str());
        return false;
      }
      best[o] = std::min(best[o], seconds);
    }
  }
  const double plain = (best[1] - best[0]) / c_uiCases * 1e6, tracked = (best[2] - best[0]) / c_uiCases * 1e6;
  std::printf("%s (%u directories of %u cases each), best of %d whole runs:\n", layout.szName, layout.uiDirectories,
              c_uiCases / layout.uiDirectories, layout.iRounds);
  std::printf("  start-up and discovery (-c 0)   %8.1f ms\n", best[0] * 1e3);
  std::printf("  %u cases                     %8.1f ms   %6.2f us per case\n", c_uiCases, best[1] * 1e3, plain);
  std::printf("  %u cases, --track-heap       %8.1f ms   %6.2f us per case   %.2fx\n", c_uiCases, best[2] * 1e3,
              tracked, tracked / plain);
  perCase = plain;
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
  const SLayout layouts[] = {{"spread", 100, 7}, {"one-directory", 1, 2}};
  double perCase[2] = {0.0, 0.0};
  bool ok = true;
  for (int l = 0; l < 2 && ok; ++l) ok = measure(cli, scratch, layouts[l], perCase[l]);
  std::error_code ignored;
  fs::remove_all(scratch, ignored);
  if (!ok) return 1;
  std::printf("per case without tracking, spread layout: %.2f us (target: under %.0f us) %s\n", perCase[0],
              c_dTargetMicroseconds, perCase[0] < c_dTargetMicroseconds ? "met" : "MISSED");
  return 0;
}
