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

# How another program than the one under test reaches the database.
# shellcheck disable=SC2154
case $base in
  DRIVER=*) source_string=$base ;;
  *) source_string="DRIVER={SQLite3};Database=$base" ;;
esac
