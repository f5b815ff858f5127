// End-to-end: a console that goes away during a run (its output piped into
// a reader that has already ended) neither ends the run nor costs its report.
#include <gtest/gtest.h>

#include "CliRunner.h"
#include "IsolationCli.h"
#include "ScriptedCases.h"
#include "ShellCommand.h"
#include "TempDirectory.h"

namespace {

// A shell script that starts the front end with its standard output on a
// pipe whose reading end is already closed, so that the first write fails
// for certain, and writes the front end's exit status into `status`.
std::string scriptWithClosedOutput(const std::string& directory, const std::string& arguments) {
  return "cd " + TestSupport::ShellQuote(directory) +
         " || exit 1; mkfifo fifo || exit 1; (exec 3<fifo) & exec 4>fifo; wait $!; " +
         TestSupport::ShellQuote(CliTest::CliPath()) + " " + arguments + " >&4 2>/dev/null; echo $? > status";
}

}  // namespace

TEST(BrokenPipe, TheRunGoesOnAndWritesItsReport) {
  TempDirectory root;
  TestSupport::WriteScriptedClass(root, L"data/CliScripted",
                                  {{"a.case", "pass"}, {"b.case", "pass"}, {"c.case", "pass"}});
  const std::string directory = root.Path().ToUtf8();
  const auto result = CliTest::RunProgram(
      "/bin/bash", {"-c", scriptWithClosedOutput(directory, "-d data --dll cli_ScriptedClasses --xml report.xml")});
  ASSERT_FALSE(result.bTimedOut);
  EXPECT_EQ(CliTest::ReadText(directory + "status"), "0\n") << "141 is the end by SIGPIPE";
  const std::string report = CliTest::ReadText(directory + "report.xml");
  EXPECT_NE(report.find("</testsuite>"), std::string::npos) << report;
  EXPECT_NE(report.find("name=\"c.case\""), std::string::npos) << report;
}
