// XMLEntities: named entities and numeric references, one byte each.
#include "services/xml/XMLEntities.h"

#include <cstring>

#include "services/xml/XMLCharacters.h"

namespace TestSuite {

namespace {

struct SNamedEntity {
  const char* sName;  // behind the "&", with the ";"
  std::size_t uiLength;
  char cValue;
};

constexpr SNamedEntity c_namedEntities[] = {
    {"amp;", 4, '&'}, {"lt;", 3, '<'}, {"gt;", 3, '>'}, {"quot;", 5, '"'}, {"apos;", 5, '\''},
};

int digitValue(char c, bool bHex) {
  if (c >= '0' && c <= '9') return c - '0';
  if (!bHex) return -1;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads the entity at `s` (which starts with "&") within `uiAvailable`
// bytes. Returns its length, or 0 if it is unknown or malformed.
std::size_t readEntity(const char* s, std::size_t uiAvailable, char* pValue) {
  for (const SNamedEntity& entity : c_namedEntities) {
    if (uiAvailable > entity.uiLength && XMLPrefixEqual(entity.sName, s + 1, entity.uiLength)) {
      *pValue = entity.cValue;
      return entity.uiLength + 1;
    }
  }
  if (uiAvailable < 2 || s[1] != '#') return 0;
  std::size_t i = 2;
  const bool bHex = i < uiAvailable && (s[i] == 'x' || s[i] == 'X');
  if (bHex) ++i;
  const std::size_t uiFirstDigit = i;
  unsigned int uiValue = 0;  // only the low eight bits count: wrapping is harmless
  for (int digit; i < uiAvailable && (digit = digitValue(s[i], bHex)) >= 0; ++i) {
    uiValue = uiValue * (bHex ? 16u : 10u) + static_cast<unsigned int>(digit);
  }
  if (i == uiFirstDigit || i >= uiAvailable || s[i] != ';') return 0;
  *pValue = static_cast<char>(uiValue & 0xFFu);
  return i + 1;
}

}  // namespace

bool XMLDecodeEntities(const char* sSource, std::size_t uiLength, char* pTarget, std::size_t* puiResult) {
  if (!std::memchr(sSource, '&', uiLength)) {
    std::memcpy(pTarget, sSource, uiLength);
    *puiResult = uiLength;
    return true;
  }
  std::size_t i = 0;
  std::size_t o = 0;
  while (i < uiLength) {
    // The bytes up to the next "&" go as they are; a multi-byte character
    // never holds an "&", since it takes along continuation bytes only.
    const void* pAmpersand = std::memchr(sSource + i, '&', uiLength - i);
    const std::size_t uiAmpersand =
        pAmpersand ? static_cast<std::size_t>(static_cast<const char*>(pAmpersand) - sSource) : uiLength;
    const std::size_t uiEnd = uiAmpersand;
    std::memcpy(pTarget + o, sSource + i, uiEnd - i);
    o += uiEnd - i;
    i = uiEnd;
    if (i != uiAmpersand || i == uiLength) continue;
    const std::size_t uiEntity = readEntity(sSource + i, uiLength - i, pTarget + o);
    if (!uiEntity) {
      *puiResult = i;
      return false;
    }
    i += uiEntity;
    ++o;
  }
  *puiResult = o;
  return true;
}

}  // namespace TestSuite
