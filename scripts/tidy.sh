#!/usr/bin/env bash
# Runs clang-tidy with the repository's .clang-tidy over the sources of the
# library and the front end, using the compile commands of a build
# directory ($ZO_BUILD_DIR, else build/). Takes several minutes on two
# cores, so it is not part of CI; exits non-zero when a check reports.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${ZO_BUILD_DIR:-$root/build}"
[ -f "$build/compile_commands.json" ] || { echo "tidy: configure $build first (scripts/test.sh does)"; exit 2; }
cd "$root"
mapfile -t files < <(git ls-files 'Testing/*.cpp')
run-clang-tidy -quiet -p "$build" "${files[@]}" 2>/dev/null | tee /tmp/zo-tidy.log | grep -E 'warning:|error:' && exit 1
echo "tidy: ${#files[@]} files clean"
