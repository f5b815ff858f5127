// MergeOptions: the merge of the parts' reports from the command line.
#include "MergeOptions.h"

#include <CLI/CLI.hpp>

#include "FileArguments.h"
#include "FrontEnd.h"
#include "report/JUnitReportWriter.h"
#include "services/COut.h"
#include "tools/ReportMerge.h"

namespace TestSuite::CLI {
namespace {

const wchar_t* const c_sMergedReport = L"Der Report";

// The files that the merge writes: the report, its page, its JUnit file.
XbArray<CString> outputsOf(const SSetup& setup) {
  XbArray<CString> outputs;
  outputs.Add(*setup.oXmlReport);
  if (setup.oHtmlReport && !setup.oHtmlReport->IsEmpty()) outputs.Add(*setup.oHtmlReport);
  if (!setup.sFrontEndText.IsEmpty()) outputs.Add(setup.sFrontEndText);
  return outputs;
}

}  // namespace

void AddMergeOptions(::CLI::App& app, SMergeOptionValues& values) {
  // Any number of values is taken, so that too few get a message that says
  // what the merge needs rather than the parser's own.
  app.add_option("--merge-reports", values.mergeReports,
                 "Instead of a test run, merge the XML reports of the parts of a sharded run into OUT.xml "
                 "(with --html and --junit beside it when given)")
      ->expected(0, -1)
      ->type_name("OUT.xml IN.xml...")
      ->group("Sharding across machines");
}

EMode ApplyMergeOptions(const ::CLI::App& app, const SMergeOptionValues& values, EMode mode, SSetup& setup) {
  if (app.count("--merge-reports") == 0) return mode;
  std::vector<std::string> paths;
  for (const std::string& path : values.mergeReports)
    if (!path.empty()) paths.push_back(path);
  if (paths.size() < 2)
    throw CUsageError(
        "--merge-reports: the merged report and at least one part are needed: "
        "ZoTestSuiteCLI --merge-reports OUT.xml IN.xml...");
  if (app.count("--xml") > 0) throw CUsageError("--merge-reports names its report itself: --xml is not needed");
  if (app.count("--shard") > 0) throw CUsageError("--merge-reports and --shard exclude each other");
  if (mode == EMode::Version) return mode;
  if (mode != EMode::Run) throw CUsageError("--merge-reports stands alone: it excludes the other modes");
  setup.oXmlReport = CString::FromUtf8(paths.front());
  for (std::size_t i = 1; i < paths.size(); ++i) setup.diffInputs.Add(CString::FromUtf8(paths[i]));
  return EMode::MergeReports;
}

int RunMergeReports(const SSetup& setup) {
  for (const CString& output : outputsOf(setup))
    if (!CheckWritablePath(output) || !CheckOutputSparesInputs(output, setup.diffInputs, c_sMergedReport))
      return sc_iExitUsage;
  Report::SData merged;
  if (!MergeReports(setup, merged)) return sc_iExitUsage;
  Report::WriteJUnitReport(setup.sFrontEndText, merged);
  COut::Write(L"Report geschrieben: %s (Teile: %d, Testfälle: %d)\n", *setup.oXmlReport, setup.diffInputs.GetCount(),
              merged.CasesTotal);
  return sc_iExitPassed;
}

}  // namespace TestSuite::CLI
