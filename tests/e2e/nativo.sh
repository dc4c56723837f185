#!/usr/bin/env bash
# The batch operations through `zuvi`, seen from outside: the database is filled and read by another program
# (isql), and the statements come from the server's own log, or from the trace where there is no server.
# Usage: nativo.sh ZUVI BASE [LOG DATABASE]   (the last two for MariaDB)
set -u
zuvi=$1 base=$2 log=${3:-} database=${4:-}
. "${0%/*}/comun.sh" comprueba
# shellcheck disable=SC2154
cd "$temp" || exit 1
run_zuvi() { timeout 60 "$zuvi" --base "$base" --usuario E2E "$@" </dev/null; }

statements() { # from this many on
  if [ -n "$log" ]; then
    awk -v base="$database" -f "$here/bitacora.awk" "$log" | tail -n "+$(($1 + 1))"
  elif [ -f traza ]; then
    sed -n 's/^sentencia\t//p' traza | tail -n "+$(($1 + 1))"
  fi
}

# What the program itself asks: opening the database, looking the order up, telling what became of it.
export ANTES="^(SET |PRAGMA |SELECT [a-z_.]+, [a-z_.]+ FROM (information_schema\\.|sqlite_master)|SELECT version FROM esquema |SELECT articulo FROM prods WHERE articulo = |SELECT clave FROM procesos WHERE vetado <> 0$|SELECT op FROM op WHERE op = |SELECT articulo, cantidad, terminado FROM oppart WHERE op = )"
export DESPUES="^SELECT [^;]* FROM (op|oppart) WHERE op = [0-9]+( ORDER BY id_entrada)?$"

operation() { # name expected-exit-code arguments…
  local name=$1 code=$2 before status=0
  shift 2
  before=$(statements 0 | wc -l)
  run_zuvi --traza traza "$@" >out 2>&1 || status=$?
  [ "$status" -eq "$code" ] || cat out
  check "$name: código de salida" "$status" "$code"
  [ -n "$name" ] || return 0
  statements "$before" >seen
  if awk -v operacion="$name" -f "$here/compara.awk" \
    "$here/sentencias.txt" seen >verdict; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    grep FALLA verdict
  fi
}

run_zuvi crea >out 2>&1 || { cat out; check "crear la tienda" no sí; finish; }
sql "$(cat "$here/datos.sql")" >out || cat out
check "datos puestos" "$(value "SELECT COUNT(*) FROM oppart WHERE op > 9000")" "6;"

figures="SELECT articulo, almacen, ROUND(cantidad * 1000), valor FROM existencias WHERE articulo LIKE 'E2E-%' ORDER BY articulo"

operation ensamble 0 ensambla E2E-MESA 3 6
operation desensamble 0 desensambla E2E-MESA 1.5 3
operation entrega 0 entrega 9001
check "tras entregar" "$(value "$figures")" \
  "E2E-BANCO|3|4000|8900;E2E-MESA|3|6500|13081;E2E-PATA|2|162000|52650;E2E-TABLA|1|92750|115938;E2E-TORNILLO|1|918750|6431;"
check "costo de la mesa" "$(value "SELECT ROUND(costo * 10000) FROM prods WHERE articulo = 'E2E-MESA'")" "201250;"
operation "desensamble con orden" 0 desensambla E2E-BANCO 2 3 9001
check "valor conservado" "$(value "SELECT SUM(valor) FROM existencias WHERE articulo LIKE 'E2E-%'")" "197000;"
operation "cancela no" 1 cancela 9002 --no
check "la orden sigue" "$(value "SELECT COUNT(*) FROM op WHERE op = 9002")" "1;"
operation "cancela pendiente" 0 cancela 9002 --si
check "orden y partidas borradas" \
  "$(value "SELECT COUNT(*) FROM op WHERE op = 9002")$(value "SELECT COUNT(*) FROM oppart WHERE op = 9002")" "0;0;"
operation "cancela confirmada" 0 cancela 9003 --si
check "orden cerrada con partidas" \
  "$(value "SELECT cerrado FROM op WHERE op = 9003")$(value "SELECT COUNT(*) FROM oppart WHERE op = 9003")" "1;1;"
operation "" 1 cancela 9999 --si
operation "" 2 ensambla E2E-MESA tres 6
operation "" 1 ensambla E2E-NADA 3 1

finish
