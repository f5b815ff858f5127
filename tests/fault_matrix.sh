#!/usr/bin/env bash
# The fault matrix: each reliability fault of the runner, run through the real
# front end in each mode where it applies (in process, "External", "External
# Isolated", two workers), with what it leaves behind. One line per run:
#   fault, mode, result (exit status and the telling row or message),
#   report well-formed (xmllint --noout), processes, /dev/shm names and
#   temporary files left behind (each must be 0).
# Usage: tests/fault_matrix.sh [BUILD_BIN_DIR]   (default: build/bin)
# Not part of CTest: it takes a few minutes (some faults need a child's
# five-second idle rule to pass).
set -u

BIN=$(cd "${1:-build/bin}" && pwd)
WORK=$(mktemp -d "${TMPDIR:-/tmp}/zo-fault-matrix-XXXXXX")
FE="$WORK/fe"
mkdir -p "$FE"
# The front end finds its libraries and ZoTestSuiteEnvironment.conf beside
# its real path, so the copy is a hard link or a copy, never a symbolic link.
place() { ln -f "$BIN/$1" "$2/$1" 2>/dev/null || cp "$BIN/$1" "$2/$1"; }
for f in ZoTestSuiteCLI libZoTestSuite.so libZoFoundation.so isolation_CrashClasses.so cli_ScriptedClasses.so; do
  place "$f" "$FE"
done
printf '["isolation_CrashClasses", "cli_ScriptedClasses"]\n' >"$FE/ZoTestSuiteEnvironment.conf"
CLI="$FE/ZoTestSuiteCLI"

declare -A MODES=([inproc]="" [ext]="-x" [iso]="-x -l" [w2]="-x -w 2")
MODE_ORDER=(inproc ext iso w2)
FAILURES=0

# Processes whose program lies in the private front end's directory.
processes_left() {
  local n=0 p e
  for p in /proc/[0-9]*; do
    e=$(readlink "$p/exe" 2>/dev/null) || continue
    [[ $e == "$FE/"* ]] && n=$((n + 1))
  done
  echo $n
}

# Names of /dev/shm made by process $1.
names_left() { ls /dev/shm 2>/dev/null | grep -c "ZoTestSuite-$(printf %08X "$1")" ; }

# Waits up to five seconds for the private front end's processes to end.
settle() { for _ in $(seq 50); do [[ $(processes_left) == 0 ]] && return; sleep 0.1; done; }

wellformed() {
  [[ -s $1 ]] || { echo "none"; return; }
  xmllint --noout "$1" 2>/dev/null && echo yes || echo NO
}

# row FAULT MODE RESULT REPORT PID TMP: prints one line of the table.
row() {
  settle
  local procs names temps
  procs=$(processes_left)
  names=$(names_left "$5")
  temps=$(find "$6" -mindepth 1 2>/dev/null | wc -l)
  [[ $procs != 0 || $names != 0 || $temps != 0 ]] && FAILURES=$((FAILURES + 1))
  printf '%-4s %-7s %-52s %-6s %5s %5s %5s\n' "$1" "$2" "$3" "$(wellformed "$4")" "$procs" "$names" "$temps"
}

# run FAULT MODE DATA [ARGS...]: runs the front end on DATA in MODE with a
# fresh $TMPDIR and the XML report in $R; sets STATUS, OUT, PID, TMP, R.
run() {
  local fault=$1 mode=$2 data=$3
  shift 3
  TMP="$WORK/tmp-$fault-$mode"
  R="$WORK/report-$fault-$mode.xml"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  TMPDIR="$TMP" timeout 120 "$CLI" -d "$data" ${MODES[$mode]} -v --no-times --no-color --xml "$R" "$@" \
    >"$WORK/out" 2>"$WORK/err" &
  PID=$!
  wait $PID 2>/dev/null
  STATUS=$?
  OUT=$(cat "$WORK/out" "$WORK/err")
}

# The line of case $1 in the last output, cut to its result.
result_of() { grep -a -o "$1\.\.\. [A-Z]*[^[]*" <<<"$OUT" | head -1 | sed 's/ *$//'; }

scripted() {  # scripted DIR NAME=SCRIPT ...: a CliScripted class directory
  local dir=$1
  shift
  mkdir -p "$dir"
  for pair in "$@"; do printf '%s\n' "${pair#*=}" >"$dir/${pair%%=*}"; done
}

in_process() { printf '<ExtraInfo><TestCase name="%s"><External>false</External></TestCase></ExtraInfo>' "$1"; }

header() {
  printf '%-4s %-7s %-52s %-6s %5s %5s %5s\n' fault mode result xml procs shm tmp
  printf '%s\n' "$(printf '%.0s-' $(seq 86))"
}

header

# 1 and 16: a leaking case, a case in process for six seconds (the child ends
# by its idle rule meanwhile), a trivial case.
D1="$WORK/d1"
scripted "$D1/CliScripted" a.case="leak 100" b.case="sleep 6" c.case="pass"
in_process b.case >"$D1/CliScripted/#ExtraInfo.xml"
for m in "${MODE_ORDER[@]}"; do
  run 1 "$m" "$D1" --track-heap
  leak=$(grep -c '<memorydelta>100<' "$R" 2>/dev/null)
  row "1,16" "$m" "st=$STATUS $(result_of c.case) leakrows=$leak" "$R" $PID "$TMP"
done

# 2: a second SIGTERM while a case hangs in process after an external case;
# and SIGKILL to the front end during a hanging case, then the next start.
D2="$WORK/d2"
mkdir -p "$D2/IsoPass" "$D2/IsoSlow"
in_process sleep >"$D2/IsoSlow/#ExtraInfo.xml"
for m in "${MODE_ORDER[@]}"; do
  TMP="$WORK/tmp-2-$m"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  TMPDIR="$TMP" "$CLI" -d "$D2" ${MODES[$m]} --no-color >"$WORK/out" 2>&1 &
  PID=$!
  for _ in $(seq 300); do grep -q "sleep\.\.\." "$WORK/out" 2>/dev/null && break; sleep 0.1; done
  sleep 0.5
  kill -TERM $PID
  sleep 0.3
  kill -TERM $PID
  wait $PID 2>/dev/null
  row 2 "$m" "TERM,TERM st=$?" "" $PID "$TMP"
done
D2K="$WORK/d2k"
mkdir -p "$D2K/IsoHang"
for m in ext iso w2; do
  TMP="$WORK/tmp-2k-$m"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  TMPDIR="$TMP" "$CLI" -d "$D2K" ${MODES[$m]} --no-color >"$WORK/out" 2>&1 &
  PID=$!
  sleep 2
  kill -KILL $PID
  wait $PID 2>/dev/null
  settle
  before=$(names_left $PID)
  TMPDIR="$TMP" "$CLI" -d "$WORK/d2" --query >/dev/null 2>&1
  row 2 "$m" "KILL, names before the next start: $before" "" $PID "$TMP"
done

# 3: warm-up files of the children.
D3="$WORK/d3"
mkdir -p "$D3/IsoPass"
for m in "${MODE_ORDER[@]}"; do
  run 3 "$m" "$D3"
  row 3 "$m" "st=$STATUS $(result_of a)" "$R" $PID "$TMP"
done

# 4: the console piped into head.
for m in "${MODE_ORDER[@]}"; do
  TMP="$WORK/tmp-4-$m"
  R="$WORK/report-4-$m.xml"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  TMPDIR="$TMP" "$CLI" -d "$D3" ${MODES[$m]} --no-color --xml "$R" | head -1 >/dev/null
  row 4 "$m" "st=${PIPESTATUS[0]}" "$R" 0 "$TMP"
done

# 5: Latin-1 letters in output and run tag; 17: markup in output.
D5="$WORK/d5"
scripted "$D5/CliScripted" a.case="info café" b.case="info <script>alert(1)</script> & ]]>"
for m in "${MODE_ORDER[@]}"; do
  run 5 "$m" "$D5" --run-tag "Prüfung Tagä"
  row "5,17" "$m" "st=$STATUS $(result_of a.case)" "$R" $PID "$TMP"
done

# 6: a directory and a case whose names are not UTF-8.
D6="$WORK/d6"
scripted "$D6/$(printf 'Gr\xf6sse')/CliScripted" "$(printf 'x\xe4.case')=fail"
for m in "${MODE_ORDER[@]}"; do
  run 6 "$m" "$D6"
  row 6 "$m" "st=$STATUS (1: the failing case ran)" "$R" $PID "$TMP"
done

# 7: two link cycles.
D7="$WORK/d7"
scripted "$D7/sub/CliScripted" a.case=pass
ln -s .. "$D7/sub/up"
ln -s ../.. "$D7/sub/CliScripted/back"
for m in "${MODE_ORDER[@]}"; do
  run 7 "$m" "$D7"
  row 7 "$m" "st=$STATUS rows=$(grep -c 'a\.case\.\.\.' <<<"$OUT")" "$R" $PID "$TMP"
done

# 8: a FIFO as #ExtraInfo.xml.
D8="$WORK/d8"
scripted "$D8/CliScripted" a.case=pass
mkfifo "$D8/CliScripted/#ExtraInfo.xml"
for m in "${MODE_ORDER[@]}"; do
  run 8 "$m" "$D8"
  row 8 "$m" "st=$STATUS $(result_of a.case)" "$R" $PID "$TMP"
done

# 9: a full disk for the report.
for m in "${MODE_ORDER[@]}"; do
  TMP="$WORK/tmp-9-$m"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  OUT=$(TMPDIR="$TMP" "$CLI" -d "$D3" ${MODES[$m]} --no-color --xml /dev/full 2>&1)
  STATUS=$?
  row 9 "$m" "st=$STATUS $(grep -c 'konnte nicht erzeugt' <<<"$OUT") message" "" 0 "$TMP"
done

# 10: a German locale.
for m in "${MODE_ORDER[@]}"; do
  LC_ALL=de_DE.UTF-8 run 10 "$m" "$D3"
  row 10 "$m" "st=$STATUS decimal commas in times: $(grep -c '<time>[0-9]*,' "$R")" "$R" $PID "$TMP"
done

# 11: a time limit beyond 32 bits.
D11="$WORK/d11"
scripted "$D11/CliScripted" a.case="sleep 2"
printf '<ExtraInfo><TestCase name="a.case"><External>true</External><TimeOutSec>4294967296</TimeOutSec></TestCase></ExtraInfo>' \
  >"$D11/CliScripted/#ExtraInfo.xml"
for m in "${MODE_ORDER[@]}"; do
  run 11 "$m" "$D11"
  row 11 "$m" "st=$STATUS $(result_of a.case)" "$R" $PID "$TMP"
done

# 12: a broken environment file (its own front end directory).
FE12="$WORK/fe12"
mkdir -p "$FE12"
for f in ZoTestSuiteCLI libZoTestSuite.so libZoFoundation.so; do place "$f" "$FE12"; done
printf '["isolation_CrashClasses", ' >"$FE12/ZoTestSuiteEnvironment.conf"
for m in "${MODE_ORDER[@]}"; do
  TMP="$WORK/tmp-12-$m"
  mkdir -p "$TMP"
  # shellcheck disable=SC2086
  OUT=$(TMPDIR="$TMP" "$FE12/ZoTestSuiteCLI" -d "$D3" ${MODES[$m]} --no-color 2>&1)
  STATUS=$?
  row 12 "$m" "st=$STATUS names the file: $(grep -c 'ZoTestSuiteEnvironment.conf' <<<"$OUT")" "" 0 "$TMP"
done

# 13: a wildcard of 90,000 characters and 20,000 nested parentheses.
LONG=$(head -c 90000 /dev/zero | tr '\0' '*')
NESTED="$(head -c 20000 /dev/zero | tr '\0' '(')a$(head -c 20000 /dev/zero | tr '\0' ')')"
for m in "${MODE_ORDER[@]}"; do
  run 13 "$m" "$D3" --include "$LONG" --full-match
  s1=$STATUS
  run 13 "$m" "$D3" --include-regex "$NESTED"
  row 13 "$m" "wildcard st=$s1, regex st=$STATUS" "" $PID "$TMP"
done

# 14: a data directory that does not exist.
for m in "${MODE_ORDER[@]}"; do
  run 14 "$m" "$WORK/nonexistent"
  row 14 "$m" "st=$STATUS" "" $PID "$TMP"
done

# 15: a case that signals its process group, and one that forks a process
# that would sleep for five minutes.
D15="$WORK/d15"
mkdir -p "$D15/IsoProcess"
for m in "${MODE_ORDER[@]}"; do
  run 15 "$m" "$D15" --include '*fork*'
  s1=$STATUS
  if [[ $m == inproc ]]; then
    row 15 "$m" "fork st=$s1 (kill(0) in process: not run)" "$R" $PID "$TMP"
  else
    run 15 "$m" "$D15" --include '*kill*'
    row 15 "$m" "fork st=$s1, kill(0) st=$STATUS $(result_of killGroup)" "$R" $PID "$TMP"
  fi
done

echo
echo "runs with something left behind: $FAILURES"
rm -rf "$WORK"
[[ $FAILURES == 0 ]]
