// discovery_bench: what collection costs on a large data tree. Generates a
// tree of class directories (100 cases each, counted from one file per
// class) below two levels of parent directories, then times
// CollectUnitTests without and with a selection file and pattern filters,
// and the tree, table and purge steps on their own, at two sizes to show
// how they grow. The peak resident memory of the process (VmHWM) is reset
// before each collection and read after it; it includes what the process
// held before.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "BenchClassNames.h"
#include "ZoTestSuiteTree.h"
#include "foundation/XbRTTI.h"
#include "foundation/ZoUnitTest.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace fs = std::filesystem;
using namespace TestSuite;

namespace {

constexpr unsigned int c_iClassNames = 100;  // Klasse00 ... Klasse99, each in every leaf directory
constexpr unsigned int c_iCasesPerClass = 100;

// Lists "case_000" ... as many as "count.txt" in its directory says, so
// that a class costs one file read and not one per case.
class BenchCountedCases : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchCountedCases)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    std::ifstream file((GetDataDirectory() + L"count.txt").ToUtf8());
    int count = 0;
    file >> count;
    for (int i = 0; i < count; ++i) names.Add(FormatString(L"case_%03d", i));
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

XB_IMPLEMENT_DYNCREATE(BenchCountedCases, ZoUnitTest);

// A name of a prefix and a number, as in "g3".
std::string numbered(const char* prefix, unsigned int number) {
  char name[64];
  std::snprintf(name, sizeof name, "%s%u", prefix, number);
  return name;
}

// root/gI/tJ/KlasseNN: `leaves` leaf directories of 100 classes each.
void makeTree(const fs::path& root, unsigned int leaves) {
  for (unsigned int leaf = 0; leaf < leaves; ++leaf) {
    const fs::path parent = root / numbered("g", leaf / 10) / numbered("t", leaf % 10);
    for (unsigned int i = 0; i < c_iClassNames; ++i) {
      const fs::path dir = parent / numbered(i < 10 ? "Klasse0" : "Klasse", i);
      fs::create_directories(dir);
      std::ofstream(dir / "count.txt") << c_iCasesPerClass;
    }
  }
}

// 1,000 cases named by class and case, all deselected, in a file that
// selects everything else. A name stands for the class in every directory.
void writeSelection(const CString& path) {
  CSelectionStore::SData data;
  data.eDefault = CSelectionStore::All;
  for (unsigned int i = 0; i < c_iClassNames; ++i) {
    CSelectionStore::SData::SUnitTestSelection& unitTest = data.unitTests.Emplace();
    unitTest.sName = FormatString(L"Klasse%02u", i);
    unitTest.eDefault = CSelectionStore::All;
    for (unsigned int j = 0; j < 10; ++j) unitTest.cases.Add({FormatString(L"case_%03u", j * 10 + i % 10), false});
  }
  CSelectionStore::Write(data, path);
}

SPatternFilter filter(const wchar_t* pattern, bool bRegex, unsigned int eAction) {
  SPatternFilter result;
  result.sPattern = pattern;
  if (bRegex) result.regex = Utils::CompileBoundedRegex(pattern, true);
  else result.wildcard.emplace(pattern, false);
  result.eAction = eAction;
  return result;
}

SCollectOptions filteredOptions(const CString& selectionFile, bool bFullMatch) {
  SCollectOptions options;
  options.sSelectionFile = selectionFile;
  options.bFullMatch = bFullMatch;
  options.filters.Add(filter(L"g*", false, 0));
  options.filters.Add(filter(L"Klasse1?", false, 1));
  options.filters.Add(filter(L"Klasse1?:case_00*", false, 0));
  options.filters.Add(filter(L"case_.*7", true, 1));
  return options;
}

template <typename F>
double seconds(F&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

unsigned long long caseCount(const XbArray<SUnitTest>& unitTests) {
  unsigned long long total = 0;
  for (const SUnitTest& unitTest : unitTests) total += unitTest.Cases.GetCount();
  return total;
}

// Peak resident set of the process in MiB, from /proc/self/status.
double peakMiB() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
  return 0.0;
}

// Lets the peak start again from the present resident set (Linux 4.0 on).
void resetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

void measure(const fs::path& base, unsigned int leaves) {
  const fs::path root = base / numbered("tree", leaves);
  const double dMake = seconds([&] { makeTree(root, leaves); });
  const CString dataDir = CString::FromUtf8(root.string());
  const CString selection = CString::FromUtf8((base / "selection.xml").string());
  writeSelection(selection);
  std::printf("\n%u classes, %u cases (tree made in %.2f s)\n", leaves * c_iClassNames,
              leaves * c_iClassNames * c_iCasesPerClass, dMake);

  for (bool bFullMatch : {true, false}) {
    resetPeak();
    XbArray<SUnitTest> kept;
    const double d = seconds([&] { kept = CollectUnitTests(dataDir, filteredOptions(selection, bFullMatch)); });
    std::printf("  CollectUnitTests, selection + 4 patterns %7.3f s  %7llu cases, peak %4.0f MiB (%s)\n", d,
                caseCount(kept), peakMiB(), bFullMatch ? "full match" : "search");
  }
  XbArray<SUnitTest> all;
  resetPeak();
  const double dScan = seconds([&] { all = CollectUnitTests(dataDir, SCollectOptions()); });
  std::printf("  CollectUnitTests, no filters             %7.3f s  %7llu cases, peak %4.0f MiB\n", dScan,
              caseCount(all), peakMiB());

  CTree tree;
  const double dTree = seconds([&] { tree.Build(all); });
  const SCollectOptions options = filteredOptions(selection, true);
  SFilterFunctions functions;
  functions.classCaseFilter = [&options](const CString& className, const CString& caseName) {
    return ApplyMultiplePatternFilters(className + L":" + caseName, options.filters, true);
  };
  XbArray<EFilterResult> table;
  const double dTable = seconds([&] { table = ComputeFilterTable(all, tree, functions); });
  const double dPurge = seconds([&] { PurgeTestCases(all, tree, std::move(table), true); });
  std::printf("  CTree::Build %.3f s, ComputeFilterTable (class:case slot) %.3f s, PurgeTestCases %.3f s\n", dTree,
              dTable, dPurge);
  fs::remove_all(root);
}

}  // namespace

int main() {
  const CBenchClassNames<BenchCountedCases> classNames(c_iClassNames,
                                                       [](unsigned int i) { return FormatString(L"Klasse%02u", i); });
  const fs::path base = fs::temp_directory_path() / numbered("zo-discovery-bench-", std::random_device()());
  fs::create_directories(base);
  std::printf("discovery_bench: tree below %s\n", base.string().c_str());
  measure(base, 50);
  measure(base, 100);
  fs::remove_all(base);
  return 0;
}
