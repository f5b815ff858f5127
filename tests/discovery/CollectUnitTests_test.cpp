// The scan of CollectUnitTests over real data trees, with the test classes
// of the library discovery_TestClasses: DiscoveryListedCases and its further
// names (Alpha, alpha, Beta, Zulu, "Größe Prüfung" ...) list one subtest per
// line of "cases.txt" in their data directory.
#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "DiscoveryNames.h"
#include "SpecialFiles.h"
#include "TempDirectory.h"
#include "UnitTestRecords.h"
#include "ZoTestSuiteTree.h"
#include "discovery_Warnings.h"
#include "foundation/SystemPath.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/platform/FailureInjection.h"
#include "foundation/platform/Library.h"
#include "services_COutRecorder.h"

using TestSuite::CollectUnitTests;
using TestSuite::SCollectOptions;
using TestSuite::SUnitTest;

namespace {

using Warnings = std::vector<std::wstring>;

// Registers the test classes for the whole process; never unloaded.
void LoadTestClasses() {
  static const std::string s_sError = [] {
    const std::string path = std::string(ZO_BIN_DIR) + "/discovery_TestClasses.so";
    return ZoPlatform::Library::Load(path) ? std::string() : path + ": " + ZoPlatform::Library::GetLastError();
  }();
  ASSERT_EQ(s_sError, "");
}

class CollectUnitTestsTest : public ::testing::Test {
 protected:
  void SetUp() override { LoadTestClasses(); }

  // Makes the directory `relative` below the root; gives its path with '/'.
  CString Dir(const CString& relative) const {
    m_tree.MakeDirectory(relative);
    return m_tree.Path() + relative + L"/";
  }
  // Makes a class directory whose subtests are `cases` (none: no list).
  CString Class(const CString& relative, std::initializer_list<const char*> cases) const {
    const CString dir = Dir(relative);
    if (cases.size() == 0) return dir;
    std::string lines;
    for (const char* name : cases) lines += std::string(name) + "\n";
    m_tree.WriteFile(relative + L"/cases.txt", lines);
    return dir;
  }
  void ExtraInfo(const CString& relative, const std::string& xml) const {
    m_tree.WriteFile(relative + L"/#ExtraInfo.xml", xml);
  }
  XbArray<SUnitTest> Collect(const SCollectOptions& options = SCollectOptions()) const {
    return CollectUnitTests(m_tree.Path(), options);
  }
  Warnings Printed() const { return DiscoveryWarnings(m_recorder); }

  TempDirectory m_tree;
  COutRecorder m_recorder;
};

// Alpha with three cases and Beta with four, for the case limit.
class CaseLimitTest : public CollectUnitTestsTest {
 protected:
  void SetUp() override {
    CollectUnitTestsTest::SetUp();
    Class(L"Beta", {"b1", "b2", "b3", "b4"});
    Class(L"Alpha", {"a1", "a2", "a3"});
  }
  XbArray<SUnitTest> CollectWithLimit(unsigned int uiLimit) const {
    SCollectOptions options;
    options.uiCaseLimit = uiLimit;
    return Collect(options);
  }
};

}  // namespace

TEST_F(CollectUnitTestsTest, EmptyRootThatIsNoClassGivesEmptyListSilently) {
  m_tree.WriteFile(L"Alpha", "a file, not a directory");
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

// A directory that cannot be listed holds nothing for the scan: no class,
// no crash; the classes found before stay.
TEST_F(CollectUnitTestsTest, ADirectoryThatCannotBeListedGivesNoClasses) {
  Class(L"Alpha", {"a1"});
  {
    ZoPlatform::FailureInjection::CScopedFailure failure(ZoPlatform::FailureInjection::EOperation::eDirectoryListing);
    EXPECT_EQ(Collect().GetCount(), 0u);
  }
  EXPECT_EQ(Collect().GetCount(), 1u);
}

TEST_F(CollectUnitTestsTest, ClassesBelowPlainDirectoriesAreFoundWithTheirCasesInClassOrder) {
  const CString alphaDir = Class(L"eins/zwei/Alpha", {"z", "a", "m"});
  const CString betaDir = Class(L"Beta", {"b1"});
  const XbArray<SUnitTest> result = Collect();
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha", L"Beta"}));
  EXPECT_EQ(result[0].DataDir, alphaDir);
  EXPECT_EQ(result[1].DataDir, betaDir);
  EXPECT_EQ(CaseNames(result[0]), (Names{L"z", L"a", L"m"}));
  EXPECT_TRUE(result[0].Cases[0].Params.IsEmpty());
  EXPECT_TRUE(result[0].Contacts.IsEmpty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, DirectoryNamedLikeTheBaseClassWarnsAndIsNotDescended) {
  Class(L"ZoUnitTest/Alpha", {"a1"});
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(),
            (Warnings{L"Warnung: Zum Verzeichnis ZoUnitTest gehörende Unittest Klasse hat keine eigene RTTI.\n"}));
}

TEST_F(CollectUnitTestsTest, SubDirectoriesOfATestClassAreNotScanned) {
  Class(L"Alpha", {"a1"});
  Class(L"Alpha/Beta", {"b1"});
  Class(L"Alpha/plain/Zulu", {"z1"});
  Class(L"Alpha/ZoUnitTest", {});
  const XbArray<SUnitTest> result = Collect();
  EXPECT_EQ(ClassNames(result), (Names{L"Alpha"}));
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, DirectoriesHoldingDotSvnAreSkippedWithAllBelow) {
  Class(L"my.svn.backup/Alpha", {"a1"});
  Class(L".svn/alpha", {"a1"});
  Class(L"x.svn/deeper/Zulu", {"z1"});
  Class(L"svn/Beta", {"b1"});
  Class(L"X.SVN/Größe Prüfung", {"g1"});
  EXPECT_EQ(ClassNames(Collect()), (Names{L"Beta", L"Größe Prüfung"}));
}

TEST_F(CollectUnitTestsTest, DataRootItselfIsNotTestedForDotSvn) {
  Class(L"root.svn/Alpha", {"a1"});
  EXPECT_EQ(ClassNames(CollectUnitTests(m_tree.Path() + L"root.svn", SCollectOptions())), (Names{L"Alpha"}));
}

TEST_F(CollectUnitTestsTest, DataRootThatIsATestClassIsTheOneClassAndNotScanned) {
  const CString alphaDir = Class(L"Alpha", {"a1", "a2"});
  Class(L"Alpha/Beta", {"b1"});
  // Without a trailing separator the root gets one.
  const XbArray<SUnitTest> result = CollectUnitTests(m_tree.Path() + L"Alpha", SCollectOptions());
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha"}));
  EXPECT_EQ(result[0].DataDir, alphaDir);
  EXPECT_EQ(CaseNames(result[0]), (Names{L"a1", L"a2"}));
}

TEST_F(CollectUnitTestsTest, AllDisabledClassIsDroppedOnlyWhenAskedTo) {
  Class(L"Alpha", {"a1", "a2"});
  ExtraInfo(L"Alpha", "<ExtraInfo><TestCase name=\"*\"><Enable>false</Enable></TestCase></ExtraInfo>");
  Class(L"Beta", {"b1", "b2", "b3"});
  ExtraInfo(L"Beta",
            "<ExtraInfo><TestCase name=\"b2\"><Enable>false</Enable></TestCase>"
            "<TestCase name=\"b3\"><Enable>true</Enable></TestCase></ExtraInfo>");

  const XbArray<SUnitTest> dropped = Collect();
  ASSERT_EQ(ClassNames(dropped), (Names{L"Beta"}));
  EXPECT_EQ(CaseNames(dropped[0]), (Names{L"b1", L"b3"}));

  SCollectOptions keep;
  keep.bDropDisabled = false;
  const XbArray<SUnitTest> kept = Collect(keep);
  ASSERT_EQ(ClassNames(kept), (Names{L"Alpha", L"Beta"}));
  EXPECT_EQ(CaseNames(kept[0]), (Names{L"a1", L"a2"}));
  EXPECT_EQ(CaseNames(kept[1]), (Names{L"b1", L"b2", L"b3"}));
  EXPECT_FALSE(kept[0].Cases[1].Params.Find(L"Enable")->GetBool());
}

TEST_F(CollectUnitTestsTest, ClassWithoutSubtestsIsNotListedButItsExtraInfoIsRead) {
  Class(L"Alpha", {});
  ExtraInfo(L"Alpha", "<ExtraInfo><Contact><Name>N</Name></Contact><Unbekannt/></ExtraInfo>");
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{L"Warnung XML 'Alpha': Unbekanntes Element 'Unbekannt'.\n"}));
}

TEST_F(CollectUnitTestsTest, ExtraInfoIsAppliedToItsOwnClassOnly) {
  m_tree.WriteFile(L"#ExtraInfo.xml",
                   "<ExtraInfo><Wurzel/><TestCase name=\"*\"><Enable>false</Enable></TestCase></ExtraInfo>");
  Class(L"Alpha", {"a1"});
  Class(L"Beta", {"b1"});
  ExtraInfo(L"Beta",
            "<ExtraInfo><Contact role=\"Pflege\"><Name>Bea</Name></Contact>"
            "<TestCase name=\"b1\"><TimeOutSec>4</TimeOutSec></TestCase></ExtraInfo>");
  const XbArray<SUnitTest> result = Collect();
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha", L"Beta"}));
  EXPECT_TRUE(result[0].Contacts.IsEmpty());
  EXPECT_TRUE(result[0].Cases[0].Params.IsEmpty());
  ASSERT_EQ(result[1].Contacts.GetCount(), 1u);
  EXPECT_EQ(result[1].Contacts[0].Name, L"Bea");
  EXPECT_EQ(result[1].Contacts[0].Role, L"Pflege");
  EXPECT_EQ(result[1].Cases[0].Params.Find(L"TimeOutSec")->GetUInt32(), 4u);
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, ClassWithoutCreationFunctionWarnsAndIsNotDescended) {
  Class(L"DiscoveryAbstractTest", {"x"});
  Class(L"DiscoveryAbstractTest/Alpha", {"a1"});
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{L"Warnung: Unittest DiscoveryAbstractTest hat keine RTTI-Create Methode, "
                                 L"kann nicht instanziert werden.\n"}));
}

TEST_F(CollectUnitTestsTest, FailedInstantiationWarnsAndStillReadsExtraInfo) {
  Class(L"DiscoveryThrowingFactory", {"x"});
  ExtraInfo(L"DiscoveryThrowingFactory", "<ExtraInfo><Unbekannt/></ExtraInfo>");
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{L"Warnung: Fehler beim Instanzieren von Unittest DiscoveryThrowingFactory.\n",
                                 L"Warnung XML 'DiscoveryThrowingFactory': Unbekanntes Element 'Unbekannt'.\n"}));
}

TEST_F(CollectUnitTestsTest, FactoryMakingNoTestObjectCountsAsFailedInstantiation) {
  Class(L"DiscoveryWrongObject", {"x"});
  Class(L"DiscoveryWrongObject/Alpha", {"a1"});
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{L"Warnung: Fehler beim Instanzieren von Unittest DiscoveryWrongObject.\n"}));
}

TEST_F(CollectUnitTestsTest, RegisteredClassThatIsNoTestIsAPlainDirectory) {
  Class(L"DiscoveryPlainObject/Alpha", {"a1"});
  EXPECT_EQ(ClassNames(Collect()), (Names{L"Alpha"}));
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, ExceptionOfInitSubtestsLeavesCollection) {
  Class(L"Alpha", {"a1", "!throw"});
  EXPECT_THROW(Collect(), std::runtime_error);
}

TEST_F(CollectUnitTestsTest, ResultIsSortedByUtf16CodeUnits) {
  Class(L"Zulu", {"1"});
  Class(L"a/alpha", {"1"});
  Class(L"b/c/Beta", {"1"});
  Class(L"Alpha", {"1"});
  Class(L"Größe Prüfung", {"1"});
  Class(L"d/\uFB00 Ligatur", {"1"});
  Class(L"\U0001F600 Smiley", {"1"});
  // Upper case before lower case; a character beyond U+FFFF is a surrogate
  // pair in UTF-16 and so comes before U+FB00.
  EXPECT_EQ(ClassNames(Collect()),
            (Names{L"Alpha", L"Beta", L"Größe Prüfung", L"Zulu", L"alpha", L"\U0001F600 Smiley", L"\uFB00 Ligatur"}));
}

TEST_F(CollectUnitTestsTest, TwoClassesOfOneNameAreBothKept) {
  const CString first = Class(L"x/Alpha", {"a1"});
  const CString second = Class(L"y/Alpha", {"a2"});
  const XbArray<SUnitTest> result = Collect();
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha", L"Alpha"}));
  EXPECT_TRUE((result[0].DataDir == first && result[1].DataDir == second) ||
              (result[0].DataDir == second && result[1].DataDir == first));
}

TEST_F(CollectUnitTestsTest, CaseNamesWithBlanksAndUmlautsStayAsTheClassGaveThem) {
  Class(L"Größe Prüfung", {"Fall mit Leerzeichen", "Übergröße ä", "\xF0\x9F\x98\x80"});
  const XbArray<SUnitTest> result = Collect();
  ASSERT_EQ(ClassNames(result), (Names{L"Größe Prüfung"}));
  EXPECT_EQ(CaseNames(result[0]), (Names{L"Fall mit Leerzeichen", L"Übergröße ä", L"\U0001F600"}));
}

TEST_F(CollectUnitTestsTest, WorkListIsSearchedLastInFirstOut) {
  // A class directly below the root is examined while the root is searched,
  // before any sub directory; the sub directories themselves are searched in
  // the reverse of the order in which the root's listing gave them.
  Class(L"Zulu", {});
  ExtraInfo(L"Zulu", "<ExtraInfo><Z/></ExtraInfo>");
  Class(L"eins/Alpha", {});
  ExtraInfo(L"eins/Alpha", "<ExtraInfo><A/></ExtraInfo>");
  Class(L"zwei/Beta", {});
  ExtraInfo(L"zwei/Beta", "<ExtraInfo><B/></ExtraInfo>");

  Warnings expected{L"Warnung XML 'Zulu': Unbekanntes Element 'Z'.\n"};
  const XbArray<ZoFileSystem::SEntry> listing = ZoFileSystem::ListDirectory(m_tree.Path());
  for (auto it = listing.Std().rbegin(); it != listing.Std().rend(); ++it) {
    if (it->sName == L"eins") expected.push_back(L"Warnung XML 'Alpha': Unbekanntes Element 'A'.\n");
    if (it->sName == L"zwei") expected.push_back(L"Warnung XML 'Beta': Unbekanntes Element 'B'.\n");
  }
  EXPECT_TRUE(Collect().IsEmpty());
  EXPECT_EQ(Printed(), expected);
}

TEST_F(CaseLimitTest, LimitWithinTheSecondClassCutsThatClass) {
  const XbArray<SUnitTest> result = CollectWithLimit(5);
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha", L"Beta"}));
  EXPECT_EQ(CaseNames(result[0]), (Names{L"a1", L"a2", L"a3"}));
  EXPECT_EQ(CaseNames(result[1]), (Names{L"b1", L"b2"}));
}

TEST_F(CaseLimitTest, LimitEqualToTheFirstClassKeepsItOnly) {
  const XbArray<SUnitTest> result = CollectWithLimit(3);
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha"}));
  EXPECT_EQ(CaseNames(result[0]), (Names{L"a1", L"a2", L"a3"}));
}

TEST_F(CaseLimitTest, LimitBelowTheFirstClassCutsIt) {
  const XbArray<SUnitTest> result = CollectWithLimit(1);
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha"}));
  EXPECT_EQ(CaseNames(result[0]), (Names{L"a1"}));
}

TEST_F(CaseLimitTest, LimitZeroGivesEmptyList) { EXPECT_TRUE(CollectWithLimit(0).IsEmpty()); }

TEST_F(CaseLimitTest, LimitAtOrAboveTheTotalChangesNothing) {
  for (unsigned int uiLimit : {7u, 8u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    const XbArray<SUnitTest> result = CollectWithLimit(uiLimit);
    ASSERT_EQ(ClassNames(result), (Names{L"Alpha", L"Beta"})) << uiLimit;
    EXPECT_EQ(result[0].Cases.GetCount(), 3u) << uiLimit;
    EXPECT_EQ(result[1].Cases.GetCount(), 4u) << uiLimit;
  }
}

TEST_F(CollectUnitTestsTest, OnlyExcludeFiltersEmptyTheList) {
  Class(L"Alpha", {"a1", "a2"});
  Class(L"Beta", {"b1"});
  SCollectOptions options;
  for (const wchar_t* wildcard : {L"Alpha", L"b*"}) options.filters.Add(TestSupport::Wildcard(wildcard, 1));
  EXPECT_TRUE(Collect(options).IsEmpty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, SelectionFileOfSizeZeroWithoutFiltersEmptiesTheListSilently) {
  Class(L"Alpha", {"a1", "a2"});
  m_tree.WriteFile(L"selection.xml", "");
  SCollectOptions options;
  options.sSelectionFile = m_tree.Path() + L"selection.xml";
  EXPECT_TRUE(Collect(options).IsEmpty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(CollectUnitTestsTest, AnExtraInfoThatIsAFifoIsPassedOverWithoutWaiting) {
  Class(L"Alpha", {"a1", "a2"});
  ASSERT_TRUE(MakeFifo((m_tree.Path() + L"Alpha/#ExtraInfo.xml").ToUtf8()));
  const XbArray<SUnitTest> classes = Collect();
  ASSERT_EQ(classes.GetCount(), 1u);
  EXPECT_EQ(classes[0].Cases.GetCount(), 2u);
}

// data/sub/up and data/other/up both lead back to the root: every
// directory is walked once, each link warned about.
TEST_F(CollectUnitTestsTest, LinkCyclesAreWalkedOnceWithAWarningEach) {
  Class(L"Alpha", {"a1"});
  Dir(L"sub");
  Dir(L"other");
  std::filesystem::create_directory_symlink("..", PathToSystem(m_tree.Path() + L"sub/up"));
  std::filesystem::create_directory_symlink("..", PathToSystem(m_tree.Path() + L"other/up"));
  const XbArray<SUnitTest> result = Collect();
  EXPECT_EQ(ClassNames(result), (Names{L"Alpha"}));
  const Warnings printed = Printed();
  ASSERT_EQ(printed.size(), 2u);
  for (const CString& link : {m_tree.Path() + L"sub/up/", m_tree.Path() + L"other/up/"}) {
    const std::wstring warning =
        L"Warnung: Verzeichnis " + link.Str() +
        L" führt zurück in ein übergeordnetes Verzeichnis (Link-Zyklus) und wird übersprungen.\n";
    EXPECT_TRUE(printed[0] == warning || printed[1] == warning) << link.ToUtf8();
  }
}

TEST_F(CollectUnitTestsTest, ALinkToASiblingIsNoCycleAndIsWalked) {
  Class(L"lib/Alpha", {"a1"});
  Dir(L"view");
  std::filesystem::create_directory_symlink("../lib", PathToSystem(m_tree.Path() + L"view/lib"));
  EXPECT_EQ(ClassNames(Collect()), (Names{L"Alpha", L"Alpha"}));
  EXPECT_TRUE(Printed().empty());
}

TEST_F(CollectUnitTestsTest, ADirectoryNamedInLatin1BytesIsDiscovered) {
  const CString dir = Class(PathFromSystem("Gr\xF6sse/Alpha"), {"a1"});
  const XbArray<SUnitTest> result = Collect();
  ASSERT_EQ(ClassNames(result), (Names{L"Alpha"}));
  EXPECT_EQ(result[0].DataDir, dir);
  EXPECT_EQ(PathToSystem(result[0].DataDir), PathToSystem(m_tree.Path()) + "Gr\xF6sse/Alpha/");
}
