// HeapInterception: the skip for tests that need the heap tracker's
// interception of malloc, free and realloc, which a build whose sanitizer
// brings its own allocator leaves out.
//
// The front end started by an end-to-end test is the same build as the test,
// so the test's own process answers for it too.
#pragma once

#include <gtest/gtest.h>

#include "services/platform/HeapHooks.h"

// Ends the test as skipped, saying why, in a build without the interception.
#define HEAP_SKIP_WITHOUT_INTERCEPTION()                                             \
  if (!::TestSuite::HeapHooks::IsAvailable())                                        \
  GTEST_SKIP() << "this build's sanitizer replaces the allocator: malloc, free and " \
                  "realloc are not intercepted, so heap figures and leaks are not tracked"
