#!/usr/bin/env bash
# The batch operations through `zuvi`, seen from outside: the database is filled and read by another program
# (isql), and the statements come from the server's own log, or from the trace where there is no server.
# Usage: nativo.sh ZUVI BASE [LOG DATABASE]   (the last two for MariaDB)
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=../../scripts/comun.sh
. "$here/../../scripts/comun.sh"
zuvi=$1 base=$2 log=${3:-} database=${4:-}
# shellcheck source=../../scripts/comprueba.sh
. "$here/../../scripts/comprueba.sh"
make_temp temp
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
cost="SELECT ROUND(costo * 10000) FROM prods WHERE articulo = "

operation ensamble 0 ensambla E2E-MESA 3 6
check "tras ensamblar" "$(value "$figures")" \
  "E2E-MESA|3|6000|12075;E2E-PATA|2|176000|57200;E2E-TABLA|1|97000|121250;E2E-TORNILLO|1|925000|6475;"
check "costo de la mesa" "$(value "$cost'E2E-MESA'")" "201250;"
operation desensamble 0 desensambla E2E-MESA 1.5 3
check "tras desensamblar" "$(value "$figures")" \
  "E2E-MESA|3|4500|9056;E2E-PATA|2|182000|59150;E2E-TABLA|1|97750|122188;E2E-TORNILLO|1|943750|6606;"
operation entrega 0 entrega 9001
check "tras entregar" "$(value "$figures")" \
  "E2E-BANCO|3|4000|8900;E2E-MESA|3|6500|13081;E2E-PATA|2|162000|52650;E2E-TABLA|1|92750|115938;E2E-TORNILLO|1|918750|6431;"
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

# Programs killed at any moment, another one drawing from the same key: the key goes on working.
draw() { # file times
  local i
  for ((i = 0; i < $2; i++)); do run_zuvi folio E2E >>"$1" 2>>folio.err || return 1; done
}
draw one 40 &
other=$!
for delay in 0 1 2 3 4 5 6 7 8 9; do
  "$zuvi" --base "$base" folio E2E >>two 2>/dev/null </dev/null &
  victim=$!
  sleep "0.00$delay"
  { kill -9 "$victim" && wait "$victim"; } 2>/dev/null
done
wait "$other"
draw three 5
check "tras matar a diez" "$(sort -n one two three | uniq -d | wc -l | tr -d ' ') $(wc -l <one | tr -d ' ') $(wc -l <three | tr -d ' ')" "0 40 5"
[ ! -s folio.err ] || { cat folio.err; check "folios sin error" no sí; }
finish
