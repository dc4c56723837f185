#!/usr/bin/env bash
# What Zuvi.exe does to the Windows it runs in: where it writes, where pages are kept, who prints and opens them,
# what it says when a script engine is missing. In the Wine prefix and on the display of the environment, whose
# registry it changes and puts back.
# Usage: zuvi_exe.sh BIN
set -u
bin=$1 base=
. "${0%/*}/comun.sh" wine teclas comprueba
# shellcheck disable=SC2154
base=$temp/tienda.db
unset ZUVI_REPORTES
# Its folders have accents, for which the plain C locale has no names.
export LC_ALL=C.UTF-8
export ZUVI_BASE=$base ZUVI_IMPRIME=no
classes='HKLM\Software\Classes'
folders='HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders'

registry() { run_wine 20 reg "$@" /f >>"$temp/registro.log" 2>&1; }
keep() { # key
  run_wine 20 reg export "$1" "$(windows_path "$temp/guardado.reg")" /y >>"$temp/registro.log" 2>&1
}
put_back() { # key
  registry delete "$1"
  run_wine 20 reg import "$(windows_path "$temp/guardado.reg")" >>"$temp/registro.log" 2>&1
}
script() { printf '%s\r\n' "$@" >"$temp/guion.vbs"; }
# The script in the program; its output and its exit code.
run() { # arguments of the program…
  local status=0
  timeout 60 wine "$bin/Zuvi.exe" "${@:-$(windows_path "$temp/guion.vbs")}" </dev/null \
    >"$temp/salida" 2>"$temp/errores" || status=$?
  sed -i '/wine32/d' "$temp/errores"
  echo "$status" >>"$temp/salida"
}
seen() { tr -d '\r' <"$temp/$1" | tr '\n' ';'; }

outputs() {
  check "sin consola propia" "$(x86_64-w64-mingw32-objdump -p "$bin/Zuvi.exe" | grep -c '^Subsystem.*Windows GUI')" 1
  script 'WScript.Echo "ñandú €", 2 & vbLf & "fin"'
  check "salida por una tubería" "$(timeout 60 wine "$bin/Zuvi.exe" "$(windows_path "$temp/guion.vbs")" </dev/null 2>/dev/null | tr -d '\r' | tr '\n' ';')" "ñandú € 2;fin;"
  run --help
  check "ayuda" "$(head -c 4 "$temp/salida")$(tail -n 1 "$temp/salida")" "Uso:0"
}

print_order='WScript.CreateObject("ZuviQuery.ControlProcesos").ImprimeReporte "ORDENP", 103'
pages() {
  local long place place_in_wine folder
  script 'On Error Resume Next' "$print_order" 'WScript.Echo Err.Description'
  printf -v long 'Año %050d/' 1 2 3 4 5 6
  # A share, as far as this system has any.
  mkdir -p "$WINEPREFIX/dosdevices/unc/servidor" "$temp/red"
  ln -sfn "$temp/red" "$WINEPREFIX/dosdevices/unc/servidor/papeles"
  while read -r place folder; do
    place_in_wine=$place${long//\//\\}
    ZUVI_REPORTES=$place_in_wine run
    check "página en $place" "$(seen salida) $(grep -c 'Orden de producción 103' "$folder/${long}ORDENP-103.html")" ";0; 1"
  done <<END
$(windows_path "$temp")\\ $temp
\\\\servidor\\papeles\\Ñu\\ $temp/red/Ñu
END
  ZUVI_REPORTES='Q:\no hay' run
  check "carpeta que no hay" "$(seen salida | grep -c '^No se pudo escribir el reporte ORDENP-103.html;Q:\\no hay: la carpeta no existe;.*ZUVI_REPORTES;0;')" 1
  script 'On Error Resume Next' "$print_order" 'WScript.Echo Err.Description'
  # The user's documents, wherever they are; else what the user has in any case.
  keep "$folders"
  registry add "$folders" /v Personal /d "$(windows_path "$temp/Íñigo")\\Mis documentos"
  registry add "$folders" /v 'Local AppData' /d "$(windows_path "$temp/datos")"
  run
  check "página en Documentos" "$(seen salida) $(find "$temp/Íñigo" -name '*.html')" \
    ";0; $temp/Íñigo/Mis documentos/Zuvi/Reportes/ORDENP-103.html"
  registry add "$folders" /v Personal /d 'Q:\no hay'
  run
  check "página sin Documentos" "$(seen salida) $(find "$temp/datos" -name '*.html')" \
    ";0; $temp/datos/Zuvi/Reportes/ORDENP-103.html"
  put_back "$folders"
  check "nada junto al programa" "$(find "$bin" -name 'ORDENP-103.html')" ""
}

# Folders so deep that other programs cannot open what is in them by its own name.
printf -v deep '/Año %050d' 1 2 3 4 5

# What becomes of a page that is to be printed twice: the program that got it, and the words that were shown.
printed() { # name expected-program words-of-the-boxes
  local program tries
  rm -f "$temp"/hecho-*
  ZUVI_REPORTES=$temp$deep ZUVI_IMPRIME=imprime run &
  program=$!
  while kill -0 "$program" 2>/dev/null; do
    timeout 5 xdotool search --onlyvisible --name '^Zuvi$' windowfocus key Return 2>/dev/null
    sleep 0.2
  done
  for ((tries = 0; tries < 50; tries++)); do
    [ -n "$2" ] && [ ! -s "$temp/hecho-$2" ] || break
    sleep 0.1
  done
  check "$1" "$(cd "$temp" && echo hecho-*) $(seen salida)" "hecho-${2:-*} $3"
}
printing() {
  local kind="$classes\\zuviprueba\\shell" command
  command="cmd /c echo x > $(windows_path "$temp/hecho-")"
  local no='La página no se puede mandar sola a la impresora: ningún programa de este equipo sabe hacerlo.'
  local opens='Se abre, y así se abrirán las siguientes, para imprimirla desde ahí (Ctrl+P).'
  local stays
  stays="El documento quedó en $(windows_path "$temp$deep/ORDENP-103.html") y no se pudo abrir: ningún programa de este equipo sabe hacerlo"
  # What the host says is noted where a script can read it.
  script "$print_order" "$print_order" 'WScript.Echo Ambiente.Mensajes'
  keep "$classes\\.html"
  registry delete "$classes\\.html"
  printed "sin programa" "" "$no;$opens;$stays;$stays;;0;"
  registry add "$classes\\.html" /ve /d zuviprueba
  registry add "$kind\\open\\command" /ve /d "${command}abre"
  printed "se abre lo que no se imprime" abre "$no;$opens;;0;"
  registry add "$kind\\print\\command" /ve /d "${command}imprime"
  printed "se imprime" imprime ';0;'
  registry delete "$classes\\zuviprueba"
  put_back "$classes\\.html"
}

engines() {
  local motor
  script 'WScript.Echo "con motor"'
  keep "$classes\\VBScript"
  motor=$(run_wine 20 reg query "$classes\\VBScript\\CLSID" /ve | grep -o '{.*}')
  registry delete "$classes\\VBScript"
  run
  check "VBScript sin instalar" "$(seen salida)$(grep -c 'motor de guiones VBScript\|Características opcionales.*VBSCRIPT' "$temp/errores")" "1;2"
  put_back "$classes\\VBScript"
  keep "$classes\\CLSID\\$motor"
  registry delete "$classes\\CLSID\\$motor"
  run
  check "VBScript a medias" "$(seen salida)$(grep -c 'Características opcionales.*VBSCRIPT' "$temp/errores")" "1;1"
  put_back "$classes\\CLSID\\$motor"
  run
  check "VBScript de vuelta" "$(seen salida)" "con motor;0;"
}

outputs
pages
printing
engines
finish
