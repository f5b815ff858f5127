// CXMLInput: the text of an XML file as the reader parses it, narrow and
// zero-terminated, after the file's byte-order mark.
//
// A file that looks like UTF-16 is converted to UTF-8: a mark FF FE (little
// endian) or FE FF (big endian) says so, and without a mark every second one
// of the first bytes being zero does. Otherwise a UTF-8 mark EF BB BF is
// skipped and the bytes are taken as they are. An encoding named in the XML
// declaration is not looked at.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "services/xml/XMLNode.h"

namespace TestSuite {

class CXMLInput {
 public:
  // Reads the whole file. Returns 0, or 12 if it cannot be opened or read,
  // 2 if it is empty, 15 if its UTF-16 cannot be converted.
  XMLError ReadFile(const wchar_t* sPath);

  // The text to parse; valid while this object lives and after a
  // successful ReadFile only.
  const char* Text() const { return m_sText; }

  enum class EWide { No, LittleEndian, BigEndian };
  // The wide-text test: a mark, else the statistical test on the first
  // bytes.
  static EWide DetectWide(const unsigned char* pBytes, std::size_t uiSize);
  // UTF-16 to UTF-8; false for a surrogate without its partner. An odd last
  // byte is ignored.
  static bool Utf16ToUtf8(const unsigned char* pBytes, std::size_t uiSize, bool bBigEndian, std::string* pOut);
  // Behind a UTF-8 byte-order mark, if `sText` starts with one.
  static const char* SkipUtf8Mark(const char* sText);

 private:
  XMLError decode(std::size_t uiSize);

  std::unique_ptr<char[]> m_pBuffer;
  std::string m_sConverted;
  const char* m_sText = "";
};

}  // namespace TestSuite
