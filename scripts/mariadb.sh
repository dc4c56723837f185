# shellcheck shell=bash
# A private MariaDB server for one run: own data folder, own port on the loopback, general log to a file, binary
# log as on a server that is backed up or replicated, ended with the run. Sourced after comun.sh.

free_port() {
  local port
  while :; do
    port=$((20000 + RANDOM % 40000))
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || break
  done
  printf '%d\n' "$port"
}

mariadb_root() { mariadb --no-defaults --socket="$ZUVI_MARIADB_DIR/my.sock" -u root --batch --skip-column-names "$@"; }

mariadb_try_start() { # [port]
  local tries user_option=()
  ZUVI_MARIADB_PORT=${1:-$(free_port)}
  [ "$(id -u)" -eq 0 ] && user_option=(--user="$ZUVI_MARIADB_ACCOUNT")
  TMPDIR=$ZUVI_MARIADB_DIR mariadbd --no-defaults "${user_option[@]}" --datadir="$ZUVI_MARIADB_DIR/data" \
    --socket="$ZUVI_MARIADB_DIR/my.sock" --pid-file="$ZUVI_MARIADB_DIR/pid" \
    --bind-address=127.0.0.1 --port="$ZUVI_MARIADB_PORT" --skip-name-resolve \
    --log-bin="$ZUVI_MARIADB_DIR/bin" --server-id=1 --sync-binlog=0 \
    --general-log --general-log-file="$ZUVI_MARIADB_LOG" --log-output=FILE \
    --innodb-buffer-pool-size=64M --character-set-server=utf8mb4 \
    >>"$ZUVI_LOGS/mariadb.log" 2>&1 </dev/null &
  ZUVI_MARIADB_PID=$!
  for ((tries = 0; tries < 300; tries++)); do
    kill -0 "$ZUVI_MARIADB_PID" 2>/dev/null || return 1
    if timeout 10 mariadb --no-defaults --socket="$ZUVI_MARIADB_DIR/my.sock" -u root -e 'SELECT 1' \
      >/dev/null 2>&1; then return 0; fi
    sleep 0.1
  done
  return 1
}

mariadb_start() {
  local attempt
  make_temp ZUVI_MARIADB_DIR
  ZUVI_MARIADB_LOG=$ZUVI_MARIADB_DIR/general.log
  ZUVI_MARIADB_ACCOUNT=$(id -un)
  if [ "$(id -u)" -eq 0 ]; then
    # The server refuses to run as root.
    if id mysql >/dev/null 2>&1; then ZUVI_MARIADB_ACCOUNT=mysql; else ZUVI_MARIADB_ACCOUNT=nobody; fi
    chown "$ZUVI_MARIADB_ACCOUNT" "$ZUVI_MARIADB_DIR"
  fi
  : >"$ZUVI_LOGS/mariadb.log"
  # Its account may write there, and in no other folder of the run.
  TMPDIR=$ZUVI_MARIADB_DIR timeout 120 mariadb-install-db --no-defaults --user="$ZUVI_MARIADB_ACCOUNT" --auth-root-authentication-method=normal \
    --force --skip-name-resolve --skip-test-db --datadir="$ZUVI_MARIADB_DIR/data" >>"$ZUVI_LOGS/mariadb.log" 2>&1 </dev/null ||
    { tail -n 20 "$ZUVI_LOGS/mariadb.log" >&2; die "no se pudo preparar el servidor MariaDB"; }
  at_exit mariadb_stop
  for attempt in 1 2 3; do
    if mariadb_try_start; then
      # The rights that docs/servidores.md tells: one account makes the tables (and ALTER, for the tests), one works.
      mariadb_root -e "CREATE USER zuvi@127.0.0.1 IDENTIFIED BY 'zuvi';
                       GRANT SELECT, INSERT, UPDATE, DELETE, CREATE, DROP, INDEX, ALTER, CREATE VIEW
                         ON \`zuvi%\`.* TO zuvi@127.0.0.1;
                       CREATE USER taller@127.0.0.1 IDENTIFIED BY 'p;{a}b';
                       GRANT SELECT, INSERT, UPDATE, DELETE ON \`zuvi%\`.* TO taller@127.0.0.1;"
      export ZUVI_MARIADB_PORT ZUVI_MARIADB_LOG ZUVI_MARIADB_DIR
      return 0
    fi
    # Somebody else took the port in between, or the server died.
    kill "$ZUVI_MARIADB_PID" 2>/dev/null || true
    wait "$ZUVI_MARIADB_PID" 2>/dev/null || true
    [ "$attempt" -lt 3 ] || break
  done
  tail -n 20 "$ZUVI_LOGS/mariadb.log" >&2
  die "no arrancó el servidor MariaDB"
}

mariadb_stop() {
  [ -n "${ZUVI_MARIADB_PID:-}" ] || return 0
  kill "$ZUVI_MARIADB_PID" 2>/dev/null || true
  local tries
  for ((tries = 0; tries < 100; tries++)); do
    kill -0 "$ZUVI_MARIADB_PID" 2>/dev/null || break
    sleep 0.1
  done
  kill -9 "$ZUVI_MARIADB_PID" 2>/dev/null || true
  wait "$ZUVI_MARIADB_PID" 2>/dev/null || true
  ZUVI_MARIADB_PID=
}

# What happens to servers: it dies without a word, freezes, goes on, comes back where it was.
mariadb_die() {
  kill -9 "$ZUVI_MARIADB_PID"
  wait "$ZUVI_MARIADB_PID" 2>/dev/null
}
mariadb_freeze() { kill -STOP "$ZUVI_MARIADB_PID"; }
mariadb_thaw() { kill -CONT "$ZUVI_MARIADB_PID"; }
mariadb_come_back() { mariadb_try_start "$ZUVI_MARIADB_PORT"; }

# Makes an empty database and prints the connection string to it.
mariadb_database() { # name
  mariadb_root -e "DROP DATABASE IF EXISTS \`$1\`; CREATE DATABASE \`$1\` CHARACTER SET utf8mb4;" || return 1
  printf 'DRIVER={MariaDB Unicode};Server=127.0.0.1;Port=%s;Database=%s;User=zuvi;Password=zuvi\n' \
    "$ZUVI_MARIADB_PORT" "$1"
}
