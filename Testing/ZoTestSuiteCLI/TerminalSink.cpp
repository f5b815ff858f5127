// CTerminalSink: coloured output and the live status line on a terminal.
#include "TerminalSink.h"

#include <fmt/format.h>

#include <cmath>

namespace TestSuite::CLI {

namespace {

// The terminal's own palette where a system colour has a plain counterpart;
// 24-bit colour otherwise.
std::string colorSequence(ZoColorRGBA color) {
  if (color == ZoColorRGBA::c_RED) return "\x1b[31m";
  if (color == ZoColorRGBA::c_GREEN) return "\x1b[32m";
  if (color == ZoColorRGBA::c_GOLDENROD) return "\x1b[33m";
  if (color == ZoColorRGBA::c_GRAY) return "\x1b[90m";
  if (color == ZoColorRGBA::c_BLUE) return "\x1b[94m";
  if (color == ZoColorRGBA::c_DARKBLUE) return "\x1b[34m";
  return fmt::format("\x1b[38;2;{};{};{}m", color.R(), color.G(), color.B());
}

std::string formatDuration(double seconds) {
  const long long total = std::llround(seconds);
  if (total >= 3600) return fmt::format("{}:{:02}:{:02}", total / 3600, total / 60 % 60, total % 60);
  return fmt::format("{}:{:02}", total / 60, total % 60);
}

}  // namespace

std::string CTerminalSink::Decorate(const COut& out) {
  std::string prefix;
  if (out.IsBold()) prefix += "\x1b[1m";
  if (out.IsUnderlined()) prefix += "\x1b[4m";
  if (out.HasColor()) prefix += colorSequence(out.GetColor());
  std::string text = out.GetText().ToUtf8();
  if (prefix.empty()) return text;
  // Decorations end before a line end, so that the status line and the next
  // line start plain.
  const bool endsInNewline = !text.empty() && text.back() == '\n';
  return prefix + text.substr(0, text.size() - (endsInNewline ? 1 : 0)) + "\x1b[0m" + (endsInNewline ? "\n" : "");
}

std::string CTerminalSink::StatusText(unsigned int done, unsigned int total, unsigned int failed,
                                      double elapsedSeconds) {
  std::string text = fmt::format("[{}/{}] Fehler: {}  Zeit: {}", done, total, failed, formatDuration(elapsedSeconds));
  if (done > 0 && done < total) {
    const double left = elapsedSeconds / done * (total - done);
    text += fmt::format("  Rest: ~{}", formatDuration(left));
  }
  return text;
}

void CTerminalSink::Output(const COut& out) {
  std::lock_guard<std::mutex> lock(m_mutex);
  clearStatus();
  const std::string text = Decorate(out);
  std::fwrite(text.data(), 1, text.size(), m_stream);
  if (!text.empty()) m_bAtLineStart = text.back() == '\n';
  drawStatus();
  std::fflush(m_stream);
}

void CTerminalSink::BeginRun(unsigned int total) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_bActive = true;
  m_uiTotal = total;
  m_uiDone = m_uiFailed = 0;
  m_iStart = m_clock.Now();
}

void CTerminalSink::CaseFinished(bool failed) {
  std::lock_guard<std::mutex> lock(m_mutex);
  ++m_uiDone;
  if (failed) ++m_uiFailed;
  clearStatus();
  drawStatus();
  std::fflush(m_stream);
}

void CTerminalSink::EndRun() {
  std::lock_guard<std::mutex> lock(m_mutex);
  clearStatus();
  m_bActive = false;
  std::fflush(m_stream);
}

void CTerminalSink::clearStatus() {
  if (!m_bStatusShown) return;
  std::fputs("\r\x1b[K", m_stream);
  m_bStatusShown = false;
}

// Drawn only at the start of a line: a case's head stays visible while the
// case runs.
void CTerminalSink::drawStatus() {
  if (!m_bActive || !m_bAtLineStart) return;
  const std::string text = StatusText(m_uiDone, m_uiTotal, m_uiFailed, m_clock.SecondsSince(m_iStart));
  std::fprintf(m_stream, "\x1b[7m%s\x1b[0m", text.c_str());
  m_bStatusShown = true;
}

}  // namespace TestSuite::CLI
