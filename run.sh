#!/usr/bin/env bash
# Builds the component and lets it work a day at the example shop.
#   ./run.sh            the DLL, registered in a Wine of its own, driven by a VBScript client
#   ./run.sh --native   the same with the command line `zuvi` alone, without Wine
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
native=no
for argument in "$@"; do
  case $argument in
    --native) native=yes ;;
    -h | --help)
      sed -n '2,/^set /p' "$0" | sed '$d; s/^# \{0,1\}//'
      exit 0
      ;;
    *)
      echo "opción desconocida: $argument (./run.sh --help)" >&2
      exit 2
      ;;
  esac
done
for part in comun setup build wine; do
  # shellcheck disable=SC1090
  . "scripts/$part.sh"
done
unset ZUVI_RESULTS ZUVI_BASE
export ZUVI_USUARIO=ADMIN ZUVI_IDIOMA=es
shop=$ZUVI_BUILD/tienda
mkdir -p "$shop"

new_shop() { # file
  rm -f "$1" "$1-wal" "$1-shm"
  say "Base SQLite: ${1#"$ZUVI_ROOT"/} (se rehace en cada corrida)"
}

run_native() {
  local zuvi=$ZUVI_BUILD/linux/bin/zuvi base=$shop/nativa.db
  title "Construcción"
  need native
  need_drivers
  build_preset linux zuvi || exit 1
  title "Tienda de ejemplo"
  new_shop "$base"
  step() { # question-answer arguments…
    local answer=$1
    shift
    title "zuvi $*"
    "$zuvi" --base "$base" "$answer" "$@" </dev/null || die "zuvi $* terminó con código $?"
  }
  step --si crea
  step --si ordenes
  step --si existencias
  step --si orden 103
  step --si entrega 103
  step --si ensambla CAN-GOURMET 1 4
  step --si desensambla CAN-GOURMET 1.5 1
  title "zuvi cancela 104 (contestando que no)"
  if "$zuvi" --base "$base" --no cancela 104 </dev/null; then die "la orden 104 no debió cancelarse"; fi
  step --si cancela 104
  step --si cancela 102
  step --si ordenes
  step --si existencias
  say
  say "Jornada terminada"
}

run_windows() {
  local bin=$ZUVI_BUILD/win64/bin base=$shop/windows.db
  title "Construcción"
  need windows
  need_drivers
  build_preset win64 ZuviProduccion ZuviHost Zuvi || exit 1
  title "Registro de las DLL en un Wine propio"
  wine_start win64
  wine_register "$bin" || die "no se pudieron registrar las DLL"
  say "ZuviProduccion.dll y ZuviHost.dll registradas"
  title "Tienda de ejemplo"
  new_shop "$base"
  title "Cliente VBScript: tests/e2e/jornada.vbs"
  ZUVI_BASE=$base run_wine 120 "$bin/Zuvi.exe" "$(windows_path "$ZUVI_ROOT/tests/e2e/jornada.vbs")" ||
    die "el cliente terminó con código $?"
}

if [ "$native" = yes ]; then run_native; else run_windows; fi
