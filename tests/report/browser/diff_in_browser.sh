#!/usr/bin/env bash
# Makes two reports of the scripted test classes whose cases change in
# between, compares them with --diff and loads the diff page in headless
# chromium: every table of the page is there, the class and case tables are
# sortable, a click on the head "Time (B/A)" sorts the case table by that
# ratio, and a screenshot of the page is kept as a build artefact.
# Arguments: binary directory, artefact directory.
# Exit code 77: skipped, no chromium.
set -euo pipefail

bin_dir=$1
artifacts=$2

source "$(dirname "${BASH_SOURCE[0]}")/browser_common.sh" zo-diff-browser

# One run of the scripted classes over the case files "name:script ...".
run_with() {
  local report=$1
  shift
  rm -rf "$work/data"
  mkdir -p "$work/data/CliScripted" "$work/data/CliSecond"
  for entry in "$@"; do
    printf '%s' "${entry#*:}" >"$work/data/${entry%%:*}.case"
  done
  "$bin_dir/ZoTestSuiteCLI" -d "$work/data" --dll cli_ScriptedClasses --track-heap --no-color \
    --xml "$work/out/$report" >"$work/$report.log" 2>&1 || true
  [ -s "$work/out/$report" ] || { cat "$work/$report.log"; fail "the run wrote no $report"; }
}

mkdir "$work/out"
run_with A.xml CliScripted/a_same:pass CliScripted/b_fixed:fail CliScripted/c_broken:pass \
  "CliScripted/d_slower:output 20" "CliScripted/e_warned:pass" "CliScripted/f_unwarned:leak 100" \
  CliScripted/g_removed:pass CliSecond/x:pass CliSecond/y:fail
run_with B.xml CliScripted/a_same:pass CliScripted/b_fixed:pass CliScripted/c_broken:fail \
  "CliScripted/d_slower:output 2000" "CliScripted/e_warned:leak 100" CliScripted/f_unwarned:pass \
  CliScripted/h_added:different CliSecond/x:pass CliSecond/y:throw
page="$work/out/diff.html"
"$bin_dir/ZoTestSuiteCLI" --diff "$work/out/A.xml" "$work/out/B.xml" --diff-output "$page" --show-warnings \
  >"$work/diff.log" 2>&1 || { cat "$work/diff.log"; fail "--diff failed"; }
[ -s "$page" ] || fail "the front end wrote no diff page"
[ -s "$work/out/ZoTestSuite.js" ] || fail "no script beside the page"

# The page as the browser built it, after a click on "Time (B/A)".
clicked="$work/out/clicked.html"
cp "$page" "$clicked"
printf '%s\n' '<script type="text/javascript">window.addEventListener("load", function () { document.getElementById("testcases").tHead.rows[0].cells[7].click(); });</script>' >>"$clicked"
run_headless dom --enable-logging=stderr --v=0 --dump-dom "file://$clicked" 2>"$work/dom.log" | tr -d '\n\t' \
  >"$work/clicked.dom" || fail "chromium did not load the page"
if grep -E "Uncaught|SyntaxError|ReferenceError|TypeError" "$work/dom.log"; then
  fail "script error on the page"
fi
expect_in "$work/clicked.dom" "<h1>ZoTestSuite Report Diff</h1>"
for table in diffsource build setup result; do
  expect_in "$work/clicked.dom" "<table id=\"$table\"><tbody>"
done
expect_in "$work/clicked.dom" '<table id="testclasses" class="sortable"><thead><tr><th>Class</th>'
expect_in "$work/clicked.dom" '<table id="testcases" class="sortable"><thead><tr><th class="">Diff</th>'
expect_in "$work/clicked.dom" '<th class=" sorttable_sorted">Time&nbsp;(B/A)<span id="sorttable_sortfwdind">'
for state in better worse diff; do
  expect_in "$work/clicked.dom" "<tr class=\"$state\">"
done

# The ratios in the order the browser shows the case rows: ascending, with
# the empty cells of one-sided cases counting as 0, as the script counts them.
sed -e 's|.*<table id="testcases" class="sortable">||' -e 's|</table>.*||' -e 's|<tr|\n<tr|g' \
  "$work/clicked.dom" | grep '^<tr[^>]*><td>' | awk -F'<td>' '{ sub(/<\/td>.*/, "", $9); print ($9 == "" ? 0 : $9) }' \
  >"$work/ratios"
written_rows=$(sed -n '/<table id="testcases"/,$p' "$page" | grep -cP '^\t\t\t<tr')
[ "$(wc -l <"$work/ratios")" -eq $((written_rows - 1)) ] ||
  fail "$((written_rows - 1)) case rows written, $(wc -l <"$work/ratios") read from the browser"
sort -g -C "$work/ratios" || fail "the case table is not sorted by Time (B/A): $(tr '\n' ' ' <"$work/ratios")"

# The screenshot, kept for people to look at.
mkdir -p "$artifacts"
rm -f "$artifacts/diff.png"
run_headless shot --screenshot="$artifacts/diff.png" --window-size=1400,2200 "file://$clicked" >"$work/shot.log" 2>&1 ||
  fail "chromium took no screenshot"
[ "$(head -c 8 "$artifacts/diff.png" | od -An -tx1 | tr -d ' \n')" = "89504e470d0a1a0a" ] ||
  fail "the screenshot is not a PNG file"
echo "OK: every table shown, $((written_rows - 1)) case rows sorted by Time (B/A); screenshot $artifacts/diff.png"
