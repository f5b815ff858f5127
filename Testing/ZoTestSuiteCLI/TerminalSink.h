// TerminalSink: the console output on a terminal. Shows bold, underline and
// colours with ANSI sequences, and keeps a live status line (cases done of
// total, failures, elapsed time, an estimate of the time left) below the
// output while a run goes on.
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

#include "run/RunClock.h"
#include "services/COut.h"

namespace TestSuite::CLI {

class CTerminalSink : public COut::ZoCustomOut {
 public:
  // The elapsed time and the estimate are taken on `clock`.
  explicit CTerminalSink(std::FILE* stream, IRunClock& clock = SystemRunClock()) : m_stream(stream), m_clock(clock) {}

  void Output(const COut& out) override;

  // Starts the status line for a run of `total` rows.
  void BeginRun(unsigned int total);
  // Counts one finished row and redraws the status line.
  void CaseFinished(bool failed);
  // Removes the status line for good.
  void EndRun();

  // The ANSI text of one message (exposed for tests).
  static std::string Decorate(const COut& out);
  // The status line text (exposed for tests).
  static std::string StatusText(unsigned int done, unsigned int total, unsigned int failed, double elapsedSeconds);

 private:
  void clearStatus();
  void drawStatus();

  std::FILE* m_stream;
  IRunClock& m_clock;
  std::mutex m_mutex;
  bool m_bActive = false;
  bool m_bStatusShown = false;
  bool m_bAtLineStart = true;
  unsigned int m_uiTotal = 0, m_uiDone = 0, m_uiFailed = 0;
  std::int64_t m_iStart = 0;
};

}  // namespace TestSuite::CLI
