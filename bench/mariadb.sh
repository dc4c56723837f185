#!/usr/bin/env bash
# Measures assemblies on both engines: bench/mariadb.sh [benchmark options]
# A private MariaDB server and the measuring program share one processor. Let loose, a connection's thread may
# sit beside its client or across from it for a whole run, and that alone moves the ratio by a quarter.
set -eu
cd "$(dirname "$0")/.."
for part in comun setup build mariadb; do . "scripts/$part.sh"; done
results_start
need native mariadb
need_drivers
build_preset linux ensamble
mariadb_start
ZUVI_MARIADB=$(mariadb_database zuvi_bench)
export ZUVI_MARIADB
procesador=$(($(nproc) - 1))
taskset --all-tasks --cpu-list --pid "$procesador" "$ZUVI_MARIADB_PID" >/dev/null
taskset --cpu-list "$procesador" build/linux/bin/ensamble "$@"
