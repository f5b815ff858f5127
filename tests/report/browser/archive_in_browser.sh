#!/usr/bin/env bash
# Makes four reports of the scripted test classes under names of no scheme
# (one of them a partial run), sets their revisions, lets the front end
# normalize the directory into an archive and loads the overview in headless
# chromium: both tables are there with their rows, each bar shows as a green
# and a red part side by side that add up to 500 pixels, every "Report" and
# "Diff" link of the page reaches a file, and a screenshot of the page is
# kept as a build artefact.
# Arguments: binary directory, artefact directory.
# Exit code 77: skipped, no chromium.
set -euo pipefail

bin_dir=$1
artifacts=$2

source "$(dirname "${BASH_SOURCE[0]}")/browser_common.sh" zo-archive-browser

# One run of the scripted class over the case files "name:script ...",
# its report archive/NAME with the revision REVISION.
run_with() {
  local report=$1 revision=$2 tag=$3
  shift 3
  rm -rf "$work/data"
  mkdir -p "$work/data/CliScripted" "$work/data/CliSecond"
  for entry in "$@"; do
    printf '%s' "${entry#*:}" >"$work/data/${entry%%:*}.case"
  done
  "$bin_dir/ZoTestSuiteCLI" -d "$work/data" --dll cli_ScriptedClasses --no-color --run-tag "$tag" \
    --xml "$work/archive/$report" >"$work/$report.log" 2>&1 || true
  [ -s "$work/archive/$report" ] || { cat "$work/$report.log"; fail "the run wrote no $report"; }
  # The first PscmChangeset of BuildInfo is the revision the loader reads.
  sed -i "s|<BuildInfo>|<BuildInfo><PscmRepository>zo</PscmRepository><PscmChangeset>$revision</PscmChangeset>|" \
    "$work/archive/$report"
}

mkdir "$work/archive"
run_with monday.xml 120 "" CliScripted/a:pass CliScripted/b:fail CliScripted/c:pass CliSecond/x:pass
run_with tuesday-part.xml 121 Part CliScripted/a:pass CliScripted/b:pass
run_with tuesday.xml 122 "Nightly run" CliScripted/a:pass CliScripted/b:pass CliScripted/c:throw CliSecond/x:pass
run_with wednesday.xml 123 "" CliScripted/a:pass CliScripted/b:pass CliScripted/c:pass CliSecond/x:pass
"$bin_dir/ZoTestSuiteCLI" --normalize-archive "$work/archive" >"$work/normalize.log" 2>&1 ||
  { cat "$work/normalize.log"; fail "--normalize-archive failed"; }
page="$work/archive/html/index.html"
[ -s "$page" ] || fail "the front end wrote no overview"

# Every link of the page, as written, reaches a file beside or below it.
links=0
while IFS= read -r href; do
  [ -f "$work/archive/html/$href" ] || fail "the link $href reaches no file"
  links=$((links + 1))
done < <(grep -oP '<a href="\K[^"]+(?=">(Report|Diff)</a>)' "$page")
[ "$links" -eq 12 ] || fail "12 links expected (3 + 2 in the full table, 4 + 3 in all), $links found"

# The page as the browser built it, with what the browser measured of the
# bars written into the body.
measured="$work/archive/html/measured.html"
cp "$page" "$measured"
printf '%s\n' '<script type="text/javascript">window.addEventListener("load", function () {
  var bars = [];
  document.querySelectorAll("td > div.ok").forEach(function (ok) {
    var error = ok.parentNode.querySelector("div.error");
    bars.push(ok.offsetWidth + "+" + error.offsetWidth + (ok.offsetTop == error.offsetTop ? ":row" : ":apart"));
  });
  document.body.setAttribute("data-bars", bars.join(" "));
});</script>' >>"$measured"
run_headless dom --enable-logging=stderr --v=0 --dump-dom "file://$measured" 2>"$work/dom.log" | tr -d '\n\t' \
  >"$work/measured.dom" || fail "chromium did not load the page"
if grep -E "Uncaught|SyntaxError|ReferenceError|TypeError" "$work/dom.log"; then
  fail "script error on the page"
fi
expect_in "$work/measured.dom" "<h1>Archive Overview</h1>"
expect_in "$work/measured.dom" '<table id="overview-info"><tbody><tr><td>Directory:</td>'
[ "$(grep -o '<table id="overview"><tbody>' "$work/measured.dom" | wc -l)" -eq 2 ] || fail "not two overview tables"
expect_in "$work/measured.dom" "<td>121</td><td>Part</td>"
expect_in "$work/measured.dom" "<td>122</td><td>Full</td>"
# Three full runs: 3 of 4, 3 of 4 and 4 of 4 cases passed, newest first.
expect_in "$work/measured.dom" 'data-bars="500+0:row 375+125:row 375+125:row"'

# The screenshot, kept for people to look at.
mkdir -p "$artifacts"
rm -f "$artifacts/archive.png"
run_headless shot --screenshot="$artifacts/archive.png" --window-size=1400,1100 "file://$page" >"$work/shot.log" 2>&1 ||
  fail "chromium took no screenshot"
[ "$(head -c 8 "$artifacts/archive.png" | od -An -tx1 | tr -d ' \n')" = "89504e470d0a1a0a" ] ||
  fail "the screenshot is not a PNG file"
echo "OK: both tables and three bars shown, $links links reach their files; screenshot $artifacts/archive.png"
