// XMLCharacters: how the XML reader steps through its narrow text, one
// character at a time, and how it compares names.
//
// A character is as long as the UTF-8 length of its lead byte says (1 for
// ASCII and for bytes that cannot lead a sequence, 2 for C2 to DF, 3 for E0
// to EF, 4 for F0 to F4, and 0 for the terminating zero), but it takes along
// only continuation bytes (80 to BF). So in 8-bit text that is not UTF-8 (a
// Latin-1 "é" before a "<") a byte that looks like a lead byte is one
// character, and no delimiter is ever swallowed.
#pragma once

#include <cstddef>

namespace TestSuite {

extern const unsigned char c_XMLCharLength[256];

// Length in bytes of the character at `p`; 0 at the terminating zero.
inline std::size_t XMLCharLength(const char* p) {
  const auto c = static_cast<unsigned char>(*p);
  if (c < 0x80) return c ? 1 : 0;
  const std::size_t uiLength = c_XMLCharLength[c];
  for (std::size_t k = 1; k < uiLength; ++k) {
    if ((static_cast<unsigned char>(p[k]) & 0xC0) != 0x80) return k;
  }
  return uiLength;
}

// Blank, tab, line feed, carriage return.
inline bool XMLIsWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

inline char XMLLowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Whole names, compared without regard to ASCII case; false if either is
// null.
bool XMLNamesEqual(const char* a, const char* b);

// The first `uiLength` bytes of `a` and `b`, without regard to ASCII case;
// stops with false at a terminating zero of `b`.
bool XMLPrefixEqual(const char* a, const char* b, std::size_t uiLength);

// True if the document opens with an XML declaration whose encoding is a
// one-byte code page (ISO-8859-1 and its kin): its bytes are characters.
// UTF-8, UTF-16 and a document without declaration are read as UTF-8.
bool XMLDeclaresSingleByteEncoding(const char* sText);

// Line and column of byte offset `uiOffset` in `sText`, both counted from
// 1: a line feed starts a new line at column 1, every other character adds
// one column.
void XMLComputePosition(const char* sText, std::size_t uiOffset, int* piLine, int* piColumn);

}  // namespace TestSuite
