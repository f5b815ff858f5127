// End-to-end: retries of failed cases, the limit of failed cases and the
// shuffled order, through the real front end on scripted data trees.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "CliRunner.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "report/ReportData.h"
#include "report/XmlReportLoader.h"

using CliTest::ExpectGolden;
using CliTest::Normalize;
using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

std::string dataDir(const TempDirectory& root) { return root.Path().ToUtf8() + "data"; }

SCliResult runTree(const TempDirectory& root, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"-d", dataDir(root), "--dll", "cli_ScriptedClasses", "--no-times"});
  return RunCli(arguments);
}

// The names of the cases in the order their lines were printed.
std::vector<std::string> caseOrder(const std::string& text) {
  static const std::regex line("\t([A-Za-z0-9_]+)\\.case\\.\\.\\. ");
  std::vector<std::string> names;
  for (std::sregex_iterator it(text.begin(), text.end(), line), end; it != end; ++it) names.push_back((*it)[1]);
  return names;
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TestSuite::Report::SData loadReport(const std::string& path) {
  TestSuite::Report::SData data;
  EXPECT_TRUE(TestSuite::Report::LoadReportDataFromXMLFile(CString::FromUtf8(path), data)) << path;
  return data;
}

void makeShuffleTree(const TempDirectory& root) {
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"c01.case", "pass"},
                                   {"c02.case", "pass"},
                                   {"c03.case", "pass"},
                                   {"c04.case", "pass"},
                                   {"c05.case", "pass"},
                                   {"c06.case", "pass"},
                                   {"c07.case", "pass"},
                                   {"c08.case", "pass"},
                                   {"c09.case", "pass"},
                                   {"c10.case", "pass"}});
}

}  // namespace

TEST(RunControl, RetriesTurnAFlakyCaseIntoAWarningAndKeepTheLastAttemptOfAFailingOne) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a_flaky.case", "flaky 1"}, {"b_fail.case", "fail"}, {"c_pass.case", "pass"}});
  const std::string xml = root.Path().ToUtf8() + "report.xml";
  const SCliResult result = runTree(root, {"--retries", "2", "--xml", xml});
  EXPECT_EQ(result.iExitCode, 1);
  ExpectGolden("run_retries.txt", Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}));
  EXPECT_EQ(TempDirectory::ReadBytes(root / L"data/CliScripted/a_flaky.case.attempts"), "2");

  const TestSuite::Report::SData report = loadReport(xml);
  ASSERT_EQ(report.Cases.GetCount(), 3u);
  const TestSuite::Report::SCaseData& flaky = report.Cases[0];
  EXPECT_EQ(flaky.ResultType, TestSuite::Run::eCaseOk);
  EXPECT_TRUE(flaky.Warning);
  ASSERT_FALSE(flaky.Dumps.IsEmpty());
  EXPECT_EQ(flaky.Dumps.Last().Text, CString(L"Erst im 2. Versuch erfolgreich."));
  EXPECT_FALSE(flaky.Dumps.Last().IsError);
  EXPECT_EQ(report.Cases[1].ResultType, TestSuite::Run::eCaseError);
  EXPECT_EQ(report.Warnings, 1u);
}

TEST(RunControl, AFlakyCaseDoesNotFailTheRun) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a_flaky.case", "flaky 2"}, {"b_pass.case", "pass"}});
  const SCliResult result = runTree(root, {"--retries", "2"});
  EXPECT_EQ(result.iExitCode, 0) << result.sStdout;
  EXPECT_TRUE(contains(result.sStdout, "\ta_flaky.case... WARNUNG (Erst im 3. Versuch erfolgreich)\n"))
      << result.sStdout;
  EXPECT_TRUE(contains(result.sStdout, "\tInstabil:\t1 Test (erst nach Wiederholung erfolgreich)\n"));
}

TEST(RunControl, WithoutRetriesAFlakyCaseFailsOnce) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a_flaky.case", "flaky 1"}});
  const SCliResult result = runTree(root, {});
  EXPECT_EQ(result.iExitCode, 1);
  EXPECT_EQ(TempDirectory::ReadBytes(root / L"data/CliScripted/a_flaky.case.attempts"), "1");
  EXPECT_FALSE(contains(result.sStdout, "Instabil"));
}

TEST(RunControl, ARetryAfterACrashInExternalModeRunsInANewChild) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a_crashy.case", "crashy 1"}, {"b_crash.case", "crash"}, {"c_pass.case", "pass"}});
  const SCliResult result = runTree(root, {"-x", "-v", "--retries", "1"});
  EXPECT_EQ(result.iExitCode, 1);
  ExpectGolden("run_retries_external.txt", Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}));
}

TEST(RunControl, MaxFailuresCancelsTheRestOfTheRunAndSaysWhy) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a_pass.case", "pass"},
                                   {"b_fail.case", "fail"},
                                   {"c_fail.case", "fail"},
                                   {"d_fail.case", "fail"},
                                   {"e_fail.case", "fail"},
                                   {"f_fail.case", "fail"},
                                   {"g_pass.case", "pass"}});
  const std::string xml = root.Path().ToUtf8() + "report.xml";
  const SCliResult result = runTree(root, {"--max-failures", "2", "--xml", xml});
  EXPECT_EQ(result.iExitCode, 1);
  ExpectGolden("run_max_failures.txt", Normalize(result.sStdout, {{dataDir(root), "<DATA>"}}));
  const TestSuite::Report::SData report = loadReport(xml);
  EXPECT_EQ(report.CasesTotal, 3u);
  EXPECT_EQ(report.Failures, 2u);
}

TEST(RunControl, MaxFailuresAboveTheFailuresOfTheRunStopsNothing) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted", {{"a_fail.case", "fail"}, {"b_pass.case", "pass"}});
  const SCliResult result = runTree(root, {"--max-failures", "2"});
  EXPECT_EQ(result.iExitCode, 1);
  EXPECT_EQ(caseOrder(result.sStdout), (std::vector<std::string>{"a_fail", "b_pass"}));
  EXPECT_FALSE(contains(result.sStdout, "Abgebrochen"));
}

TEST(RunControl, MaxFailuresZeroIsAUsageError) {
  TempDirectory root;
  makeShuffleTree(root);
  const SCliResult result = runTree(root, {"--max-failures", "0"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_TRUE(contains(result.sStderr, "--max-failures: N must be at least 1")) << result.sStderr;
}

TEST(RunControl, TheSameSeedGivesTheSameOrderAndAnotherSeedAnother) {
  TempDirectory root;
  makeShuffleTree(root);
  const std::string xml = root.Path().ToUtf8() + "report.xml";
  const SCliResult first = runTree(root, {"--shuffle", "42", "--xml", xml});
  const SCliResult second = runTree(root, {"--shuffle", "42"});
  const SCliResult other = runTree(root, {"--shuffle", "7"});
  const SCliResult plain = runTree(root, {});
  EXPECT_EQ(first.iExitCode, 0);
  EXPECT_EQ(first.sStdout.rfind("Zufällige Reihenfolge, Startwert 42\n", 0), 0u) << first.sStdout;
  const std::vector<std::string> order = caseOrder(first.sStdout);
  ASSERT_EQ(order.size(), 10u);
  EXPECT_EQ(caseOrder(second.sStdout), order);
  EXPECT_NE(caseOrder(other.sStdout), order);
  EXPECT_NE(caseOrder(plain.sStdout), order);
  EXPECT_EQ(caseOrder(plain.sStdout).front(), "c01");
  ExpectGolden("run_shuffle_42.txt", Normalize(first.sStdout, {{dataDir(root), "<DATA>"}}));

  const TestSuite::Report::SData report = loadReport(xml);
  ASSERT_TRUE(report.ShuffleSeed.has_value());
  EXPECT_EQ(*report.ShuffleSeed, 42u);
  EXPECT_TRUE(contains(TempDirectory::ReadBytes(CString::FromUtf8(xml)), "<ShuffleSeed>42</ShuffleSeed>"));
}

TEST(RunControl, ADrawnSeedIsPrintedAndRepeatsItsOrder) {
  TempDirectory root;
  makeShuffleTree(root);
  const SCliResult drawn = runTree(root, {"--shuffle"});
  std::smatch seed;
  ASSERT_TRUE(std::regex_search(drawn.sStdout, seed, std::regex("^Zufällige Reihenfolge, Startwert ([0-9]+)\n")))
      << drawn.sStdout;
  const SCliResult again = runTree(root, {"--shuffle", seed[1]});
  EXPECT_EQ(caseOrder(again.sStdout), caseOrder(drawn.sStdout));
}

TEST(RunControl, AShuffleSeedThatIsNoNumberIsAUsageError) {
  TempDirectory root;
  makeShuffleTree(root);
  for (const char* seed : {"x42", "-1", "18446744073709551616"}) {
    const SCliResult result = runTree(root, {std::string("--shuffle=") + seed});
    EXPECT_EQ(result.iExitCode, 2) << seed;
    EXPECT_TRUE(contains(result.sStderr, "is not a seed")) << result.sStderr;
  }
}

TEST(RunControl, AReportWithoutShuffleHasNoSeed) {
  TempDirectory root;
  makeShuffleTree(root);
  const std::string xml = root.Path().ToUtf8() + "report.xml";
  EXPECT_EQ(runTree(root, {"--xml", xml}).iExitCode, 0);
  EXPECT_FALSE(loadReport(xml).ShuffleSeed.has_value());
  EXPECT_FALSE(contains(TempDirectory::ReadBytes(CString::FromUtf8(xml)), "ShuffleSeed"));
}
