// The time summary mode: the case times of a past run's report laid over
// the present test tree, summed per class and directory and printed as an
// indented tree.
#include <cstdint>

#include "ZoTestSuite.h"
#include "report/XmlReportLoader.h"
#include "services/COut.h"

namespace TestSuite {
namespace {

// The report's time of every case of the tree, in milliseconds; 0 for a
// case that the report does not hold. Rows and cases meet by class name and
// case name. Rather than a map over the "class:case" texts of every row,
// a row looks up the class nodes of its class name and finds its case by
// binary search among the node's cases, which the tree keeps sorted by name:
// no text is built per row. Every node of the class name and every case of
// the case name takes the row's time; a later row of the same names
// overwrites an earlier one.
class CCaseTimes {
 public:
  CCaseTimes(const CTree& tree, const Report::SData& report) : m_tree(tree) {
    m_times.SetCount(tree.GetCaseCount());
    for (unsigned int i = 0; i < tree.GetNodeCount(); ++i)
      if (tree.GetNode(i).eType == CTree::UnitTest) m_classNodes[tree.GetNode(i).sName].Add(i);
    for (const Report::SCaseData& row : report.Cases) assign(row);
  }

  double Get(unsigned int treeCase) const { return m_times[treeCase]; }

 private:
  void assign(const Report::SCaseData& row) {
    const XbArray<unsigned int>* nodes = m_classNodes.Find(row.ClassName);
    if (!nodes) return;
    for (unsigned int node : *nodes) {
      const unsigned int uiBegin = m_tree.GetNode(node).uiFirstCase;
      const unsigned int uiEnd = uiBegin + m_tree.GetNode(node).uiCaseCount;
      const unsigned int uiLast = bound(uiBegin, uiEnd, row.CaseName, true);
      for (unsigned int i = bound(uiBegin, uiEnd, row.CaseName, false); i < uiLast; ++i) m_times[i] = row.Time * 1000.0;
    }
  }

  // The first case in [begin, end) whose name is not less than `name`, or
  // with `bBehind` the first whose name is greater.
  unsigned int bound(unsigned int begin, unsigned int end, const CString& name, bool bBehind) const {
    while (begin < end) {
      const unsigned int uiMiddle = begin + (end - begin) / 2;
      const int iOrder = CString::CompareUtf16(m_tree.GetCase(uiMiddle).sName.Str(), name.Str());
      if (iOrder < 0 || (bBehind && iOrder == 0)) begin = uiMiddle + 1;
      else end = uiMiddle;
    }
    return begin;
  }

  const CTree& m_tree;
  XbArray<double> m_times;
  XbMap<CString, XbArray<unsigned int>> m_classNodes;
};

// Fills the time of `node` and of everything below it.
void sumTimes(const CTree& tree, unsigned int node, const CCaseTimes& times, XbArray<double>& table) {
  const CTree::SNode& current = tree.GetNode(node);
  if (current.eType == CTree::UnitTest) {
    for (unsigned int i = 0; i < current.uiCaseCount; ++i) table[node] += times.Get(current.uiFirstCase + i);
    return;
  }
  double dChildren = 0.0;
  for (unsigned int i = 0; i < current.uiChildCount; ++i) {
    sumTimes(tree, current.uiFirstChild + i, times, table);
    dChildren += table[current.uiFirstChild + i];
  }
  table[node] += dChildren;
}

class CTreePrinter {
 public:
  CTreePrinter(const CTree& tree, const XbArray<SUnitTest>& unitTests, const CCaseTimes& times,
               const XbArray<double>& table, bool bVerbose)
      : m_tree(tree), m_unitTests(unitTests), m_times(times), m_table(table), m_bVerbose(bVerbose) {}

  void PrintNode(unsigned int node, unsigned int indent) {
    const CTree::SNode& current = m_tree.GetNode(node);
    if (current.eType == CTree::UnitTest) return printClass(current, m_table[node], indent);
    printLine(m_table[node], indent, current.sName);
    for (unsigned int i = 0; i < current.uiChildCount; ++i) PrintNode(current.uiFirstChild + i, indent + 3);
  }

 private:
  // The class, and with the verbose switch its cases in the class's own
  // order, not the tree's.
  void printClass(const CTree::SNode& node, double dTime, unsigned int indent) {
    const SUnitTest& unitTest = m_unitTests[node.uiUnitTest];
    printLine(dTime, indent, unitTest.Name);
    if (!m_bVerbose) return;
    XbArray<double> caseTimes;
    caseTimes.SetCount(unitTest.Cases.GetCount());
    for (unsigned int i = node.uiFirstCase; i < node.uiFirstCase + node.uiCaseCount; ++i)
      caseTimes[m_tree.GetCase(i).uiCase] = m_times.Get(i);
    for (unsigned int i = 0; i < unitTest.Cases.GetCount(); ++i)
      printLine(caseTimes[i], indent + 3, unitTest.Cases[i].Name);
  }

  // One line "[hh:mm:ss.mmm]  name" behind `indent` columns (at least one
  // blank); nothing for a time that is not above zero. Hours are never cut.
  void printLine(double dMilliseconds, unsigned int indent, const CString& name) {
    if (!(dMilliseconds > 0.0)) return;
    const auto m = static_cast<std::int64_t>(dMilliseconds);
    COut::Write(format(indent), L" ", m / 3600000, m / 60000 % 60, m / 1000 % 60, m % 1000, name);
  }

  // The format of a line at `indent`, made once per indent.
  const wchar_t* format(unsigned int indent) {
    while (m_formats.GetCount() <= indent)
      m_formats.Add(FormatString(L"%%%us[%%02d:%%02d:%%02d.%%03d]  %%s\n", m_formats.GetCount()));
    return m_formats[indent].Str().c_str();
  }

  const CTree& m_tree;
  const XbArray<SUnitTest>& m_unitTests;
  const CCaseTimes& m_times;
  const XbArray<double>& m_table;
  bool m_bVerbose;
  XbArray<CString> m_formats;
};

}  // namespace

void GenerateTimeSummary(const SSetup& setup, CEnvironment& environment) {
  if (setup.sDataDir.IsEmpty()) return;
  Report::SData report;
  if (!Report::LoadReportDataFromXMLFile(setup.sTimeSummaryReport, report)) return;

  environment.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) environment.LoadDLL(name, false);
  const XbArray<SUnitTest> unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  CTree tree;
  tree.Build(unitTests);
  if (tree.GetNodeCount() == 0) return;
  const CCaseTimes times(tree, report);
  report = Report::SData();
  XbArray<double> table;
  table.SetCount(tree.GetNodeCount());
  sumTimes(tree, 0, times, table);
  CTreePrinter(tree, unitTests, times, table, setup.run.bShowThreadInfo).PrintNode(0, 0);
}

}  // namespace TestSuite
