#!/usr/bin/env bash
# What CI runs: set-up, the format check, the build and the whole test suite;
# then the same suite built with AddressSanitizer and UndefinedBehaviorSanitizer
# (scripts/sanitize.sh) and a short run of every fuzz target (scripts/fuzz.sh).
# Each stage prints how long it took.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

# stage NAME COMMAND...: runs the command and prints its time.
stage() {
  local name=$1 start=$SECONDS
  shift
  "$@"
  echo "test.sh: $name took $((SECONDS - start)) s"
}

build="${ZO_BUILD_DIR:-$root/build}"
stage setup bash "$root/scripts/setup.sh"
stage format bash "$root/scripts/check-format.sh"
# The benchmarks are built by bench/run.sh, in a tree of their own.
stage configure cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DZO_BUILD_BENCH=OFF
stage build cmake --build "$build"
stage tests ctest --test-dir "$build" --output-on-failure -j "$(nproc)" --timeout 300
stage sanitizers bash "$root/scripts/sanitize.sh"
stage fuzzing bash "$root/scripts/fuzz.sh" 30
echo "test.sh: all stages passed in $SECONDS s"
