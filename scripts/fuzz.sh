#!/usr/bin/env bash
# Builds the fuzz targets of fuzz/ with clang in their own tree and runs each
# for a while on its committed seeds; fails if any target finds a crash, a
# leak, undefined behaviour or a hang.
#
#   bash scripts/fuzz.sh                 # every target, 30 seconds each (CI)
#   bash scripts/fuzz.sh 3600 XmlReader  # one target for an hour
#
# New inputs that reach new code collect in build-fuzz/fuzz-corpus/TARGET;
# a crashing input is saved as build-fuzz/fuzz-crashes/TARGET/crash-*.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds="${1:-30}"
[ $# -gt 0 ] && shift
targets=(XmlReader ReportLoader SelectionStore ExtraInfo CommandLine)
[ $# -gt 0 ] && targets=("$@")
build="${ZO_FUZZ_BUILD_DIR:-$root/build-fuzz}"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DZO_FUZZ=ON \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -gline-tables-only -DNDEBUG" \
  -DZO_BUILD_TESTS=OFF -DZO_BUILD_BENCH=OFF -DZO_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" --target "${targets[@]/%/_fuzz}"

# The XML targets share one dictionary; the command line has its own.
dictionary() {
  case "$1" in
    CommandLine) echo "$root/fuzz/CommandLine.dict" ;;
    *) echo "$root/fuzz/Xml.dict" ;;
  esac
}

failed=()
for target in "${targets[@]}"; do
  corpus="$build/fuzz-corpus/$target"
  crashes="$build/fuzz-crashes/$target"
  mkdir -p "$corpus" "$crashes"
  echo "fuzz: $target for ${seconds}s"
  # -close_fd_mask=1: the readers print their warnings on standard output,
  # which would only slow the run down.
  if ! UBSAN_OPTIONS=print_stacktrace=1 "$build/bin/${target}_fuzz" -max_total_time="$seconds" -timeout=25 \
    -close_fd_mask=1 -print_final_stats=1 -dict="$(dictionary "$target")" -artifact_prefix="$crashes/" \
    "$corpus" "$root/fuzz/corpus/$target"; then
    failed+=("$target")
  fi
done
if [ "${#failed[@]}" -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]} (inputs in $build/fuzz-crashes/)" >&2
  exit 1
fi
echo "fuzz: ${#targets[@]} targets, ${seconds}s each, nothing found"
