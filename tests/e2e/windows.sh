#!/usr/bin/env bash
# One script against the registered component, in the Wine prefix and on the display of the environment.
# Usage: windows.sh cscript|zuvi BIN SCRIPT BASE [LOG DATABASE]
# With LOG and DATABASE the server's statements are compared as well; counts both together.
set -u
. "${0%/*}/comun.sh" wine
runner=$1 bin=$2 script=$3 log=${5:-} database=${6:-}
export ZUVI_BASE=$4 ZUVI_USUARIO=E2E
# shellcheck disable=SC2154
cp "$here/datos.sql" "$temp/"
cat "$here/comprueba.vbs" "$script" >"$temp/entero.vbs"
arguments=("$(windows_path "$temp/datos.sql")" ${log:+marcas})
status=0
# A file is made when the script opens it; tables on a server are not.
case $ZUVI_BASE in *=*) wine_shop "$bin/Zuvi.exe" || status=$? ;; esac
if [ "$runner" = cscript ]; then
  for_cscript "$temp/entero.vbs" >"$temp/guion.vbs"
  run_wine 120 cscript //nologo "$(windows_path "$temp/guion.vbs")" "${arguments[@]}" >"$temp/raw" || status=$?
  from_cscript <"$temp/raw" >"$temp/out"
else
  run_wine 120 "$bin/Zuvi.exe" "$(windows_path "$temp/entero.vbs")" "${arguments[@]}" >"$temp/out" || status=$?
fi
cat "$temp/out"
read -r passed failed < <(count_last_line <"$temp/out")
if [ "$status" -ne 0 ] && [ "$failed" -eq 0 ]; then failed=1; fi
if [ -n "$log" ]; then
  awk -v base="$database" -f "$here/bitacora.awk" "$log" >"$temp/seen"
  awk -f "$here/compara.awk" "$here/sentencias.txt" "$temp/seen" | tee "$temp/verdict"
  read -r p f < <(count_last_line <"$temp/verdict")
  passed=$((passed + p)) failed=$((failed + f))
fi
printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
