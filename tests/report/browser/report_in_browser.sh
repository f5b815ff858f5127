#!/usr/bin/env bash
# Runs the bundled example through the front end with an HTML report and
# loads the page in headless chromium: the browser must build the page's
# tables without a script error, the bundled sorting script must make the
# case table sortable and sort it on a click once the table carries the
# class "sortable" (the plain report's tables don't), and a screenshot of the
# page is kept as a build artefact.
# Arguments: source directory, binary directory, artefact directory.
# Exit code 77: skipped, no chromium.
set -euo pipefail

source_dir=$1
bin_dir=$2
artifacts=$3

source "$(dirname "${BASH_SOURCE[0]}")/browser_common.sh" zo-browser

# Prints the DOM of a page after its scripts ran, without the line ends and
# tabs of the page's layout; the browser's own log goes to $work/<name>.log.
dump_dom() {
  local name=$1 page=$2
  run_headless "$name" --enable-logging=stderr --v=0 --dump-dom "file://$page" 2>"$work/$name.log" | tr -d '\n\t'
  [ "${PIPESTATUS[0]}" -eq 0 ]
}

# A page whose script failed shows it as an uncaught error in the log.
expect_no_script_error() {
  if grep -E "Uncaught|SyntaxError|ReferenceError|TypeError" "$work/$1.log"; then
    fail "script error on the page ($1)"
  fi
}

cp -r "$source_dir/examples/showcase/data" "$work/data"
mkdir "$work/out"
page="$work/out/report.html"
"$bin_dir/ZoTestSuiteCLI" -d "$work/data" --dll ZoShowcaseTests --track-heap --show-warnings \
  --html "$page" >"$work/run.log" 2>&1 || true
[ -s "$page" ] || { cat "$work/run.log"; fail "the front end wrote no page"; }
[ -s "$work/out/ZoTestSuite.js" ] || fail "no script beside the page"

# The page as the browser built it.
dump_dom plain "$page" >"$work/plain.dom" || fail "chromium did not load the page"
expect_no_script_error plain
for table in build setup result testcases; do
  expect_in "$work/plain.dom" "<table id=\"$table\"><tbody>"
done
expect_in "$work/plain.dom" "<h1>ZoTestSuite Report</h1>"
written_rows=$(grep -c '<tr class=' "$page")
shown_rows=$(grep -o '<tr class=' "$work/plain.dom" | wc -l)
[ "$written_rows" -gt 0 ] || fail "the page has no case rows"
[ "$shown_rows" -eq "$written_rows" ] || fail "$written_rows rows written, $shown_rows in the browser"
if grep -q 'sorttable_sorted\|<thead>' "$work/plain.dom"; then
  fail "the script touched a table without the class sortable"
fi

# The same page with a sortable case table and a click on "Test Name".
sortable="$work/out/sortable.html"
LC_ALL=C sed -e 's|<table id="testcases">|<table id="testcases" class="sortable">|' \
  -e 's|</body>|<script type="text/javascript">window.addEventListener("load", function () { document.getElementById("testcases").tHead.rows[0].cells[2].click(); });</script></body>|' \
  "$page" >"$sortable"
dump_dom sortable "$sortable" >"$work/sortable.dom" || fail "chromium did not load the sortable page"
expect_no_script_error sortable
expect_in "$work/sortable.dom" '<table id="testcases" class="sortable"><thead><tr><th class="">Id</th>'
expect_in "$work/sortable.dom" '<th class=" sorttable_sorted">Test Name<span id="sorttable_sortfwdind">'
sorted_rows=$(grep -o '<tr class=' "$work/sortable.dom" | wc -l)
[ "$sorted_rows" -eq "$written_rows" ] || fail "sorting lost rows: $sorted_rows of $written_rows"
# The case names in the order the browser shows them are sorted (the
# script compares them lower-cased).
LC_ALL=C grep -o '<tr class="[a-z]*"><td>[0-9]*</td><td>[^<]*</td><td>[^<]*</td>' "$work/sortable.dom" |
  sed -e 's|.*<td>\([^<]*\)</td>$|\1|' | tr 'A-Z' 'a-z' >"$work/names"
[ "$(wc -l <"$work/names")" -eq "$(sed -n '/<table id="testcases">/,$p' "$page" | grep -c '<tr class=')" ] ||
  fail "the case names could not be read from the sorted table"
LC_ALL=C sort -C "$work/names" || fail "the case table is not sorted by name"

# The screenshot, kept for people to look at.
mkdir -p "$artifacts"
rm -f "$artifacts/report.png"
run_headless shot --screenshot="$artifacts/report.png" --window-size=1280,2000 "file://$page" >"$work/shot.log" 2>&1 ||
  fail "chromium took no screenshot"
[ "$(head -c 8 "$artifacts/report.png" | od -An -tx1 | tr -d ' \n')" = "89504e470d0a1a0a" ] ||
  fail "the screenshot is not a PNG file"
echo "OK: $written_rows table rows shown, the case table sorted; screenshot $artifacts/report.png"
