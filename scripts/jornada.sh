# shellcheck shell=bash
# A day's work in Zuvi.exe by keyboard alone, as a user does it, on a display without anybody: a new order with
# two lines is captured, finished and delivered. Leaves a picture of each step. Sourced after comun.sh, wine.sh and
# teclas.sh.

capture_order() {
  keys Insert
  await_window 'Orden de fabricaci' || return 1
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
  await_window 'Zuvi: '
}

# work_a_day ZUVI.EXE FOLDER
work_a_day() {
  local pid
  ZUVI_CAPTURAS=$2
  rm -rf "$ZUVI_CAPTURAS"
  mkdir -p "$ZUVI_CAPTURAS"
  export ZUVI_IMPRIME=no
  timeout --kill-after=5 300 wine "$1" </dev/null 2> >(grep -v wine32 >&2) &
  pid=$!
  await_window 'Zuvi: ' || return 1
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
  await_window 'Zuvi: ' || return 1
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
