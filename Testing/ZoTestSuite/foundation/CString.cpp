// CString: conversions between the wide text and UTF-8, Latin-1 and UTF-16, and its comparisons.
#include "CString.h"

#include <algorithm>
#include <cwctype>
#include <ostream>

#include "SystemPath.h"

namespace {

bool isSeparatorIn(wchar_t ch, const wchar_t* set) {
  for (; *set; ++set)
    if (*set == ch) return true;
  return false;
}

bool isWhite(wchar_t ch) { return std::iswspace(static_cast<wint_t>(ch)) != 0; }

// The character of the well-formed UTF-8 sequence at `in[i]` and its length
// in bytes, or a length of 0 when no well-formed sequence starts there.
std::size_t decodeOne(std::string_view in, std::size_t i, char32_t& cp) {
  const auto b0 = static_cast<unsigned char>(in[i]);
  if (b0 < 0x80) {
    cp = b0;
    return 1;
  }
  std::size_t extra;
  if (b0 >= 0xC2 && b0 <= 0xDF) {
    extra = 1;
    cp = b0 & 0x1F;
  } else if (b0 >= 0xE0 && b0 <= 0xEF) {
    extra = 2;
    cp = b0 & 0x0F;
  } else if (b0 >= 0xF0 && b0 <= 0xF4) {
    extra = 3;
    cp = b0 & 0x07;
  } else return 0;
  if (i + extra >= in.size()) return 0;
  for (std::size_t k = 1; k <= extra; ++k) {
    const auto b = static_cast<unsigned char>(in[i + k]);
    if ((b & 0xC0) != 0x80) return 0;
    cp = (cp << 6) | (b & 0x3F);
  }
  const bool overlong = (extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000);
  if (overlong || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return extra + 1;
}

// Decodes UTF-8 where the bytes form it; every other byte becomes
// `fallback(byte)`. Returns false if any byte needed the fallback.
template <typename TFallback>
bool decodeUtf8(std::string_view in, std::wstring& out, TFallback fallback) {
  out.clear();
  out.reserve(in.size());
  bool bWellFormed = true;
  for (std::size_t i = 0; i < in.size();) {
    char32_t cp = 0;
    const std::size_t length = decodeOne(in, i, cp);
    if (length == 0) {
      out += fallback(static_cast<unsigned char>(in[i]));
      bWellFormed = false;
      ++i;
    } else {
      out += static_cast<wchar_t>(cp);
      i += length;
    }
  }
  return bWellFormed;
}

// An undecodable byte of a file name, 80 to FF, is carried as U+DC80 to
// U+DCFF: lone low surrogates, which no decoded text can contain.
constexpr std::uint32_t c_uiEscapeBase = 0xDC00;

bool isEscapedByte(std::uint32_t c) { return c >= c_uiEscapeBase + 0x80 && c <= c_uiEscapeBase + 0xFF; }

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// The first UTF-16 code unit of a character: enough to order two
// characters that differ, since a surrogate pair's lead is D800..DBFF.
std::uint32_t firstUtf16Unit(wchar_t ch) {
  const auto c = static_cast<std::uint32_t>(ch);
  if (c < 0x10000) return c;
  return 0xD800 + ((c - 0x10000) >> 10);
}

std::uint32_t secondUtf16Unit(wchar_t ch) { return 0xDC00 + ((static_cast<std::uint32_t>(ch) - 0x10000) & 0x3FF); }

}  // namespace

CString::CString(const char* text) : CString(std::string_view(text ? text : "")) {}

CString::CString(std::string_view text) {
  decodeUtf8(text, m_s, [](unsigned char b) { return static_cast<wchar_t>(b); });
}

CString CString::FromUtf8(std::string_view text) {
  CString s;
  // Keep what can be kept: each ill-formed byte stands for itself.
  if (!decodeUtf8(text, s.m_s, [](unsigned char b) { return static_cast<wchar_t>(b); })) {
    s.m_s.clear();
    for (unsigned char b : text) s.m_s += static_cast<wchar_t>(b < 0x80 ? b : 0xFFFD);
  }
  return s;
}

CString PathFromSystem(std::string_view bytes) {
  std::wstring text;
  decodeUtf8(bytes, text, [](unsigned char b) { return static_cast<wchar_t>(c_uiEscapeBase + b); });
  return CString(std::move(text));
}

std::string PathToSystem(const CString& path) {
  std::string out;
  out.reserve(path.Str().size());
  for (wchar_t ch : path.Str()) {
    const auto cp = static_cast<char32_t>(ch);
    if (isEscapedByte(cp)) out += static_cast<char>(cp - c_uiEscapeBase);
    else appendUtf8(out, (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) ? 0xFFFD : cp);
  }
  return out;
}

CString CString::FromLatin1(std::string_view text) {
  std::wstring s(text.size(), L'\0');
  std::transform(text.begin(), text.end(), s.begin(),
                 [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
  return CString(std::move(s));
}

std::string CString::ToUtf8() const {
  std::string out;
  out.reserve(m_s.size());
  for (wchar_t ch : m_s) {
    const auto cp = static_cast<char32_t>(ch);
    appendUtf8(out, (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) ? 0xFFFD : cp);
  }
  return out;
}

std::string CString::ToLatin1() const {
  std::string out(m_s.size(), '?');
  for (std::size_t i = 0; i < m_s.size(); ++i)
    if (static_cast<std::uint32_t>(m_s[i]) <= 0xFF) out[i] = static_cast<char>(m_s[i]);
  return out;
}

CString CString::Left(int count) const {
  count = std::clamp(count, 0, GetLength());
  return CString(m_s.substr(0, static_cast<std::size_t>(count)));
}

CString CString::Right(int count) const {
  count = std::clamp(count, 0, GetLength());
  return CString(m_s.substr(m_s.size() - static_cast<std::size_t>(count)));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  first = std::clamp(first, 0, GetLength());
  count = std::clamp(count, 0, GetLength() - first);
  return CString(m_s.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

int CString::Find(wchar_t ch, int start) const {
  if (start < 0 || start > GetLength()) return -1;
  const auto pos = m_s.find(ch, static_cast<std::size_t>(start));
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const wchar_t* sub, int start) const {
  if (!sub || start < 0 || start > GetLength()) return -1;
  const auto pos = m_s.find(sub, static_cast<std::size_t>(start));
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(wchar_t ch) const {
  const auto pos = m_s.rfind(ch);
  return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::Replace(const wchar_t* oldText, const wchar_t* newText) {
  if (!oldText || !*oldText) return 0;
  const std::wstring from(oldText), to(newText ? newText : L"");
  int count = 0;
  std::wstring out;
  std::size_t pos = 0, hit;
  while ((hit = m_s.find(from, pos)) != std::wstring::npos) {
    out.append(m_s, pos, hit - pos).append(to);
    pos = hit + from.size();
    ++count;
  }
  if (count) m_s = out.append(m_s, pos, std::wstring::npos);
  return count;
}

int CString::Replace(wchar_t oldCh, wchar_t newCh) {
  int count = 0;
  for (auto& ch : m_s)
    if (ch == oldCh) {
      ch = newCh;
      ++count;
    }
  return count;
}

int CString::Remove(wchar_t ch) {
  const auto before = m_s.size();
  std::erase(m_s, ch);
  return static_cast<int>(before - m_s.size());
}

int CString::Insert(int index, const wchar_t* text) {
  index = std::clamp(index, 0, GetLength());
  m_s.insert(static_cast<std::size_t>(index), text ? text : L"");
  return GetLength();
}

int CString::Delete(int index, int count) {
  index = std::max(index, 0);  // a negative start deletes from the beginning
  if (index < GetLength() && count > 0) m_s.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
  return GetLength();
}

CString& CString::MakeLower() {
  for (auto& ch : m_s) ch = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(ch)));
  return *this;
}

CString& CString::MakeUpper() {
  for (auto& ch : m_s) ch = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(ch)));
  return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::TrimLeft() {
  const auto it = std::find_if_not(m_s.begin(), m_s.end(), isWhite);
  m_s.erase(m_s.begin(), it);
  return *this;
}

CString& CString::TrimRight() {
  while (!m_s.empty() && isWhite(m_s.back())) m_s.pop_back();
  return *this;
}

CString& CString::Trim(const wchar_t* chars) { return TrimRight(chars).TrimLeft(chars); }

CString& CString::TrimLeft(const wchar_t* chars) {
  std::size_t n = 0;
  while (n < m_s.size() && isSeparatorIn(m_s[n], chars)) ++n;
  m_s.erase(0, n);
  return *this;
}

CString& CString::TrimRight(const wchar_t* chars) {
  while (!m_s.empty() && isSeparatorIn(m_s.back(), chars)) m_s.pop_back();
  return *this;
}

int CString::CompareUtf16(std::wstring_view a, std::wstring_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i] == b[i]) continue;
    const auto ua = firstUtf16Unit(a[i]), ub = firstUtf16Unit(b[i]);
    if (ua != ub) return ua < ub ? -1 : 1;
    // Two supplementary characters with the same lead unit.
    return secondUtf16Unit(a[i]) < secondUtf16Unit(b[i]) ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

int CString::Compare(const wchar_t* other) const { return CompareUtf16(m_s, other ? other : L""); }

int CString::CompareNoCase(const wchar_t* other) const {
  CString a(*this), b(other);
  return a.MakeLower().Compare(b.MakeLower());
}

CString CString::Tokenize(const wchar_t* delimiters, int& start) const {
  if (start < 0) return CString();
  if (!delimiters || !*delimiters) {
    if (start < GetLength()) return Mid(start);
  } else if (start < GetLength()) {
    int from = start;
    while (from < GetLength() && isSeparatorIn(m_s[static_cast<std::size_t>(from)], delimiters)) ++from;
    if (from < GetLength()) {
      int until = from;
      while (until < GetLength() && !isSeparatorIn(m_s[static_cast<std::size_t>(until)], delimiters)) ++until;
      start = until + 1;
      return Mid(from, until - from);
    }
  }
  start = -1;
  return CString();
}

std::ostream& operator<<(std::ostream& stream, const CString& text) { return stream << text.ToUtf8(); }
