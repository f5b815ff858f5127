#!/usr/bin/env bash
# Set-up, the format check, build and the whole test suite: what CI runs.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/setup.sh"
bash "$root/scripts/check-format.sh"
build="${ZO_BUILD_DIR:-$root/build}"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure -j "$(nproc)" --timeout 300
