#!/usr/bin/env bash
# What runs inside `wine32_run`: the 32-bit DLLs on the i386 system.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for part in comun setup mariadb wine suites; do
  # shellcheck disable=SC1090
  . "$here/$part.sh"
done
# shellcheck disable=SC2034
ZUVI_LOCALES="C es_ES.UTF-8"
wine_start win32
wine_suites "$ZUVI_BUILD/win32" x86 C
places_suite x86 "$ZUVI_BUILD/win32/bin" 32
