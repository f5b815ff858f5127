// XMLEntities: the decoding of character entities and numeric references
// in the texts and attribute values of the XML reader.
//
// Known are "&amp;", "&lt;", "&gt;", "&quot;" and "&apos;" in any case, and
// "&#" decimal ";" or "&#x" hexadecimal ";". A numeric reference becomes
// one byte, the low eight bits of its value, without a check of range and
// without conversion to UTF-8. Other characters, multi-byte ones included,
// are copied as they are.
#pragma once

#include <cstddef>

namespace TestSuite {

// Decodes the `uiLength` bytes at `sSource` into `pTarget`, which must hold
// `uiLength` bytes (decoding never lengthens), and sets `*puiResult` to the
// number of bytes written. For an unknown or malformed entity it returns
// false and sets `*puiResult` to the offset of its "&". A reference must end
// with ";" inside the given bytes.
bool XMLDecodeEntities(const char* sSource, std::size_t uiLength, char* pTarget, std::size_t* puiResult);

}  // namespace TestSuite
