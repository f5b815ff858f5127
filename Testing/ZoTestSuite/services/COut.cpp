// COut's process-wide channel: the lock, the console flag, the custom sinks
// and the log file, and the way a message passes through them.
#include "services/COut.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include "foundation/SystemPath.h"
#include "foundation/XbArray.h"
#include "foundation/XbCriticalSection.h"

namespace TestSuite {

namespace {

struct SChannel {
  XbCriticalSection lock;
  bool bConsole = true;
  CString sLogPath;
  std::unique_ptr<std::wofstream> pLog;
  bool bLogFailed = false;            // said once; the log is then left alone
  XbArray<COut::ZoCustomOut*> sinks;  // not owned
};

// Made on first use, so that a message printed while other statics are
// still being made finds it ready.
SChannel& channel() {
  static SChannel s_channel;
  return s_channel;
}

// The bytes go out as UTF-8 as they are; no console code page is set or
// restored here. A line's beginning stays in the stream's buffer until the
// line is complete or COut::Flush sends it.
void writeConsole(const wchar_t* text) {
  const std::string bytes = CString(text).ToUtf8();
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
  if (!bytes.empty() && bytes.back() == '\n') std::fflush(stdout);
}

// The log shows what the console shows: an escaped byte of a file name (a
// lone surrogate, which no locale can narrow) as U+FFFD.
std::wstring forLog(const wchar_t* text) {
  std::wstring line(text);
  for (wchar_t& ch : line)
    if (ch >= 0xD800 && ch <= 0xDFFF) ch = 0xFFFD;
  return line;
}

void writeLog(SChannel& ch, const wchar_t* text) {
  if (!ch.sLogPath.IsEmpty()) {
    if (ch.bLogFailed) return;
    // Opened once per non-empty stretch of the path.
    if (!ch.pLog)
      ch.pLog = std::make_unique<std::wofstream>(PathToSystem(ch.sLogPath), std::ios::out | std::ios::trunc);
    if (ch.pLog->is_open()) {
      *ch.pLog << forLog(text);
      ch.pLog->flush();
    }
    if (ch.pLog->is_open() && ch.pLog->good()) return;
    // A log that cannot be opened or written (a full disk) is said once on
    // the other outputs; this line itself no longer reaches the log.
    ch.bLogFailed = true;
    COut::Write(L"Fehler: Log-Datei %s konnte nicht geschrieben werden.\n", ch.sLogPath).Color(ZoColorRGBA::c_RED);
  } else if (ch.pLog) {
    ch.pLog.reset();
    ch.bLogFailed = false;
  }
}

}  // namespace

COut::~COut() noexcept(false) { writeOut(); }

void COut::writeOut() const {
  SChannel& ch = channel();
  XbScopedLock guard(ch.lock);
  if (ch.bConsole) writeConsole(m_sText.GetString());
  // A sink may register another sink: the count is read at every step.
  for (unsigned int i = 0; i < ch.sinks.GetCount(); ++i) ch.sinks[i]->Output(*this);
  writeLog(ch, m_sText.GetString());
}

void COut::AddCustomOut(ZoCustomOut* sink) {
  SChannel& ch = channel();
  XbScopedLock guard(ch.lock);
  ch.sinks.Add(sink);
}

void COut::SetConsoleOut(bool enabled) {
  SChannel& ch = channel();
  XbScopedLock guard(ch.lock);
  if (ch.bConsole && !enabled) std::fflush(stdout);
  ch.bConsole = enabled;
}

void COut::Flush() {
  SChannel& ch = channel();
  XbScopedLock guard(ch.lock);
  if (ch.bConsole) std::fflush(stdout);
}

void COut::SetLogFileOut(const CString& path) {
  SChannel& ch = channel();
  XbScopedLock guard(ch.lock);
  ch.sLogPath = path;
}

}  // namespace TestSuite
