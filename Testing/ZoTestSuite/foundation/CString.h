// CString: the wide text type of the whole system, with the printf dialect
// of the wide Windows C runtime as its formatting language.
//
// The text is a std::wstring (UTF-32 on Linux). Comparisons order texts by
// their UTF-16 code units, so that lists sort as they did where the system
// was first built. Format and FormatV are type-safe: every argument carries
// its kind, and a specifier that does not fit its argument throws
// XbException.
#pragma once

#include <cstdint>
#include <cwchar>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

class CString;

// One captured argument of Format: its kind and value, nothing owned.
struct SFormatArg {
  enum class EKind { Signed, Unsigned, Floating, WideText, NarrowText, Pointer };
  EKind eKind = EKind::Signed;
  union {
    std::int64_t i;
    std::uint64_t u;
    double d;
    const wchar_t* ws;
    const char* ns;
    const void* p;
  };
  std::size_t uiLength = 0;  // texts only

  SFormatArg() : i(0) {}
  template <typename T>
  static SFormatArg Make(const T& value);
};

using FormatArgs = std::span<const SFormatArg>;

class CString {
 public:
  CString() = default;
  CString(const wchar_t* text) : m_s(text ? text : L"") {}
  CString(const wchar_t* text, int length) : m_s(text, static_cast<std::size_t>(length)) {}
  CString(std::wstring text) : m_s(std::move(text)) {}
  CString(std::wstring_view text) : m_s(text) {}
  CString(wchar_t ch, int repeat) : m_s(static_cast<std::size_t>(repeat < 0 ? 0 : repeat), ch) {}
  // Widens 8-bit text: valid UTF-8 is decoded, anything else is ISO-8859-1.
  explicit CString(const char* text);
  explicit CString(std::string_view text);

  static CString FromUtf8(std::string_view text);
  static CString FromLatin1(std::string_view text);
  std::string ToUtf8() const;
  // Each character up to U+00FF as its byte, any other as '?'.
  std::string ToLatin1() const;

  int GetLength() const { return static_cast<int>(m_s.size()); }
  bool IsEmpty() const { return m_s.empty(); }
  void Empty() { m_s.clear(); }
  const wchar_t* GetString() const { return m_s.c_str(); }
  operator const wchar_t*() const { return m_s.c_str(); }
  const std::wstring& Str() const { return m_s; }
  std::wstring& Str() { return m_s; }

  wchar_t GetAt(int index) const { return m_s.at(static_cast<std::size_t>(index)); }
  void SetAt(int index, wchar_t ch) { m_s.at(static_cast<std::size_t>(index)) = ch; }
  wchar_t operator[](int index) const { return GetAt(index); }

  CString Left(int count) const;
  CString Right(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  int Find(wchar_t ch, int start = 0) const;
  int Find(const wchar_t* sub, int start = 0) const;
  int ReverseFind(wchar_t ch) const;
  int Replace(const wchar_t* oldText, const wchar_t* newText);
  int Replace(wchar_t oldCh, wchar_t newCh);
  int Remove(wchar_t ch);
  int Insert(int index, const wchar_t* text);
  int Delete(int index, int count = 1);
  CString& MakeLower();
  CString& MakeUpper();
  CString& Trim();
  CString& TrimLeft();
  CString& TrimRight();
  CString& Trim(const wchar_t* chars);
  CString& TrimLeft(const wchar_t* chars);
  CString& TrimRight(const wchar_t* chars);

  // Compares by UTF-16 code units: <0, 0 or >0.
  int Compare(const wchar_t* other) const;
  int CompareNoCase(const wchar_t* other) const;
  static int CompareUtf16(std::wstring_view a, std::wstring_view b);

  // Next token after `start`, skipping leading delimiters. Sets `start`
  // behind the token's end (one beyond the text when the token runs to the
  // end); when no token is left, gives an empty text and sets `start` to -1.
  CString Tokenize(const wchar_t* delimiters, int& start) const;

  template <typename... Args>
  void Format(const wchar_t* format, const Args&... args) {
    const SFormatArg packed[] = {SFormatArg(), SFormatArg::Make(args)...};
    FormatV(format, FormatArgs(packed + 1, sizeof...(Args)));
  }
  template <typename... Args>
  void AppendFormat(const wchar_t* format, const Args&... args) {
    const SFormatArg packed[] = {SFormatArg(), SFormatArg::Make(args)...};
    AppendFormatV(format, FormatArgs(packed + 1, sizeof...(Args)));
  }
  void FormatV(const wchar_t* format, FormatArgs args);
  void AppendFormatV(const wchar_t* format, FormatArgs args);

  CString& operator+=(const CString& other) {
    m_s += other.m_s;
    return *this;
  }
  CString& operator+=(const wchar_t* other) {
    m_s += other ? other : L"";
    return *this;
  }
  CString& operator+=(wchar_t ch) {
    m_s += ch;
    return *this;
  }

  friend CString operator+(const CString& a, const CString& b) { return CString(a.m_s + b.m_s); }
  friend CString operator+(const CString& a, const wchar_t* b) { return CString(a.m_s + (b ? b : L"")); }
  friend CString operator+(const wchar_t* a, const CString& b) { return CString((a ? a : L"") + b.m_s); }
  friend CString operator+(const CString& a, wchar_t b) { return CString(a.m_s + b); }
  friend bool operator==(const CString& a, const CString& b) { return a.m_s == b.m_s; }
  friend bool operator==(const CString& a, const wchar_t* b) { return a.m_s == (b ? b : L""); }
  friend bool operator<(const CString& a, const CString& b) { return CompareUtf16(a.m_s, b.m_s) < 0; }

 private:
  std::wstring m_s;
};

// Writes the text as UTF-8 (for diagnostics and test output).
std::ostream& operator<<(std::ostream& stream, const CString& text);

// Formats into a new text; the free form of CString::Format.
template <typename... Args>
CString FormatString(const wchar_t* format, const Args&... args) {
  CString s;
  s.Format(format, args...);
  return s;
}

template <>
struct std::hash<CString> {
  std::size_t operator()(const CString& s) const noexcept { return std::hash<std::wstring>()(s.Str()); }
};

template <typename T>
SFormatArg SFormatArg::Make(const T& value) {
  using D = std::decay_t<T>;
  SFormatArg a;
  if constexpr (std::is_same_v<D, CString>) {
    a.eKind = EKind::WideText;
    a.ws = value.GetString();
    a.uiLength = value.Str().size();
  } else if constexpr (std::is_same_v<D, std::wstring> || std::is_same_v<D, std::wstring_view>) {
    a.eKind = EKind::WideText;
    a.ws = value.data();
    a.uiLength = value.size();
  } else if constexpr (std::is_same_v<D, std::string> || std::is_same_v<D, std::string_view>) {
    a.eKind = EKind::NarrowText;
    a.ns = value.data();
    a.uiLength = value.size();
  } else if constexpr (std::is_same_v<D, const wchar_t*> || std::is_same_v<D, wchar_t*>) {
    const wchar_t* text = value;  // an array decays here
    a.eKind = EKind::WideText;
    a.ws = text;
    a.uiLength = text ? std::wcslen(text) : 0;
  } else if constexpr (std::is_same_v<D, const char*> || std::is_same_v<D, char*>) {
    const char* text = value;
    a.eKind = EKind::NarrowText;
    a.ns = text;
    a.uiLength = text ? std::char_traits<char>::length(text) : 0;
  } else if constexpr (std::is_same_v<D, std::nullptr_t>) {
    a.eKind = EKind::Pointer;
    a.p = nullptr;
  } else if constexpr (std::is_pointer_v<D>) {
    a.eKind = EKind::Pointer;
    a.p = static_cast<const void*>(value);
  } else if constexpr (std::is_enum_v<D>) {
    return Make(static_cast<std::underlying_type_t<D>>(value));
  } else if constexpr (std::is_floating_point_v<D>) {
    a.eKind = EKind::Floating;
    a.d = static_cast<double>(value);
  } else if constexpr (std::is_integral_v<D> && std::is_signed_v<D>) {
    a.eKind = EKind::Signed;
    a.i = static_cast<std::int64_t>(value);
  } else if constexpr (std::is_integral_v<D>) {
    a.eKind = EKind::Unsigned;
    a.u = static_cast<std::uint64_t>(value);
  } else {
    static_assert(sizeof(D) == 0, "CString::Format: argument type has no format kind");
  }
  return a;
}
