#!/usr/bin/env bash
# Where a station keeps its data and through which driver it reads them: drivers that have other names than on
# this system, and databases that somebody put on a share.
# Usage: lugares.sh BIN 64|32   in the Wine prefix and on the display of the environment.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for part in comun wine; do
  # shellcheck disable=SC1090
  . "$here/../../scripts/$part.sh"
done
bin=$1 bits=$2
make_temp temp
# shellcheck disable=SC2154
printf 'WScript.Echo "TRUFAS " & Ambiente.Existencia("TRUFAS", 1)\r\n' >"$temp/guion.vbs"
export ODBCSYSINI=$temp HOME=$temp
unset ZUVI_BASE
passed=0 failed=0

# says NAME TEXT…: the script, on the database that ZUVI_BASE names, says all of these.
says() {
  local name=$1 text missing="" out
  shift
  out=$(run_wine 60 "$bin/Zuvi.exe" "$(windows_path "$temp/guion.vbs")" 2>&1)
  for text in "$@"; do
    grep -qF -- "$text" <<<"$out" || missing+=" «$text»"
  done
  if [ -z "$missing" ]; then
    passed=$((passed + 1))
    printf 'ok   %s\n' "$name"
  else
    failed=$((failed + 1))
    printf 'FALLA %s: falta%s\n%s\n' "$name" "$missing" "$out"
  fi
}
drivers() { # NAME=LIBRARY…
  local driver
  for driver in "$@"; do printf '[%s]\nDriver=%s\n' "${driver%=*}" "${driver##*=}"; done >"$temp/odbcinst.ini"
}

drivers 'SQLite ODBC Driver=libzuvi_no_hay.so' 'SQLite3 ODBC Driver=libsqlite3odbc.so'
says "la base por omisión, con el nombre de Windows" "TRUFAS "
drivers 'Uno sqLITE=libzuvi_no_hay.so' 'Otro SQLITE=libsqlite3odbc.so'
says "el que abre, entre otros" "TRUFAS "
drivers 'Otro=libsqlite3odbc.so'
says "ninguno" "SQLite 3" "$bits bits" "«SQLite3 ODBC Driver»" "Instalados: Otro."
ZUVI_BASE='Server=127.0.0.1;Port=1' says "ninguno de MariaDB" "de MariaDB" "$bits bits"
drivers 'MARIADB odbc 9 Driver=libmaodbc.so' 'SQLite3 ODBC Driver=libsqlite3odbc.so'
ZUVI_BASE='Server=127.0.0.1;Port=1' says "el de MariaDB" "No se pudo conectar con el servidor"
ZUVI_BASE='DRIVER={SQLite3};Database=C:\b.db' says "el nombrado" "«SQLite3»" "Instalados: MARIADB odbc 9 Driver"

# A letter that stands for a share, as whoever maps it sees it.
mkdir "$temp/remota"
ln -s "$temp/remota" "$WINEPREFIX/dosdevices/y:"
run_wine 60 reg add 'HKLM\Software\Wine\Drives' /v y: /t REG_SZ /d network /f >/dev/null
wine_stop
for base in '\\servidor\datos\b.db' '//servidor/datos/b.db' '\\?\unc\servidor\datos\b.db' 'Y:\b.db' '\\?\Y:\b.db'; do
  ZUVI_BASE=$base says "en red: $base" "b.db está en el disco de otra máquina"
done
ZUVI_BASE='DRIVER={SQLite3 ODBC Driver};Database=Y:\b.db' says "en red, por cadena" "está en el disco de otra máquina"
here_named=$(windows_path "$temp/b.db")
for base in "$here_named" "\\\\?\\$here_named" "\\\\.\\$here_named"; do
  ZUVI_BASE=$base says "en disco propio: $base" "TRUFAS "
done
[ -z "$(ls "$temp/remota")" ] && [ -f "$temp/b.db" ] || failed=$((failed + 1))
run_wine 60 reg delete 'HKLM\Software\Wine\Drives' /v y: /f >/dev/null
rm "$WINEPREFIX/dosdevices/y:"
wine_stop
printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
