// The time summary mode: the case times of a past run's report laid over
// the present test tree, summed per class and directory and printed as an
// indented tree.
#include <cstdint>

#include "ZoTestSuite.h"
#include "report/XmlReportLoader.h"
#include "services/COut.h"

namespace TestSuite {
namespace {

// Milliseconds by "class:case"; a later row of the same key wins.
using CTimeMap = XbMap<CString, double>;

CString caseKey(const CString& className, const CString& caseName) { return className + L":" + caseName; }

CTimeMap makeTimeMap(const Report::SData& report) {
  CTimeMap times;
  for (const Report::SCaseData& row : report.Cases)
    times.SetAt(caseKey(row.ClassName, row.CaseName), row.Time * 1000.0);
  return times;
}

double lookUp(const CTimeMap& times, const CString& key) {
  const double* time = times.Find(key);
  return time ? *time : 0.0;
}

// Fills the time of `node` and of everything below it.
void sumTimes(const CTree& tree, unsigned int node, const CTimeMap& times, XbArray<double>& table) {
  const CTree::SNode& current = tree.GetNode(node);
  if (current.eType == CTree::UnitTest) {
    for (unsigned int i = 0; i < current.uiCaseCount; ++i)
      table[node] += lookUp(times, caseKey(current.sName, tree.GetCase(current.uiFirstCase + i).sName));
    return;
  }
  double dChildren = 0.0;
  for (unsigned int i = 0; i < current.uiChildCount; ++i) {
    sumTimes(tree, current.uiFirstChild + i, times, table);
    dChildren += table[current.uiFirstChild + i];
  }
  table[node] += dChildren;
}

// One line "[hh:mm:ss.mmm]  name" behind `indent` columns (at least one
// blank); nothing for a time that is not above zero. Hours are never cut.
void printLine(double dMilliseconds, unsigned int indent, const CString& name) {
  if (!(dMilliseconds > 0.0)) return;
  const auto m = static_cast<std::int64_t>(dMilliseconds);
  const CString format = FormatString(L"%%%us[%%02d:%%02d:%%02d.%%03d]  %%s\n", indent);
  COut::Write(format.Str().c_str(), L" ", m / 3600000, m / 60000 % 60, m / 1000 % 60, m % 1000, name);
}

void printNode(const CTree& tree, unsigned int node, unsigned int indent, const XbArray<SUnitTest>& unitTests,
               const CTimeMap& times, const XbArray<double>& table, bool bVerbose) {
  const CTree::SNode& current = tree.GetNode(node);
  if (current.eType == CTree::UnitTest) {
    const SUnitTest& unitTest = unitTests[current.uiUnitTest];
    printLine(table[node], indent, unitTest.Name);
    if (!bVerbose) return;
    for (const SUnitTest::SCase& testCase : unitTest.Cases)
      printLine(lookUp(times, caseKey(unitTest.Name, testCase.Name)), indent + 3, testCase.Name);
    return;
  }
  printLine(table[node], indent, current.sName);
  for (unsigned int i = 0; i < current.uiChildCount; ++i)
    printNode(tree, current.uiFirstChild + i, indent + 3, unitTests, times, table, bVerbose);
}

}  // namespace

void GenerateTimeSummary(const SSetup& setup, CEnvironment& environment) {
  if (setup.sDataDir.IsEmpty()) return;
  Report::SData report;
  if (!Report::LoadReportDataFromXMLFile(setup.sTimeSummaryReport, report)) return;
  const CTimeMap times = makeTimeMap(report);
  report = Report::SData();

  environment.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) environment.LoadDLL(name, false);
  const XbArray<SUnitTest> unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  CTree tree;
  tree.Build(unitTests);
  XbArray<double> table;
  table.SetCount(tree.GetNodeCount());
  if (tree.GetNodeCount() == 0) return;
  sumTimes(tree, 0, times, table);
  printNode(tree, 0, 0, unitTests, times, table, setup.run.bShowThreadInfo);
}

}  // namespace TestSuite
