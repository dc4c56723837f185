#!/usr/bin/env bash
# Builds the component and lets it work at the example shop.
#   ./run.sh            the program Zuvi.exe in a Wine of its own: its windows open on your display. Without a
#                       display a day is worked by keyboard on a virtual one, and pictures of it are left
#   ./run.sh --guion    a day's work of a VBScript client that drives the registered DLL
#   ./run.sh --native   the same with the command line `zuvi` alone, without Wine
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
mode=windows
for argument in "$@"; do
  case $argument in
    --native) mode=native ;;
    --guion) mode=script ;;
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
for part in comun setup build wine teclas jornada; do
  # shellcheck disable=SC1090
  . "scripts/$part.sh"
done
unset ZUVI_RESULTS ZUVI_BASE
export ZUVI_USUARIO=ADMIN ZUVI_IDIOMA=es ZUVI_REPORTES=$ZUVI_BUILD/reportes
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

build_windows() {
  bin=$ZUVI_BUILD/win64/bin base=$shop/windows.db
  title "Construcción"
  need windows
  need_drivers
  build_preset win64 ZuviProduccion ZuviHost Zuvi || exit 1
}

run_windows() {
  build_windows
  title "Tienda de ejemplo"
  new_shop "$base"
  export ZUVI_BASE=$base LC_ALL=${LC_ALL:-${LANG:-C.UTF-8}}
  if [ -n "${DISPLAY:-}" ]; then
    wine_start win64 visible
    wine_shop "$bin/Zuvi.exe" || die "no se pudo crear la tienda de ejemplo"
    title "Zuvi.exe: cierre su ventana para terminar"
    # Somebody works here: it takes as long as it takes.
    wine "$bin/Zuvi.exe" </dev/null 2> >(grep -v wine32 >&2) || die "Zuvi.exe terminó con código $?"
    return
  fi
  need screenshots
  title "Sin pantalla: una jornada por teclado en una virtual"
  wine_start win64
  wine_shop "$bin/Zuvi.exe" || die "no se pudo crear la tienda de ejemplo"
  work_a_day "$bin/Zuvi.exe" "$ZUVI_BUILD/jornada" || die "la jornada no terminó bien"
  say "Imágenes de la jornada: ${ZUVI_BUILD#"$ZUVI_ROOT"/}/jornada"
  say "Jornada terminada"
}

run_script() {
  build_windows
  title "Registro de las DLL en un Wine propio"
  wine_start win64
  wine_register "$bin" || die "no se pudieron registrar las DLL"
  say "ZuviProduccion.dll y ZuviHost.dll registradas"
  title "Tienda de ejemplo"
  new_shop "$base"
  title "Cliente VBScript: sdk/samples/jornada.vbs"
  ZUVI_BASE=$base run_wine 120 "$bin/Zuvi.exe" "$(windows_path "$ZUVI_ROOT/sdk/samples/jornada.vbs")" ||
    die "el cliente terminó con código $?"
}

case $mode in
  native) run_native ;;
  script) run_script ;;
  *) run_windows ;;
esac
