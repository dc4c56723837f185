#!/usr/bin/env bash
# A test program for Windows under Wine, the one of the native windows unless told: run.sh BUILD_DIR [PROGRAM
# [FILTER]]. The caller gives WINEPREFIX and DISPLAY; the last line is "N passed, N failed".
set -u
# shellcheck source=../../scripts/comun.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/comun.sh"
build=$(cd "$1" && pwd) || exit 2
: "${WINEPREFIX:?}" "${DISPLAY:?}"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
make_temp temp
cd "$build/bin" || exit 2
# shellcheck disable=SC2154
timeout --kill-after=5 580 wine "${2:-toolkit_win32_test}.exe" --gtest_filter="${3:-*}" >"$temp/out" 2>&1 </dev/null
read -r passed failed < <(count_gtest <"$temp/out")
# A program that ended early ran some tests and failed none; without any it is the wrong filter.
grep -q '^\[==========\] .* ran\.' "$temp/out" && [ $((passed + failed)) -gt 0 ] || failed=$((failed + 1))
[ "$failed" -eq 0 ] || { grep -E -A12 'Failure|FAILED' "$temp/out" | cut -c1-400 | head -80; tail -3 "$temp/out"; }
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
