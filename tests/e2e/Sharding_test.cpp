// End to end: a scripted tree run whole and as three shards side by side,
// each a process of the real front end; the parts merged into one report
// that has the keys and results of the whole run, loads back, and compares
// with it on the diff page without a judged row. Beside it: the engines'
// variables behind --shard auto with Bazel's status file, a part that gets
// no case, the balance by the times of the whole run, and a merge that
// refuses a part that does not load.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <string>

#include "CliRunner.h"
#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "Xmllint.h"
#include "foundation/ZoFileSystem.h"
#include "report/XmlReportLoader.h"
#include "services/BuildInformation.h"

using namespace TestSuite;
using CliTest::SCliResult;

namespace {

// The key and result word of every case of a report, with its warning.
std::map<std::string, std::string> resultsOf(const Report::SData& data) {
  std::map<std::string, std::string> results;
  for (const Report::SCaseData& row : data.Cases)
    results[FormatString(L"%s:%s", row.ClassName, row.CaseName).ToUtf8()] =
        Report::GetResultWord(row.ResultType).ToUtf8() + (row.Warning ? " warning" : "");
  return results;
}

Report::SData load(const std::string& path) {
  Report::SData data;
  EXPECT_TRUE(Report::LoadReportDataFromXMLFile(CString::FromUtf8(path), data)) << path;
  return data;
}

class Sharding : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_root = std::make_unique<TempDirectory>();
    TestSupport::WriteScriptedClass(*s_root, L"data/CliScripted",
                                    {{"a_pass.case", "pass"},
                                     {"b_fail.case", "fail"},
                                     {"c_throw.case", "throw"},
                                     {"d_info.case", "info Grüße <aus> dem & Test"},
                                     {"e_pass.case", "pass"},
                                     {"f_different.case", "different"},
                                     {"g_pass.case", "pass"}});
    TestSupport::WriteScriptedClass(*s_root, L"data/group/CliSecond",
                                    {{"h_pass.case", "pass"},
                                     {"i_dataerror.case", "dataerror"},
                                     {"j_pass.case", "pass"},
                                     {"k_info.case", "info zweite Klasse"},
                                     {"l_fail.case", "fail"}});
    s_root->MakeDirectory(L"out");
    s_whole = Run({"--xml", Out("whole.xml")});
  }
  static void TearDownTestSuite() { s_root.reset(); }

  static std::vector<std::string> Arguments(std::vector<std::string> more) {
    std::vector<std::string> arguments = {"-d", Path("data"), "--dll", "cli_ScriptedClasses", "--no-color"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  static SCliResult Run(std::vector<std::string> more, const std::vector<std::string>& environment = {}) {
    return CliTest::RunCli(Arguments(std::move(more)), "", 120, environment);
  }
  static SCliResult Merge(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--no-color");
    return CliTest::RunCli(arguments);
  }
  static std::string Path(const std::string& name) { return s_root->Path().ToUtf8() + name; }
  static std::string Out(const std::string& name) { return Path("out/" + name); }
  static std::string Normalize(const std::string& text) {
    return CliTest::Normalize(text, {{s_root->Path().ToUtf8(), "<ROOT>/"}});
  }

  static std::unique_ptr<TempDirectory> s_root;
  static SCliResult s_whole;
};

std::unique_ptr<TempDirectory> Sharding::s_root;
SCliResult Sharding::s_whole;

// A merged report archives and traces like any other: beside the whole
// run, filed as an older revision, it gets its archive name and page, and a
// trace between the two finds no case that changed.
void expectArchivedAndTraced(const std::string& merged, const std::string& whole) {
  const std::unique_ptr<TestSuite::SPscmInfo> build = TestSuite::GetPscmInfo();
  if (!build || build->Changeset.IsEmpty()) return;  // a build without revision files nothing
  const TempDirectory archive;
  const std::string dir = archive.Path().ToUtf8();
  TempDirectory::WriteBytes(archive / L"merged.xml", CliTest::ReadText(merged));
  static const std::regex changeset("<PscmChangeset>[^<]*</PscmChangeset>");
  TempDirectory::WriteBytes(archive / L"whole.xml", std::regex_replace(CliTest::ReadText(whole), changeset,
                                                                       "<PscmChangeset>1</PscmChangeset>"));
  const SCliResult normalized = CliTest::RunCli({"--no-color", "--normalize-archive", dir});
  ASSERT_EQ(normalized.iExitCode, 0) << normalized.sStdout << normalized.sStderr;
  std::vector<std::string> reports;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    if (entry.path().extension() == ".xml") reports.push_back(entry.path().filename().string());
  std::sort(reports.begin(), reports.end());
  ASSERT_EQ(reports.size(), 2u);
  ASSERT_EQ(reports[0].rfind("Report-1-[", 0), 0u) << reports[0];
  ASSERT_EQ(reports[1].rfind("Report-" + build->Changeset.ToUtf8() + "-[", 0), 0u) << reports[1];
  EXPECT_TRUE(std::filesystem::exists(dir + "html/" + reports[1].substr(0, reports[1].size() - 4) + ".html"));
  const SCliResult traced = CliTest::RunCli(
      {"--no-color", "--trace", dir + reports[1], dir + reports[0], "--diff-output", dir + "trace.xml"});
  ASSERT_EQ(traced.iExitCode, 0) << traced.sStdout << traced.sStderr;
  const std::string trace = CliTest::ReadText(dir + "trace.xml");
  EXPECT_NE(trace.find("<BeginRevision>1</BeginRevision>"), std::string::npos) << trace;
  EXPECT_EQ(trace.find("<TestCase"), std::string::npos) << trace;
}

}  // namespace

TEST_F(Sharding, ThreeShardsSideBySideMergeIntoTheWholeRun) {
  ASSERT_EQ(s_whole.iExitCode, 1) << s_whole.sStdout << s_whole.sStderr;
  std::vector<std::unique_ptr<CliTest::CCliProcess>> shards;
  for (int i = 0; i < 3; ++i)
    shards.push_back(std::make_unique<CliTest::CCliProcess>(
        CliTest::CliPath(),
        Arguments({"--shard", std::to_string(i) + "/3", "--xml", Out("part" + std::to_string(i) + ".xml")})));
  std::set<std::string> seen;
  std::size_t total = 0;
  for (int i = 0; i < 3; ++i) {
    const SCliResult result = shards[i]->Finish(120);
    EXPECT_FALSE(result.bTimedOut);
    EXPECT_TRUE(result.iExitCode == 0 || result.iExitCode == 1) << result.sStdout << result.sStderr;
    const Report::SData part = load(Out("part" + std::to_string(i) + ".xml"));
    EXPECT_EQ(part.RunTag, CString(FormatString(L"shard %d of 3", i + 1)));
    for (const auto& [key, word] : resultsOf(part)) seen.insert(key);
    total += part.Cases.GetCount();
  }
  EXPECT_EQ(total, seen.size()) << "a case ran in two shards";

  const SCliResult merge = Merge({"--merge-reports", Out("merged.xml"), Out("part0.xml"), Out("part1.xml"),
                                  Out("part2.xml"), "--html", "--junit", Out("merged.junit.xml")});
  EXPECT_EQ(merge.iExitCode, 0) << merge.sStdout << merge.sStderr;
  CliTest::ExpectGolden("merge_reports.txt", Normalize(merge.sStdout));

  const Report::SData whole = load(Out("whole.xml"));
  const Report::SData merged = load(Out("merged.xml"));
  EXPECT_EQ(resultsOf(merged), resultsOf(whole));
  EXPECT_EQ(merged.CasesTotal, whole.CasesTotal);
  EXPECT_EQ(merged.Failures, whole.Failures);
  EXPECT_EQ(merged.Errors, whole.Errors);
  EXPECT_EQ(merged.ClassesTotal, whole.ClassesTotal);
  EXPECT_EQ(merged.ClassesSuccessful, whole.ClassesSuccessful);
  EXPECT_EQ(merged.RunTag, L"");
  std::string messages;
  EXPECT_EQ(TestSupport::CheckWellFormed(Out("merged.xml"), messages), 0) << messages;
  EXPECT_EQ(TestSupport::ValidateJUnitFile(Out("merged.junit.xml"), messages), 0) << messages;
  EXPECT_TRUE(ZoFileSystem::Exists(CString::FromUtf8(Out("merged.html"))));

  const SCliResult diff =
      Merge({"--diff", Out("whole.xml"), Out("merged.xml"), "--diff-output", Out("diff.html"), "--show-warnings"});
  EXPECT_EQ(diff.iExitCode, 0) << diff.sStdout;
  const std::string page = CliTest::ReadText(Out("diff.html"));
  ASSERT_NE(page.find("<h2>Case Diff</h2>"), std::string::npos) << page;
  EXPECT_EQ(page.find("<h2>Class Diff</h2>"), std::string::npos);
  // The head rows of run facts (dates, tags) may differ; no case row is judged.
  const std::string cases = page.substr(page.find("<h2>Case Diff</h2>"));
  for (const char* judged : {"<tr class=\"diff\">", "<tr class=\"worse\">", "<tr class=\"better\">"})
    EXPECT_EQ(cases.find(judged), std::string::npos) << judged;
  expectArchivedAndTraced(Out("merged.xml"), Out("whole.xml"));
}

TEST_F(Sharding, AShardRunSaysWhichPartRanAndRunsOnlyIt) {
  const SCliResult result = Run({"--shard", "1/3", "--no-times", "--xml", Out("one.xml")});
  EXPECT_TRUE(result.iExitCode == 0 || result.iExitCode == 1) << result.sStderr;
  CliTest::ExpectGolden("shard_run.txt", Normalize(result.sStdout));
  EXPECT_EQ(load(Out("one.xml")).RunTag, L"shard 2 of 3");
}

TEST_F(Sharding, AutoFollowsTheEnginesVariablesAndTouchesBazelsStatusFile) {
  const std::string status = Out("bazel.status");
  const SCliResult bazel = Run({"--shard", "auto", "--xml", Out("bazel.xml")},
                               {"TEST_SHARD_INDEX=1", "TEST_TOTAL_SHARDS=3", "TEST_SHARD_STATUS_FILE=" + status});
  EXPECT_TRUE(bazel.iExitCode == 0 || bazel.iExitCode == 1) << bazel.sStderr;
  EXPECT_TRUE(ZoFileSystem::Exists(CString::FromUtf8(status)));
  const SCliResult gitlab =
      Run({"--shard", "auto", "--xml", Out("gitlab.xml")}, {"CI_NODE_INDEX=2", "CI_NODE_TOTAL=3"});
  EXPECT_EQ(resultsOf(load(Out("gitlab.xml"))), resultsOf(load(Out("bazel.xml"))));
  EXPECT_EQ(load(Out("gitlab.xml")).RunTag, L"shard 2 of 3");

  const SCliResult outside = Run({"--shard", "auto"}, {"CI_NODE_INDEX=4", "CI_NODE_TOTAL=3"});
  EXPECT_EQ(outside.iExitCode, 2);
  EXPECT_EQ(outside.sStderr,
            "ZoTestSuiteCLI: --shard auto: CI_NODE_INDEX=4 is outside 1 to 3 (GitLab counts from 1)\n"
            "Run with --help for the options.\n");
  const SCliResult none = Run({"--shard", "auto"}, {"CI_NODE_TOTAL=1"});
  EXPECT_EQ(none.iExitCode, 2);
  EXPECT_NE(none.sStderr.find("none of the CI engines' variables is set"), std::string::npos) << none.sStderr;
}

TEST_F(Sharding, APartWithoutCasesPassesAndWritesAnEmptyReport) {
  // Twelve cases over twenty parts: some part gets none.
  for (int i = 0; i < 20; ++i) {
    const std::string report = Out("empty" + std::to_string(i) + ".xml");
    const SCliResult result = Run({"--shard", std::to_string(i) + "/20", "--xml", report});
    if (result.sStdout.find("erhält keinen Testfall") == std::string::npos) continue;
    EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
    EXPECT_NE(result.sStdout.find("Teil " + std::to_string(i + 1) + " von 20 erhält keinen Testfall.\n"),
              std::string::npos)
        << result.sStdout;
    EXPECT_EQ(load(report).CasesTotal, 0u);
    return;
  }
  ADD_FAILURE() << "every one of twenty parts got a case";
}

TEST_F(Sharding, PartsByTheTimesOfTheWholeRunAreTheWholeSetAgain) {
  std::map<std::string, std::string> united;
  for (int i = 0; i < 2; ++i) {
    const std::string report = Out("timed" + std::to_string(i) + ".xml");
    Run({"--shard", std::to_string(i) + "/2", "--shard-times", Out("whole.xml"), "--xml", report});
    for (const auto& [key, word] : resultsOf(load(report))) EXPECT_TRUE(united.emplace(key, word).second) << key;
  }
  EXPECT_EQ(united, resultsOf(load(Out("whole.xml"))));
  const SCliResult missing = Run({"--shard", "0/2", "--shard-times", Out("nothing.xml")});
  EXPECT_EQ(missing.iExitCode, 2);
  EXPECT_NE(missing.sStdout.find("Fehler: Datei " + Out("nothing.xml") + " existiert nicht.\n"), std::string::npos)
      << missing.sStdout;
}

TEST_F(Sharding, AMergeWithAPartThatDoesNotLoadWritesNothing) {
  s_root->WriteFile(L"out/broken.xml", "<testsuite><oops>");
  const SCliResult result = Merge({"--merge-reports", Out("never.xml"), Out("whole.xml"), Out("broken.xml"), "--html",
                                   "--junit", Out("never.junit.xml")});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_NE(result.sStdout.find("Fehler: Daten der Datei " + Out("broken.xml") + " konnten nicht geladen werden.\n"),
            std::string::npos)
      << result.sStdout;
  for (const char* name : {"never.xml", "never.html", "never.junit.xml"})
    EXPECT_FALSE(ZoFileSystem::Exists(CString::FromUtf8(Out(name)))) << name;
}
