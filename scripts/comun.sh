# shellcheck shell=bash
# Common ground of the scripts: where things are, how a suite runs and how its checks are counted.
# Sourced; everything that a run starts is ended by `at_exit` commands, whatever way the run ends.

ZUVI_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
ZUVI_BUILD=$ZUVI_ROOT/build
ZUVI_LOGS=$ZUVI_BUILD/log
ZUVI_CACHE=${ZUVI_CACHE:-$ZUVI_BUILD/cache}
export ZUVI_ROOT ZUVI_BUILD ZUVI_LOGS ZUVI_CACHE
mkdir -p "$ZUVI_LOGS" "$ZUVI_CACHE"

# The four settings of the region under which everything must give the same results.
# shellcheck disable=SC2034
ZUVI_LOCALES="C es_MX.UTF-8 es_ES.UTF-8 tr_TR.UTF-8"

# Servers live where an ordinary account does not look.
export PATH=$PATH:/usr/sbin:/sbin

say() { printf '%s\n' "$*"; }
title() { printf '\n== %s\n' "$*"; }
die() {
  printf 'ERROR: %s\n' "$*" >&2
  exit 1
}

# at_exit COMMAND: run when the script ends, last registered first.
ZUVI_EXIT_COMMANDS=()
ZUVI_OWNER=$BASHPID
at_exit() { ZUVI_EXIT_COMMANDS=("$1" "${ZUVI_EXIT_COMMANDS[@]}"); }
run_exit_commands() {
  local status=$? command
  # Background jobs are copies of this shell and inherit the trap: only the owner cleans up.
  [ "$BASHPID" = "$ZUVI_OWNER" ] || return "$status"
  trap - EXIT
  for command in "${ZUVI_EXIT_COMMANDS[@]}"; do eval "$command" || true; done
  exit "$status"
}
own_exit_commands() {
  ZUVI_OWNER=$BASHPID
  ZUVI_EXIT_COMMANDS=()
  trap run_exit_commands EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM HUP
}
own_exit_commands

# A private folder that goes away with the run. It must be short: sockets live in it.
make_temp() { # variable
  local dir
  dir=$(mktemp -d /tmp/zuvi.XXXXXX)
  chmod 755 "$dir"
  printf -v "$1" '%s' "$dir"
  at_exit "rm -rf '$dir'"
}

# --- Counting -------------------------------------------------------------------------------------------

# Every suite ends by adding one line "passed failed name" here.
results_start() {
  ZUVI_RESULTS=$ZUVI_LOGS/results
  : >"$ZUVI_RESULTS"
  export ZUVI_RESULTS
}
tally() { # name passed failed [seconds]
  printf '%s %s %s\n' "$2" "$3" "$1" >>"$ZUVI_RESULTS"
  if [ "$3" -eq 0 ]; then
    printf '  bien   %-38s %5d pruebas%s\n' "$1" "$2" "${4:+  ($4 s)}"
  else
    printf '  FALLA  %-38s %5d pruebas, %d fallas%s\n' "$1" "$2" "$3" "${4:+  ($4 s)}"
  fi
}
skipped() { printf '  omitida %-37s %s (no cuenta como aprobada)\n' "$1" "$2"; } # name reason

# Prints the sum as the last line; false when something failed or nothing ran.
results_end() {
  local passed failed
  read -r passed failed < <(awk '{p += $1; f += $2} END {print p + 0, f + 0}' "$ZUVI_RESULTS")
  if [ "$failed" -gt 0 ]; then
    title "Con fallas (registros en build/log)"
    awk '$2 > 0 {f = $2; $1 = $2 = ""; print "  " f " en" $0}' "$ZUVI_RESULTS"
  fi
  printf '%d passed, %d failed\n' "$passed" "$failed"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}

# suite NAME SECONDS COUNTER COMMAND…: runs a command under a time limit and counts what its output tells.
# COUNTER is a function that reads the output and prints "passed failed".
suite() {
  local name=$1 limit=$2 counter=$3 log status=0 passed failed start=$SECONDS
  shift 3
  log=$ZUVI_LOGS/$(printf '%s' "$name" | tr -c 'A-Za-z0-9_.\n-' '_').log
  timeout --kill-after=10 "$limit" "$@" >"$log" 2>&1 </dev/null || status=$?
  read -r passed failed < <("$counter" "$status" <"$log")
  # A program that dies, hangs or runs nothing never passes for one without faults.
  if [ "$failed" -eq 0 ] && { [ "$status" -ne 0 ] || [ "$passed" -eq 0 ]; }; then failed=1; fi
  tally "$name" "$passed" "$failed" "$((SECONDS - start))"
  if [ "$failed" -gt 0 ]; then
    printf '    (código %d; registro %s)\n' "$status" "${log#"$ZUVI_ROOT"/}"
    grep -aE 'FAILED|FALLA|Failure|ERROR|Error|error:|\*\*\*' "$log" | head -n 25 | cut -c1-300 | sed 's/^/    | /'
    printf '    | …\n'
    tail -n 15 "$log" | cut -c1-300 | sed 's/^/    | /'
  fi
}

# Output of GoogleTest programs, straight or through `ctest --verbose`. Each case counts; a program that died
# is one failure more, told by ctest's own list.
count_gtest() {
  awk '/\[       OK \] /{p++}
       /\[  FAILED  \] .*\([0-9]+ ms\)/{f++}
       /\*\*\*(Failed|Timeout|Exception|Not Run)/ || /\(SEGFAULT|Subprocess aborted|ILLEGAL\)/{c++}
       END{if (f + 0 < c + 0) f = c; print p + 0, f + 0}'
}
# A script's own last line "N passed, N failed".
count_last_line() {
  awk '/^[0-9]+ passed, [0-9]+ failed\r?$/{p = $1; f = $3; seen = 1} END{if (seen) print p, f; else print 0, 1}'
}
# A command that checks one thing, told by its exit code.
count_status() { if [ "$1" -eq 0 ]; then echo 1 0; else echo 0 1; fi; }
