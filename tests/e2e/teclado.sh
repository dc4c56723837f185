#!/usr/bin/env bash
# The windows by keyboard alone, with real key events, in the Wine prefix and on the display of the environment:
# orders, shifts and fractions in Zuvi.exe, the tables seen from outside after each step.
# Usage: teclado.sh BIN BASE [LOG DATABASE]   BASE is empty before; with LOG and DATABASE the server's statements
# on orders and shifts are compared as well. ZUVI_CAPTURAS=folder leaves pictures.
set -u
bin=$1 base=$2 log=${3:-} database=${4:-}
. "${0%/*}/comun.sh" wine teclas comprueba
# shellcheck disable=SC2154
seen=$temp/seen
today=$(date +%F)

box() { await_box '^Zuvi$' || give_up "mensaje"; }
confirm() { answer_yes "$1" || give_up "$1"; } # name of its picture
mark() { [ -z "$log" ] || sql "SELECT '$1'" >/dev/null; }
# The lists are filled anew after the tables were written.
settled() { [ -z "$log" ] || sleep 2; }
lines_of() { printf 'SELECT id_entrada, articulo, cantidad, observ FROM oppart WHERE op = %d ORDER BY id_entrada' "$1"; }
header_of() { printf 'SELECT estado, ocupado, almacen, ordencompra, observ, cerrado FROM op WHERE op = %d' "$1"; }
# The order is looked up in the list by its number.
choose() {
  keys alt+b ctrl+a
  typed "$1"
}

# A code as long as the field: a reader that sends no Enter after it.
long_code=LARGO-$(printf '%054d' 7)
fixtures() {
  sql "INSERT INTO prods (articulo, descrip, unidad, kit, costo) VALUES ('$long_code', 'Clave larga', 'PZA', 0, 1)" \
    "INSERT INTO empleados (empleado, nombre) VALUES ('E07', 'Inés Cano'), ('E08', 'Hugo Peña'), ('E09', 'Eva Ríos')" >/dev/null
}

new_order() {
  mark 'inicio alta'
  keys Insert
  window '^Orden de fabricaci'
  typed 9001
  keys Return
  typed 1
  keys Return
  # The remarks come before the article, and F8 goes back to it.
  keys shift+Tab
  typed 'Para el lunes'
  keys F8
  typed can-gourmet
  keys Return
  typed 2
  keys Return
  window '^Op: 111$'
  becomes "la primera partida guarda la orden" "$(header_of 111)" 'PE|1|1|9001|Para el lunes|0;'
  # By the second key: the quantity first, then the key, which brings the article.
  keys Tab
  typed 3
  keys F8
  typed nav
  keys F8 F9
  becomes "por clave secundaria" "$(lines_of 111)" \
    '20|CAN-GOURMET|2|Canasta Gourmet;21|CAN-NAVIDAD|3|Canasta Navidad;'
  # By reader: the code and its Enter, or a code that fills the field; one piece each.
  keys F3
  typed 7501000100042
  keys Return
  typed "$long_code"
  becomes "por lector" "SELECT articulo, cantidad FROM oppart WHERE op = 111 AND id_entrada > 21 ORDER BY id_entrada" \
    "TRUFAS|1;$long_code|1;"
  picture orden-captura
  mark 'fin alta'
}
edit_order() {
  mark 'inicio edita celda'
  keys F8 Tab Tab Tab Tab Tab Tab Tab Up Up Up Right
  typed 4.5
  picture orden-celda
  keys Return
  becomes "cantidad cambiada" "SELECT cantidad FROM oppart WHERE id_entrada = 20" '4.5;'
  mark 'fin edita celda'
}
finish_order() {
  mark 'inicio finaliza'
  # Ticks "Imprimir movimiento"; F3 twice brings the keyboard back to the article.
  keys Tab Tab Tab space F3 F3 F5
  confirm orden-pregunta
  window '^Zuvi: '
  becomes "orden confirmada" "$(header_of 111)" 'CO|0|1|9001|Para el lunes|0;'
  becomes "sus partidas" "SELECT id_entrada, cantidad, terminado FROM oppart WHERE op = 111 ORDER BY id_entrada" \
    '20|4.5|0;21|3|0;22|1|0;23|1|0;'
  check "reporte impreso" "$(grep -c 'CAN-GOURMET\|CAN-NAVIDAD\|TRUFAS' "$ZUVI_REPORTES/ORDENP-111.html" 2>/dev/null)" 3
  mark 'fin finaliza'
}
view_order() {
  local before
  before=$(value "$(header_of 111)")$(value "$(lines_of 111)")
  mark 'inicio confirmada'
  choose 111
  keys Return
  # It is confirmed: it says so and opens for viewing.
  box
  keys Return
  window '^(Orden|Op: 111)'
  picture orden-consulta
  typed 77
  keys F3 Return Delete F9
  box
  keys Return
  window '^(Orden|Op: 111)'
  keys alt+F4
  window '^Zuvi: '
  becomes "la consulta no cambia nada" "$(header_of 111)" "${before%%;*};"
  check "ni las partidas" "$(value "$(header_of 111)")$(value "$(lines_of 111)")" "$before"
  mark 'fin confirmada'
}
change_order() {
  mark 'inicio modifica'
  choose 104
  keys Return
  window '^(Orden|Op: 104)'
  becomes "ocupada mientras se modifica" "$(header_of 104)" 'PE|1|1|8834||0;'
  keys shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab Down Delete
  becomes "partida borrada" "$(lines_of 104)" '7|CAN-DESAYUNO|4|;9|TRUFAS|6|Listón rojo;'
  picture orden-modifica
  click_close
  window '^Zuvi: '
  becomes "libre al cerrar" "$(header_of 104)" 'PE|0|1|8834||0;'
  mark 'fin modifica'
}

# What nobody touches stays: the fields are only passed by.
keep_pending() {
  mark 'inicio deja pendiente'
  choose 104
  keys Return
  window '^(Orden|Op: 104)'
  keys Return Return F8 Tab Tab Tab Tab Tab Tab Tab Tab Tab space F3 F5
  window '^Zuvi: '
  becomes "queda pendiente como estaba" "$(header_of 104)" 'PE|0|1|8834||0;'
  check "con sus partidas" "$(value "$(lines_of 104)")" '7|CAN-DESAYUNO|4|;9|TRUFAS|6|Listón rojo;'
  mark 'fin deja pendiente'
}

# Today and the days after it until the same day of next month, without Saturdays.
working_days() {
  local days day n=0
  days=$((($(date -u -d "$today +1 month" +%s) - $(date -u -d "$today" +%s)) / 86400))
  for ((day = 0; day < days; day++)); do
    [ "$(date -u -d "$today +$day days" +%u)" -eq 6 ] || n=$((n + 1))
  done
  echo "$n"
}
shifts() {
  keys F9
  window '^Turnos$'
  mark 'inicio turno nuevo'
  keys alt+n
  window '^Turno$'
  local field
  for field in Nocturno Sabado 22:00 06:00 02:00 02:30; do
    typed "$field"
    keys Tab
  done
  # All free employees go in; the last one comes out again.
  keys Tab space Tab Tab Tab Tab End space shift+Tab shift+Tab space
  picture turno
  keys alt+a
  window '^Turnos$'
  becomes "turno nuevo" "SELECT turno, entrada, comida, salida, descanso, regcomida FROM turnos WHERE turno = 'Nocturno'" \
    'Nocturno|22:00|02:00|06:00|Sabado|02:30;'
  becomes "sus cuatro empleados" "SELECT empleado FROM turnoempleado WHERE turno = 'Nocturno' ORDER BY empleado" \
    'E05;E06;E07;E08;'
  settled
  mark 'fin turno nuevo'
  # It is the second one in the list, and its schedules are generated.
  keys shift+Tab Home Down
  keys Tab Tab Tab Tab Tab
  typed M
  keys alt+g
  box
  picture turnos-mes
  keys Return
  window '^Turnos$'
  becomes "horarios del mes" "SELECT COUNT( * ), COUNT(DISTINCT Empleado) FROM horarios WHERE turno = 'Nocturno'" \
    "$((4 * $(working_days)))|4;"
  becomes "sólo los suyos" "SELECT COUNT( * ) FROM horarios" "$((4 * $(working_days) + 4));"
  # The day after in the calendar by key, and a day of the third week with the mouse.
  mark 'inicio días'
  keys shift+Tab shift+Tab Right
  sleep 0.5
  click_at 138 406
  sleep 0.5
  mark 'fin días'
  picture turnos
  mark 'inicio turno modificado'
  keys alt+m
  window '^Turno$'
  keys Tab Tab ctrl+a
  typed 21:30
  keys alt+a
  window '^Turnos$'
  becomes "turno modificado" "SELECT entrada, salida FROM turnos WHERE turno = 'Nocturno'" '21:30|06:00;'
  settled
  mark 'fin turno modificado'
  # The list is being filled anew: until it is, there is nothing to delete.
  local tries
  for ((tries = 0; tries < 10; tries++)); do
    keys alt+e
    sleep 1
    [ -z "$(xdotool search --onlyvisible --name '^Zuvi$' 2>/dev/null)" ] || break
  done
  mark 'inicio turno eliminado'
  confirm turnos-pregunta
  window '^Turnos$'
  local table
  for table in turnos turnoempleado horarios; do
    becomes "turno eliminado de $table" "SELECT COUNT( * ) FROM $table WHERE turno = 'Nocturno'" '0;'
  done
  settled
  mark 'fin turno eliminado'
  check "los demás turnos" "$(value "SELECT turno FROM turnos ORDER BY turno")" 'Matutino;Reparto;Vespertino;'
  keys alt+F4
  window '^Zuvi: '
}

fractions() {
  local codes=() expected="" code i
  for ((i = 1; i <= 1000; i++)); do
    printf -v code 'C%04d' "$i"
    codes+=(C "${code:1:1}" "${code:2:1}" "${code:3:1}" "${code:4:1}" Return)
    expected+="$code;"
  done
  keys F8
  window '^Captura de fracciones$'
  # As fast as a reader sends them.
  timeout 200 xdotool key --delay 2 "${codes[@]}"
  local tries
  for ((tries = 0; tries < 300; tries++)); do
    [ "$(value "SELECT COUNT( * ) FROM fracciones")" != '1000;' ] || break
    sleep 0.2
  done
  check "mil códigos en orden" "$(value "SELECT codigo FROM fracciones ORDER BY id")" "$expected"
  typed '2.5*TRUFAS'
  keys Return
  becomes "cantidad y artículo" "SELECT codigo, articulo, cantidad FROM fracciones ORDER BY id DESC LIMIT 1" \
    'TRUFAS|TRUFAS|2.5;'
  picture fracciones
  keys alt+F4
  window '^Zuvi: '
}

compare_statements() {
  local p f
  awk -v base="$database" -f "$here/bitacora.awk" "$log" |
    grep -aiE "^SELECT '(inicio|fin) |(FROM|INTO|UPDATE|JOIN) (op|oppart|turnos|turnoempleado|empleados|horarios)( |$)" |
    # What the list and the reports of the host read is not the component's; times are those of the run.
    grep -avE '/\* mira \*/|^SELECT (op\.op, op\.estado, |op\.\*, almacen\.nombre |oppart\.\*, prods\.)|codigos' |
    sed -E "s/'($today|$(date +%F)) [0-9:]{8}'/'AHORA'/g; s/'($today|$(date +%F))'/'HOY'/g
      s/'$(date -d "$today -1 day" +%F)'/'AYER'/g; s/'$(date -d "$today +1 day" +%F)'/'MAÑANA'/g; s/'$(date -d "$today +4 days" +%F)'/'EN CUATRO'/g
      s/'[0-9]{2}:[0-9]{2}:[0-9]{2}'/'HORA'/g" \
      >"$seen"
  [ -z "${ZUVI_CAPTURAS:-}" ] || cp "$seen" "$ZUVI_CAPTURAS/"
  awk -f "$here/compara.awk" "$here/teclado.txt" "$seen" >"$temp/verdict"
  grep FALLA "$temp/verdict"
  read -r p f < <(count_last_line <"$temp/verdict")
  passed=$((passed + p)) failed=$((failed + f))
}

export ZUVI_BASE=$base ZUVI_USUARIO=ADMIN ZUVI_IMPRIME=no ZUVI_REPORTES=$temp/reportes
open_program 400
fixtures
picture principal
new_order
edit_order
finish_order
view_order
change_order
keep_pending
picture principal-despues
shifts
fractions
close_program
[ -z "$log" ] || compare_statements
finish
