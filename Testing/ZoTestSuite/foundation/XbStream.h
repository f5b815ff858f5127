// XbStreamWriteASCIIT: the text output stream of the foundation layer, and
// XbStreamWriteASCIIStringT, the one that writes into a wide string.
#pragma once

#include <cstdint>

#include "CString.h"

template <typename TString>
class XbStreamWriteASCIIT {
 public:
  virtual ~XbStreamWriteASCIIT() = default;

  XbStreamWriteASCIIT& operator<<(const TString& text) {
    Write(text.GetString(), text.GetLength());
    return *this;
  }
  XbStreamWriteASCIIT& operator<<(const wchar_t* text) {
    if (text) Write(text, static_cast<int>(std::wcslen(text)));
    return *this;
  }
  XbStreamWriteASCIIT& operator<<(wchar_t ch) {
    Write(&ch, 1);
    return *this;
  }
  // Numbers in decimal.
  XbStreamWriteASCIIT& operator<<(std::int64_t value) { return *this << FormatString(L"%I64d", value); }
  XbStreamWriteASCIIT& operator<<(std::uint64_t value) { return *this << FormatString(L"%I64u", value); }
  XbStreamWriteASCIIT& operator<<(int value) { return *this << FormatString(L"%d", value); }
  XbStreamWriteASCIIT& operator<<(unsigned int value) { return *this << FormatString(L"%u", value); }
  XbStreamWriteASCIIT& operator<<(double value) { return *this << FormatString(L"%f", value); }

  virtual void Write(const wchar_t* text, int length) = 0;
};

template <typename TString = CString>
class XbStreamWriteASCIIStringT : public XbStreamWriteASCIIT<TString> {
 public:
  using XbStreamWriteASCIIT<TString>::operator<<;
  void Write(const wchar_t* text, int length) override { m_text.Str().append(text, static_cast<std::size_t>(length)); }
  const TString& GetString() const { return m_text; }
  void Clear() { m_text.Empty(); }

 private:
  TString m_text;
};
