// CMarkupWriter: a thin writer of indented XML and HTML text onto an 8-bit
// text stream, with the one escaping routine that decides which characters
// may enter a report.
//
// The writer knows nothing of elements, nesting or well-formedness: it keeps
// an indent depth, writes tabs and the caller's texts as they stand, and
// buffers nothing of its own. Nothing is escaped unless the caller runs a
// text through Clean first.
#pragma once

#include <cstdint>

#include "foundation/CString.h"
#include "foundation/XbStream.h"

namespace TestSuite::Utils {

class CMarkupWriter {
 public:
  // Reports write to a ZoStreamWriteASCIIFile; any text stream of the
  // foundation layer serves. The stream is not owned and must outlive the
  // writer.
  explicit CMarkupWriter(XbStreamWriteASCIIT<CString>& stream) : m_stream(stream) {}
  CMarkupWriter(const CMarkupWriter&) = delete;
  CMarkupWriter& operator=(const CMarkupWriter&) = delete;

  // "Tabs" below is one tab character per level of the current depth. The
  // depth is unsigned and unchecked: closing more than was opened wraps it.
  void Indent();                             // tabs
  void Write(const CString& text);           // text only
  void WriteLine(const CString& text);       // tabs, text, "\n"
  void WriteOpen(const CString& text);       // tabs, text; then one level deeper
  void WriteLineOpen(const CString& text);   // tabs, text, "\n"; then one level deeper
  void WriteClose(const CString& text);      // one level up; then tabs, text
  void WriteLineClose(const CString& text);  // one level up; then tabs, text, "\n"

  // One whole element on one line: tabs, then "<name>value</name>\n", or
  // with attributes "<name attributes>value</name>\n". The attribute text
  // goes in as it stands (for example class="x"); nothing is escaped.
  void WriteElement(const CString& name, const CString& value);
  void WriteElement(const CString& name, const CString& attributes, const CString& value);
  void WriteElement(const CString& name, const CString& attributes, int value);  // "%d"
  // "%d" as well, through the int overload: a value above 0x7FFFFFFF comes
  // out negative. Readers of existing reports rely on that.
  void WriteElement(const CString& name, const CString& attributes, unsigned int value);
  void WriteElement(const CString& name, const CString& attributes, double value);  // "%f"
  void WriteElement(const CString& name, int value);                                // "%d"
  void WriteElement(const CString& name, unsigned int value);                       // "%u"
  void WriteElement(const CString& name, float value);                              // "%f"
  void WriteElement(const CString& name, double value);                             // "%f"
  void WriteElement(const CString& name, std::int64_t value);                       // "%I64i"
  void WriteElement(const CString& name, std::uint64_t value);                      // "%I64u"

  unsigned int GetDepth() const { return m_uiDepth; }

  // True for the UTF-16 code units that may appear in a report: tab, line
  // feed, carriage return, 0x20-0x7E, 0x85, 0xA0-0xD7FF and 0xE000-0xFFFC.
  // Any wider value is no code unit and is refused too.
  static bool IsAllowedCharacter(wchar_t c);
  // A copy of `text` fit for a report: refused characters are dropped
  // without a trace (a character beyond U+FFFF, which UTF-16 holds as a
  // surrogate pair, goes whole); the five XML specials and the German
  // letters Ä Ö Ü ß ä ö ü become entities; an undecodable byte of a file
  // name (U+DC80 to U+DCFF, see SystemPath.h) becomes '?', as the 8-bit
  // report shows every character it cannot hold; all else is copied. Knows
  // no earlier escaping: "&amp;" becomes "&amp;amp;".
  static CString Clean(const CString& text);

 private:
  void tabs();
  void writeIndented(const CString& text, bool lineEnd);

  XbStreamWriteASCIIT<CString>& m_stream;
  unsigned int m_uiDepth = 0;
};

}  // namespace TestSuite::Utils
