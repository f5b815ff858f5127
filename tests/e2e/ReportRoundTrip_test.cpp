// Round trip of a real run: the front end runs passing, failing, throwing,
// crashing (in child processes), leaking and cancelled cases and writes the
// XML and JUnit reports. The XML report is well formed, loads back as the
// run was, and written again from what was loaded it is the same file; the
// JUnit file validates and agrees with the loaded classes.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "HeapInterception.h"
#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "Xmllint.h"
#include "isolation_PrivateFrontEnd.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

using namespace TestSuite;

namespace {

// Classes in the order the run takes them: CliScripted, CliSecond, IsoCrash
// (every subtest ends its process) and IsoSlow, whose one case sleeps for a
// minute and is cancelled by Ctrl-C, last.
void makeTree(const TempDirectory& root) {
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a_pass.case", "pass"},
                                   {"b_fail.case", "fail"},
                                   {"c_throw.case", "throw"},
                                   {"d_info.case", "info Grüße <aus> dem & Test"}});
  TestSupport::WriteScriptedClass(root, L"data/CliSecond",
                                  {{"e_leak.case", "leak 100"}, {"f_different.case", "different"}});
  root.MakeDirectory(L"data/IsoCrash");
  root.MakeDirectory(L"data/IsoSlow");
  root.MakeDirectory(L"out");
}

std::map<std::wstring, const Report::SCaseData*> byName(const Report::SData& data) {
  std::map<std::wstring, const Report::SCaseData*> rows;
  for (const Report::SCaseData& row : data.Cases) rows[row.CaseName.GetString()] = &row;
  return rows;
}

// The outcome of the one run that all checks look at.
struct SRoundTripRun {
  TempDirectory root;
  std::string sOut;
  bool bInterrupted = false;
  CliTest::SCliResult result;
};

void runFrontEnd(SRoundTripRun& run) {
  makeTree(run.root);
  run.sOut = run.root.Path().ToUtf8() + "out/";
  CPrivateFrontEnd frontEnd({"cli_ScriptedClasses", "isolation_CrashClasses"});
  CliTest::CCliProcess process(frontEnd.Program(), {"-d", run.root.Path().ToUtf8() + "data", "-x", "--track-heap", "-v",
                                                    "--no-color", "--run-tag", "round trip", "--xml",
                                                    run.sOut + "run.xml", "--junit", run.sOut + "junit.xml"});
  run.bInterrupted = process.WaitForOutput("sleep... ", 120) && process.Interrupt();
  run.result = process.Finish(60);
}

void checkCancelledInItsLastCaseAndWroteTheReports(const SRoundTripRun& run) {
  ASSERT_TRUE(run.bInterrupted) << run.result.sStdout;
  EXPECT_FALSE(run.result.bTimedOut);
  EXPECT_EQ(run.result.iExitCode, 1);
  EXPECT_NE(run.result.sStdout.find("vom Benutzer abgebrochen"), std::string::npos) << run.result.sStdout;
  std::string messages;
  EXPECT_EQ(TestSupport::CheckWellFormed(run.sOut + "run.xml", messages), 0) << messages;
}

void checkXmlReportLoadsBackAsTheRunWas(const SRoundTripRun& run) {
  Report::SData data;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(CString::FromUtf8(run.sOut + "run.xml"), data));
  EXPECT_EQ(data.RunTag, L"round trip");
  EXPECT_EQ(data.ExecutionMode, L"External");
  EXPECT_EQ(data.ClassesNotClean, 0u);  // not in the file
  // 6 scripted cases, 4 crashes; the cancelled sleep is left out.
  EXPECT_EQ(data.CasesTotal, 10u);
  ASSERT_EQ(data.Cases.GetCount(), 10u);
  EXPECT_EQ(data.Successful, 3u);  // pass, info, leak
  EXPECT_EQ(data.Failures, 3u);    // fail, throw, different
  EXPECT_EQ(data.Errors, 4u);      // the four crashes (UNKNOWN)
  EXPECT_EQ(data.Warnings, 1u);    // the leak
  const auto rows = byName(data);
  ASSERT_EQ(rows.size(), 10u);
  EXPECT_EQ(rows.at(L"a_pass.case")->ResultType, Run::eCaseOk);
  EXPECT_EQ(rows.at(L"b_fail.case")->ResultType, Run::eCaseError);
  EXPECT_EQ(rows.at(L"c_throw.case")->ResultType, Run::eCaseException);
  EXPECT_EQ(rows.at(L"f_different.case")->ResultType, Run::eCaseDifferent);
  for (const wchar_t* crash : {L"nullDereference", L"abort", L"exit0", L"stackOverflow"}) {
    EXPECT_EQ(rows.at(crash)->ResultType, Run::eCaseUnknown) << CString(crash).ToUtf8();
    EXPECT_EQ(rows.at(crash)->ClassName, L"IsoCrash");
  }
  EXPECT_EQ(rows.count(L"sleep"), 0u);
  const Report::SCaseData& leak = *rows.at(L"e_leak.case");
  EXPECT_TRUE(leak.Warning);
  EXPECT_EQ(leak.MemoryDelta, 100);
  EXPECT_EQ(leak.Message, L"Speicherleck von 100 Bytes detektiert.");
  const Report::SCaseData& info = *rows.at(L"d_info.case");
  ASSERT_EQ(info.Dumps.GetCount(), 1u);
  // Held escaped, as the run's record held it.
  EXPECT_EQ(info.Dumps[0].Text, L"Gr&#252;&#223;e &lt;aus&gt; dem &amp; Test");
  EXPECT_FALSE(info.Dumps[0].IsError);
  for (unsigned int i = 0; i < data.Cases.GetCount(); ++i) EXPECT_EQ(data.Cases[i].Id, i);
  EXPECT_EQ(data.ClassesTotal, 3u);  // IsoSlow has no reported case
  ASSERT_EQ(data.Classes.GetCount(), 4u);
  EXPECT_EQ(data.Classes[2].Name, L"IsoCrash");
  EXPECT_EQ(data.Classes[2].Errors, 4u);
}

void checkWrittenAgainFromTheLoadedRecordTheReportIsTheSame(const SRoundTripRun& run) {
  const CString path = CString::FromUtf8(run.sOut + "run.xml");
  Report::SData data;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(path, data));
  const CString again = CString::FromUtf8(run.sOut + "again.xml");
  Report::WriteXmlReport(again, data);
  const std::string original = TempDirectory::ReadBytes(path);
  ASSERT_FALSE(original.empty());
  EXPECT_EQ(TempDirectory::ReadBytes(again), original);
}

void checkJUnitFileValidatesAndAgreesWithTheLoadedClasses(const SRoundTripRun& run) {
  const std::string junit = run.sOut + "junit.xml";
  std::string messages;
  EXPECT_EQ(TestSupport::ValidateJUnitFile(junit, messages), 0) << messages;
  Report::SData data;
  ASSERT_TRUE(Report::LoadReportDataFromXMLFile(CString::FromUtf8(run.sOut + "run.xml"), data));
  const std::string text = CliTest::ReadText(junit);
  for (const Report::SClassData& row : data.Classes) {
    if (row.CasesTotal == 0) continue;
    const std::string head = FormatString(L"<testsuite name=\"%s\" tests=\"%u\" failures=\"%u\" errors=\"%u\"",
                                          row.Name, row.CasesTotal, row.Failures, row.Errors)
                                 .ToUtf8();
    EXPECT_NE(text.find(head), std::string::npos) << head << "\n" << text;
  }
}

}  // namespace

// One run for all checks: it takes a few seconds, and CTest starts every
// test in a process of its own.
TEST(ReportRoundTrip, ARunsReportsLoadBackWriteAgainAndValidate) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  SRoundTripRun run;
  runFrontEnd(run);
  {
    SCOPED_TRACE("the run was cancelled in its last case and wrote the reports");
    checkCancelledInItsLastCaseAndWroteTheReports(run);
  }
  {
    SCOPED_TRACE("the XML report loads back as the run was");
    checkXmlReportLoadsBackAsTheRunWas(run);
  }
  {
    SCOPED_TRACE("written again from the loaded record the report is the same");
    checkWrittenAgainFromTheLoadedRecordTheReportIsTheSame(run);
  }
  {
    SCOPED_TRACE("the JUnit file validates and agrees with the loaded classes");
    checkJUnitFileValidatesAndAgreesWithTheLoadedClasses(run);
  }
}
