// CXMLInput: whole-file reading, byte-order marks and UTF-16 conversion.
#include "services/xml/XMLInput.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "foundation/CString.h"
#include "foundation/SystemPath.h"

namespace TestSuite {

namespace {

constexpr std::size_t c_uiStatisticalSample = 256;

struct SFileCloser {
  void operator()(std::FILE* pFile) const { std::fclose(pFile); }
};

void appendUtf8(std::string* pOut, unsigned int uiCode) {
  if (uiCode < 0x80) {
    pOut->push_back(static_cast<char>(uiCode));
  } else if (uiCode < 0x800) {
    pOut->push_back(static_cast<char>(0xC0 | (uiCode >> 6)));
    pOut->push_back(static_cast<char>(0x80 | (uiCode & 0x3F)));
  } else if (uiCode < 0x10000) {
    pOut->push_back(static_cast<char>(0xE0 | (uiCode >> 12)));
    pOut->push_back(static_cast<char>(0x80 | ((uiCode >> 6) & 0x3F)));
    pOut->push_back(static_cast<char>(0x80 | (uiCode & 0x3F)));
  } else {
    pOut->push_back(static_cast<char>(0xF0 | (uiCode >> 18)));
    pOut->push_back(static_cast<char>(0x80 | ((uiCode >> 12) & 0x3F)));
    pOut->push_back(static_cast<char>(0x80 | ((uiCode >> 6) & 0x3F)));
    pOut->push_back(static_cast<char>(0x80 | (uiCode & 0x3F)));
  }
}

}  // namespace

XMLError CXMLInput::ReadFile(const wchar_t* sPath) {
  if (!sPath) return eXMLErrorCannotOpenWriteFile;
  const std::string sUtf8Path = PathToSystem(CString(sPath));
  std::error_code error;
  // A directory has no content to read, and opening a FIFO or a device would
  // wait for a writer: only a regular file is read.
  if (!std::filesystem::is_regular_file(sUtf8Path, error)) return eXMLErrorCannotOpenWriteFile;
  std::unique_ptr<std::FILE, SFileCloser> pFile(std::fopen(sUtf8Path.c_str(), "rb"));
  if (!pFile) return eXMLErrorCannotOpenWriteFile;
  if (std::fseek(pFile.get(), 0, SEEK_END) != 0) return eXMLErrorCannotOpenWriteFile;
  const long iSize = std::ftell(pFile.get());
  if (iSize < 0 || std::fseek(pFile.get(), 0, SEEK_SET) != 0) return eXMLErrorCannotOpenWriteFile;
  if (iSize == 0) return eXMLErrorEmpty;
  const auto uiSize = static_cast<std::size_t>(iSize);
  m_pBuffer.reset(new char[uiSize + 1]);
  if (std::fread(m_pBuffer.get(), 1, uiSize, pFile.get()) != uiSize) return eXMLErrorCannotOpenWriteFile;
  m_pBuffer[uiSize] = 0;
  return decode(uiSize);
}

XMLError CXMLInput::decode(std::size_t uiSize) {
  const auto* pBytes = reinterpret_cast<const unsigned char*>(m_pBuffer.get());
  const EWide eWide = DetectWide(pBytes, uiSize);
  if (eWide == EWide::No) {
    m_sText = SkipUtf8Mark(m_pBuffer.get());
    return eXMLErrorNone;
  }
  if (uiSize >= 2 && ((pBytes[0] == 0xFF && pBytes[1] == 0xFE) || (pBytes[0] == 0xFE && pBytes[1] == 0xFF))) {
    pBytes += 2;
    uiSize -= 2;
  }
  if (!Utf16ToUtf8(pBytes, uiSize, eWide == EWide::BigEndian, &m_sConverted)) { return eXMLErrorCharConversionError; }
  m_pBuffer.reset();
  m_sText = m_sConverted.c_str();
  return eXMLErrorNone;
}

CXMLInput::EWide CXMLInput::DetectWide(const unsigned char* pBytes, std::size_t uiSize) {
  if (uiSize >= 2 && pBytes[0] == 0xFF && pBytes[1] == 0xFE) return EWide::LittleEndian;
  if (uiSize >= 2 && pBytes[0] == 0xFE && pBytes[1] == 0xFF) return EWide::BigEndian;
  const std::size_t uiSample = (uiSize < c_uiStatisticalSample ? uiSize : c_uiStatisticalSample) & ~std::size_t{1};
  if (uiSample < 2) return EWide::No;
  bool bEvenZero = true;  // bytes 0, 2, 4 ...: the high bytes of big-endian ASCII
  bool bOddZero = true;   // bytes 1, 3, 5 ...: the high bytes of little-endian ASCII
  for (std::size_t i = 0; i < uiSample; i += 2) {
    bEvenZero = bEvenZero && pBytes[i] == 0;
    bOddZero = bOddZero && pBytes[i + 1] == 0;
  }
  if (bOddZero && !bEvenZero) return EWide::LittleEndian;
  if (bEvenZero && !bOddZero) return EWide::BigEndian;
  return EWide::No;
}

bool CXMLInput::Utf16ToUtf8(const unsigned char* pBytes, std::size_t uiSize, bool bBigEndian, std::string* pOut) {
  pOut->clear();
  pOut->reserve(uiSize / 2 + uiSize / 4);
  const std::size_t uiUnits = uiSize / 2;
  auto unit = [&](std::size_t i) -> unsigned int {
    const unsigned int a = pBytes[2 * i];
    const unsigned int b = pBytes[2 * i + 1];
    return bBigEndian ? (a << 8 | b) : (b << 8 | a);
  };
  for (std::size_t i = 0; i < uiUnits; ++i) {
    unsigned int uiCode = unit(i);
    if (uiCode >= 0xDC00 && uiCode <= 0xDFFF) return false;
    if (uiCode >= 0xD800 && uiCode <= 0xDBFF) {
      if (i + 1 >= uiUnits) return false;
      const unsigned int uiLow = unit(++i);
      if (uiLow < 0xDC00 || uiLow > 0xDFFF) return false;
      uiCode = 0x10000 + ((uiCode - 0xD800) << 10) + (uiLow - 0xDC00);
    }
    appendUtf8(pOut, uiCode);
  }
  return true;
}

const char* CXMLInput::SkipUtf8Mark(const char* sText) {
  const auto* p = reinterpret_cast<const unsigned char*>(sText);
  return (p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF) ? sText + 3 : sText;
}

}  // namespace TestSuite
