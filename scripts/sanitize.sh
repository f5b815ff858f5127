#!/usr/bin/env bash
# Builds the project with AddressSanitizer and UndefinedBehaviorSanitizer in
# its own tree (build-asan/) and runs the whole test suite there.
#
# The sanitizer brings its own allocator, so the heap tracker's interception
# is left out of this build and the tests that need it skip, saying so. The
# test libraries leak on purpose for the leak checks of the runner: those
# leaks are suppressed by name (tests/libs/lsan.supp); any other leak fails
# the test whose process it is in, child processes of the front end included,
# which inherit these settings.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${ZO_ASAN_BUILD_DIR:-$root/build-asan}"
# clang, since GCC takes about twice as long to compile with both
# sanitizers as for the release build, and this build must fit into CI
# beside it. -O1 keeps the instrumented code fast enough for the suite's
# time limits; -g1 gives the reports their source lines.
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DZO_SANITIZER=address,undefined -DZO_BUILD_BENCH=OFF \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG" >/dev/null
cmake --build "$build"
# Every report goes to a file of its own in $reports, whichever process
# makes it: a child process of the front end whose report the test never
# reads still fails the run below. The deliberate crashes of the test
# libraries (a null pointer written through, a stack overflow) stay the
# signals that the runner expects, so the sanitizer leaves SIGSEGV alone;
# its instrumentation still finds every bad access to memory.
reports="$build/sanitizer-reports"
rm -rf "$reports"
mkdir -p "$reports"
export ASAN_OPTIONS="detect_leaks=1:handle_segv=0:handle_sigbus=0:handle_sigfpe=0:log_path=$reports/asan"
export LSAN_OPTIONS="suppressions=$root/tests/libs/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1:log_path=$reports/ubsan"
status=0
ctest --test-dir "$build" --output-on-failure -j 2 --timeout 300 "$@" || status=$?
if [ -n "$(ls -A "$reports")" ]; then
  echo "sanitize: reports of the sanitizers:" >&2
  for f in "$reports"/*; do
    echo "== $f" >&2
    cat "$f" >&2
  done
  status=1
fi
exit "$status"
