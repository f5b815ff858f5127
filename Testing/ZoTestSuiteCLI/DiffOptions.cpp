// The options of the report comparisons.
#include "DiffOptions.h"

#include <CLI/CLI.hpp>

#include "CommandLine.h"
#include "foundation/SystemPath.h"

namespace TestSuite::CLI {

void AddDiffOptions(::CLI::App& app, SDiffOptionValues& values) {
  // Any number of values is taken, so that a wrong number gets a message
  // that says what --diff needs rather than the parser's own.
  app.add_option("--diff", values.diffPage,
                 "Instead of a test run, compare the XML report B with the reference report A on one HTML page "
                 "(default: Diff-[A][B].html beside A)")
      ->expected(0, -1)
      ->type_name("A.xml B.xml");
}

bool ApplyDiffOptions(const ::CLI::App& app, const SDiffOptionValues& values, SSetup& setup) {
  if (app.count("--diff") == 0) return false;
  // "--diff" without a value leaves one empty text behind; an empty path
  // names no report either.
  std::vector<std::string> reports;
  for (const std::string& path : values.diffPage)
    if (!path.empty()) reports.push_back(path);
  if (reports.size() != 2) {
    throw CUsageError("--diff: two reports are needed, the reference A and the report B compared with it (" +
                      std::to_string(reports.size()) + " given): ZoTestSuiteCLI --diff A.xml B.xml");
  }
  for (const std::string& path : reports) setup.diffInputs.Add(PathFromSystem(path));
  return true;
}

}  // namespace TestSuite::CLI
