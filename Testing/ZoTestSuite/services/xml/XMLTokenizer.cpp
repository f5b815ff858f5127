// XMLTokenizer: tokens of the XML reader.
#include "services/xml/XMLTokenizer.h"

#include <cstring>

#include "services/xml/XMLCharacters.h"

namespace TestSuite {

namespace {

// The bytes that end plain text: the terminating zero, white space, "<",
// "=", ">", and "/" (which ends it only before ">").
constexpr bool endsPlain(int c) {
  return c == 0 || c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '<' || c == '=' || c == '>' || c == '/';
}

struct SPlainEnds {
  bool bEnds[256];
  constexpr SPlainEnds() : bEnds() {
    for (int c = 0; c < 256; ++c) bEnds[c] = endsPlain(c);
  }
  constexpr bool operator[](unsigned char c) const { return bEnds[c]; }
};

constexpr SPlainEnds c_plainEnds;

}  // namespace

const SXMLClearTag c_XMLClearTags[c_iXMLClearTagCount] = {
    {"<![CDATA[", "]]>", 9, 3}, {"<PRE>", "</PRE>", 5, 6}, {"<Script>", "</Script>", 8, 9},
    {"<!--", "-->", 4, 3},      {"<!DOCTYPE", ">", 9, 1},
};

CXMLTokenizer::CXMLTokenizer(const char* sText) : m_sText(sText), m_uiLength(std::strlen(sText)) {}

int CXMLTokenizer::MatchClear(std::size_t uiAt) const {
  const char* s = m_sText + uiAt;
  if (*s != '<') return -1;
  // Every opening starts with "<!", "<P" or "<S": most tags are out after
  // one look.
  const char cSecond = XMLLowerAscii(s[1]);
  if (cSecond != '!' && cSecond != 'p' && cSecond != 's') return -1;
  for (int i = 0; i < c_iXMLClearTagCount; ++i) {
    if (XMLPrefixEqual(c_XMLClearTags[i].sOpen, s, c_XMLClearTags[i].uiOpenLength)) return i;
  }
  return -1;
}

std::size_t CXMLTokenizer::ScanToTag() {
  const void* pLess = std::memchr(m_sText + m_uiPosition, '<', m_uiLength - m_uiPosition);
  m_uiPosition = pLess ? static_cast<std::size_t>(static_cast<const char*>(pLess) - m_sText) : m_uiLength;
  return m_uiPosition;
}

std::size_t CXMLTokenizer::scanPlain(std::size_t uiFrom) const {
  const char* s = m_sText;
  std::size_t i = uiFrom;
  for (;;) {
    const auto c = static_cast<unsigned char>(s[i]);
    if (c_plainEnds[c] && (c != '/' || s[i + 1] == '>')) break;
    ++i;
  }
  return i;
}

SXMLToken CXMLTokenizer::readQuoted(std::size_t uiStart) {
  const char* s = m_sText;
  const char cQuote = s[uiStart];
  std::size_t i = uiStart + 1;
  while (s[i] && s[i] != cQuote && s[i] != '<') ++i;
  SXMLToken token;
  token.uiStart = uiStart;
  if (s[i] == cQuote) {
    token.eType = EXMLToken::QuotedText;
    m_uiPosition = i + 1;
  } else {
    token.eType = EXMLToken::Text;
    m_uiPosition = scanPlain(uiStart + 1);
  }
  token.uiLength = m_uiPosition - uiStart;
  return token;
}

SXMLToken CXMLTokenizer::readTag(std::size_t uiStart) {
  SXMLToken token;
  token.uiStart = uiStart;
  token.iClear = MatchClear(uiStart);
  if (token.iClear >= 0) {
    token.eType = EXMLToken::Clear;
    token.uiLength = c_XMLClearTags[token.iClear].uiOpenLength;
  } else if (m_sText[uiStart + 1] == '/') {
    token.eType = EXMLToken::CloseTag;
    token.uiLength = 2;
  } else if (m_sText[uiStart + 1] == '?') {
    token.eType = EXMLToken::Declaration;
    token.uiLength = 2;
  } else {
    token.eType = EXMLToken::TagStart;
    token.uiLength = 1;
  }
  m_uiPosition = uiStart + token.uiLength;
  return token;
}

SXMLToken CXMLTokenizer::Next() {
  SkipWhite();
  const std::size_t uiStart = m_uiPosition;
  SXMLToken token;
  token.uiStart = uiStart;
  token.uiLength = 1;
  switch (m_sText[uiStart]) {
    case 0: token.uiLength = 0; return token;
    case '"':
    case '\'': return readQuoted(uiStart);
    case '<': return readTag(uiStart);
    case '>': token.eType = EXMLToken::TagEnd; break;
    case '=': token.eType = EXMLToken::Equals; break;
    case '/':
      if (m_sText[uiStart + 1] == '>') {
        token.eType = EXMLToken::ShortHandClose;
        token.uiLength = 2;
        break;
      }
      [[fallthrough]];
    default:
      token.eType = EXMLToken::Text;
      token.uiLength = scanPlain(uiStart) - uiStart;
      break;
  }
  m_uiPosition = uiStart + token.uiLength;
  return token;
}

}  // namespace TestSuite
