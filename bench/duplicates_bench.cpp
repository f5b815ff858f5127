// duplicates_bench: the duplicate detection over 10,000 data files of
// 100 KB (about 1 GB) in one file-based class, every content twice, with a
// warm page cache. Beside it, measured in the same run on the same files:
// `md5sum` over all files (the floor of reading and hashing them once, in
// one process) and `fdupes -r` on the same tree (left out if it is not
// installed). Each figure is the best of three runs. The tree is deleted
// at the end.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "BenchTiming.h"
#include "ZoTestSuite.h"
#include "foundation/ZoUnitTestFileBased.h"
#include "services/COut.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned int c_uiFiles = 10000;
constexpr unsigned int c_uiContents = c_uiFiles / 2;
constexpr std::size_t c_uiFileSize = 100 * 1024;
constexpr int c_iRuns = 3;

// Every "*.dat" file of its directory is a case.
class BenchDataFiles : public ZoUnitTestFileBased {
  XB_DECLARE_DYNCREATE(BenchDataFiles)
  BenchDataFiles() : ZoUnitTestFileBased(L"*.dat") {}

 protected:
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(BenchDataFiles, ZoUnitTestFileBased);

// File k holds content k % 5000, so files k and k + 5000 are equal.
void makeTree(const fs::path& dir) {
  fs::create_directories(dir);
  std::mt19937_64 random(7u);
  std::vector<std::uint64_t> words(c_uiFileSize / sizeof(std::uint64_t));
  for (unsigned int content = 0; content < c_uiContents; ++content) {
    for (std::uint64_t& word : words) word = random();
    for (unsigned int k : {content, content + c_uiContents}) {
      char name[32];
      std::snprintf(name, sizeof name, "f%05u.dat", k);
      std::ofstream(dir / name, std::ios::binary).write(reinterpret_cast<const char*>(words.data()), c_uiFileSize);
    }
  }
}

// Keeps the last message, which names the number of redundant files.
class CLastMessage : public TestSuite::COut::ZoCustomOut {
 public:
  void Output(const TestSuite::COut& out) override { m_sText = out.GetText(); }
  const CString& Text() const { return m_sText; }

 private:
  CString m_sText;
};

bool runCommand(const std::string& command) { return std::system(command.c_str()) == 0; }

void printFigure(const char* what, double seconds, double anchor) {
  const double megabytes = static_cast<double>(c_uiFiles) * c_uiFileSize / 1e6;
  if (seconds < 0) {
    std::printf("  %-34s failed\n", what);
    return;
  }
  std::printf("  %-34s %7.3f s  %6.0f MB/s  %5.2f x md5sum\n", what, seconds, megabytes / seconds, seconds / anchor);
}

}  // namespace

int main() {
  const fs::path base = fs::temp_directory_path() / ("zo-duplicates-bench-" + std::to_string(std::random_device()()));
  const fs::path dir = base / "BenchDataFiles";
  std::printf("duplicates_bench: %u files of %zu bytes, each content twice, below %s\n", c_uiFiles, c_uiFileSize,
              base.string().c_str());
  makeTree(dir);

  const std::string md5 = "md5sum '" + dir.string() + "'/*.dat > /dev/null";
  runCommand(md5);  // warms the page cache
  const double dMd5 = bestSeconds(c_iRuns, [&] { return runCommand(md5); });

  TestSuite::SSetup setup;
  setup.sDataDir = CString::FromUtf8(base.string());
  setup.oDuplicateAction = TestSuite::eListDuplicates;
  TestSuite::CEnvironment environment;
  static CLastMessage s_last;
  TestSuite::COut::AddCustomOut(&s_last);
  TestSuite::COut::SetConsoleOut(false);
  const double dMode = bestSeconds(c_iRuns, [&] {
    TestSuite::RunDuplicateDetection(setup, environment);
    return true;
  });
  TestSuite::COut::SetConsoleOut(true);

  const bool bFdupes = runCommand("command -v fdupes > /dev/null");
  const double dFdupes =
      bFdupes
          ? bestSeconds(c_iRuns, [&] { return runCommand("fdupes -r -q '" + base.string() + "' > /dev/null 2>&1"); })
          : 0;

  std::printf("  %s", s_last.Text().ToUtf8().c_str());
  printFigure("RunDuplicateDetection (list)", dMode, dMd5);
  printFigure("md5sum over the same files", dMd5, dMd5);
  if (bFdupes) printFigure("fdupes -r on the same tree", dFdupes, dMd5);
  else std::printf("  fdupes -r: not installed (bench/run.sh installs it)\n");
  std::printf("  targets: at least as fast as md5sum (%s), faster than fdupes (%s)\n", dMode <= dMd5 ? "met" : "MISSED",
              !bFdupes          ? "not measured"
              : dMode < dFdupes ? "met"
                                : "MISSED");
  fs::remove_all(base);
  return 0;
}
