// ToolOptions: parsing and checking the options of the tool modes.
#include "ToolOptions.h"

#include <CLI/CLI.hpp>

#include "CommandLine.h"
#include "foundation/CFile.h"
#include "foundation/SystemPath.h"

namespace TestSuite::CLI {
namespace {

const char* const c_sGroup = "Tool modes";  // the heading in --help

// The mode option that was given, empty if none; both is an error.
std::string chosenToolMode(const SToolOptionValues& values) {
  const bool bTimeSummary = !values.sTimeSummaryReport.empty();
  if (bTimeSummary && values.oDuplicates) throw CUsageError("--time-summary and --duplicates exclude each other");
  if (bTimeSummary) return "--time-summary";
  return values.oDuplicates ? "--duplicates" : "";
}

void checkReadable(const std::string& report) {
  CFile file;
  if (!file.Open(PathFromSystem(report), CFile::modeRead | CFile::typeBinary))
    throw CUsageError("--time-summary: '" + report + "' cannot be read as a file");
}

}  // namespace

void AddToolOptions(::CLI::App& app, SToolOptionValues& values) {
  app.add_option("--time-summary", values.sTimeSummaryReport,
                 "Sum the case times of the XML report REPORT.xml over the tree of -d, by directory and class "
                 "(with -v by case as well), and run nothing")
      ->type_name("REPORT.xml")
      ->group(c_sGroup);
  app.add_option_function<std::string>(
         "--duplicates", [&values](const std::string& action) { values.oDuplicates = action; },
         "Find data files with equal bytes within each file-based class and run nothing; 'list' shows them, "
         "'delete' keeps the oldest of each set and deletes the others; without a value it only names the classes "
         "it checks")
      ->expected(0, 1)
      ->default_str("")
      ->check(::CLI::IsMember({"", "list", "delete"}).description(""))
      ->type_name("[list|delete]")
      ->group(c_sGroup);
}

bool ApplyToolOptions(const SToolOptionValues& values, const std::string& otherMode, SSetup& setup) {
  const std::string mode = chosenToolMode(values);
  if (mode.empty()) return false;
  if (!otherMode.empty()) throw CUsageError(mode + " and " + otherMode + " exclude each other");
  if (!values.sTimeSummaryReport.empty()) {
    checkReadable(values.sTimeSummaryReport);
    setup.sTimeSummaryReport = PathFromSystem(values.sTimeSummaryReport);
  }
  if (values.oDuplicates == "list") setup.oDuplicateAction = eListDuplicates;
  if (values.oDuplicates == "delete") setup.oDuplicateAction = eDeleteDuplicates;
  return true;
}

}  // namespace TestSuite::CLI
