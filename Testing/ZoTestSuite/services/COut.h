// COut: one printed message, the only way in which the system prints. The
// message is formatted when it is made and goes out to every sink when it
// is destroyed.
//
// A statement that prints is one expression:
//   COut::Write(L"%d Fälle\n", n).Color(ZoColorRGBA::c_GREEN);
// The temporary goes out at the end of the full expression. Nothing is
// ever added to the text: line ends belong in the format.
//
// Sinks, in this order, under one process-wide re-entrant lock held across
// all of them (so sinks see messages whole and in one order, and a sink may
// itself print):
//   - the console: the text as UTF-8 bytes on standard output, flushed per
//     message; decorations are not shown;
//   - custom sinks registered with AddCustomOut, in order of registration;
//     they see the whole object, decorations included;
//   - the log file: a std::wofstream in the process's global locale, flushed
//     per message; decorations are not shown.
// Console and log take the text up to its first NUL character.
//
// The log file follows rules that callers rely on, odd as they look:
//   - SetLogFileOut only stores the path. The file is opened (truncated) by
//     the first message after the path became non-empty.
//   - Setting another non-empty path while the file is open changes
//     nothing: output stays on the first file until an empty path has been
//     set and a message written, which closes it.
//   - A file that cannot be opened or written (a full disk), or a character
//     that the locale cannot narrow, leaves the stream failed: the line
//     "Fehler: Log-Datei %s konnte nicht geschrieben werden.\n" goes once to
//     console and custom sinks, later log output is lost for the life of
//     that stream, and console and custom sinks go on.
#pragma once

#include <utility>

#include "foundation/CString.h"
#include "foundation/ZoColorRGBA.h"

namespace TestSuite {

class COut {
 public:
  // A sink supplied by the host. Output runs with the channel lock held: it
  // must not wait for another thread that prints. COut does not own sinks;
  // a sink must outlive every later message.
  class ZoCustomOut {
   public:
    virtual void Output(const COut& out) = 0;
    virtual ~ZoCustomOut() = default;
  };

  // Formats with the rules of CString::Format. The format is always a
  // format: a literal '%' must be written "%%". A format that does not fit
  // its arguments throws XbException, and nothing is printed.
  template <typename... Args>
  static COut Write(const wchar_t* format, const Args&... args) {
    const SFormatArg packed[] = {SFormatArg(), SFormatArg::Make(args)...};
    CString text;
    text.FormatV(format, FormatArgs(packed + 1, sizeof...(Args)));
    return COut(std::move(text));
  }

  COut& Bold() {
    m_bBold = true;
    return *this;
  }
  COut& Underlined() {
    m_bUnderlined = true;
    return *this;
  }
  COut& Color(ZoColorRGBA color) {
    m_color = color;
    m_bHasColor = true;
    return *this;
  }

  const CString& GetText() const { return m_sText; }
  // Meaningful only if HasColor.
  ZoColorRGBA GetColor() const { return m_color; }
  bool HasColor() const { return m_bHasColor; }
  bool IsBold() const { return m_bBold; }
  bool IsUnderlined() const { return m_bUnderlined; }

  // A copy is a message of its own: it prints again when it is destroyed,
  // with the decorations it has then.
  COut(const COut& other) = default;
  COut& operator=(const COut& other) = default;

  // Sends the message to all sinks. An exception of a sink or a stream
  // passes out of here on purpose (the lock is released on the way): the
  // host decides what a failing sink means, and a message that silently
  // vanished would be worse. This is the one destructor of the system that
  // may throw; destroying a COut during unwinding with a throwing sink
  // ends the process, as the language has it.
  ~COut() noexcept(false);

  static void AddCustomOut(ZoCustomOut* sink);
  // The console gets whole lines at once and holds a line's beginning back
  // until the line ends or Flush is called: one write per line, not one
  // per message.
  static void SetConsoleOut(bool enabled);
  // Sends what the console holds back, e.g. the head of a case before the
  // case runs, so that a case that hangs or crashes shows which it is.
  static void Flush();
  static void SetLogFileOut(const CString& path);

 private:
  COut() = default;
  explicit COut(CString text) : m_sText(std::move(text)) {}

  void writeOut() const;

  CString m_sText;
  bool m_bBold = false;
  bool m_bUnderlined = false;
  bool m_bHasColor = false;
  ZoColorRGBA m_color;
};

}  // namespace TestSuite
