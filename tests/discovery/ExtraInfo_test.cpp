#include "discovery/ExtraInfo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <regex>
#include <string>
#include <vector>

#include "TempDirectory.h"
#include "UnitTestRecords.h"
#include "discovery_Warnings.h"
#include "services_COutRecorder.h"

using TestSuite::ReadExtraInfo;
using TestSuite::SUnitTest;

namespace {

using Warnings = std::vector<std::wstring>;

class ExtraInfoTest : public ::testing::Test {
 protected:
  // A record in the making, as the scan has it when the file is read.
  SUnitTest Record(std::initializer_list<const wchar_t*> caseNames, const wchar_t* className = L"Klasse") {
    return TestSupport::MakeClass(className, m_dir.Path(), caseNames);
  }
  void WriteFile(const std::string& xml) { m_dir.WriteFile(L"#ExtraInfo.xml", xml); }
  // Writes `xml` as the file and reads it into `unitTest`.
  void Read(SUnitTest& unitTest, const std::string& xml) {
    WriteFile(xml);
    ReadExtraInfo(m_dir.Path(), unitTest);
  }
  CString FilePath() const { return m_dir.Path() + L"#ExtraInfo.xml"; }
  Warnings Printed() const { return DiscoveryWarnings(m_recorder); }

  TempDirectory m_dir;
  COutRecorder m_recorder;
};

const XbVariant* Param(const SUnitTest& unitTest, unsigned int caseIndex, const wchar_t* key) {
  return unitTest.Cases[caseIndex].Params.Find(key);
}

bool BoolParam(const SUnitTest& unitTest, unsigned int caseIndex, const wchar_t* key) {
  const XbVariant* value = Param(unitTest, caseIndex, key);
  EXPECT_NE(value, nullptr) << "no " << CString(key).ToUtf8() << " in case " << caseIndex;
  EXPECT_TRUE(value && value->IsBool());
  return value && value->IsBool() && value->GetBool();
}

std::uint32_t NumberParam(const SUnitTest& unitTest, unsigned int caseIndex, const wchar_t* key) {
  const XbVariant* value = Param(unitTest, caseIndex, key);
  EXPECT_NE(value, nullptr) << "no " << CString(key).ToUtf8() << " in case " << caseIndex;
  EXPECT_TRUE(value && value->IsUInt32());
  return value && value->IsUInt32() ? value->GetUInt32() : 0xDEADBEEF;
}

const std::string c_sDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

}  // namespace

TEST_F(ExtraInfoTest, MissingFileChangesNothingAndSaysNothing) {
  SUnitTest unitTest = Record({L"c1"});
  ReadExtraInfo(m_dir.Path(), unitTest);
  EXPECT_TRUE(unitTest.Contacts.IsEmpty());
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_TRUE(m_recorder.Messages().empty());
}

TEST_F(ExtraInfoTest, TwoContactsInFileOrderWithMissingPartsEmpty) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest, c_sDeclaration +
                     "<ExtraInfo>\n"
                     "  <Contact role=\"Autor\"><Name>Jürgen Müller</Name><Email>jm@example.org</Email></Contact>\n"
                     "  <Contact><Name>Zweite</Name></Contact>\n"
                     "</ExtraInfo>\n");
  ASSERT_EQ(unitTest.Contacts.GetCount(), 2u);
  EXPECT_EQ(unitTest.Contacts[0].Name, L"Jürgen Müller");
  EXPECT_EQ(unitTest.Contacts[0].Email, L"jm@example.org");
  EXPECT_EQ(unitTest.Contacts[0].Role, L"Autor");
  EXPECT_EQ(unitTest.Contacts[1].Name, L"Zweite");
  EXPECT_TRUE(unitTest.Contacts[1].Email.IsEmpty());
  EXPECT_TRUE(unitTest.Contacts[1].Role.IsEmpty());
  EXPECT_TRUE(Printed().empty());
}

TEST_F(ExtraInfoTest, ContactChildrenAndRoleAreFoundWhateverTheirCase) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest, "<ExtraInfo><Contact ROLE=\"Pflege\"><NAME>Anna</NAME><email>a@b.c</email></Contact></ExtraInfo>");
  ASSERT_EQ(unitTest.Contacts.GetCount(), 1u);
  EXPECT_EQ(unitTest.Contacts[0].Name, L"Anna");
  EXPECT_EQ(unitTest.Contacts[0].Email, L"a@b.c");
  EXPECT_EQ(unitTest.Contacts[0].Role, L"Pflege");
  EXPECT_TRUE(Printed().empty());
}

TEST_F(ExtraInfoTest, LowerCaseContactIsAnUnknownElementAndTheRestStillApplies) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><contact><Name>Klein</Name></contact><Überschrift/>"
       "<TestCase name=\"*\"><TimeOutSec>5</TimeOutSec></TestCase></ExtraInfo>");
  EXPECT_TRUE(unitTest.Contacts.IsEmpty());
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 5u);
  EXPECT_EQ(Printed(), (Warnings{L"Warnung XML 'Klasse': Unbekanntes Element 'contact'.\n",
                                 L"Warnung XML 'Klasse': Unbekanntes Element 'Überschrift'.\n"}));
}

TEST_F(ExtraInfoTest, SyntaxErrorIsWarnedAndNothingOfTheFileApplies) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><Contact><Name>Vorher</Name></Contact>"
       "<TestCase name=\"*\"><Enable>false</Enable></ExtraInfo>");
  EXPECT_TRUE(unitTest.Contacts.IsEmpty());
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{(L"Warnung: XML-Syntax Fehler in Datei " + FilePath() + L".\n").Str()}));
}

TEST_F(ExtraInfoTest, FileOfSizeZeroIsASyntaxError) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest, "");
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{(L"Warnung: XML-Syntax Fehler in Datei " + FilePath() + L".\n").Str()}));
}

TEST_F(ExtraInfoTest, OtherRootIsASyntaxError) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<Config><Contact><Name>X</Name></Contact><TestCase name=\"*\"><Enable>false</Enable></TestCase></Config>");
  EXPECT_TRUE(unitTest.Contacts.IsEmpty());
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{(L"Warnung: XML-Syntax Fehler in Datei " + FilePath() + L".\n").Str()}));
}

TEST_F(ExtraInfoTest, AllSevenParametersAreStoredWithTheirTypes) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c1\">"
       "<Enable>false</Enable><ReportMemLeak>false</ReportMemLeak><TimeOutSec>30</TimeOutSec>"
       "<MessageReportMax>7</MessageReportMax><Parallel>false</Parallel><External>true</External>"
       "<Isolated>false</Isolated></TestCase></ExtraInfo>");
  EXPECT_EQ(unitTest.Cases[0].Params.GetCount(), 7u);
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_FALSE(BoolParam(unitTest, 0, L"ReportMemLeak"));
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 30u);
  EXPECT_EQ(NumberParam(unitTest, 0, L"MessageReportMax"), 7u);
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Parallel"));
  EXPECT_TRUE(BoolParam(unitTest, 0, L"External"));
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Isolated"));
  EXPECT_TRUE(Printed().empty());
}

TEST_F(ExtraInfoTest, BoolIsFalseOnlyForTheExactTextFalse) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c1\"><Enable>False</Enable><Parallel/><External>0</External>"
       "<Isolated>  </Isolated></TestCase></ExtraInfo>");
  EXPECT_TRUE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_TRUE(BoolParam(unitTest, 0, L"Parallel"));
  EXPECT_TRUE(BoolParam(unitTest, 0, L"External"));
  EXPECT_TRUE(BoolParam(unitTest, 0, L"Isolated"));
}

TEST_F(ExtraInfoTest, EmptyTimeOutStoresZeroAndNumbersReadLikeStrtoul) {
  SUnitTest unitTest = Record({L"c1", L"c2"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c1\"><TimeOutSec></TimeOutSec><MessageReportMax>12abc</MessageReportMax></TestCase>"
       "<TestCase name=\"c2\"><TimeOutSec>abc</TimeOutSec><MessageReportMax> 4294967295</MessageReportMax></TestCase>"
       "</ExtraInfo>");
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 0u);
  EXPECT_EQ(NumberParam(unitTest, 0, L"MessageReportMax"), 12u);
  EXPECT_EQ(NumberParam(unitTest, 1, L"TimeOutSec"), 0u);
  EXPECT_EQ(NumberParam(unitTest, 1, L"MessageReportMax"), 4294967295u);
}

TEST_F(ExtraInfoTest, TestCaseOfAnotherConfigurationHasNoEffectNotEvenWarnings) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"*\" configuration=\"Debug\"><Enable>false</Enable><Unsinn/></TestCase>"
       "<TestCase name=\"*\" configuration=\"release\"><Enable>false</Enable><Unsinn/></TestCase></ExtraInfo>");
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_TRUE(Printed().empty());
}

TEST_F(ExtraInfoTest, EmptyOrOwnConfigurationApplies) {
  SUnitTest unitTest = Record({L"c1", L"c2"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c1\" configuration=\"\"><Enable>false</Enable></TestCase>"
       "<TestCase name=\"c2\" configuration=\"Release\"><Parallel>false</Parallel></TestCase></ExtraInfo>");
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_FALSE(BoolParam(unitTest, 1, L"Parallel"));
  EXPECT_EQ(unitTest.Cases[0].Params.GetCount(), 1u);
  EXPECT_EQ(unitTest.Cases[1].Params.GetCount(), 1u);
}

TEST_F(ExtraInfoTest, LaterMatchingElementWinsAndEarlierKeysStay) {
  SUnitTest unitTest = Record({L"a", L"b", L"c"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"*\"><Enable>false</Enable><TimeOutSec>9</TimeOutSec></TestCase>"
       "<TestCase name=\"b\"><Enable>true</Enable></TestCase></ExtraInfo>");
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_TRUE(BoolParam(unitTest, 1, L"Enable"));
  EXPECT_FALSE(BoolParam(unitTest, 2, L"Enable"));
  for (unsigned int i = 0; i < 3; ++i) EXPECT_EQ(NumberParam(unitTest, i, L"TimeOutSec"), 9u);
}

TEST_F(ExtraInfoTest, WithinOneElementTheLaterChildWins) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest, "<ExtraInfo><TestCase name=\"c1\"><Enable>false</Enable><Enable>true</Enable></TestCase></ExtraInfo>");
  EXPECT_TRUE(BoolParam(unitTest, 0, L"Enable"));
}

TEST_F(ExtraInfoTest, WildcardMatchesWholeNamesCaseSensitively) {
  SUnitTest unitTest = Record({L"c1", L"c10", L"C1", L"xc1", L"c.1"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c?\"><TimeOutSec>1</TimeOutSec></TestCase>"
       "<TestCase name=\"c*0\"><MessageReportMax>2</MessageReportMax></TestCase>"
       "<TestCase name=\"c.1\"><Parallel>false</Parallel></TestCase></ExtraInfo>");
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 1u);
  EXPECT_EQ(unitTest.Cases[0].Params.GetCount(), 1u);
  EXPECT_EQ(NumberParam(unitTest, 1, L"MessageReportMax"), 2u);
  EXPECT_EQ(unitTest.Cases[1].Params.GetCount(), 1u);
  EXPECT_TRUE(unitTest.Cases[2].Params.IsEmpty());
  EXPECT_TRUE(unitTest.Cases[3].Params.IsEmpty());
  EXPECT_FALSE(BoolParam(unitTest, 4, L"Parallel"));
  EXPECT_EQ(unitTest.Cases[4].Params.GetCount(), 1u);
}

TEST_F(ExtraInfoTest, TestCaseWithoutNameMatchesNoNamedCase) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest, "<ExtraInfo><TestCase><Enable>false</Enable><Unsinn/></TestCase></ExtraInfo>");
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  EXPECT_TRUE(Printed().empty());
}

TEST_F(ExtraInfoTest, UnknownParameterIsWarnedOncePerMatchedCase) {
  SUnitTest unitTest = Record({L"c1", L"c2", L"d1"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"c*\"><Bogus>1</Bogus><enable>false</enable><TimeOutSec>3</TimeOutSec>"
       "</TestCase></ExtraInfo>");
  EXPECT_EQ(Printed(), (Warnings{L"Warnung XML 'Klasse': Unbekannter Parameter 'Bogus'.\n",
                                 L"Warnung XML 'Klasse': Unbekannter Parameter 'enable'.\n",
                                 L"Warnung XML 'Klasse': Unbekannter Parameter 'Bogus'.\n",
                                 L"Warnung XML 'Klasse': Unbekannter Parameter 'enable'.\n"}));
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 3u);
  EXPECT_EQ(unitTest.Cases[0].Params.GetCount(), 1u);
  EXPECT_EQ(NumberParam(unitTest, 1, L"TimeOutSec"), 3u);
  EXPECT_TRUE(unitTest.Cases[2].Params.IsEmpty());
}

TEST_F(ExtraInfoTest, NamesWithBlanksAndUmlautsMatchAndAreWarnedAboutAsTheyAre) {
  SUnitTest unitTest = Record({L"Fall ä 1", L"Fall ö 2"}, L"Größe Prüfung");
  Read(unitTest, c_sDeclaration +
                     "<ExtraInfo><TestCase name=\"Fall ä*\"><Enable>false</Enable><Maß>1</Maß></TestCase>"
                     "</ExtraInfo>");
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_TRUE(unitTest.Cases[1].Params.IsEmpty());
  EXPECT_EQ(Printed(), (Warnings{L"Warnung XML 'Größe Prüfung': Unbekannter Parameter 'Maß'.\n"}));
}

TEST_F(ExtraInfoTest, InvalidWildcardIsWarnedAboutWithTheFileAndNoTestCaseApplies) {
  SUnitTest unitTest = Record({L"c1"});
  Read(unitTest,
       "<ExtraInfo><Contact><Name>Eva</Name></Contact><TestCase name=\"c*\"><Enable>false</Enable></TestCase>"
       "<TestCase name=\"c_{\"><Enable>false</Enable></TestCase></ExtraInfo>");
  EXPECT_EQ(Printed(), (Warnings{L"Warnung: Ungültiges Muster 'c_{' in Datei " + FilePath().Str() + L".\n"}));
  EXPECT_TRUE(unitTest.Cases[0].Params.IsEmpty());
  ASSERT_EQ(unitTest.Contacts.GetCount(), 1u);
}

// A document declared ISO-8859-1 is read one byte per character: "Stra\xDF*"
// is "Straß*", and a text whose bytes happen to form UTF-8 stays Latin-1.
TEST_F(ExtraInfoTest, ALatin1PatternOfADocumentDeclaredIso88591Matches) {
  SUnitTest unitTest = Record({L"Straße 1", L"Strasse 2"});
  Read(unitTest,
       "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><ExtraInfo><Contact><Name>J\xC3\xBCrgen</Name></Contact>"
       "<TestCase name=\"Stra\xDF*\"><Enable>false</Enable></TestCase></ExtraInfo>");
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_TRUE(unitTest.Cases[1].Params.IsEmpty());
  ASSERT_EQ(unitTest.Contacts.GetCount(), 1u);
  EXPECT_EQ(unitTest.Contacts[0].Name, L"J\u00C3\u00BCrgen");
}

TEST_F(ExtraInfoTest, ALatin1ByteInAnUndeclaredDocumentIsItsLetter) {
  // "Stra\xDF\xC3\xA4" is "Straßä": the stray byte is a letter, the
  // UTF-8 after it still UTF-8.
  SUnitTest unitTest = Record({L"Straßä", L"Maß"});
  Read(unitTest,
       "<ExtraInfo><TestCase name=\"Stra\xDF\xC3\xA4\"><Enable>false</Enable></TestCase>"
       "<TestCase name=\"*\xDF\"><Enable>false</Enable></TestCase></ExtraInfo>");
  EXPECT_FALSE(BoolParam(unitTest, 0, L"Enable"));
  EXPECT_FALSE(BoolParam(unitTest, 1, L"Enable"));
}

TEST_F(ExtraInfoTest, ANinetyThousandCharacterPatternAndAThirtyThousandCharacterNameMatch) {
  const std::wstring longName(30000, L'n');
  SUnitTest unitTest = Record({longName.c_str(), L"kurz"});
  Read(unitTest, "<ExtraInfo><TestCase name=\"" + std::string(89999, 'n') +
                     "*\"><Enable>false</Enable></TestCase>"
                     "<TestCase name=\"*\"><TimeOutSec>5</TimeOutSec></TestCase></ExtraInfo>");
  EXPECT_EQ(NumberParam(unitTest, 0, L"TimeOutSec"), 5u);
  EXPECT_EQ(unitTest.Cases[0].Params.Find(L"Enable"), nullptr);  // 30,000 characters do not reach 89,999
  EXPECT_EQ(NumberParam(unitTest, 1, L"TimeOutSec"), 5u);
}
