#!/usr/bin/env bash
# Where a station keeps its data and through which driver it reads them: drivers that have other names than on
# this system, and databases that somebody put on a share.
# Usage: lugares.sh BIN 64|32   in the Wine prefix and on the display of the environment.
set -u
bin=$1 bits=$2 base=
. "${0%/*}/comun.sh" wine comprueba
# shellcheck disable=SC2154
printf 'WScript.Echo "TRUFAS " & Ambiente.Existencia("TRUFAS", 1)\r\n' >"$temp/guion.vbs"
export ODBCSYSINI=$temp HOME=$temp
unset ZUVI_BASE

# says NAME TEXT…: the script, on the database that ZUVI_BASE names, says all of these.
says() {
  local name=$1 text missing="" out
  shift
  out=$(run_wine 60 "$bin/Zuvi.exe" "$(windows_path "$temp/guion.vbs")" 2>&1)
  for text in "$@"; do
    grep -qF -- "$text" <<<"$out" || missing+=" falta «$text» en: $out"
  done
  check "$name" "$missing" ""
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
check "nada escrito en red" "$(ls "$temp/remota")" ""
check "lo propio sí" "$(ls "$temp/b.db")" "$temp/b.db"
run_wine 60 reg delete 'HKLM\Software\Wine\Drives' /v y: /f >/dev/null
rm "$WINEPREFIX/dosdevices/y:"
wine_stop
finish
