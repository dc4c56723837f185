# shellcheck shell=bash
# A private Windows for one run: own Wine prefix, own display with a free number, no dialogs that wait for
# anybody. Sourced after comun.sh.

# The display; the server itself picks a number that is free.
display_start() {
  local pipe number
  make_temp ZUVI_DISPLAY_DIR
  pipe=$ZUVI_DISPLAY_DIR/number
  mkfifo "$pipe"
  Xvfb -displayfd 7 -screen 0 1280x900x24 -nolisten tcp 7<>"$pipe" >"$ZUVI_LOGS/xvfb.log" 2>&1 </dev/null &
  at_exit "kill $! 2>/dev/null"
  exec 8<>"$pipe"
  IFS= read -r -t 30 -u 8 number || die "no arrancó la pantalla virtual (build/log/xvfb.log)"
  exec 8>&-
  export DISPLAY=:$number
}

# The prefix is made once per run: about ten seconds. With `visible` its windows come up on the display that
# is there, among the user's other windows, else on a display of their own.
wine_start() { # win64|win32 [visible]
  make_temp ZUVI_WINE_DIR
  export WINEPREFIX=$ZUVI_WINE_DIR/prefix WINEARCH=$1 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
  # Debian's launcher tells that the 32-bit half is missing; that one is tried in a root of its own.
  at_exit wine_stop
  # Pages go with the run, not among the documents of whoever runs it.
  export ZUVI_REPORTES=${ZUVI_REPORTES:-$ZUVI_WINE_DIR/reportes}
  [ "${2:-}" = visible ] || display_start
  run_wine 120 wineboot -i >"$ZUVI_LOGS/wine.log" 2>&1 ||
    { tail -n 20 "$ZUVI_LOGS/wine.log" >&2; die "no se pudo crear el entorno de Wine"; }
  wine_settings "${2:-}"
}

wine_settings() { # [visible]
  # Without a window manager every window close would wait two seconds; a crash would wait for ever.
  local managed=N
  [ "${1:-}" = visible ] && managed=Y
  run_wine 60 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d $managed /f >>"$ZUVI_LOGS/wine.log" 2>&1 &&
    run_wine 60 reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f \
      >>"$ZUVI_LOGS/wine.log" 2>&1
}

wine_stop() {
  [ -d "${WINEPREFIX:-/nonexistent}" ] || return 0
  timeout 20 wineserver -k 2>/dev/null || true
  timeout 20 wineserver -w 2>/dev/null || true
}

# run_wine SECONDS PROGRAM…: everything runs under a time limit and without input.
run_wine() {
  local limit=$1
  shift
  timeout --kill-after=5 "$limit" wine "$@" </dev/null 2> >(grep -v 'wine32' >&2)
}

# The name a file of this system has on the Windows side.
windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

# The example shop in the database that ZUVI_BASE names and that has no tables yet: opening one does not make them.
wine_shop() { # Zuvi.exe
  local script
  script=$(mktemp "${TMPDIR:-/tmp}/zuvi-crea.XXXXXX.vbs")
  printf 'Ambiente.CreaBase True\r\n' >"$script"
  run_wine 120 "$1" "$(windows_path "$script")"
  local status=$?
  rm -f "$script"
  return "$status"
}

# Registers the two DLLs of a build in the prefix, or with /u takes them away.
wine_register() { # folder with the DLLs, [/u]
  local dll
  for dll in ZuviProduccion.dll ZuviHost.dll; do
    run_wine 60 regsvr32 /s ${2:+"$2"} "$(windows_path "$1/$dll")" || return 1
  done
}

# A script for the system's own script runner, which reads the Western code page.
for_cscript() { iconv -f UTF-8 -t CP1252 "$1"; }
# What that runner writes, as UTF-8: its code page is that of old consoles, by language.
from_cscript() {
  local page=CP437
  case ${LC_ALL:-C} in es_*) page=CP850 ;; tr_*) page=CP857 ;; esac
  iconv -c -f "$page" -t UTF-8 | tr -d '\r'
}
