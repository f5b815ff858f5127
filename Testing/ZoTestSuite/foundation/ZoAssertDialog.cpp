// ZoAssertDialog: the process-wide switch of the assertion macro and what a failed assertion does.
#include "ZoAssertDialog.h"

#include <atomic>
#include <cstdio>

#include "platform/System.h"

namespace {

std::atomic<bool> s_bEnabled{true};

}  // namespace

void ZoAssertDialog::Enable(bool enable) { s_bEnabled.store(enable); }

bool ZoAssertDialog::IsEnabled() { return s_bEnabled.load(); }

void ZoAssertDialog::Fail(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition ? condition : "", file ? file : "", line);
  std::fflush(stderr);
  if (IsEnabled()) ZoPlatform::System::RaiseTrap();
}
