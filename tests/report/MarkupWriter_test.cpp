// CMarkupWriter: indentation, element lines and the escaping of report text.
#include "report/MarkupWriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "TempDirectory.h"
#include "foundation/SystemPath.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoStreamFile.h"

using TestSuite::Utils::CMarkupWriter;

namespace {

class MarkupWriterTest : public ::testing::Test {
 protected:
  const std::wstring& Text() const { return m_stream.GetString().Str(); }

  XbStreamWriteASCIIStringT<CString> m_stream;
  CMarkupWriter m_writer{m_stream};
};

}  // namespace

TEST_F(MarkupWriterTest, StartsAtDepthZeroAndWritesNothing) {
  EXPECT_EQ(m_writer.GetDepth(), 0u);
  EXPECT_EQ(Text(), L"");
  m_writer.Indent();
  EXPECT_EQ(Text(), L"");
}

TEST_F(MarkupWriterTest, LineOpenAtDepthTwoThenLineThenLineClose) {
  m_writer.WriteLineOpen(L"<a>");
  m_writer.WriteLineOpen(L"<b>");
  EXPECT_EQ(m_writer.GetDepth(), 2u);
  m_stream.Clear();
  m_writer.WriteLineOpen(L"<c>");
  m_writer.WriteLine(L"<d/>");
  m_writer.WriteLineClose(L"</c>");
  EXPECT_EQ(Text(), L"\t\t<c>\n\t\t\t<d/>\n\t\t</c>\n");
  EXPECT_EQ(m_writer.GetDepth(), 2u);
}

TEST_F(MarkupWriterTest, OpenAndCloseLeaveTheLineOpen) {
  m_writer.WriteOpen(L"<td>");
  m_writer.Write(L"Wert");
  m_writer.WriteClose(L"</td>");
  m_writer.Write(L" weiter");
  EXPECT_EQ(Text(), L"<td>Wert</td> weiter");
  EXPECT_EQ(m_writer.GetDepth(), 0u);
}

TEST_F(MarkupWriterTest, CloseLowersTheDepthBeforeItWritesAndOpenRaisesItAfter) {
  m_writer.WriteLineOpen(L"<x>");
  m_writer.WriteOpen(L"<y>");
  m_writer.Indent();
  m_writer.WriteClose(L"</y>");
  m_writer.WriteLineClose(L"</x>");
  EXPECT_EQ(Text(), L"<x>\n\t<y>\t\t\t</y></x>\n");
}

TEST_F(MarkupWriterTest, WriteAddsNoTabsAndNoLineEnd) {
  m_writer.WriteLineOpen(L"<x>");
  m_stream.Clear();
  m_writer.Write(L"a<&>\"b");
  EXPECT_EQ(Text(), L"a<&>\"b");
}

TEST_F(MarkupWriterTest, ElementsWithTextWriteNameValueAndAttributesAsTheyStand) {
  m_writer.WriteLineOpen(L"<r>");
  m_stream.Clear();
  m_writer.WriteElement(L"Name", L"a & b");
  m_writer.WriteElement(L"td", L"class=\"x\"", L"<b>");
  EXPECT_EQ(Text(), L"\t<Name>a & b</Name>\n\t<td class=\"x\"><b></td>\n");
}

TEST_F(MarkupWriterTest, NumericElementsUseTheirFormats) {
  m_writer.WriteElement(L"i", -5);
  m_writer.WriteElement(L"u", 4000000000u);
  m_writer.WriteElement(L"f", 1.5f);
  m_writer.WriteElement(L"d", 2.25);
  m_writer.WriteElement(L"s64", std::int64_t{-9000000000});
  m_writer.WriteElement(L"u64", std::uint64_t{18000000000000000000u});
  EXPECT_EQ(Text(),
            L"<i>-5</i>\n<u>4000000000</u>\n<f>1.500000</f>\n<d>2.250000</d>\n"
            L"<s64>-9000000000</s64>\n<u64>18000000000000000000</u64>\n");
}

TEST_F(MarkupWriterTest, NumericElementsWithAttributes) {
  m_writer.WriteElement(L"i", L"k=\"1\"", -7);
  m_writer.WriteElement(L"d", L"k=\"2\"", 0.1);
  EXPECT_EQ(Text(), L"<i k=\"1\">-7</i>\n<d k=\"2\">0.100000</d>\n");
}

TEST_F(MarkupWriterTest, UnsignedWithAttributesPrintsAsSignedAboveTheSignBit) {
  m_writer.WriteElement(L"u", L"k=\"3\"", 0x7FFFFFFFu);
  m_writer.WriteElement(L"u", L"k=\"3\"", 0x80000000u);
  m_writer.WriteElement(L"u", L"k=\"3\"", 0xFFFFFFFFu);
  EXPECT_EQ(Text(), L"<u k=\"3\">2147483647</u>\n<u k=\"3\">-2147483648</u>\n<u k=\"3\">-1</u>\n");
}

TEST(MarkupWriterCleanTest, EmptyTextStaysEmpty) { EXPECT_EQ(CMarkupWriter::Clean(L""), L""); }

TEST(MarkupWriterCleanTest, EachAmpersandIsEscapedAgainEvenInsideAnEntity) {
  EXPECT_EQ(CMarkupWriter::Clean(L"&amp; &lt;"), L"&amp;amp; &amp;lt;");
}

TEST(MarkupWriterCleanTest, TheFiveXmlSpecialsBecomeEntities) {
  EXPECT_EQ(CMarkupWriter::Clean(L"\"&'<>"), L"&quot;&amp;&apos;&lt;&gt;");
}

TEST(MarkupWriterCleanTest, OnlyTheSevenGermanLettersBecomeNumericReferences) {
  EXPECT_EQ(CMarkupWriter::Clean(L"ÄÖÜßäöü"), L"&#196;&#214;&#220;&#223;&#228;&#246;&#252;");
  EXPECT_EQ(CMarkupWriter::Clean(L"éçñ€"), L"éçñ€");
}

TEST(MarkupWriterCleanTest, DropsASurrogatePairWhole) {
  // wchar_t holds the character whole; in UTF-16 it is a pair of refused
  // code units, so nothing of it remains.
  EXPECT_EQ(CMarkupWriter::Clean(L"a\U0001F600b"), L"ab");
  const wchar_t pair[] = {L'a', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00), L'b', 0};
  EXPECT_EQ(CMarkupWriter::Clean(pair), L"ab");
}

TEST(MarkupWriterCleanTest, AnUndecodableByteOfAFileNameBecomesAQuestionMark) {
  EXPECT_EQ(CMarkupWriter::Clean(PathFromSystem("x\xE4.case")), L"x?.case");
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xDC7F), L'b', 0};  // no escaped byte: refused
  EXPECT_EQ(CMarkupWriter::Clean(lone), L"ab");
}

TEST(MarkupWriterCleanTest, KeepsTabLineFeedAndCarriageReturn) {
  EXPECT_EQ(CMarkupWriter::Clean(L"a\tb\nc\rd"), L"a\tb\nc\rd");
}

TEST(MarkupWriterCleanTest, DropsControlCharactersWithoutATrace) {
  const wchar_t text[] = {L'x', 0x01, 0x08, 0x0B, 0x0C, 0x1F, 0x7F, 0x84, 0x85, 0x86, 0x9F, 0xFFFD, L'y', 0};
  EXPECT_EQ(CMarkupWriter::Clean(text), std::wstring(L"x") + wchar_t(0x85) + L"y");
}

TEST(MarkupWriterCleanTest, IsAllowedCharacterAtTheBordersOfItsRanges) {
  EXPECT_FALSE(CMarkupWriter::IsAllowedCharacter(0x007F));
  EXPECT_FALSE(CMarkupWriter::IsAllowedCharacter(0xFFFD));
  EXPECT_TRUE(CMarkupWriter::IsAllowedCharacter(0x0085));
  EXPECT_TRUE(CMarkupWriter::IsAllowedCharacter(0xFFFC));

  const std::uint32_t allowed[] = {0x09, 0x0A, 0x0D, 0x20, 0x7E, 0xA0, 0xD7FF, 0xE000};
  for (std::uint32_t c : allowed) EXPECT_TRUE(CMarkupWriter::IsAllowedCharacter(static_cast<wchar_t>(c))) << c;
  const std::uint32_t refused[] = {0x00, 0x08,   0x0B,   0x0C,   0x0E,   0x1F,   0x80,   0x84,    0x86,
                                   0x9F, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFE, 0xFFFF, 0x10000, 0x10FFFF};
  for (std::uint32_t c : refused) EXPECT_FALSE(CMarkupWriter::IsAllowedCharacter(static_cast<wchar_t>(c))) << c;
}

TEST(MarkupWriterFileTest, ReachesTheFileAsIso88591Bytes) {
  TempDirectory directory;
  const CString path = directory.Path() + L"report.xml";
  {
    ZoStreamWriteASCIIFile file(path, 0, 0, 0);
    CMarkupWriter writer(file);
    writer.WriteLineOpen(L"<r>");
    writer.WriteElement(L"n", CMarkupWriter::Clean(L"Größe é €"));
    writer.WriteLineClose(L"</r>");
  }
  std::string bytes;
  ASSERT_TRUE(ZoFileSystem::ReadFile(path, bytes));
  EXPECT_EQ(bytes, "<r>\n\t<n>Gr&#246;&#223;e \xE9 ?</n>\n</r>\n");
}
