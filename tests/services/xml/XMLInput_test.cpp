#include "services/xml/XMLInput.h"

#include <gtest/gtest.h>

#include <string>

#include "SpecialFiles.h"
#include "TempDirectory.h"
#include "foundation/CString.h"
#include "services/xml/XMLNode.h"

using namespace TestSuite;

namespace {

// `utf8` as UTF-16 bytes, with a byte-order mark if asked for.
std::string utf16(const char* utf8, bool bigEndian, bool mark) {
  std::string bytes;
  auto put = [&](unsigned int unit) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? std::string{high, low} : std::string{low, high};
  };
  if (mark) put(0xFEFF);
  const CString text = CString::FromUtf8(utf8);
  for (const wchar_t ch : text.Str()) {
    const auto code = static_cast<unsigned int>(ch);
    if (code >= 0x10000) {
      put(0xD800 + ((code - 0x10000) >> 10));
      put(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      put(code);
    }
  }
  return bytes;
}

const char* const c_document =
    "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<a v=\"\xC3\xA4\">\xE2\x82\xAC \xF0\x9F\x98\x80</a>";

void expectDocument(const std::string& bytes) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"wide.xml", bytes);
  XMLResults results;
  const XMLNode node = XMLNode::parseFile(dir / L"wide.xml", "a", &results);
  ASSERT_EQ(results.error, eXMLErrorNone);
  EXPECT_STREQ(node.getAttribute("v"), "\xC3\xA4");
  EXPECT_STREQ(node.getText(0), "\xE2\x82\xAC \xF0\x9F\x98\x80");
}

const unsigned char* bytesOf(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

}  // namespace

TEST(XMLInput, Utf16LittleEndianFileWithMark) { expectDocument(utf16(c_document, false, true)); }

TEST(XMLInput, Utf16BigEndianFileWithMark) { expectDocument(utf16(c_document, true, true)); }

TEST(XMLInput, Utf16FilesWithoutMarkAreRecognisedByTheirZeroBytes) {
  // The test looks at the first 256 bytes: there, every character must
  // have a zero high byte.
  const std::string padded = "<!--" + std::string(140, 'x') + "-->" + c_document;
  expectDocument(utf16(padded.c_str(), false, false));
  expectDocument(utf16(padded.c_str(), true, false));
}

TEST(XMLInput, Utf16WithoutMarkAndWideCharactersEarlyIsTakenAsNarrow) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"early.xml", utf16("<a>\xE2\x82\xAC</a>", false, false));
  XMLResults results;
  XMLNode::parseFile(dir / L"early.xml", "a", &results);
  EXPECT_EQ(results.error, eXMLErrorMissingTagName);  // the zero bytes end the narrow text after "<"
}

TEST(XMLInput, ErrorPositionsOfAWideFileCountInTheConvertedText) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"bad.xml", utf16("<a>\n\xC3\xA4&x;</a>", false, true));
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseFile(dir / L"bad.xml", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorUnknownCharacterEntity);
  EXPECT_EQ(results.nLine, 2);
  EXPECT_EQ(results.nColumn, 2);
}

TEST(XMLInput, FailedConversionIsCharConversionError) {
  TempDirectory dir;
  std::string bytes = utf16("<a>x", false, true);
  bytes += std::string("\x00\xD8", 2);  // a high surrogate without its partner
  bytes += utf16("</a>", false, false);
  TempDirectory::WriteBytes(dir / L"broken.xml", bytes);
  XMLResults results;
  EXPECT_TRUE(XMLNode::parseFile(dir / L"broken.xml", nullptr, &results).isEmpty());
  EXPECT_EQ(results.error, eXMLErrorCharConversionError);
  EXPECT_EQ(results.nLine, 0);
  EXPECT_EQ(results.nColumn, 0);
}

TEST(XMLInput, DetectWide) {
  using EWide = CXMLInput::EWide;
  const std::string le = utf16("<a/>", false, false);
  const std::string be = utf16("<a/>", true, false);
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(le), le.size()), EWide::LittleEndian);
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(be), be.size()), EWide::BigEndian);
  const std::string markLe("\xFF\xFE\x41\x42", 4);
  const std::string markBe("\xFE\xFF\x41\x42", 4);
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(markLe), markLe.size()), EWide::LittleEndian);
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(markBe), markBe.size()), EWide::BigEndian);
  const std::string narrow = "<a/>";
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(narrow), narrow.size()), EWide::No);
  const std::string zeros(8, '\0');
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(zeros), zeros.size()), EWide::No);
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(narrow), 1), EWide::No);
  // A zero byte in the wrong place anywhere in the sample makes it narrow.
  std::string mixed = le;
  mixed[3] = 'x';
  EXPECT_EQ(CXMLInput::DetectWide(bytesOf(mixed), mixed.size()), EWide::No);
}

TEST(XMLInput, Utf16ToUtf8) {
  std::string out;
  const std::string le = utf16("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", false, false);
  ASSERT_TRUE(CXMLInput::Utf16ToUtf8(bytesOf(le), le.size(), false, &out));
  EXPECT_EQ(out, "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  const std::string odd = le + "x";
  ASSERT_TRUE(CXMLInput::Utf16ToUtf8(bytesOf(odd), odd.size(), false, &out));
  EXPECT_EQ(out, "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");  // the odd byte is ignored
  const std::string lowAlone("\x00\xDC", 2);
  EXPECT_FALSE(CXMLInput::Utf16ToUtf8(bytesOf(lowAlone), lowAlone.size(), false, &out));
  const std::string highAtEnd("\xD8\x00", 2);
  EXPECT_FALSE(CXMLInput::Utf16ToUtf8(bytesOf(highAtEnd), highAtEnd.size(), true, &out));
}

TEST(XMLInput, Utf8MarkIsSkipped) {
  EXPECT_STREQ(CXMLInput::SkipUtf8Mark("\xEF\xBB\xBF<a/>"), "<a/>");
  EXPECT_STREQ(CXMLInput::SkipUtf8Mark("\xEF\xBB<a/>"), "\xEF\xBB<a/>");
  EXPECT_STREQ(CXMLInput::SkipUtf8Mark(""), "");
}

TEST(XMLInput, ReadFileGivesTheBytesAsTheyAre) {
  TempDirectory dir;
  TempDirectory::WriteBytes(dir / L"latin1.xml", "<a>\xFC</a>");
  CXMLInput input;
  ASSERT_EQ(input.ReadFile(dir / L"latin1.xml"), eXMLErrorNone);
  EXPECT_STREQ(input.Text(), "<a>\xFC</a>");
  EXPECT_EQ(input.ReadFile(dir / L"none.xml"), eXMLErrorCannotOpenWriteFile);
}

TEST(XMLInput, AFifoIsRefusedWithoutWaitingForAWriter) {
  TempDirectory dir;
  ASSERT_TRUE(MakeFifo((dir / L"fifo.xml").ToUtf8()));
  CXMLInput input;
  EXPECT_EQ(input.ReadFile(dir / L"fifo.xml"), eXMLErrorCannotOpenWriteFile);
}
