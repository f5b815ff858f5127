// ZoStreamWriteASCIIFile: a text file stream that writes every character
// as one ISO-8859-1 byte ('?' for what does not fit), and
// ZoStreamReadASCIIStringT, a line reader over 8-bit text.
#pragma once

#include <memory>
#include <string>

#include "XbStream.h"

class ZoStreamWriteASCIIFile : public XbStreamWriteASCIIT<CString> {
 public:
  // Creates or replaces the file. Throws XbException if it cannot be made.
  // The three mode arguments are accepted for the callers' sake and unused.
  explicit ZoStreamWriteASCIIFile(const CString& path, int accessMode = 0, int mode2 = 0, int mode3 = 0);
  ~ZoStreamWriteASCIIFile() override;
  ZoStreamWriteASCIIFile(const ZoStreamWriteASCIIFile&) = delete;
  ZoStreamWriteASCIIFile& operator=(const ZoStreamWriteASCIIFile&) = delete;

  using XbStreamWriteASCIIT<CString>::operator<<;
  // Throws XbException when the bytes cannot be written (a full disk); what
  // was written before stays.
  void Write(const wchar_t* text, int length) override;
  // Writes out what is buffered and closes the file; throws XbException when
  // that fails. A writer that must know whether its file is complete calls
  // it: the destructor closes too, but reports nothing.
  void Close();

 private:
  struct SImpl;
  std::unique_ptr<SImpl> m_impl;
};

template <typename TString = std::string>
class ZoStreamReadASCIIStringT {
 public:
  explicit ZoStreamReadASCIIStringT(const TString& text) : m_text(text) {}
  // The next line without its line end ("\n" or "\r\n"); false at the end.
  bool ReadLine(TString& line) {
    if (IsEndOfStream()) return false;
    auto end = m_text.find('\n', m_pos);
    if (end == TString::npos) end = m_text.size();
    line = m_text.substr(m_pos, end - m_pos);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    m_pos = end + 1;
    return true;
  }
  bool IsEndOfStream() const { return m_pos >= m_text.size(); }

 private:
  TString m_text;
  typename TString::size_type m_pos = 0;
};
