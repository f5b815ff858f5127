// SelectionOptions: parsing and compiling the options that choose what runs.
#include "SelectionOptions.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <regex>

#include "CommandLine.h"
#include "foundation/SystemPath.h"
#include "services/Utils.h"

namespace TestSuite::CLI {
namespace {

const char* const c_sGroup = "Choosing what runs";  // the heading in --help

// Appends each occurrence at the moment it is parsed, so that includes and
// excludes of all four options keep their command-line order.
void addPatternOption(::CLI::App& app, const char* name, bool bExclude, bool bRegex, const char* help,
                      SSelectionOptionValues& values) {
  const auto append = [&values, bExclude, bRegex](const std::string& text) {
    values.patterns.push_back({bExclude, bRegex, text});
  };
  app.add_option_function<std::string>(name, append, help)
      ->trigger_on_parse()
      ->multi_option_policy(::CLI::MultiOptionPolicy::TakeLast)
      ->type_name(bRegex ? "REGEX" : "WILDCARD")
      ->group(c_sGroup);
}

void compile(const SSelectionOptionValues::SPattern& pattern, SPatternFilter& filter) {
  if (pattern.bRegex) filter.regex = Utils::CompileBoundedRegex(filter.sPattern, true);
  else filter.wildcard.emplace(filter.sPattern, false);
}

SPatternFilter makeFilter(const SSelectionOptionValues::SPattern& pattern) {
  SPatternFilter filter;
  filter.sPattern = CString::FromUtf8(pattern.sText);
  filter.eAction = pattern.bExclude ? 1 : 0;
  try {
    compile(pattern, filter);
  } catch (const std::regex_error& error) {
    const char* option = pattern.bRegex ? (pattern.bExclude ? "--exclude-regex" : "--include-regex")
                                        : (pattern.bExclude ? "--exclude" : "--include");
    // A pattern of thousands of characters is named by its beginning.
    const std::string shown = pattern.sText.size() > 80 ? pattern.sText.substr(0, 77) + "..." : pattern.sText;
    throw CUsageError(std::string(option) + ": '" + shown + "' is no valid pattern: " + error.what());
  }
  return filter;
}

// Collection may run after the working directory has moved: the selection
// file is made absolute against the directory the command was given in.
CString absolutePath(const std::string& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(std::filesystem::path(path), error);
  return PathFromSystem(error ? path : absolute.lexically_normal().string());
}

}  // namespace

void AddSelectionOptions(::CLI::App& app, SSelectionOptionValues& values) {
  app.add_option("--select", values.sSelectionFile, "Run what the selection file FILE selects")
      ->type_name("FILE")
      ->group(c_sGroup);
  app.add_flag("--invert-selection", values.bInvertSelection, "Run everything the selection file does not select")
      ->group(c_sGroup);
  addPatternOption(app, "--include", false, false, "Include what matches WILDCARD (repeatable)", values);
  addPatternOption(app, "--exclude", true, false, "Exclude what matches WILDCARD (repeatable)", values);
  addPatternOption(app, "--include-regex", false, true, "Include what matches the ECMAScript REGEX", values);
  addPatternOption(app, "--exclude-regex", true, true, "Exclude what matches the ECMAScript REGEX", values);
  app.add_flag("--full-match", values.bFullMatch, "A pattern must match a whole name, not a part of it")
      ->group(c_sGroup);
  app.add_flag("--keep-disabled", values.bKeepDisabled, "Keep the cases that #ExtraInfo.xml disables")->group(c_sGroup);
  app.add_flag("--query", values.bQuery, "List the classes and cases that would run, and run nothing")->group(c_sGroup);
  app.add_flag("--list-disabled", values.bListDisabled, "List the disabled cases and whom to ask, and run nothing")
      ->group(c_sGroup);
}

void ApplySelectionOptions(const SSelectionOptionValues& values, SSetup& setup) {
  if (values.bQuery && values.bListDisabled) throw CUsageError("--query and --list-disabled exclude each other");
  SCollectOptions& options = setup.collectOptions;
  if (!values.sSelectionFile.empty()) options.sSelectionFile = absolutePath(values.sSelectionFile);
  options.eSelectionMode = values.bInvertSelection ? 1 : 0;
  for (const SSelectionOptionValues::SPattern& pattern : values.patterns) options.filters.Add(makeFilter(pattern));
  options.bFullMatch = values.bFullMatch;
  options.bDropDisabled = !values.bKeepDisabled;
}

}  // namespace TestSuite::CLI
