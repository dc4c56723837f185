#!/usr/bin/env bash
# Builds everything and runs every check. The last line is "N passed, N failed"; the exit code is 0 only
# when none failed.
#   ./test.sh            everything that this machine can run
#   ./test.sh --native   without Windows: no mingw, no Wine
#   ./test.sh --quick    one locale, no sanitizers, no 32-bit Wine
#   ./test.sh --no-wine32  everything but the 32-bit Wine, which needs root and the network once
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
windows=yes quick=no wine32=yes
for argument in "$@"; do
  case $argument in
    --native) windows=no ;;
    --quick) quick=yes wine32=no ;;
    --no-wine32) wine32=no ;;
    -h | --help)
      sed -n '2,/^set /p' "$0" | sed '$d; s/^# \{0,1\}//'
      exit 0
      ;;
    *)
      echo "opción desconocida: $argument (./test.sh --help)" >&2
      exit 2
      ;;
  esac
done
for part in comun setup build mariadb wine wine32 suites; do
  # shellcheck disable=SC1090
  . "scripts/$part.sh"
done
# What the programs under test write goes with the run.
make_temp TMPDIR
export TMPDIR
started=$SECONDS
results_start
# shellcheck disable=SC2034
[ "$quick" = no ] || ZUVI_LOCALES=C

title "Preparación"
groups=(native mariadb format)
[ "$windows" = no ] || groups+=(windows screenshots)
need "${groups[@]}"
need_drivers
need_locales
mariadb_start
say "Servidor MariaDB propio en el puerto $ZUVI_MARIADB_PORT (registro general encendido)"

# The machine is kept busy: while one thing compiles, what is built already is being tested.
title "Construcción y pruebas"
win32=no
jobs_of_ours=()
in_background() {
  "$@" &
  jobs_of_ours+=($!)
}
in_background format_suite
if build_preset linux; then
  in_background native_suites
  in_background server_suites
fi
if [ "$windows" = yes ]; then
  if [ "$wine32" = yes ]; then in_background wine32_root; fi
  if build_preset win64; then
    in_background windows_suites
    in_background hands_suites
  fi
fi
in_background tidy_suite
if [ "$windows" = yes ] && build_preset win32; then win32=yes; fi
# Beside the 32-bit Wine, which mostly waits.
asan_job=
if [ "$quick" = no ] && build_preset asan; then
  asan_suites &
  asan_job=$!
fi
if [ "${#jobs_of_ours[@]}" -gt 0 ]; then wait "${jobs_of_ours[@]}"; fi
if [ "$windows" = yes ]; then
  if [ "$wine32" = no ]; then
    skipped "Wine de 32 bits" "no se pidió"
  elif [ "$win32" = yes ]; then
    wine32_suites
  fi
else
  skipped "Windows" "--native"
fi
[ -z "$asan_job" ] || wait "$asan_job"

title "Resultado ($(((SECONDS - started) / 60)) min $(((SECONDS - started) % 60)) s)"
results_end
