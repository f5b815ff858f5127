// CMarkupWriter: indentation, element lines and the escaping of report text.
#include "report/MarkupWriter.h"

namespace TestSuite::Utils {

void CMarkupWriter::tabs() {
  for (unsigned int i = 0; i < m_uiDepth; ++i) m_stream << L'\t';
}

void CMarkupWriter::Indent() { tabs(); }

void CMarkupWriter::Write(const CString& text) { m_stream << text; }

void CMarkupWriter::WriteLine(const CString& text) {
  tabs();
  m_stream << text << L'\n';
}

void CMarkupWriter::WriteOpen(const CString& text) {
  tabs();
  m_stream << text;
  ++m_uiDepth;
}

void CMarkupWriter::WriteLineOpen(const CString& text) {
  tabs();
  m_stream << text << L'\n';
  ++m_uiDepth;
}

void CMarkupWriter::WriteClose(const CString& text) {
  --m_uiDepth;
  tabs();
  m_stream << text;
}

void CMarkupWriter::WriteLineClose(const CString& text) {
  --m_uiDepth;
  tabs();
  m_stream << text << L'\n';
}

void CMarkupWriter::WriteElement(const CString& name, const CString& value) {
  tabs();
  m_stream << FormatString(L"<%s>%s</%s>\n", name, value, name);
}

void CMarkupWriter::WriteElement(const CString& name, const CString& attributes, const CString& value) {
  tabs();
  m_stream << FormatString(L"<%s %s>%s</%s>\n", name, attributes, value, name);
}

void CMarkupWriter::WriteElement(const CString& name, const CString& attributes, int value) {
  WriteElement(name, attributes, FormatString(L"%d", value));
}

void CMarkupWriter::WriteElement(const CString& name, const CString& attributes, unsigned int value) {
  WriteElement(name, attributes, static_cast<int>(value));
}

void CMarkupWriter::WriteElement(const CString& name, const CString& attributes, double value) {
  WriteElement(name, attributes, FormatString(L"%f", value));
}

void CMarkupWriter::WriteElement(const CString& name, int value) { WriteElement(name, FormatString(L"%d", value)); }

void CMarkupWriter::WriteElement(const CString& name, unsigned int value) {
  WriteElement(name, FormatString(L"%u", value));
}

void CMarkupWriter::WriteElement(const CString& name, float value) {
  WriteElement(name, FormatString(L"%f", static_cast<double>(value)));
}

void CMarkupWriter::WriteElement(const CString& name, double value) { WriteElement(name, FormatString(L"%f", value)); }

void CMarkupWriter::WriteElement(const CString& name, std::int64_t value) {
  WriteElement(name, FormatString(L"%I64i", value));
}

void CMarkupWriter::WriteElement(const CString& name, std::uint64_t value) {
  WriteElement(name, FormatString(L"%I64u", value));
}

bool CMarkupWriter::IsAllowedCharacter(wchar_t c) {
  const auto u = static_cast<std::uint32_t>(c);
  return u == 0x09 || u == 0x0A || u == 0x0D || (u >= 0x20 && u <= 0x7E) || u == 0x85 || (u >= 0xA0 && u <= 0xD7FF) ||
         (u >= 0xE000 && u <= 0xFFFC);
}

namespace {

// The replacement of a character that must not stand as it is, or null.
const wchar_t* entityOf(wchar_t c) {
  switch (static_cast<std::uint32_t>(c)) {
    case 34: return L"&quot;";
    case 38: return L"&amp;";
    case 39: return L"&apos;";
    case 60: return L"&lt;";
    case 62: return L"&gt;";
    case 196: return L"&#196;";
    case 214: return L"&#214;";
    case 220: return L"&#220;";
    case 223: return L"&#223;";
    case 228: return L"&#228;";
    case 246: return L"&#246;";
    case 252: return L"&#252;";
    default: return nullptr;
  }
}

}  // namespace

CString CMarkupWriter::Clean(const CString& text) {
  std::wstring result;
  result.reserve(text.Str().size());
  for (const wchar_t c : text.Str()) {
    if (!IsAllowedCharacter(c)) continue;
    if (const wchar_t* entity = entityOf(c)) result += entity;
    else result += c;
  }
  return CString(std::move(result));
}

}  // namespace TestSuite::Utils
