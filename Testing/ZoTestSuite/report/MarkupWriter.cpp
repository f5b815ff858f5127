// CMarkupWriter: indentation, element lines and the escaping of report text.
#include "report/MarkupWriter.h"

namespace TestSuite::Utils {

// Every line goes to the stream in one write: large reports are written
// row by row, and a write per tab costs more than the text itself.
void CMarkupWriter::tabs() { m_stream << CString(std::wstring(m_uiDepth, L'\t')); }

void CMarkupWriter::writeIndented(const CString& text, bool lineEnd) {
  std::wstring line;
  line.reserve(m_uiDepth + text.Str().size() + 1);
  line.append(m_uiDepth, L'\t');
  line += text.Str();
  if (lineEnd) line += L'\n';
  m_stream << CString(std::move(line));
}

void CMarkupWriter::Indent() { tabs(); }

void CMarkupWriter::Write(const CString& text) { m_stream << text; }

void CMarkupWriter::WriteLine(const CString& text) { writeIndented(text, true); }

void CMarkupWriter::WriteOpen(const CString& text) {
  writeIndented(text, false);
  ++m_uiDepth;
}

void CMarkupWriter::WriteLineOpen(const CString& text) {
  writeIndented(text, true);
  ++m_uiDepth;
}

void CMarkupWriter::WriteClose(const CString& text) {
  --m_uiDepth;
  writeIndented(text, false);
}

void CMarkupWriter::WriteLineClose(const CString& text) {
  --m_uiDepth;
  writeIndented(text, true);
}

void CMarkupWriter::WriteElement(const CString& name, const CString& value) {
  std::wstring line;
  line.reserve(m_uiDepth + 2 * name.Str().size() + value.Str().size() + 6);
  line.append(m_uiDepth, L'\t');
  line.append(L"<").append(name.Str()).append(L">").append(value.Str());
  line.append(L"</").append(name.Str()).append(L">\n");
  m_stream << CString(std::move(line));
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
    if (c >= 0xDC80 && c <= 0xDCFF) {
      result += L'?';
      continue;
    }
    if (!IsAllowedCharacter(c)) continue;
    if (const wchar_t* entity = entityOf(c)) result += entity;
    else result += c;
  }
  return CString(std::move(result));
}

}  // namespace TestSuite::Utils
