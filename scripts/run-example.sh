#!/usr/bin/env bash
# Set-up, build, and a run of the bundled example: the test library
# ZoShowcaseTests on the data tree examples/showcase/data, with heap
# tracking, and its HTML report in the build directory. Arguments are passed
# on to ZoTestSuiteCLI (for example --no-times).
#
# The example passes as a whole; one case leaks memory on purpose and shows
# as a warning. The script succeeds when the front end's exit status says
# that every executed case passed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/setup.sh"
build="${ZO_BUILD_DIR:-$root/build}"
case "$build" in /*) ;; *) build="$PWD/$build" ;; esac
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build "$build"

# From the source root, so that the command reads as the README shows it.
cd "$root"
# The HTML report of the run, with its style sheet and script beside it.
report="${build#"$root"/}/reports/showcase.html"
mkdir -p "$(dirname "$report")"
command=("${build#"$root"/}/bin/ZoTestSuiteCLI" -d examples/showcase/data --dll ZoShowcaseTests --track-heap
         "$@" --html "$report")
echo
echo "+ ${command[*]}"
echo
status=0
"${command[@]}" || status=$?

echo
echo "ZoTestSuiteCLI exited with status $status."
case "$report" in /*) ;; *) report="$root/$report" ;; esac
echo "HTML report: $report"
if [ "$status" -ne 0 ]; then
  echo "run-example: expected status 0 (every executed case passed; the leak is only a warning)." >&2
  exit 1
fi
