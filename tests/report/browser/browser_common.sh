# browser_common.sh: what the checks of report pages in headless chromium
# share, sourced by them: the browser (or the skip, exit code 77, where
# there is none), a work directory removed at the end unless
# ZO_KEEP_BROWSER_WORK is set, the browser started headless with a profile
# of its own, and the two ways of failing.
# Usage: source browser_common.sh WORK-PREFIX

browser=$(command -v chromium || true)
if [ -z "$browser" ]; then
  echo "SKIPPED: chromium is not installed (scripts/setup.sh installs it)"
  exit 77
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/$1-XXXXXX")
[ -n "${ZO_KEEP_BROWSER_WORK:-}" ] || trap 'rm -rf "$work"' EXIT

fail() {
  echo "FAILED: $*"
  exit 1
}

expect_in() {
  local file=$1 text=$2
  grep -qF -- "$text" "$file" || fail "$file lacks: $text"
}

# Runs the browser headless with the profile $work/profile-NAME and the
# further arguments.
run_headless() {
  local name=$1
  shift
  timeout 60 "$browser" --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking \
    --disable-component-update --disable-sync --user-data-dir="$work/profile-$name" "$@"
}
