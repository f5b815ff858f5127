// ZoAssertDialog: the process-wide switch of the foundation's assertion
// macro ZO_ASSERT, which decides whether a failed assertion stops the
// process.
//
// Enabled (the state at start), a failed assertion prints its condition,
// file and line to standard error and raises SIGTRAP: a debugger stops
// there, and without one the process ends. Disabled, it prints the same
// line and goes on, so that an unattended run is not held up.
#pragma once

class ZoAssertDialog {
 public:
  static void Enable(bool enable = true);
  static void Disable() { Enable(false); }
  static bool IsEnabled();

  // What ZO_ASSERT does when its condition is false.
  static void Fail(const char* condition, const char* file, int line);
};

// Checks `cond` in every build; see ZoAssertDialog for what a failure does.
#define ZO_ASSERT(cond)                                           \
  do {                                                            \
    if (!(cond)) ZoAssertDialog::Fail(#cond, __FILE__, __LINE__); \
  } while (false)
