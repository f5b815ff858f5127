// The bundled example (examples/showcase) run through the real front end,
// as scripts/run-example.sh runs it: on a copy of its data tree, so that
// recreating references never touches the sources.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

#include "CliRunner.h"
#include "HeapInterception.h"
#include "TempDirectory.h"

namespace {

namespace fs = std::filesystem;

const char* const c_sLeakLine =
    R"(\tleaks-on-purpose\.alloc\.\.\. WARNUNG \(Ein Speicheranstieg von [0-9]+ Bytes wurde entdeckt\)( \[[^\]\n]+\])?\n)";

// A copy of examples/showcase/data below the temporary directory, removed
// at the end.
class CExampleTree {
 public:
  CExampleTree() : m_root(fs::path(m_dir.Path().ToUtf8()).parent_path()) {
    fs::copy(fs::path(ZO_SOURCE_DIR) / "examples/showcase/data", m_root, fs::copy_options::recursive);
  }
  CExampleTree(const CExampleTree&) = delete;
  CExampleTree& operator=(const CExampleTree&) = delete;

  std::string Root() const { return m_root.string(); }
  fs::path operator/(const char* relative) const { return m_root / relative; }

  // Data files that are cases: all files of the class directories but the
  // configuration and the references.
  unsigned int CountInputs() const {
    return countFiles([](const fs::path& p) { return !isReference(p); });
  }
  // Inputs whose class keeps references beside them (".ref", ".rle").
  unsigned int CountRenewable() const {
    return countFiles([](const fs::path& p) {
      return fs::exists(fs::path(p).replace_extension(".ref")) || fs::exists(fs::path(p).replace_extension(".rle"));
    });
  }

 private:
  static bool isReference(const fs::path& p) {
    return p.filename() == "#ExtraInfo.xml" || p.extension() == ".ref" || p.extension() == ".rle";
  }
  template <typename TPredicate>
  unsigned int countFiles(TPredicate predicate) const {
    unsigned int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(m_root))
      if (entry.is_regular_file() && !isReference(entry.path()) && predicate(entry.path())) ++count;
    return count;
  }

  TempDirectory m_dir;  // holds the copy, removed with it
  fs::path m_root;
};

std::string tests(unsigned int count) { return std::to_string(count) + (count == 1 ? " Test" : " Tests"); }

unsigned int countOccurrences(const std::string& text, const std::string& part) {
  unsigned int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

// The example's library is built with ZO_BUILD_EXAMPLES (the default).
bool exampleBuilt() { return fs::exists(fs::path(ZO_BIN_DIR) / "ZoShowcaseTests.so"); }

CliTest::SCliResult runExample(const CExampleTree& tree, std::vector<std::string> extra = {}) {
  std::vector<std::string> arguments = {"-d", tree.Root(), "--dll", "ZoShowcaseTests", "--no-color"};
  arguments.insert(arguments.end(), extra.begin(), extra.end());
  return CliTest::RunCli(arguments, "", 120);
}

void writeFile(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

}  // namespace

// The run that run-example.sh shows: all cases pass, the one that leaks on
// purpose is a warning, and the disabled case does not run.
TEST(Example, RunWithHeapTrackingPassesWithOneLeakWarning) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  if (!exampleBuilt()) GTEST_SKIP() << "built without the example (ZO_BUILD_EXAMPLES=OFF)";
  CExampleTree tree;
  const unsigned int executed = tree.CountInputs() - 1;  // power.expr is disabled in #ExtraInfo.xml
  const CliTest::SCliResult result = runExample(tree, {"--track-heap"});
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_FALSE(result.bSignaled);
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
  EXPECT_TRUE(std::regex_search(result.sStdout, std::regex(c_sLeakLine))) << result.sStdout;
  EXPECT_EQ(countOccurrences(result.sStdout, "WARNUNG"), 1u);
  EXPECT_EQ(countOccurrences(result.sStdout, "FEHLER"), 0u);
  EXPECT_EQ(countOccurrences(result.sStdout, "power.expr"), 0u);
  EXPECT_EQ(countOccurrences(result.sStdout, "... OK"), executed - 1);
  EXPECT_NE(result.sStdout.find("\nZusammenfassung\n"), std::string::npos);
  EXPECT_NE(result.sStdout.find("\tAusgeführt:\t" + tests(executed) + ", 5 Klassen\n"), std::string::npos);
  EXPECT_NE(result.sStdout.find("\tErfolgreich:\t" + tests(executed) + ", 5 Klassen\n"), std::string::npos);
  EXPECT_NE(result.sStdout.find("\tMit Warnung:\t1 Test, 1 Klasse\n"), std::string::npos);
  EXPECT_EQ(result.sStdout.find("Fehlerhaft:"), std::string::npos);
}

// The leak is found by the heap tracker: without it the same case is OK.
TEST(Example, RunWithoutHeapTrackingHasNoWarning) {
  if (!exampleBuilt()) GTEST_SKIP() << "built without the example (ZO_BUILD_EXAMPLES=OFF)";
  CExampleTree tree;
  const CliTest::SCliResult result = runExample(tree);
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout << result.sStderr;
  EXPECT_NE(result.sStdout.find("\tleaks-on-purpose.alloc... OK"), std::string::npos) << result.sStdout;
  EXPECT_EQ(countOccurrences(result.sStdout, "WARNUNG"), 0u);
}

// A stale reference makes its case fail and the run's exit status 1.
TEST(Example, StaleReferenceFailsTheRun) {
  if (!exampleBuilt()) GTEST_SKIP() << "built without the example (ZO_BUILD_EXAMPLES=OFF)";
  CExampleTree tree;
  writeFile(tree / "numbers/ColumnStatisticsTest/two-values.ref", "count 2\nmin 3\nmax 6\n");
  const CliTest::SCliResult result = runExample(tree);
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_EQ(result.iExitCode, 1) << result.sStdout << result.sStderr;
  EXPECT_NE(result.sStdout.find("\ttwo-values.in... FEHLER (Output unterscheidet sich von der Referenz-Ausführung)"),
            std::string::npos)
      << result.sStdout;
  EXPECT_NE(result.sStdout.find("ERROR: the output differs from two-values.ref in line 3\n"), std::string::npos);
  EXPECT_NE(result.sStdout.find("\tColumnStatisticsTest: 1 fehlerhafte Testfälle\n"), std::string::npos);
}

// --recreate renews every reference, stale or missing, with what the code
// computes now, and says so for each case; a run afterwards passes again.
TEST(Example, RecreateRenewsTheReferences) {
  if (!exampleBuilt()) GTEST_SKIP() << "built without the example (ZO_BUILD_EXAMPLES=OFF)";
  CExampleTree tree;
  const fs::path stale = tree / "numbers/ColumnStatisticsTest/two-values.ref";
  const fs::path missing = tree / "text/RunLengthTest/mixed-runs.rle";
  const unsigned int renewable = tree.CountRenewable();
  const std::string staleContent = CliTest::ReadText(stale.string());
  const std::string missingContent = CliTest::ReadText(missing.string());
  ASSERT_FALSE(staleContent.empty());
  ASSERT_FALSE(missingContent.empty());
  writeFile(stale, "count 0\n");
  fs::remove(missing);

  const CliTest::SCliResult recreated = runExample(tree, {"--recreate"});
  ASSERT_FALSE(recreated.bTimedOut);
  EXPECT_EQ(recreated.iExitCode, 0) << recreated.sStdout << recreated.sStderr;
  EXPECT_EQ(countOccurrences(recreated.sStdout, "\t\tDatensatz wurde erneuert.\n"), renewable);
  EXPECT_NE(recreated.sStdout.find("\ttwo-values.in...\n\t\tDatensatz wurde erneuert.\n"), std::string::npos);
  EXPECT_NE(recreated.sStdout.find("\tmixed-runs.txt...\n\t\tDatensatz wurde erneuert.\n"), std::string::npos);
  EXPECT_NE(recreated.sStdout.find("\tSubtest 'addition.expr' hat keine erneuerbaren Daten.\n"), std::string::npos);
  EXPECT_NE(recreated.sStdout.find("\nNeuerzeugen der Testfälle beendet.\n"), std::string::npos);
  EXPECT_EQ(CliTest::ReadText(stale.string()), staleContent);
  EXPECT_EQ(CliTest::ReadText(missing.string()), missingContent);

  const CliTest::SCliResult rerun = runExample(tree);
  EXPECT_EQ(rerun.iExitCode, 0) << rerun.sStdout;
}
