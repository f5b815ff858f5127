// XMLCharacters: the lead-byte table, name comparison and positions.
#include "services/xml/XMLCharacters.h"

#include <cstring>
#include <string_view>

namespace TestSuite {

namespace {
constexpr unsigned char leadLength(int byte) {
  if (byte == 0) return 0;
  if (byte >= 0xC2 && byte <= 0xDF) return 2;
  if (byte >= 0xE0 && byte <= 0xEF) return 3;
  if (byte >= 0xF0 && byte <= 0xF4) return 4;
  return 1;
}

}  // namespace

const unsigned char c_XMLCharLength[256] = {
#define ZO_L4(b) leadLength(b), leadLength((b) + 1), leadLength((b) + 2), leadLength((b) + 3)
#define ZO_L16(b) ZO_L4(b), ZO_L4((b) + 4), ZO_L4((b) + 8), ZO_L4((b) + 12)
    ZO_L16(0x00), ZO_L16(0x10), ZO_L16(0x20), ZO_L16(0x30), ZO_L16(0x40), ZO_L16(0x50), ZO_L16(0x60), ZO_L16(0x70),
    ZO_L16(0x80), ZO_L16(0x90), ZO_L16(0xA0), ZO_L16(0xB0), ZO_L16(0xC0), ZO_L16(0xD0), ZO_L16(0xE0), ZO_L16(0xF0),
#undef ZO_L16
#undef ZO_L4
};

// Both compare bytes first and fold case only where they differ: names
// are mostly written the same way as they are looked for.
bool XMLNamesEqual(const char* a, const char* b) {
  if (!a || !b) return false;
  for (;; ++a, ++b) {
    if (*a == *b) {
      if (!*a) return true;
    } else if (XMLLowerAscii(*a) != XMLLowerAscii(*b)) {
      return false;
    }
  }
}

bool XMLPrefixEqual(const char* a, const char* b, std::size_t uiLength) {
  for (std::size_t i = 0; i < uiLength; ++i) {
    if (!b[i] || (a[i] != b[i] && XMLLowerAscii(a[i]) != XMLLowerAscii(b[i]))) return false;
  }
  return true;
}

namespace {

// The value of the `encoding` pseudo-attribute of a leading "<?xml ... ?>",
// or empty.
std::string_view declaredEncoding(const char* sText) {
  const char* p = sText;
  while (XMLIsWhite(*p)) ++p;
  if (!XMLPrefixEqual("<?xml", p, 5)) return {};
  const char* pEnd = std::strstr(p, "?>");
  if (!pEnd) return {};
  const std::string_view declaration(p, static_cast<std::size_t>(pEnd - p));
  const std::size_t uiName = declaration.find("encoding");
  if (uiName == std::string_view::npos) return {};
  std::size_t i = uiName + 8;
  while (i < declaration.size() && (XMLIsWhite(declaration[i]) || declaration[i] == '=')) ++i;
  if (i >= declaration.size() || (declaration[i] != '"' && declaration[i] != '\'')) return {};
  const std::size_t uiClose = declaration.find(declaration[i], i + 1);
  if (uiClose == std::string_view::npos) return {};
  return declaration.substr(i + 1, uiClose - i - 1);
}

}  // namespace

bool XMLDeclaresSingleByteEncoding(const char* sText) {
  const std::string_view sEncoding = declaredEncoding(sText);
  for (const char* sFamily : {"iso-8859", "iso8859", "iso_8859", "latin", "l1", "windows-125", "cp125", "cp819"}) {
    const std::size_t uiLength = std::strlen(sFamily);
    if (sEncoding.size() >= uiLength && XMLPrefixEqual(sFamily, sEncoding.data(), uiLength)) return true;
  }
  return false;
}

void XMLComputePosition(const char* sText, std::size_t uiOffset, int* piLine, int* piColumn) {
  int iLine = 1;
  int iColumn = 1;
  std::size_t i = 0;
  while (i < uiOffset && sText[i]) {
    if (sText[i] == '\n') {
      ++iLine;
      iColumn = 1;
    } else {
      ++iColumn;
    }
    i += XMLCharLength(sText + i);
  }
  *piLine = iLine;
  *piColumn = iColumn;
}

}  // namespace TestSuite
