// CSelectionStore: the selection file to the byte, its reader's rejections,
// and the answer for one case.
#include "discovery/SelectionStore.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "services_COutRecorder.h"

using TestSuite::CSelectionStore;
using SData = CSelectionStore::SData;

namespace {

SData::SUnitTestSelection Class(const wchar_t* name, CSelectionStore::EDefault eDefault,
                                std::initializer_list<std::pair<const wchar_t*, bool>> cases) {
  SData::SUnitTestSelection unitTest;
  unitTest.sName = name;
  unitTest.eDefault = eDefault;
  for (const auto& [caseName, bSelect] : cases) unitTest.cases.Add({caseName, bSelect});
  return unitTest;
}

CSelectionStore Store(const SData& data) { return CSelectionStore(std::make_unique<SData>(data)); }

void ExpectSameData(const SData& actual, const SData& expected) {
  EXPECT_EQ(actual.eDefault, expected.eDefault);
  ASSERT_EQ(actual.unitTests.GetCount(), expected.unitTests.GetCount());
  for (unsigned int i = 0; i < expected.unitTests.GetCount(); ++i) {
    const SData::SUnitTestSelection& a = actual.unitTests[i];
    const SData::SUnitTestSelection& e = expected.unitTests[i];
    EXPECT_EQ(a.sName, e.sName) << i;
    EXPECT_EQ(a.eDefault, e.eDefault) << i;
    ASSERT_EQ(a.cases.GetCount(), e.cases.GetCount()) << i;
    for (unsigned int j = 0; j < e.cases.GetCount(); ++j) {
      EXPECT_EQ(a.cases[j].sName, e.cases[j].sName) << i << "/" << j;
      EXPECT_EQ(a.cases[j].bSelect, e.cases[j].bSelect) << i << "/" << j;
    }
  }
}

class SelectionStoreTest : public ::testing::Test {
 protected:
  CString File(const char* name, const std::string& bytes) const {
    m_dir.WriteFile(CString(name), bytes);
    return m_dir.Path() + CString(name);
  }
  std::unique_ptr<SData> ReadText(const std::string& bytes) const {
    return CSelectionStore::Read(File("selection.xml", bytes));
  }
  std::string Written(const SData& data) const {
    const CString path = m_dir.Path() + L"written.xml";
    CSelectionStore::Write(data, path);
    std::string bytes;
    EXPECT_TRUE(ZoFileSystem::ReadFile(path, bytes));
    return bytes;
  }

  TempDirectory m_dir;
};

const char* const c_sHead = "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<Config version=\"1.0\">\n";

}  // namespace

TEST_F(SelectionStoreTest, WriteEmitsExactlyTheLinesOfTheFormat) {
  SData data;
  data.eDefault = CSelectionStore::All;
  data.unitTests.Add(Class(L"Leer", CSelectionStore::None, {}));
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {{L"Torus", false}, {L"Kugel", true}}));
  EXPECT_EQ(Written(data), std::string(c_sHead) +
                               "\t<Selection default=\"all\">\n"
                               "\t\t<UnitTest name=\"Leer\" default=\"none\"></UnitTest>\n"
                               "\t\t<UnitTest name=\"Geometry\" default=\"all\">\n"
                               "\t\t\t<TestCase name=\"Torus\" select=\"false\"/>\n"
                               "\t\t\t<TestCase name=\"Kugel\" select=\"true\"/>\n"
                               "\t\t</UnitTest>\n"
                               "\t</Selection>\n"
                               "</Config>\n");
}

TEST_F(SelectionStoreTest, WriteOfNothingGivesTheFrameWithDefaultNone) {
  EXPECT_EQ(Written(SData()), std::string(c_sHead) + "\t<Selection default=\"none\">\n\t</Selection>\n</Config>\n");
}

TEST_F(SelectionStoreTest, WriteEscapesCaseNamesButNotClassNames) {
  SData data;
  data.unitTests.Add(Class(L"Größe & <Prüfung>", CSelectionStore::None, {{L"Fall \"1\" & <Übergröße> 'ß'", true}}));
  EXPECT_EQ(Written(data), std::string(c_sHead) +
                               "\t<Selection default=\"none\">\n"
                               "\t\t<UnitTest name=\"Gr\xF6\xDF"
                               "e & <Pr\xFC"
                               "fung>\" default=\"none\">\n"
                               "\t\t\t<TestCase name=\"Fall &quot;1&quot; &amp; &lt;&#220;bergr&#246;&#223;e&gt; "
                               "&apos;&#223;&apos;\" select=\"true\"/>\n"
                               "\t\t</UnitTest>\n"
                               "\t</Selection>\n"
                               "</Config>\n");
}

TEST_F(SelectionStoreTest, CharactersBeyondLatin1BecomeQuestionMarksAndControlsVanish) {
  SData data;
  data.unitTests.Add(Class(L"K\u20AC", CSelectionStore::None, {{L"F\u20AC\U0001F600\x01x", true}}));
  const std::string bytes = Written(data);
  EXPECT_NE(bytes.find("<UnitTest name=\"K?\" default=\"none\">"), std::string::npos) << bytes;
  // Clean keeps the euro sign (the stream narrows it), drops the supplementary
  // character and the control character.
  EXPECT_NE(bytes.find("<TestCase name=\"F?x\" select=\"true\"/>"), std::string::npos) << bytes;
}

TEST_F(SelectionStoreTest, WriteThenReadReproducesTheData) {
  SData data;
  data.eDefault = CSelectionStore::All;
  data.unitTests.Add(Class(L"Zulu", CSelectionStore::All, {{L"z2", false}, {L"z1", true}, {L"z3", false}}));
  data.unitTests.Add(Class(L"Alpha", CSelectionStore::None, {}));
  data.unitTests.Add(
      Class(L"Größe Prüfung", CSelectionStore::None, {{L"Fall mit Leerzeichen", true}, {L"<&\"'> Übergröße", true}}));
  data.unitTests.Add(Class(L"Alpha", CSelectionStore::All, {{L"a", true}}));
  const CString path = m_dir.Path() + L"roundtrip.xml";
  CSelectionStore::Write(data, path);
  const std::unique_ptr<SData> read = CSelectionStore::Read(path);
  ASSERT_TRUE(read);
  ExpectSameData(*read, data);
}

TEST_F(SelectionStoreTest, ClassWithoutCasesReadsBackWithEmptyCases) {
  SData data;
  data.unitTests.Add(Class(L"Leer", CSelectionStore::All, {}));
  const CString path = m_dir.Path() + L"leer.xml";
  CSelectionStore::Write(data, path);
  const std::unique_ptr<SData> read = CSelectionStore::Read(path);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->unitTests.GetCount(), 1u);
  EXPECT_TRUE(read->unitTests[0].cases.IsEmpty());
  EXPECT_EQ(read->unitTests[0].eDefault, CSelectionStore::All);
}

TEST_F(SelectionStoreTest, WriteToADirectoryThatDoesNotExistSaysSo) {
  const CString path = m_dir.Path() + L"fehlt/selection.xml";
  COutRecorder recorder;
  CSelectionStore::Write(SData(), path);
  EXPECT_FALSE(ZoFileSystem::Exists(path));
  EXPECT_EQ(recorder.Text(), L"Auswahldatei " + path + L" konnte nicht geschrieben werden.\n");
}

TEST_F(SelectionStoreTest, WriteOntoAFullDiskSaysSo) {
  COutRecorder recorder;
  CSelectionStore::Write(SData(), L"/dev/full");
  EXPECT_EQ(recorder.Text(), L"Auswahldatei /dev/full konnte nicht geschrieben werden.\n");
}

TEST_F(SelectionStoreTest, DefaultInCapitalsGivesNone) {
  const auto data = ReadText(
      "<Config><Selection default=\"ALL\"><UnitTest name=\"A\" default=\"All\"/>"
      "</Selection></Config>");
  ASSERT_TRUE(data);
  EXPECT_EQ(data->eDefault, CSelectionStore::None);
  EXPECT_EQ(data->unitTests[0].eDefault, CSelectionStore::None);
}

TEST_F(SelectionStoreTest, SelectTrueWithACapitalGivesFalse) {
  const auto data = ReadText(
      "<Config><Selection default=\"none\"><UnitTest name=\"A\" default=\"none\">"
      "<TestCase name=\"a\" select=\"True\"/><TestCase name=\"b\" select=\"true\"/>"
      "</UnitTest></Selection></Config>");
  ASSERT_TRUE(data);
  ASSERT_EQ(data->unitTests[0].cases.GetCount(), 2u);
  EXPECT_FALSE(data->unitTests[0].cases[0].bSelect);
  EXPECT_TRUE(data->unitTests[0].cases[1].bSelect);
}

TEST_F(SelectionStoreTest, AttributeNamesAreFoundWithoutRegardToCase) {
  const auto data = ReadText(
      "<Config><Selection DEFAULT=\"all\"><UnitTest NAME=\"A\" Default=\"all\">"
      "<TestCase Name=\"a\" SELECT=\"true\"/></UnitTest></Selection></Config>");
  ASSERT_TRUE(data);
  EXPECT_EQ(data->eDefault, CSelectionStore::All);
  EXPECT_EQ(data->unitTests[0].sName, L"A");
  EXPECT_EQ(data->unitTests[0].cases[0].sName, L"a");
  EXPECT_TRUE(data->unitTests[0].cases[0].bSelect);
}

TEST_F(SelectionStoreTest, OtherElementBelowSelectionOrUnitTestRejectsTheFile) {
  EXPECT_FALSE(
      ReadText("<Config><Selection default=\"all\"><UnitTest name=\"A\" default=\"all\"/>"
               "<Klasse name=\"B\" default=\"all\"/></Selection></Config>"));
  EXPECT_FALSE(
      ReadText("<Config><Selection default=\"all\"><UnitTest name=\"A\" default=\"all\">"
               "<TestCase name=\"a\" select=\"true\"/><Case name=\"b\" select=\"true\"/>"
               "</UnitTest></Selection></Config>"));
}

TEST_F(SelectionStoreTest, ElementNamesInCapitalsRejectTheFile) {
  EXPECT_FALSE(
      ReadText("<CONFIG><SELECTION DEFAULT=\"all\"><UNITTEST NAME=\"A\" DEFAULT=\"all\"/>"
               "</SELECTION></CONFIG>"));
  EXPECT_FALSE(
      ReadText("<Config><Selection default=\"all\"><UnitTest name=\"A\" default=\"all\">"
               "<testcase name=\"a\" select=\"true\"/></UnitTest></Selection></Config>"));
}

TEST_F(SelectionStoreTest, CommentsAreNoChildren) {
  const auto data = ReadText(
      "<Config><Selection default=\"all\"><!-- von Hand -->"
      "<UnitTest name=\"A\" default=\"all\"><!-- Fall --></UnitTest></Selection></Config>");
  ASSERT_TRUE(data);
  EXPECT_EQ(data->unitTests.GetCount(), 1u);
  EXPECT_TRUE(data->unitTests[0].cases.IsEmpty());
}

TEST_F(SelectionStoreTest, EmptyFilesGiveNull) {
  EXPECT_FALSE(ReadText(""));
  EXPECT_FALSE(ReadText("   \n\t\n"));
  EXPECT_FALSE(ReadText("<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n"));
}

TEST_F(SelectionStoreTest, MissingFileAndDirectoryGiveNull) {
  EXPECT_FALSE(CSelectionStore::Read(m_dir.Path() + L"fehlt.xml"));
  EXPECT_FALSE(CSelectionStore::Read(L""));
  m_dir.MakeDirectory(L"verzeichnis.xml");
  EXPECT_FALSE(CSelectionStore::Read(m_dir.Path() + L"verzeichnis.xml"));
}

TEST_F(SelectionStoreTest, TruncatedFileGivesNull) {
  SData data;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {{L"Torus", false}, {L"Kugel", true}}));
  const std::string whole = Written(data);
  for (std::size_t length : {whole.size() - 10, whole.size() / 2, std::size_t{60}, std::size_t{3}})
    EXPECT_FALSE(ReadText(whole.substr(0, length))) << length;
}

TEST_F(SelectionStoreTest, SyntaxErrorAndWrongRootGiveNull) {
  EXPECT_FALSE(ReadText("<Config><Selection default=\"all\"></Config></Selection>"));
  EXPECT_FALSE(ReadText("<Auswahl><Selection default=\"all\"/></Auswahl>"));
}

TEST_F(SelectionStoreTest, MissingSelectionOrDefaultOrSelectGivesNull) {
  EXPECT_FALSE(ReadText("<Config version=\"1.0\"></Config>"));
  EXPECT_FALSE(ReadText("<Config><Selection></Selection></Config>"));
  EXPECT_FALSE(ReadText("<Config><Selection default=\"all\"><UnitTest name=\"A\"/></Selection></Config>"));
  EXPECT_FALSE(
      ReadText("<Config><Selection default=\"all\"><UnitTest name=\"A\" default=\"all\">"
               "<TestCase name=\"a\"/></UnitTest></Selection></Config>"));
}

TEST_F(SelectionStoreTest, MissingNameGivesEmptyText) {
  const auto data = ReadText(
      "<Config><Selection default=\"all\"><UnitTest default=\"all\">"
      "<TestCase select=\"true\"/></UnitTest></Selection></Config>");
  ASSERT_TRUE(data);
  EXPECT_EQ(data->unitTests[0].sName, L"");
  EXPECT_EQ(data->unitTests[0].cases[0].sName, L"");
}

TEST_F(SelectionStoreTest, ReadsUtf8WrittenByHand) {
  const auto data = ReadText(
      "<Config><Selection default=\"none\"><UnitTest name=\"Gr\xC3\xB6\xC3\x9F"
      "e\" "
      "default=\"none\"><TestCase name=\"&#220;ber &amp; &lt;\" select=\"true\"/>"
      "</UnitTest></Selection></Config>");
  ASSERT_TRUE(data);
  EXPECT_EQ(data->unitTests[0].sName, L"Größe");
  EXPECT_EQ(data->unitTests[0].cases[0].sName, L"Über & <");
}

TEST(SelectionStoreAnswerTest, ClassWithDefaultAllAndOneCaseDeselected) {
  SData data;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {{L"Torus", false}}));
  const CSelectionStore store = Store(data);
  EXPECT_TRUE(store.IsSelected(L"Geometry", L"Kugel"));
  EXPECT_TRUE(store.IsSelected(L"Geometry", L"Würfel"));
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Torus"));
}

TEST(SelectionStoreAnswerTest, UnlistedClassInAFileWithDefaultNoneHasNothingSelected) {
  SData data;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {}));
  const CSelectionStore store = Store(data);
  EXPECT_FALSE(store.IsSelected(L"Raster", L"r1"));
  EXPECT_TRUE(store.IsSelected(L"Geometry", L"g1"));
}

TEST(SelectionStoreAnswerTest, CaseEntryBeatsClassDefaultWhichBeatsFileDefault) {
  SData data;
  data.eDefault = CSelectionStore::All;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::None, {{L"Torus", true}}));
  const CSelectionStore store = Store(data);
  EXPECT_TRUE(store.IsSelected(L"Geometry", L"Torus"));
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Kugel"));
  EXPECT_TRUE(store.IsSelected(L"Raster", L"r1"));
}

TEST(SelectionStoreAnswerTest, CaseKeyIsClassAndCaseJoinedByAColon) {
  // So a colon in a name can make two cases one key.
  SData data;
  data.unitTests.Add(Class(L"A", CSelectionStore::None, {{L"B:C", true}}));
  const CSelectionStore store = Store(data);
  EXPECT_TRUE(store.IsSelected(L"A", L"B:C"));
  EXPECT_TRUE(store.IsSelected(L"A:B", L"C"));
  EXPECT_FALSE(store.IsSelected(L"A:B", L"D"));
}

TEST(SelectionStoreAnswerTest, StoreFromNullSelectsNothing) {
  const CSelectionStore store(nullptr);
  EXPECT_EQ(store.GetData(), nullptr);
  EXPECT_FALSE(store.IsSelected(L"", L""));
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Torus"));
}

TEST(SelectionStoreAnswerTest, TwoEntriesOfOneClassKeepTheLaterDefaultAndTheCasesOfBoth) {
  SData data;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {{L"Torus", true}, {L"Kugel", false}}));
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::None, {{L"Kegel", true}, {L"Torus", false}}));
  const CSelectionStore store = Store(data);
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Würfel"));  // the later default
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Kugel"));   // from the first
  EXPECT_TRUE(store.IsSelected(L"Geometry", L"Kegel"));    // from the second
  EXPECT_FALSE(store.IsSelected(L"Geometry", L"Torus"));   // the later entry
  ASSERT_NE(store.GetData(), nullptr);
  EXPECT_EQ(store.GetData()->unitTests.GetCount(), 2u);
}

TEST(SelectionStoreAnswerTest, MovedStoreKeepsItsAnswers) {
  SData data;
  data.unitTests.Add(Class(L"Geometry", CSelectionStore::All, {{L"Torus", false}}));
  CSelectionStore store = Store(data);
  CSelectionStore moved(std::move(store));
  EXPECT_TRUE(moved.IsSelected(L"Geometry", L"Kugel"));
  EXPECT_FALSE(moved.IsSelected(L"Geometry", L"Torus"));
  CSelectionStore assigned(nullptr);
  assigned = std::move(moved);
  EXPECT_TRUE(assigned.IsSelected(L"Geometry", L"Kugel"));
  EXPECT_NE(assigned.GetData(), nullptr);
}

// The file is declared ISO-8859-1 and read so: "Ã¤" is written as the bytes
// C3 A4, which as UTF-8 would be "ä", and must come back as it was.
TEST_F(SelectionStoreTest, Latin1ClassNamesSelectAfterTheRoundTrip) {
  SData data;
  data.eDefault = CSelectionStore::None;
  data.unitTests.Add(Class(L"Straß", CSelectionStore::All, {}));
  data.unitTests.Add(Class(L"\u00C3\u00A4", CSelectionStore::All, {}));
  const CString path = m_dir.Path() + L"latin1.xml";
  CSelectionStore::Write(data, path);
  const std::unique_ptr<SData> read = CSelectionStore::Read(path);
  ASSERT_TRUE(read);
  ExpectSameData(*read, data);
  const CSelectionStore store(std::make_unique<SData>(*read));
  EXPECT_TRUE(store.IsSelected(L"Straß", L"a"));
  EXPECT_TRUE(store.IsSelected(L"\u00C3\u00A4", L"b"));
  EXPECT_FALSE(store.IsSelected(L"ä", L"b"));
}
