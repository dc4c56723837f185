#!/usr/bin/env bash
# Makes the pictures of the documents: docs/img/jornada.png is the transcript of the example day in a console
# window, with the question that the component asks before it cancels an order; the others are the windows
# as they stand while tests/e2e/teclado.sh works at them. Needs the win64 build.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
for part in comun setup build wine; do
  # shellcheck disable=SC1090
  . "scripts/$part.sh"
done
need native windows screenshots
need_drivers
need_locales
build_preset win64 ZuviProduccion ZuviHost Zuvi || exit 1
wine_start win64
bin=$ZUVI_BUILD/win64/bin
wine_register "$bin" || die "no se pudieron registrar las DLL"
make_temp temp
mkdir -p docs/img
# shellcheck disable=SC2154
cat >"$temp/pregunta.vbs" <<'V'
Dim ambiente, produccion
Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = ambiente
produccion.CancelaOp 104
V
export ZUVI_USUARIO=ADMIN LC_ALL=es_MX.UTF-8
ZUVI_BASE=$temp/tienda.db run_wine 120 "$bin/Zuvi.exe" "$(windows_path "$PWD/sdk/samples/jornada.vbs")" \
  >"$temp/jornada.txt" || die "la jornada no terminó bien"
ZUVI_BASE=$temp/otra.db timeout 60 wine "$bin/Zuvi.exe" "$(windows_path "$temp/pregunta.vbs")" </dev/null 2>/dev/null &
for ((i = 0; i < 100; i++)); do
  window=$(xdotool search --onlyvisible --name '.' 2>/dev/null | tail -n 1)
  [ -z "$window" ] || break
  sleep 0.2
done
[ -n "${window:-}" ] || die "no apareció la pregunta"
sleep 1
import -window "$window" "$temp/pregunta.png"
convert -size 900x1300 "xc:#101418" -fill '#d8dee9' -font DejaVu-Sans-Mono -pointsize 13 \
  -annotate +14+28 "$(sed "s|$temp/||; s/%/%%/g" "$temp/jornada.txt")" -trim +repage \
  -bordercolor '#101418' -border 14 "$temp/texto.png"
convert -background '#101418' -gravity center "$temp/texto.png" \
  \( "$temp/pregunta.png" -bordercolor '#101418' -border 14 \) +append -strip \
  -define png:exclude-chunk=date,time docs/img/jornada.png
say "docs/img/jornada.png"

# The question is still there.
wine_stop
mkdir "$temp/ventanas"
ZUVI_CAPTURAS=$temp/ventanas bash tests/e2e/teclado.sh "$bin" "$temp/teclado.db" || die "las ventanas no hicieron lo esperado"
for name in principal orden-captura orden-consulta turnos turno fracciones; do
  cp "$temp/ventanas/$name.png" docs/img/
  say "docs/img/$name.png"
done
