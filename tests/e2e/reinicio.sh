#!/usr/bin/env bash
# A server that dies, freezes and comes back under an order that is being captured in Zuvi.exe: what was typed
# stays, every message says what happened, and the order is finished in the same window.
# Usage: reinicio.sh BIN   in the Wine prefix and on the display of the environment; the server is one of its own.
set -u
bin=$1 base=
. "${0%/*}/comun.sh" setup mariadb wine teclas
mariadb_start
base=$(mariadb_database zuvi_reinicio)
# shellcheck source=../../scripts/comprueba.sh
. "$here/../../scripts/comprueba.sh"
export ZUVI_BASE=$base ZUVI_USUARIO=ADMIN ZUVI_IMPRIME=no ZUVI_LIMITE_CONEXION=2 ZUVI_LIMITE_LECTURA=2 ZUVI_LIMITE_ESCRITURA=2

# Closes the messages that stand, one after the other; there has to be one at least, and few.
read_boxes() { # name
  local boxes=0 quiet=0
  for ((quiet = 0; quiet < 30; quiet++)); do
    ZUVI_WINDOW=$(timeout 5 xdotool search --onlyvisible --name '^Zuvi(Produccion)?$' 2>/dev/null | tail -n 1)
    if [ -n "$ZUVI_WINDOW" ]; then
      sleep 0.3
      picture "$1-$boxes"
      keys Return
      boxes=$((boxes + 1)) quiet=0
    elif [ "$boxes" -gt 0 ] && [ "$quiet" -gt 10 ]; then
      break
    fi
    sleep 0.3
  done
  check "avisos: $1" "$((boxes >= 1 && boxes <= 4))" 1
}
line() { # article quantity
  typed "$1"
  keys Return
  typed "$2"
  keys Return
}

open_program 300
keys Insert
window '^Orden de fabricaci'
typed 9001
keys Return Return
line CAN-GOURMET 2
window '^Op: '
op=$(value "SELECT MAX(op) FROM op" | tr -d ';')
lines="SELECT articulo, cantidad FROM oppart WHERE op = $op ORDER BY id_entrada"
becomes "la primera partida" "$lines" 'CAN-GOURMET|2;'

mariadb_die
line TRUFAS 6
read_boxes muerto
mariadb_come_back
window '^Op: '
picture vuelto
# The article was left where it was typed.
keys F9
becomes "la partida tecleada sigue ahí" "$lines" 'CAN-GOURMET|2;TRUFAS|6;'

mariadb_freeze
line TRUFAS 7
read_boxes helado
mariadb_thaw
window '^Op: '
picture deshelado
keys F5
answer_yes pregunta || give_up pregunta
window '^Zuvi: '
becomes "la orden se finaliza" "SELECT estado, ocupado, ordencompra FROM op WHERE op = $op" 'CO|0|9001;'
check "con lo tecleado y sin repetir" "$(value "$lines" | grep -c '^CAN-GOURMET|2;TRUFAS|6;\(TRUFAS|7;\)\?$')" 1

mariadb_die
keys F5
read_boxes lista
mariadb_come_back
value "UPDATE op SET estado = 'PE' WHERE op = $op"
window '^Zuvi: '
# The list works again: the order is found by it and opens.
keys F5 alt+b ctrl+a
typed "$op"
keys Return
window "$op\$"
keys alt+F4
window '^Zuvi: '
becomes "y queda libre" "SELECT estado, ocupado FROM op WHERE op = $op" 'PE|0;'
close_program
finish
