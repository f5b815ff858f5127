// ZoStreamFile: the 8-bit file stream and the line reader over 8-bit text.
#include "ZoStreamFile.h"

#include <utility>

#include "SystemPath.h"
#include "XbException.h"
#include "platform/Files.h"

namespace Files = ZoPlatform::Files;

// The bytes gather in a buffer of their own and go to the file in large
// writes; a failed write or close surfaces as an exception of the call.
struct ZoStreamWriteASCIIFile::SImpl {
  static constexpr std::size_t c_bufferSize = 1 << 16;
  std::string buffer;
  int descriptor = -1;

  bool Flush() {
    const bool written = buffer.empty() || Files::WriteAll(descriptor, buffer.data(), buffer.size());
    buffer.clear();
    return written;
  }
};

ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile(const CString& path, int, int, int) : m_impl(std::make_unique<SImpl>()) {
  m_impl->descriptor = Files::OpenForWriting(PathToSystem(path));
  if (m_impl->descriptor < 0) XB_THROW("ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile");
  m_impl->buffer.reserve(SImpl::c_bufferSize);
}

ZoStreamWriteASCIIFile::~ZoStreamWriteASCIIFile() {
  try {
    Close();
  } catch (...) {
    // A destructor reports nothing: what could be written has been.
  }
}

void ZoStreamWriteASCIIFile::Write(const wchar_t* text, int length) {
  if (!text || length <= 0 || m_impl->descriptor < 0) return;
  std::string& bytes = m_impl->buffer;
  for (int i = 0; i < length; ++i) {
    const auto ch = static_cast<std::uint32_t>(text[i]);
    bytes.push_back(ch <= 0xFF ? static_cast<char>(ch) : '?');
  }
  if (bytes.size() >= SImpl::c_bufferSize && !m_impl->Flush()) XB_THROW("ZoStreamWriteASCIIFile::Write");
}

void ZoStreamWriteASCIIFile::Close() {
  if (m_impl->descriptor < 0) return;
  const bool bWritten = m_impl->Flush();
  const bool bClosed = Files::CloseWritten(std::exchange(m_impl->descriptor, -1));
  if (!bWritten || !bClosed) XB_THROW("ZoStreamWriteASCIIFile::Close");
}
