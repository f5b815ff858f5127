// End-to-end: choosing what runs, through the real front end, on a data tree
// made in a temporary directory with the test classes of
// discovery_TestClasses (Alpha, Beta, Zulu, "Größe Prüfung" ... list one
// case per line of their "cases.txt").
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CliRunner.h"
#include "TempDirectory.h"

using CliTest::ExpectGolden;
using CliTest::Normalize;
using CliTest::RunCli;
using CliTest::SCliResult;

namespace {

using Lines = std::vector<std::string>;

// data/Zulu                    z1 z2; "#ExtraInfo.xml" with a syntax error
// data/geo/Alpha               a1 a2 a3; contact Anna Berg; a2 disabled
// data/geo/flach/Beta          "b 1" (disabled), "Übergröße", x<&>"'
// data/geo/flach/Größe Prüfung g1; "#ExtraInfo.xml" with a wrong root
// data/geo/.svn/alpha, data/my.svn.backup/Beta: never scanned
// data/notes                   no class
// The two warnings come in a fixed order: Zulu is examined while the root
// is listed, the other only when geo/flach is searched.
class SelectionCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Class("Zulu", "z1\nz2\n");
    m_root.WriteFile(L"data/Zulu/#ExtraInfo.xml", "<ExtraInfo><Contact><Name>Zoe</ExtraInfo>");
    Class("geo/Alpha", "a1\na2\na3\n");
    m_root.WriteFile(L"data/geo/Alpha/#ExtraInfo.xml",
                     "<ExtraInfo><Contact role=\"Pflege\"><Name>Anna Berg</Name><Email>anna@example.org</Email>"
                     "</Contact><TestCase name=\"a2\"><Enable>false</Enable></TestCase></ExtraInfo>");
    Class("geo/flach/Beta",
          "b 1\n\xC3\x9C"
          "bergr\xC3\xB6\xC3\x9F"
          "e\nx<&>\"'\n");
    m_root.WriteFile(L"data/geo/flach/Beta/#ExtraInfo.xml",
                     "<ExtraInfo><TestCase name=\"b 1\"><Enable>false</Enable></TestCase></ExtraInfo>");
    Class("geo/flach/Größe Prüfung", "g1\n");
    m_root.WriteFile(L"data/geo/flach/Größe Prüfung/#ExtraInfo.xml", "<Extra><Contact/></Extra>");
    Class("geo/.svn/alpha", "s1\n");
    Class("my.svn.backup/Beta", "s2\n");
    m_root.MakeDirectory(L"data/notes");
  }

  void Class(const std::string& relative, const std::string& cases) const {
    const CString dir = L"data/" + CString::FromUtf8(relative);
    m_root.MakeDirectory(dir);
    m_root.WriteFile(dir + L"/cases.txt", cases);
  }
  std::string Data() const { return m_root.Path().ToUtf8() + "data"; }
  std::string Path(const char* relative) const { return m_root.Path().ToUtf8() + relative; }
  // The front end on the data tree with the test library and `arguments`.
  SCliResult Cli(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"-d", Data(), "--dll", "discovery_TestClasses"});
    return RunCli(arguments, m_root.Path().ToUtf8());
  }
  // The printed lines of a successful listing, the data directory as <DATA>.
  Lines Listing(const std::vector<std::string>& arguments) const {
    const SCliResult result = Cli(arguments);
    EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
    EXPECT_EQ(result.sStderr, "");
    Lines lines;
    const std::string text = Normalize(result.sStdout, {{Data(), "<DATA>"}});
    for (std::size_t start = 0; start < text.size();) {
      std::size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      lines.push_back(text.substr(start, end - start));
      start = end + 1;
    }
    return lines;
  }
  // The classes and cases of a --query listing, without the warnings of the
  // scan and the closing lines.
  Lines Query(std::vector<std::string> arguments) const {
    arguments.push_back("--query");
    Lines lines;
    for (const std::string& line : Listing(arguments))
      if (!line.empty() && line.rfind("Warnung", 0) != 0 && line.rfind("Datenverzeichnis", 0) != 0)
        lines.push_back(line);
    return lines;
  }

  TempDirectory m_root;
};

const char* const c_sWarnings[] = {
    "Warnung: XML-Syntax Fehler in Datei <DATA>/Zulu/#ExtraInfo.xml.",
    "Warnung: XML-Syntax Fehler in Datei <DATA>/geo/flach/Größe Prüfung/#ExtraInfo.xml."};

}  // namespace

TEST_F(SelectionCliTest, QueryListsWhatWouldRun) {
  const SCliResult result = Cli({"--query"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(result.sStderr, "");
  ExpectGolden("select_query.txt", Normalize(result.sStdout, {{Data(), "<DATA>"}}));
  EXPECT_EQ(Listing({"--query"}), (Lines{c_sWarnings[0],
                                         c_sWarnings[1],
                                         "<DATA>/geo/Alpha/",
                                         "    a1",
                                         "    a3",
                                         "",
                                         "<DATA>/geo/flach/Beta/",
                                         "    Übergröße",
                                         "    x<&>\"'",
                                         "",
                                         "<DATA>/geo/flach/Größe Prüfung/",
                                         "    g1",
                                         "",
                                         "<DATA>/Zulu/",
                                         "    z1",
                                         "    z2",
                                         "",
                                         "Datenverzeichnis: <DATA>",
                                         "Klassen: 4",
                                         "Fälle: 7"}));
}

TEST_F(SelectionCliTest, ListDisabledNamesTheFirstContactOrUnbekannt) {
  const SCliResult result = Cli({"--list-disabled"});
  EXPECT_EQ(result.iExitCode, 0);
  ExpectGolden("select_list_disabled.txt", Normalize(result.sStdout, {{Data(), "<DATA>"}}));
  EXPECT_EQ(Listing({"--list-disabled"}),
            (Lines{c_sWarnings[0], c_sWarnings[1], "Alpha (Anna Berg):", "    (1/1) a2", "",
                   "Beta (Unbekannt):", "    (1/1) b 1", "", "Durchsuchtes Datenverzeichnis: <DATA>",
                   "Klassen mit deaktivierten Fällen: 2 von 4", "Deaktivierte Fälle: 2 von 9"}));
}

TEST_F(SelectionCliTest, ListDisabledFollowsTheFilters) {
  EXPECT_EQ(Listing({"--list-disabled", "--include", "geo"}),
            (Lines{c_sWarnings[0], c_sWarnings[1], "Alpha (Anna Berg):", "    (1/1) a2", "",
                   "Beta (Unbekannt):", "    (1/1) b 1", "", "Durchsuchtes Datenverzeichnis: <DATA>",
                   "Klassen mit deaktivierten Fällen: 2 von 3", "Deaktivierte Fälle: 2 von 7"}));
}

TEST_F(SelectionCliTest, KeepDisabledListsTheDisabledCasesToo) {
  EXPECT_EQ(Query({"--keep-disabled", "--full-match", "--include", "Alpha", "--include", "Beta"}),
            (Lines{"<DATA>/geo/Alpha/", "    a1", "    a2", "    a3", "<DATA>/geo/flach/Beta/", "    b 1",
                   "    Übergröße", "    x<&>\"'", "Klassen: 2", "Fälle: 6"}));
}

TEST_F(SelectionCliTest, OneClass) {
  EXPECT_EQ(Query({"--full-match", "--include", "zulu"}),
            (Lines{"<DATA>/Zulu/", "    z1", "    z2", "Klassen: 1", "Fälle: 2"}));
}

TEST_F(SelectionCliTest, EverythingButOneDirectory) {
  // The include names the root of the tree, the deepest directory all
  // classes share; the exclude a directory below it.
  EXPECT_EQ(
      Query({"--full-match", "--include", "data", "--exclude", "flach"}),
      (Lines{"<DATA>/geo/Alpha/", "    a1", "    a3", "<DATA>/Zulu/", "    z1", "    z2", "Klassen: 2", "Fälle: 4"}));
  // An include of everything would take the directory's classes back.
  EXPECT_EQ(Query({"--include", "*", "--exclude", "flach"}), Query({}));
}

TEST_F(SelectionCliTest, TheCasesOfOneContact) {
  EXPECT_EQ(Query({"--full-match", "--include", "anna@example.org"}),
            (Lines{"<DATA>/geo/Alpha/", "    a1", "    a3", "Klassen: 1", "Fälle: 2"}));
  EXPECT_EQ(Query({"--include", "Anna B"}), (Lines{"<DATA>/geo/Alpha/", "    a1", "    a3", "Klassen: 1", "Fälle: 2"}));
}

TEST_F(SelectionCliTest, PatternsApplyInCommandLineOrderAcrossOptions) {
  // The last pattern that matches decides: first everything of geo, then
  // not Beta, then its x<&>"' again, then all cases ending in 3 out.
  EXPECT_EQ(Query({"--full-match", "--include", "geo", "--exclude-regex", "Beta", "--include", "beta:x<&>\"'",
                   "--exclude-regex", ".*3"}),
            (Lines{"<DATA>/geo/Alpha/", "    a1", "<DATA>/geo/flach/Beta/", "    x<&>\"'",
                   "<DATA>/geo/flach/Größe Prüfung/", "    g1", "Klassen: 3", "Fälle: 3"}));
  // Two patterns that match one text: the later one wins.
  EXPECT_EQ(Query({"--full-match", "--exclude-regex", "a.", "--include", "a3"}),
            (Lines{"<DATA>/geo/Alpha/", "    a3", "Klassen: 1", "Fälle: 1"}));
  EXPECT_EQ(Query({"--full-match", "--include", "a3", "--exclude-regex", "a."}), (Lines{"Klassen: 0", "Fälle: 0"}));
}

TEST_F(SelectionCliTest, WildcardsIgnoreCaseRegexesDoNot) {
  EXPECT_EQ(Query({"--full-match", "--include", "GRÖSSE*", "--include", "größe prüfung"}),
            (Lines{"<DATA>/geo/flach/Größe Prüfung/", "    g1", "Klassen: 1", "Fälle: 1"}));
  EXPECT_EQ(Query({"--full-match", "--include-regex", "zulu"}), (Lines{"Klassen: 0", "Fälle: 0"}));
  EXPECT_EQ(Query({"--include-regex", "^Z"}), (Lines{"<DATA>/Zulu/", "    z1", "    z2", "Klassen: 1", "Fälle: 2"}));
}

TEST_F(SelectionCliTest, OnlyExcludesLeaveNothing) {
  EXPECT_EQ(Query({"--exclude", "Alpha", "--exclude-regex", "^Z"}), (Lines{"Klassen: 0", "Fälle: 0"}));
}

TEST_F(SelectionCliTest, CaseLimitComesAfterTheFilters) {
  EXPECT_EQ(Query({"--include", "geo", "-c", "3"}),
            (Lines{"<DATA>/geo/Alpha/", "    a1", "    a3", "<DATA>/geo/flach/Beta/", "    Übergröße", "Klassen: 2",
                   "Fälle: 3"}));
}

const char* const c_sHandMadeSelection =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<Config version=\"1.0\">\n"
    "  <Selection default=\"none\">\n"
    "    <!-- two cases of Beta, all of Zulu but z2 -->\n"
    "    <UnitTest name=\"Beta\" default=\"none\">\n"
    "      <TestCase name=\"x&lt;&amp;&gt;&quot;&apos;\" select=\"true\"/>\n"
    "      <TestCase name=\"\xC3\x9C"
    "bergr\xC3\xB6\xC3\x9F"
    "e\" select=\"true\"/>\n"
    "    </UnitTest>\n"
    "    <UnitTest name=\"Zulu\" default=\"all\">\n"
    "      <TestCase name=\"z2\" select=\"false\"/>\n"
    "    </UnitTest>\n"
    "  </Selection>\n"
    "</Config>\n";

TEST_F(SelectionCliTest, SelectionFileMadeByHand) {
  m_root.WriteFile(L"auswahl.xml", c_sHandMadeSelection);
  const Lines selected{
      "<DATA>/geo/flach/Beta/", "    Übergröße", "    x<&>\"'", "<DATA>/Zulu/", "    z1", "Klassen: 2", "Fälle: 3"};
  EXPECT_EQ(Query({"--select", Path("auswahl.xml")}), selected);
  // A relative path counts from the directory the command was given in.
  EXPECT_EQ(Query({"--select", "auswahl.xml"}), selected);
  EXPECT_EQ(Query({"--select", "auswahl.xml", "--invert-selection"}),
            (Lines{"<DATA>/geo/Alpha/", "    a1", "    a3", "<DATA>/geo/flach/Größe Prüfung/", "    g1", "<DATA>/Zulu/",
                   "    z2", "Klassen: 3", "Fälle: 4"}));
  // A filter's exclude beats the selection's include; its include cannot
  // bring back what the selection excludes.
  EXPECT_EQ(Query({"--select", "auswahl.xml", "--exclude", "z1", "--include", "a1"}),
            (Lines{"<DATA>/geo/flach/Beta/", "    Übergröße", "    x<&>\"'", "Klassen: 1", "Fälle: 2"}));
}

TEST_F(SelectionCliTest, BadSelectionFilesSelectNothingAndSayNothing) {
  const std::string whole = c_sHandMadeSelection;
  const std::vector<std::string> files = {
      "",                                 // size zero
      "\n  \n",                           // empty
      whole.substr(0, whole.size() / 2),  // truncated
      "<Config><Selection default=\"all\"><Klasse name=\"Zulu\" default=\"all\"/></Selection></Config>",
      "<CONFIG><SELECTION DEFAULT=\"all\"><UNITTEST NAME=\"Zulu\" DEFAULT=\"all\"/></SELECTION></CONFIG>",
      std::string("\xFF\xFE\x00\x01 binary \x80\x81", 14)};
  for (const std::string& bytes : files) {
    m_root.WriteFile(L"auswahl.xml", bytes);
    EXPECT_EQ(Query({"--select", "auswahl.xml"}), (Lines{"Klassen: 0", "Fälle: 0"})) << bytes;
  }
  EXPECT_EQ(Query({"--select", "fehlt.xml"}), (Lines{"Klassen: 0", "Fälle: 0"}));
  // With filters the unreadable file is as if it were not given.
  EXPECT_EQ(Query({"--select", "fehlt.xml", "--include", "Zulu"}),
            (Lines{"<DATA>/Zulu/", "    z1", "    z2", "Klassen: 1", "Fälle: 2"}));
}

TEST_F(SelectionCliTest, DataRootThatIsItselfAClass) {
  Class("geo/Alpha/Zulu", "inner\n");
  const SCliResult result = RunCli({"-d", Data() + "/geo/Alpha", "--dll", "discovery_TestClasses", "--query"});
  EXPECT_EQ(result.iExitCode, 0);
  EXPECT_EQ(Normalize(result.sStdout, {{Data(), "<DATA>"}}),
            "<DATA>/geo/Alpha/\n    a1\n    a3\n\nDatenverzeichnis: <DATA>/geo/Alpha\nKlassen: 1\nFälle: 2\n");
}

TEST_F(SelectionCliTest, RunExecutesOnlyTheChosenCases) {
  const SCliResult result = Cli({"--include", "Zulu", "--exclude", "z2", "--no-times"});
  EXPECT_EQ(result.iExitCode, 0) << result.sStderr;
  ExpectGolden("select_run.txt", Normalize(result.sStdout, {{Data(), "<DATA>"}}));
  EXPECT_NE(result.sStdout.find("\tz1... OK"), std::string::npos) << result.sStdout;
  EXPECT_EQ(result.sStdout.find("z2..."), std::string::npos) << result.sStdout;
  EXPECT_EQ(result.sStdout.find("a1..."), std::string::npos) << result.sStdout;
}

TEST_F(SelectionCliTest, PatternThatDoesNotCompileIsAUsageError) {
  const struct {
    const char* option;
    const char* pattern;
  } bad[] = {{"--include", "a^b.c$d|e(f)g[h]i+j/k\\l*m?n{"},
             {"--exclude", "x{2,1}"},
             {"--include-regex", "(unclosed"},
             {"--exclude-regex", "[z-a]"}};
  for (const auto& [option, pattern] : bad) {
    const SCliResult result = Cli({"--query", option, pattern});
    EXPECT_EQ(result.iExitCode, 2) << pattern;
    EXPECT_FALSE(result.bSignaled);
    EXPECT_EQ(result.sStdout, "") << pattern;
    EXPECT_NE(result.sStderr.find(std::string(option) + ": '" + pattern + "' is no valid pattern: "), std::string::npos)
        << result.sStderr;
  }
}

TEST_F(SelectionCliTest, WildcardWithEverySpecialCharacterButBracesIsTakenLiterally) {
  Class("special/DiscoveryListedCases", "a^b.c$d|e(f)g[h]i+j/k\\l--mXn\na^b.c$d|e(f)g[h]i+j/k\\l--mXXn\n");
  EXPECT_EQ(
      Query({"--full-match", "--include", "a^b.c$d|e(f)g[h]i+j/k\\l*m?n"}),
      (Lines{"<DATA>/special/DiscoveryListedCases/", "    a^b.c$d|e(f)g[h]i+j/k\\l--mXn", "Klassen: 1", "Fälle: 1"}));
  EXPECT_EQ(Query({"--full-match", "--include", "x<&>\"'"}),
            (Lines{"<DATA>/geo/flach/Beta/", "    x<&>\"'", "Klassen: 1", "Fälle: 1"}));
}

TEST_F(SelectionCliTest, QueryAndListDisabledExcludeEachOther) {
  const SCliResult result = Cli({"--query", "--list-disabled"});
  EXPECT_EQ(result.iExitCode, 2);
  EXPECT_EQ(result.sStdout, "");
  EXPECT_NE(result.sStderr.find("--list-disabled"), std::string::npos) << result.sStderr;
}
