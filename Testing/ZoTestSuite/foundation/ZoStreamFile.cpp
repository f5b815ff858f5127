// ZoStreamFile: the 8-bit file stream and the line reader over 8-bit text.
#include "ZoStreamFile.h"

#include <fstream>
#include <vector>

#include "SystemPath.h"
#include "XbException.h"

struct ZoStreamWriteASCIIFile::SImpl {
  static constexpr std::size_t c_bufferSize = 1 << 16;
  std::vector<char> buffer = std::vector<char>(c_bufferSize);
  std::ofstream file;
  std::string line;  // the bytes of one Write, reused
};

ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile(const CString& path, int, int, int) : m_impl(std::make_unique<SImpl>()) {
  // The buffer must be set before the file is opened to take effect.
  m_impl->file.rdbuf()->pubsetbuf(m_impl->buffer.data(), static_cast<std::streamsize>(m_impl->buffer.size()));
  m_impl->file.open(PathToSystem(path), std::ios::binary | std::ios::out | std::ios::trunc);
  if (!m_impl->file.is_open()) XB_THROW("ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile");
}

ZoStreamWriteASCIIFile::~ZoStreamWriteASCIIFile() {
  try {
    Close();
  } catch (...) {
    // A destructor reports nothing: what could be written has been.
  }
}

void ZoStreamWriteASCIIFile::Write(const wchar_t* text, int length) {
  if (!text || length <= 0 || !m_impl->file.is_open()) return;
  std::string& bytes = m_impl->line;
  bytes.resize(static_cast<std::size_t>(length));
  for (int i = 0; i < length; ++i) {
    const auto ch = static_cast<std::uint32_t>(text[i]);
    bytes[static_cast<std::size_t>(i)] = ch <= 0xFF ? static_cast<char>(ch) : '?';
  }
  if (!m_impl->file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    XB_THROW("ZoStreamWriteASCIIFile::Write");
}

void ZoStreamWriteASCIIFile::Close() {
  if (!m_impl->file.is_open()) return;
  const bool bWritten = static_cast<bool>(m_impl->file.flush());
  m_impl->file.close();
  if (!bWritten || !m_impl->file) XB_THROW("ZoStreamWriteASCIIFile::Close");
}
