#!/usr/bin/env bash
# Hands at every speed: a reader that scans on and on, also into a message; numbers and arrows in the grid; days in
# the calendar. What was typed is in the tables, all of it and nothing else.
# Usage: manos.sh BIN BASE zuvi|guion STEP…   BASE is empty before; a step is the seconds from one entry to the next.
# In the Wine prefix and on the display of the environment. ZUVI_CAPTURAS=folder leaves pictures.
set -u
bin=$1 base=$2 program=$3
. "${0%/*}/comun.sh" wine teclas comprueba
shift 3
today=$(date +%F)
export ZUVI_BASE=$base ZUVI_USUARIO=ADMIN ZUVI_IMPRIME=no

# every STEP COMMAND…: runs it once and waits for the rest of the step.
every() {
  local step=$1 start=${EPOCHREALTIME/,/.}
  shift
  "$@"
  sleep "$(LC_ALL=C awk -v a="$start" -v b="${EPOCHREALTIME/,/.}" -v s="$step" 'BEGIN {d = s - (b - a); print (d > 0 ? d : 0)}')"
}
# A code as a reader sends it, with its Enter.
scan() { timeout 20 xdotool key --delay 4 $(sed 's/./& /g' <<<"$1") Return; }
number_down() { timeout 20 xdotool key --delay 4 "${1:0:1}" "${1:1:1}" Down; }

program_pid=
start() { # what the script is to do
  if [ "$program" = zuvi ]; then
    run_wine 400 "$bin/Zuvi.exe" >"$temp/out" 2>&1 &
  else
    run_wine 400 "$bin/Zuvi.exe" "$(windows_path "$here/manos.vbs")" "$@" >"$temp/out" 2>&1 &
  fi
  program_pid=$!
  [ "$program" = zuvi ] || return 0
  window '^Zuvi: '
}
stop() {
  wine_stop
  wait "$program_pid" 2>/dev/null
}
open_order() { # number
  start "$1"
  if [ "$program" = zuvi ]; then
    keys alt+b ctrl+a
    typed "$1"
    keys Return
  fi
  window "^(Orden|Op).* $1\$"
}

codes=() list=""
for ((i = 1; i <= 40; i++)); do
  printf -v code 'M%03d' "$i"
  codes+=("$code")
  [ "$i" -gt 30 ] || list+="$code;"
done

fixtures() {
  local rows=() i
  for code in "${codes[@]}"; do
    rows+=("INSERT INTO prods (articulo, descrip, unidad, kit, costo) VALUES ('$code', 'Manos', 'PZA', 0, 1)")
  done
  rows+=("INSERT INTO prods (articulo, kit, costo) VALUES ('KIT-SIN-FIN', 1, 1), ('KIT-ROTO', 1, 1), ('KIT-REPITE', 1, 1), ('KIT-BUENO', 1, 1)"
    "INSERT INTO componen (articulo, Minimo) VALUES ('KIT-SIN-FIN', 1), ('KIT-ROTO', 0), ('KIT-REPITE', 1), ('KIT-BUENO', 1)"
    "INSERT INTO comppart (articulo, renglon, Componente, Cantidad, Almacen) VALUES ('KIT-SIN-FIN', 1, 'KIT-ROTO', 1, 1), ('KIT-ROTO', 1, 'M001', 1, 1), ('KIT-REPITE', 1, 'KIT-BUENO', 1, 1), ('KIT-BUENO', 1, 'M001', 1, 1)")
  for ((i = 0; i < 8; i++)); do
    rows+=("INSERT INTO op (op, estado, ocupado, usuario, f_emision, fechaEntrega, almacen) VALUES ($((900 + i)), 'PE', 0, 'ADMIN', '$today', '$today', '1')")
  done
  sql "${rows[@]}" >/dev/null
}

# 30 codes into an order; the tenth is unknown, and its message is left standing until the end.
reader() { # order step
  local i
  open_order "$1"
  keys F3
  sleep 0.3
  for ((i = 0; i < 30; i++)); do
    [ "$i" -ne 9 ] || every "$2" scan NOHAY
    every "$2" scan "${codes[i]}"
  done
  await_box '^Zuvi$' || give_up "mensaje del código desconocido"
  picture "lector-$2"
  keys Return
  becomes "lector cada $2 s, $program" "SELECT articulo FROM oppart WHERE op = $1 ORDER BY articulo" "$list"
  check "una pieza cada uno" "$(value "SELECT SUM(cantidad), COUNT( * ) FROM oppart WHERE op = $1")" '30|30;'
  stop
}
# 40 quantities down a column.
grid() { # order step
  local rows=() i expected=""
  for ((i = 0; i < 40; i++)); do
    rows+=("INSERT INTO oppart (id_entrada, op, articulo, cantidad, precio) VALUES ($(($1 * 100 + i)), $1, '${codes[i]}', 1, 1)")
    expected+="$((11 + i));"
  done
  sql "${rows[@]}" >/dev/null
  open_order "$1"
  keys Return Return F8 Tab Tab Tab Tab Tab Tab Tab Right
  sleep 0.3
  for ((i = 0; i < 40; i++)); do every "$2" number_down "$((11 + i))"; done
  becomes "rejilla cada $2 s, $program" "SELECT cantidad FROM oppart WHERE op = $1 ORDER BY id_entrada" "$expected"
  # A number that can be read in two ways is refused; what is typed while that is said goes on from there.
  keys Up Up Up Up Up 1 comma 6 9 0 Return
  await_box '^ZuviProduccion$' || give_up "cantidad rechazada"
  for i in 71 72 73; do every "$2" number_down "$i"; done
  keys Return
  becomes "rejilla tras un aviso" "SELECT cantidad FROM oppart WHERE op = $1 AND cantidad > 60 ORDER BY id_entrada" '71;72;73;'
  window "^(Orden|Op).* $1\$"
  picture "rejilla-$2"
  stop
}
# 100 days to the right, and a schedule for the day that is marked then.
calendar() { # step
  local i
  sql "DELETE FROM horarios" "UPDATE turnos SET descanso = ''" >/dev/null
  start turnos
  [ "$program" != zuvi ] || keys F9
  window '^Turnos$'
  sleep 0.5
  keys Home Down Tab Tab Tab Tab
  for ((i = 0; i < 100; i++)); do every "$1" keys Right; done
  picture "calendario-$1"
  keys Tab
  typed D
  keys alt+g
  becomes "cien días cada $1 s, $program" "SELECT DISTINCT fecha FROM horarios" "$(date -d "$today +100 days" +%F);"
  stop
}
# A kit whose sub-kit has a broken recipe reports it for ever: by the third box there is a way out, and no more
# than the reports of the two calls that it ends come after it.
endless() { # seconds at each box
  local i boxes=0 title=
  program=guion start desarma KIT-SIN-FIN
  for ((i = 0; i < 8; i++)); do
    await_box '^Zuvi(Produccion)?$' || break
    title=$(timeout 5 xdotool getwindowname "$ZUVI_WINDOW")
    boxes=$((boxes + 1))
    sleep "$1"
    if [ "$title" = Zuvi ]; then
      picture sin-fin
      check "salida en la caja" "$boxes" 3
      keys Left
    fi
    keys Return
    sleep 0.5
    ! grep -q fin "$temp/out" || break
  done
  check "la operación sin fin termina" "$(grep -c fin "$temp/out") $((boxes <= 5))" '1 1'
  stop
}
# One that never ends by itself and shows nothing: a window comes up that takes no key but its own.
unending() {
  local i shown='xdotool search --onlyvisible --name ^Operaci'
  program=guion start desarma KIT-REPITE
  for ((i = 0; i < 100; i++)); do [ -z "$($shown 2>/dev/null)" ] || break; sleep 0.1; done
  keys Return space Escape
  sleep 0.5
  picture_of_all operacion
  check "las teclas ajenas no la tocan" "$($shown 2>/dev/null | wc -l) $(grep -c fin "$temp/out")" '1 0'
  keys shift+Escape
  for ((i = 0; i < 100; i++)); do
    ! grep -q fin "$temp/out" || break
    [ -z "$(timeout 5 xdotool search --onlyvisible --name '^ZuviProduccion$' 2>/dev/null)" ] || keys Return
    sleep 0.1
  done
  check "Mayús+Esc la termina" "$(grep -c fin "$temp/out")" 1
  stop
}

# The shop is there before anybody works.
wine_shop "$bin/Zuvi.exe" || give_up tienda
fixtures
if [ "$program" = guion ]; then
  endless 1
  unending
fi
order=900
for step in "$@"; do
  reader "$order" "$step"
  grid "$((order + 1))" "$step"
  calendar "$step"
  order=$((order + 2))
done
finish
