#!/bin/sh
# Native windows under Wine, typed into by the test itself, or another test program for Windows: run.sh BUILD_DIR
# [PROGRAM]. The caller gives WINEPREFIX and DISPLAY; the last line is "N passed, N failed".
set -u
build=$(cd "$1" && pwd) || exit 2
: "${WINEPREFIX:?}" "${DISPLAY:?}"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
out=$(mktemp)
trap 'rm -f "$out"' EXIT
cd "$build/bin" || exit 2
timeout --kill-after=5 300 wine "${2:-toolkit_win32_test}.exe" >"$out" 2>&1 </dev/null
passed=$(grep -c '^\[       OK \]' "$out")
failed=$(grep -c '^\[  FAILED  \] .*ms)' "$out")
# A program that ended early ran some tests and failed none.
grep -q '^\[==========\] .* ran\.' "$out" || failed=$((failed + 1))
[ "$failed" -eq 0 ] || { grep -E -A8 'Failure|FAILED' "$out" | cut -c1-300 | head -60; tail -3 "$out"; }
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
