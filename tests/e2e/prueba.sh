#!/usr/bin/env bash
# The part of docs/prueba-windows.md that needs no hands, against the registered DLLs, in the Wine prefix and on
# the display of the environment. Usage: prueba.sh BIN
set -u
. "${0%/*}/comun.sh" wine
bin=$1 script=$here/../../sdk/prueba/prueba.vbs
passed=0 failed=0
# shellcheck disable=SC2154
export ZUVI_BASE=$temp/prueba.db
for_cscript "$script" >"$temp/guion.vbs"

# The last line says "N bien, M mal"; a script that broke off says nothing, or ends otherwise than well.
count() { # who's output, its exit code
  local well=0 badly=1
  read -r well _ badly _ < <(tr -d '\r' <"$temp/out" | tail -n 1 | tr ',' ' ' | grep -E '^[0-9]+ bien +[0-9]+ mal$')
  passed=$((passed + ${well:-0})) failed=$((failed + ${badly:-1}))
  [ "$2" -eq 0 ] || failed=$((failed + 1))
  [ "${badly:-1}" -eq 0 ] && [ "$2" -eq 0 ] || sed "s/^/$1: /" "$temp/out"
}
run_wine 120 cscript //nologo "$(windows_path "$temp/guion.vbs")" >"$temp/raw"
status=$?
from_cscript <"$temp/raw" >"$temp/out"
count cscript "$status"
run_wine 120 "$bin/Zuvi.exe" "$(windows_path "$(realpath "$script")")" >"$temp/out"
count Zuvi.exe "$?"
printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
