// The wide printf dialect of CString::Format: Windows specifiers (%s wide,
// %S narrow, %I64d …) read as that runtime reads them, rendered by {fmt}.
#include <fmt/printf.h>
#include <fmt/xchar.h>

#include "CString.h"
#include "XbException.h"

namespace {

using EKind = SFormatArg::EKind;

[[noreturn]] void formatError() { XB_THROW("CString::FormatV"); }

// One parsed conversion: flags, width, precision, length and type.
struct SSpec {
  std::wstring sFlags;
  int iWidth = -1;      // -1: none
  int iPrecision = -1;  // -1: none
  int iBits = 32;       // integer size the length modifier names
  bool bWideText = true;
  wchar_t cConversion = 0;

  // No flag, width or precision: the value as it is, which needs no
  // printf-style formatting at run time.
  bool IsPlain() const { return sFlags.empty() && iWidth < 0 && iPrecision < 0; }

  std::wstring Piece(wchar_t conversion) const {
    std::wstring p = L"%" + sFlags;
    if (iWidth >= 0) p += std::to_wstring(iWidth);
    if (iPrecision >= 0) p += L"." + std::to_wstring(iPrecision);
    return p + conversion;
  }
};

class CArgReader {
 public:
  explicit CArgReader(FormatArgs args) : m_args(args) {}
  const SFormatArg& Next() {
    if (m_next >= m_args.size()) formatError();
    return m_args[m_next++];
  }
  int NextInt() {
    const SFormatArg& a = Next();
    if (a.eKind != EKind::Signed && a.eKind != EKind::Unsigned) formatError();
    return static_cast<int>(a.u);
  }

 private:
  FormatArgs m_args;
  std::size_t m_next = 0;
};

const wchar_t* parseNumber(const wchar_t* p, int& value, CArgReader& reader, bool& fromArg) {
  fromArg = false;
  if (*p == L'*') {
    value = reader.NextInt();
    fromArg = true;
    return p + 1;
  }
  value = 0;
  while (*p >= L'0' && *p <= L'9') value = value * 10 + (*p++ - L'0');
  return p;
}

const wchar_t* parseLength(const wchar_t* p, SSpec& spec) {
  auto starts = [&](const wchar_t* s) { return std::wstring_view(p).starts_with(s); };
  if (starts(L"I64") || starts(L"I32")) {
    spec.iBits = p[1] == L'6' ? 64 : 32;
    return p + 3;
  }
  if (starts(L"ll")) {
    spec.iBits = 64;
    return p + 2;
  }
  if (starts(L"hh")) {
    spec.iBits = 8;
    spec.bWideText = false;
    return p + 2;
  }
  switch (*p) {
    case L'I':
    case L'z':
    case L'j':
    case L't': spec.iBits = 64; return p + 1;
    case L'h':
      spec.iBits = 16;
      spec.bWideText = false;
      return p + 1;
    case L'l':
    case L'w':
      spec.bWideText = true;
      spec.iBits = 32;
      return p + 1;
    case L'L': return p + 1;
    default: return p;
  }
}

// Parses after the '%'; returns the position behind the conversion.
const wchar_t* parseSpec(const wchar_t* p, SSpec& spec, CArgReader& reader) {
  while (*p && std::wstring_view(L"-+ #0").find(*p) != std::wstring_view::npos) spec.sFlags += *p++;
  bool fromArg;
  if (*p == L'*' || (*p >= L'0' && *p <= L'9')) {
    p = parseNumber(p, spec.iWidth, reader, fromArg);
    if (fromArg && spec.iWidth < 0) {
      spec.sFlags += L'-';
      spec.iWidth = -spec.iWidth;
    }
  }
  if (*p == L'.') {
    p = parseNumber(p + 1, spec.iPrecision, reader, fromArg);
    if (spec.iPrecision < 0) spec.iPrecision = -1;
  }
  const bool explicitLength = *p == L'h' || *p == L'l' || *p == L'w';
  p = parseLength(p, spec);
  if (!*p) formatError();
  spec.cConversion = *p;
  // %S and %C are the narrow text and character unless a length modifier says wide.
  if ((spec.cConversion == L'S' || spec.cConversion == L'C') && !explicitLength) spec.bWideText = false;
  if ((spec.cConversion == L's' || spec.cConversion == L'c') && !explicitLength) spec.bWideText = true;
  return p + 1;
}

bool hasFlag(const SSpec& spec, wchar_t flag) { return spec.sFlags.find(flag) != std::wstring::npos; }

// A zero value at precision 0 has no digits in C ({fmt} would print "0"):
// only the sign flag's character, or the "0" that '#' demands of octal.
std::wstring renderZeroWithoutDigits(const SSpec& spec, bool isSigned) {
  std::wstring body;
  if (spec.cConversion == L'o' && hasFlag(spec, L'#')) body = L"0";
  else if (isSigned && hasFlag(spec, L'+')) body = L"+";
  else if (isSigned && hasFlag(spec, L' ')) body = L" ";
  SSpec plain;
  plain.sFlags = hasFlag(spec, L'-') ? L"-" : L"";
  plain.iWidth = spec.iWidth;
  return fmt::sprintf(plain.Piece(L's'), body);
}

std::wstring renderSigned(const SSpec& spec, const SFormatArg& a) {
  if (a.eKind != EKind::Signed && a.eKind != EKind::Unsigned) formatError();
  std::int64_t value;
  switch (spec.iBits) {
    case 8: value = static_cast<signed char>(a.u); break;
    case 16: value = static_cast<std::int16_t>(a.u); break;
    case 64: value = static_cast<std::int64_t>(a.u); break;
    default: value = static_cast<std::int32_t>(a.u); break;
  }
  if (spec.iPrecision == 0 && value == 0) return renderZeroWithoutDigits(spec, true);
  if (spec.IsPlain()) return fmt::format(L"{}", value);
  return fmt::sprintf(spec.Piece(L'd'), value);
}

std::wstring renderUnsigned(const SSpec& spec, const SFormatArg& a) {
  if (a.eKind != EKind::Signed && a.eKind != EKind::Unsigned) formatError();
  std::uint64_t value;
  switch (spec.iBits) {
    case 8: value = static_cast<std::uint8_t>(a.u); break;
    case 16: value = static_cast<std::uint16_t>(a.u); break;
    case 64: value = a.u; break;
    default: value = static_cast<std::uint32_t>(a.u); break;
  }
  if (spec.iPrecision == 0 && value == 0) return renderZeroWithoutDigits(spec, false);
  // The sign flags belong to signed conversions; C ignores them here.
  SSpec unsignedSpec = spec;
  std::erase(unsignedSpec.sFlags, L'+');
  std::erase(unsignedSpec.sFlags, L' ');
  if (spec.cConversion == L'u' && unsignedSpec.IsPlain()) return fmt::format(L"{}", value);
  return fmt::sprintf(unsignedSpec.Piece(spec.cConversion), value);
}

std::wstring renderText(const SSpec& spec, const SFormatArg& a) {
  std::wstring text;
  if (a.eKind == EKind::Pointer && a.p == nullptr) {
    text = L"(null)";
  } else if (spec.bWideText && a.eKind == EKind::WideText) {
    text = a.ws ? std::wstring(a.ws, a.uiLength) : L"(null)";
  } else if (!spec.bWideText && a.eKind == EKind::NarrowText) {
    text = a.ns ? CString::FromUtf8(std::string_view(a.ns, a.uiLength)).Str() : L"(null)";
  } else {
    formatError();
  }
  if (spec.IsPlain()) return text;
  return fmt::sprintf(spec.Piece(L's'), text);
}

std::wstring renderChar(const SSpec& spec, const SFormatArg& a) {
  if (a.eKind != EKind::Signed && a.eKind != EKind::Unsigned) formatError();
  const auto ch =
      spec.bWideText ? static_cast<wchar_t>(a.u & 0xFFFFFFFF) : static_cast<wchar_t>(static_cast<unsigned char>(a.u));
  SSpec plain = spec;
  plain.iPrecision = -1;
  return fmt::sprintf(plain.Piece(L's'), std::wstring(1, ch));
}

std::wstring renderPointer(const SSpec& spec, const SFormatArg& a) {
  std::uint64_t value;
  if (a.eKind == EKind::Pointer) value = reinterpret_cast<std::uintptr_t>(a.p);
  else if (a.eKind == EKind::Signed || a.eKind == EKind::Unsigned) value = a.u;
  else formatError();
  SSpec plain;
  plain.sFlags = hasFlag(spec, L'-') ? L"-" : L"";
  plain.iWidth = spec.iWidth;
  return fmt::sprintf(plain.Piece(L's'), fmt::format(L"{:016X}", value));
}

std::wstring renderFloating(const SSpec& spec, const SFormatArg& a) {
  if (a.eKind != EKind::Floating) formatError();
  return fmt::sprintf(spec.Piece(spec.cConversion), a.d);
}

std::wstring render(const SSpec& spec, CArgReader& reader) {
  const SFormatArg& a = reader.Next();
  switch (spec.cConversion) {
    case L'd':
    case L'i': return renderSigned(spec, a);
    case L'u':
    case L'o':
    case L'x':
    case L'X': return renderUnsigned(spec, a);
    case L's':
    case L'S': return renderText(spec, a);
    case L'c':
    case L'C': return renderChar(spec, a);
    case L'p': return renderPointer(spec, a);
    case L'f':
    case L'F':
    case L'e':
    case L'E':
    case L'g':
    case L'G':
    case L'a':
    case L'A': return renderFloating(spec, a);
    default: formatError();
  }
}

}  // namespace

void CString::FormatV(const wchar_t* format, FormatArgs args) {
  std::wstring previous;
  previous.swap(m_s);
  try {
    AppendFormatV(format, args);
  } catch (...) {
    m_s.swap(previous);
    throw;
  }
}

void CString::AppendFormatV(const wchar_t* format, FormatArgs args) {
  if (!format) formatError();
  CArgReader reader(args);
  std::wstring out;
  for (const wchar_t* p = format; *p;) {
    if (*p != L'%') {
      out += *p++;
      continue;
    }
    if (p[1] == L'%') {
      out += L'%';
      p += 2;
      continue;
    }
    SSpec spec;
    p = parseSpec(p + 1, spec, reader);
    out += render(spec, reader);
  }
  m_s += out;
}
