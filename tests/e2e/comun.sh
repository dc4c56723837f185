# shellcheck shell=bash
# What every script here starts with. Sourced with the parts of scripts/ that it needs besides comun.sh; what is
# given to the script is in its own variables by then (`base` for comprueba.sh).
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for part in comun "$@"; do
  # shellcheck disable=SC1090
  . "$here/../../scripts/$part.sh"
done
make_temp temp

# Zuvi.exe on the shop of ZUVI_BASE, which it makes first; what it says is in $temp/out.
open_program() { # seconds that it may take
  wine_shop "$bin/Zuvi.exe" >"$temp/out" 2>&1 || { cat "$temp/out"; give_up tienda; }
  run_wine "$1" "$bin/Zuvi.exe" >"$temp/out" 2>&1 &
  program=$!
  at_exit "kill $program 2>/dev/null"
  window '^Zuvi: '
}
# By its menu's key, from its main window.
close_program() {
  local status=0
  keys alt+s
  wait "$program" || status=$?
  check "el programa termina sin errores" "$status $(cat "$temp/out")" "0 "
}
