# shellcheck shell=bash
# What a script of checks starts with: counting, and the verdict as the last line. Sourced after comun.sh; the
# database under test is `base`, a connection string or a SQLite file.
passed=0 failed=0

check() { # what got expected
  if [ "$2" = "$3" ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FALLA %s: vino [%s], se esperaba [%s]\n' "$1" "$2" "$3"
  fi
}
finish() {
  printf '%d passed, %d failed\n' "$passed" "$failed"
  [ "$failed" -eq 0 ]
  exit
}
# A step that never happens leaves nothing to go on with.
give_up() { # what
  picture_of_all error
  check "$1" no sí
  finish
}
picture_of_all() { [ -z "${ZUVI_CAPTURAS:-}" ] || import -window root "$ZUVI_CAPTURAS/$1.png"; }
window() { await_window "$1" || give_up "ventana $1"; }

# How another program than the one under test reaches the database.
# shellcheck disable=SC2154
case $base in
  DRIVER=*) source_string=$base ;;
  *) source_string="DRIVER={SQLite3};Database=$base" ;;
esac
sql() { printf '%s\n' "$@" | timeout 60 isql -k "$source_string" -b -x0x7c 2>/dev/null; }
# What a script asks is marked, to be told from the program's statements. Zero decimals are not shown.
value() { # query
  sql "${1/#SELECT/SELECT \/* mira *\/}" | tr -d '\r' | awk 'NF' | sed -E 's/\.0*(\||$)/\1/g' | tr '\n' ';'
}
# Waits for the tables to be as a person expects them.
becomes() { # what query expected
  local tries got=
  for ((tries = 0; tries < 300; tries++)); do
    got=$(value "$2")
    [ "$got" != "$3" ] || break
    sleep 0.1
  done
  check "$1" "$got" "$3"
}
