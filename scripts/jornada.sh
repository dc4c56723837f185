# shellcheck shell=bash
# A day's work in Zuvi.exe by keyboard alone, as a user does it, on a display without anybody: a new order with
# two lines is captured, finished and delivered. Leaves a picture of each step. Sourced after comun.sh, wine.sh.

# The visible window with that in its title, once there is one; false after 30 seconds.
await_window() { # title
  local tries window
  for ((tries = 0; tries < 150; tries++)); do
    window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1)
    if [ -n "$window" ]; then
      sleep 0.5
      printf '%s\n' "$window"
      return 0
    fi
    sleep 0.2
  done
  say "no apareció la ventana \"$1\"" >&2
  return 1
}
await_no_window() { # title
  local tries
  for ((tries = 0; tries < 150; tries++)); do
    [ -n "$(xdotool search --onlyvisible --name "$1" 2>/dev/null)" ] || return 0
    sleep 0.2
  done
  say "no se cerró la ventana \"$1\"" >&2
  return 1
}
keys() {
  xdotool key --delay 60 "$@"
  sleep 0.3
}
typed() {
  xdotool type --delay 25 "$1"
  sleep 0.3
}
# Answers the question in front with yes; its default is no.
answer_yes() {
  await_window '^Zuvi$' >/dev/null || return 1
  picture "$1"
  keys Left Return
  await_no_window '^Zuvi$'
}
picture() { # name
  import -window root "$ZUVI_PICTURES/$1.png" && say "  $1.png"
}

capture_order() {
  keys Insert
  await_window 'Orden de fabricaci' >/dev/null || return 1
  # From the number of the purchase order by Enter to the warehouse, and from there to the article.
  typed 9001
  keys Return
  typed 1
  keys Return
  typed CAN-GOURMET
  keys Return
  typed 2
  keys Return
  typed TRUFAS
  keys Return
  typed 6
  keys Return
  picture 2-orden-nueva
  keys F5
  answer_yes 3-pregunta || return 1
  # Its caption tells the number since the first line was saved.
  await_no_window '^Op: '
}

# work_a_day ZUVI.EXE FOLDER
work_a_day() {
  local pid
  ZUVI_PICTURES=$2
  rm -rf "$ZUVI_PICTURES"
  mkdir -p "$ZUVI_PICTURES"
  export ZUVI_IMPRIME=no
  timeout --kill-after=5 300 wine "$1" </dev/null 2> >(grep -v wine32 >&2) &
  pid=$!
  await_window 'Zuvi: ' >/dev/null || return 1
  picture 1-lista
  capture_order || {
    picture error
    return 1
  }
  sleep 1
  picture 4-lista-con-la-orden
  # The new order is at the top.
  keys Home F6
  answer_yes 5-pregunta-entrega || return 1
  sleep 2
  picture 6-entregada
  keys alt+s
  wait "$pid" || return 1
  # What the keyboard did is in the database.
  cat >"$ZUVI_WINE_DIR/revisa.vbs" <<'V'
Dim filas
Set filas = Ambiente.Conexion.Execute("SELECT op.op, op.estado, COUNT( * ) AS partidas, SUM(oppart.terminado) AS terminado FROM op, oppart WHERE oppart.op = op.op AND op.ordencompra = 9001 GROUP BY op.op, op.estado")
If filas.EOF Then WScript.Quit 1
WScript.Echo "Orden", filas.Fields("op").Value, filas.Fields("estado").Value, "partidas " & filas.Fields("partidas").Value & ", terminado " & filas.Fields("terminado").Value
If filas.Fields("estado").Value <> "CO" Or filas.Fields("partidas").Value <> 2 Or filas.Fields("terminado").Value <> 8 Then WScript.Quit 1
V
  run_wine 60 "$1" "$(windows_path "$ZUVI_WINE_DIR/revisa.vbs")"
}
