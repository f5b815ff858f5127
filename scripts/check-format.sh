#!/usr/bin/env bash
# Checks that every C++ file of the repository is formatted as .clang-format
# says; lists the files that are not and exits non-zero. With --fix it
# formats them instead.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
mapfile -t files < <(git ls-files '*.cpp' '*.h')
if [ "${1:-}" = "--fix" ]; then
  clang-format -i "${files[@]}"
  exit 0
fi
bad=()
for f in "${files[@]}"; do
  clang-format --dry-run -Werror "$f" >/dev/null 2>&1 || bad+=("$f")
done
if [ "${#bad[@]}" -gt 0 ]; then
  echo "check-format: not formatted (run bash scripts/check-format.sh --fix):"
  printf '  %s\n' "${bad[@]}"
  exit 1
fi
echo "check-format: ${#files[@]} files formatted"
