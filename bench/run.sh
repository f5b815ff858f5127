#!/usr/bin/env bash
# Builds the benchmarks in a build directory of their own and runs every
# one of them. The directory is $ZO_BENCH_BUILD_DIR, else build-bench beside
# the sources; $ZO_BENCH_JOBS sets the build's parallelism (default 2).
set -euo pipefail

bench_dir="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
source_dir="$(dirname "$bench_dir")"
build_dir="${ZO_BENCH_BUILD_DIR:-$source_dir/build-bench}"

targets=()
for source in "$bench_dir"/*_bench.cpp; do
  [ -e "$source" ] || continue
  targets+=("$(basename "$source" .cpp)")
done
if [ ${#targets[@]} -eq 0 ]; then
  echo "no benchmarks in $bench_dir"
  exit 0
fi

# Installs the Debian package $1 unless the command $2 succeeds already;
# on failure it says that benchmark $3 leaves its comparison out.
install_anchor() {
  local package="$1" present="$2" benchmark="$3"
  bash -c "$present" >/dev/null 2>&1 && return 0
  local sudo_cmd=()
  [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "$package" >/dev/null 2>&1 ||
    { "${sudo_cmd[@]}" apt-get update >/dev/null 2>&1 &&
      "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "$package" >/dev/null 2>&1; } ||
    echo "$package could not be installed; $benchmark leaves that comparison out" >&2
}

# Comparisons that are installed here only: the duplicate detection
# benchmark compares itself with fdupes, the report benchmark with a small
# program that parses with expat, which the build makes only if expat's
# headers are there (hence before configuring), and the heap tracking
# benchmark with heaptrack.
install_anchor fdupes "command -v fdupes" duplicates_bench
install_anchor libexpat1-dev "test -e /usr/include/expat.h" report_bench
install_anchor heaptrack "command -v heaptrack" heap_tracking_bench

cmake -S "$source_dir" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DZO_BUILD_BENCH=ON -DZO_BUILD_TESTS=OFF -DZO_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build_dir" -j"${ZO_BENCH_JOBS:-2}" --target "${targets[@]}"

# Every benchmark prints the rows of the summary table as lines that begin
# with "TABLE|"; they are gathered and printed together at the end, with the
# load average, since the machine may be shared.
rows="$(mktemp)"
trap 'rm -f "$rows"' EXIT
status=0
for target in "${targets[@]}"; do
  echo
  echo "=== $target"
  # A wake-up across the two CPUs costs several times one on the same CPU,
  # and where the scheduler puts the processes changes from run to run: child
  # processes are measured as they fall and once more with everything on
  # CPU 0, where the comparison with the round trip is stable.
  label=""
  [ "$target" = external_execution_bench ] && label=unpinned
  ZO_BENCH_LABEL="$label" "$build_dir/bin/$target" | tee -a "$rows" || status=1
  if [ "$target" = external_execution_bench ]; then
    echo "=== $target, pinned to CPU 0"
    ZO_BENCH_LABEL=pinned taskset -c 0 "$build_dir/bin/$target" | tee -a "$rows" || status=1
  fi
done
echo
echo "=== Summary (load average at the end: $(cut -d' ' -f1-3 /proc/loadavg))"
{
  echo "figure|value|anchor|anchor value|ratio|target|result"
  grep '^TABLE|' "$rows" | cut -d'|' -f2-
} | column -t -s'|'
exit $status
