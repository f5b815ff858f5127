// time_summary_bench: the time summary of a tree of 1,000,000 cases (10,000
// classes of 100 cases in 100 leaf directories below two levels) with an
// XML report of the same 1,000,000 cases. Times GenerateTimeSummary without
// and with the cases (-v), the console off, each the best of two runs, and
// beside it, in the same run, the two steps it cannot avoid: loading the
// report and collecting the tree with its CTree. Target: under 10 s. An
// untimed summary goes first, so that all figures find a warm page cache
// and a grown heap.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "BenchClassNames.h"
#include "BenchTiming.h"
#include "ZoTestSuite.h"
#include "foundation/XbRTTI.h"
#include "foundation/ZoUnitTest.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"
#include "services/COut.h"

namespace fs = std::filesystem;
using namespace TestSuite;

namespace {

constexpr unsigned int c_uiClasses = 10000;
constexpr unsigned int c_uiCasesPerClass = 100;
constexpr unsigned int c_uiClassesPerLeaf = 100;
constexpr int c_iRuns = 2;
constexpr double c_dTargetSeconds = 10.0;

// case_000 ... case_099 in every directory, without reading anything.
class BenchHundredCases : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchHundredCases)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i) names.Add(FormatString(L"case_%03u", i));
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(BenchHundredCases, ZoUnitTest);

CString className(unsigned int index) { return FormatString(L"Klasse%05u", index); }

// root/gI/tJ/KlasseNNNNN, 100 classes in each of 100 leaves.
void makeTree(const fs::path& root) {
  for (unsigned int c = 0; c < c_uiClasses; ++c) {
    const unsigned int leaf = c / c_uiClassesPerLeaf;
    char parent[32];
    std::snprintf(parent, sizeof parent, "g%u/t%u", leaf / 10, leaf % 10);
    fs::create_directories(root / parent / className(c).ToUtf8());
  }
}

void writeReport(const CString& path) {
  std::mt19937 random(42u);
  Report::SData data;
  data.Cases.Reserve(c_uiClasses * c_uiCasesPerClass);
  for (unsigned int c = 0; c < c_uiClasses; ++c)
    for (unsigned int i = 0; i < c_uiCasesPerClass; ++i) {
      Report::SCaseData& row = data.Cases.Emplace();
      row.Id = data.Cases.GetCount() - 1;
      row.ClassName = className(c);
      row.CaseName = FormatString(L"case_%03u", i);
      row.Time = (random() % 100000) / 1000.0;
    }
  Report::WriteXmlReport(path, data);
}

// Counts the lines that the summary prints.
class CLineCounter : public COut::ZoCustomOut {
 public:
  void Output(const COut&) override { ++m_uiLines; }
  unsigned int Take() { return std::exchange(m_uiLines, 0u); }

 private:
  unsigned int m_uiLines = 0;
};

void printFigure(const char* what, double seconds, const char* note = "") {
  std::printf("  %-44s %7.3f s%s\n", what, seconds, note);
}

}  // namespace

int main() {
  const CBenchClassNames<BenchHundredCases> classNames(c_uiClasses, className);
  char leaf[64];
  std::snprintf(leaf, sizeof leaf, "zo-time-summary-bench-%u", std::random_device()());
  const fs::path base = fs::temp_directory_path() / leaf;
  makeTree(base / "tree");
  SSetup setup;
  setup.sDataDir = CString::FromUtf8((base / "tree").string());
  setup.sTimeSummaryReport = CString::FromUtf8((base / "Report.xml").string());
  writeReport(setup.sTimeSummaryReport);
  std::printf("time_summary_bench: %u classes, %u cases, report %.0f MB, below %s\n", c_uiClasses,
              c_uiClasses * c_uiCasesPerClass, fs::file_size(base / "Report.xml") / 1e6, base.string().c_str());

  CEnvironment environment;
  COut::SetConsoleOut(false);
  GenerateTimeSummary(setup, environment);
  COut::SetConsoleOut(true);

  const double dLoad = bestSeconds(c_iRuns, [&] {
    Report::SData data;
    return Report::LoadReportDataFromXMLFile(setup.sTimeSummaryReport, data);
  });
  const double dCollect = bestSeconds(c_iRuns, [&] {
    CTree tree;
    tree.Build(CollectUnitTests(setup.sDataDir, setup.collectOptions));
    return tree.GetCaseCount() == c_uiClasses * c_uiCasesPerClass;
  });

  static CLineCounter s_lines;
  COut::AddCustomOut(&s_lines);
  COut::SetConsoleOut(false);
  double dSummary[2] = {0, 0};
  unsigned int uiLines[2] = {0, 0};
  for (bool bVerbose : {false, true}) {
    setup.run.bShowThreadInfo = bVerbose;
    dSummary[bVerbose] = bestSeconds(c_iRuns, [&] {
      GenerateTimeSummary(setup, environment);
      uiLines[bVerbose] = s_lines.Take();
      return true;
    });
  }
  COut::SetConsoleOut(true);

  printFigure("anchor: LoadReportDataFromXMLFile", dLoad);
  printFigure("anchor: CollectUnitTests + CTree::Build", dCollect);
  printFigure("anchors together", dLoad + dCollect);
  for (bool bVerbose : {false, true}) {
    char what[64];
    std::snprintf(what, sizeof what, "GenerateTimeSummary%s (%u lines)", bVerbose ? " -v" : "", uiLines[bVerbose]);
    printFigure(what, dSummary[bVerbose],
                dSummary[bVerbose] < c_dTargetSeconds ? "  (target under 10 s: met)" : "  (target under 10 s: MISSED)");
  }
  fs::remove_all(base);
  return 0;
}
