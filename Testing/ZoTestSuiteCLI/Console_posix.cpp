// The console of the front end: terminal facts and the handling of Ctrl-C and the other stop signals.
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>

#include "Console.h"
#include "foundation/platform/AbnormalEnd.h"

namespace TestSuite::CLI {

namespace {

std::atomic<int> g_interrupts{0};

// A second signal ends the process at once; its children and the names it
// made in /dev/shm must not outlive it for that.
void onInterrupt(int) {
  if (g_interrupts.fetch_add(1) >= 1) {
    ZoPlatform::AbnormalEnd::KillChildrenAndRemoveFiles();
    _exit(130);
  }
  static const char message[] = "\nAbbruch angefordert (noch einmal Ctrl-C beendet sofort).\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message, sizeof message - 1);
}

}  // namespace

bool IsStandardOutputTerminal() { return isatty(STDOUT_FILENO) == 1; }

int GetTerminalWidth() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return 80;
}

void InstallInterruptHandler() {
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  // A terminal that closes and a service manager that stops the run ask
  // for the same as Ctrl-C: cancel, then write the summary and the reports.
  for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) sigaction(signalNumber, &action, nullptr);
  // A console that goes away (a pipe into `head`) is not the run's concern:
  // writes to it fail quietly and the reports are still written.
  signal(SIGPIPE, SIG_IGN);
}

bool IsInterrupted() { return g_interrupts.load(std::memory_order_relaxed) > 0; }

}  // namespace TestSuite::CLI
