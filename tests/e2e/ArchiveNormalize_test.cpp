// End-to-end: three runs of the real front end write XML reports under
// names of no scheme; their revisions are set the way the loader reads
// them (PscmChangeset); then --normalize-archive names them by revision,
// date and tag and writes the overview, whose every link reaches a file.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>

#include "CliRunner.h"
#include "ScriptedCases.h"
#include "TempDirectory.h"
#include "WholeFile.h"

using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

namespace fs = std::filesystem;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class ArchiveNormalizeE2E : public ::testing::Test {
 protected:
  // A run of the scripted class with `cases`, its XML report written to
  // archive/`name`, its revision set to `revision`.
  void Run(std::initializer_list<std::pair<const char*, const char*>> cases, const std::string& name,
           const std::string& revision, const std::vector<std::string>& more = {}) {
    fs::remove_all((m_root.Path() + L"data").ToUtf8());
    TestSupport::WriteScriptedClass(m_root, L"data/CliScripted", cases);
    std::vector<std::string> arguments = {"-d",         Root() + "data", "--dll",         "cli_ScriptedClasses",
                                          "--no-color", "--xml",         Archive() + name};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const SCliResult result = RunCli(arguments);
    ASSERT_FALSE(result.bSignaled) << result.sStderr;
    SetRevision(Archive() + name, revision);
  }
  // The first PscmChangeset of BuildInfo is the one the loader reads; a
  // repository is needed for the build information to count at all.
  static void SetRevision(const std::string& path, const std::string& revision) {
    std::string xml = TestSupport::ReadWholeFile(path);
    const std::string open = "<BuildInfo>";
    const std::size_t at = xml.find(open);
    ASSERT_NE(at, std::string::npos) << xml;
    xml.insert(at + open.size(), "<PscmRepository>zo</PscmRepository><PscmChangeset>" + revision + "</PscmChangeset>");
    ASSERT_TRUE(TestSupport::WriteWholeFile(path, xml));
  }
  std::string Root() const { return m_root.Path().ToUtf8(); }
  std::string Archive() const { return Root() + "archive/"; }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(Archive())) names.insert(entry.path().filename().string());
    return names;
  }

  void SetUp() override { m_root.MakeDirectory(L"archive"); }

  TempDirectory m_root;
};

TEST_F(ArchiveNormalizeE2E, NamesTheReportsAndWritesAnOverviewWhoseLinksAllReachAFile) {
  Run({{"a.case", "pass"}, {"b.case", "fail"}}, "first run.xml", "21");
  Run({{"a.case", "pass"}}, "partial.xml", "22", {"--run-tag", "Part"});
  Run({{"a.case", "pass"}, {"b.case", "pass"}}, "latest.xml", "23");
  m_root.WriteFile(L"archive/notes.xml", "<notes/>");
  const SCliResult result = RunCli({"--normalize-archive", Archive()});
  EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
  EXPECT_EQ(result.sStdout, "Fehler in Config-File: XML-Syntax Fehler\nArchivübersicht geschrieben: " + Archive() +
                                "html/index.html\n");

  const std::set<std::string> names = Names();
  ASSERT_EQ(names.size(), 5u) << ::testing::PrintToString(names);
  EXPECT_TRUE(names.count("notes.xml"));
  EXPECT_TRUE(names.count("html"));
  const std::string date = R"(\[\d{4}\.\d\d\.\d\d-\d\d\.\d\d\.\d\d\])";
  std::vector<std::regex> expected = {std::regex("Report-21-" + date + R"(\.xml)"),
                                      std::regex("Report-22-" + date + R"(-T\[Part\]\.xml)"),
                                      std::regex("Report-23-" + date + R"(\.xml)")};
  for (const std::regex& pattern : expected) {
    int matches = 0;
    for (const std::string& name : names) matches += std::regex_match(name, pattern) ? 1 : 0;
    EXPECT_EQ(matches, 1);
  }

  const std::string page = TestSupport::ReadWholeFile(Archive() + "html/index.html");
  const std::string all = page.substr(page.find("<h2>All Reports</h2>"));
  const std::string full = page.substr(0, page.find("<h2>All Reports</h2>"));
  EXPECT_LT(all.find("<td>23</td>"), all.find("<td>22</td>"));
  EXPECT_LT(all.find("<td>22</td>"), all.find("<td>21</td>"));
  EXPECT_TRUE(contains(all, "<td>22</td>\n\t\t\t\t<td>Part</td>"));
  EXPECT_FALSE(contains(full, "<td>22</td>"));
  EXPECT_TRUE(contains(full, "<td>50.00% (1/2)</td>")) << full;
  EXPECT_TRUE(contains(full, "<td>100.00% (2/2)</td>")) << full;

  const std::regex link(R"re(<a href="([^"]+)">(Report|Diff)</a>)re");
  int reports = 0, diffs = 0;
  for (std::sregex_iterator it(page.begin(), page.end(), link), end; it != end; ++it) {
    EXPECT_TRUE(fs::is_regular_file(Archive() + "html/" + (*it)[1].str())) << (*it)[1].str();
    ((*it)[2] == "Report" ? reports : diffs) += 1;
  }
  EXPECT_EQ(reports, 5);  // two full rows, three rows of all
  EXPECT_EQ(diffs, 3);    // 23 against 21 in the full table; 22 against 21 and 23 against 22 in all

  // The run that fixed b is better than the first one on the page between them.
  std::string diffToFirst;
  for (const auto& entry : fs::directory_iterator(Archive() + "html/diff"))
    if (entry.path().filename().string().rfind("Report-21-", 0) == 0 &&
        contains(entry.path().filename().string(), "-vs-Report-23-"))
      diffToFirst = TestSupport::ReadWholeFile(entry.path().string());
  EXPECT_TRUE(contains(diffToFirst, "<tr class=\"better\">\n\t\t\t\t<td>CliScripted</td>")) << diffToFirst;
}

TEST_F(ArchiveNormalizeE2E, ANormalizedArchiveStaysAsItIsOnASecondRun) {
  Run({{"a.case", "pass"}}, "one.xml", "5");
  ASSERT_EQ(RunCli({"--normalize-archive", Archive()}).iExitCode, 0);
  const std::set<std::string> names = Names();
  const SCliResult again = RunCli({"--normalize-archive", Archive()});
  EXPECT_EQ(again.iExitCode, 0) << again.sStderr;
  EXPECT_EQ(Names(), names);
}

}  // namespace
