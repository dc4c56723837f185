# shellcheck shell=bash
# The suites of test.sh. Each ends in `tally`; each database is made for one suite. Sourced after the others.

short_locale() { printf '%s' "${1%%.*}"; }

format_suite() {
  suite "flechas entre carpetas" 60 count_status bash "$ZUVI_ROOT/scripts/flechas.sh"
  # shellcheck disable=SC2016
  suite "formato de las fuentes" 120 count_status bash -c \
    'find "$1" -path "$1/build" -prune -o \( -name "*.h" -o -name "*.cpp" \) -print0 |
     xargs -0 -r clang-format-14 --dry-run -Werror' - "$ZUVI_ROOT"
}

# What changed last, under clang-tidy; wants the builds that it looks at.
tidy_suite() { suite "clang-tidy en lo que cambió" 180 count_status bash "$ZUVI_ROOT/scripts/tidy.sh"; }

# All native tests, run by ctest.
ctest_suite() { # name preset tests-left-out environment…
  local name=$1 preset=$2 except=$3
  shift 3
  suite "$name" 600 count_gtest env "$@" ctest --test-dir "$ZUVI_BUILD/$preset" --verbose --timeout 300 -E "$except"
}
# What waits for servers that fail has its own turn: no region changes it.
ZUVI_WAITING='^(servidores|hostiles)_tests$'

native_suites() {
  local locale short base temp
  own_exit_commands
  make_temp temp
  # With the server where numbers have a point and where they have a comma; the others do without.
  for locale in $ZUVI_LOCALES; do
    short=$(short_locale "$locale")
    case $short in
      C | es_ES)
        base=$(mariadb_database "zuvi_nativo_$short")
        ctest_suite "nativo $short" linux "$ZUVI_WAITING" LC_ALL="$locale" ZUVI_MARIADB="$base"
        ;;
      *) ctest_suite "nativo sin servidor $short" linux "$ZUVI_WAITING" -u ZUVI_MARIADB LC_ALL="$locale" ;;
    esac
  done
  for locale in $ZUVI_LOCALES; do
    short=$(short_locale "$locale")
    suite "zuvi en SQLite $short" 300 count_last_line env LC_ALL="$locale" \
      bash "$ZUVI_ROOT/tests/e2e/nativo.sh" "$ZUVI_BUILD/linux/bin/zuvi" "$temp/$short.db"
    base=$(mariadb_database "zuvi_cli_$short")
    suite "zuvi en MariaDB $short" 300 count_last_line env LC_ALL="$locale" \
      bash "$ZUVI_ROOT/tests/e2e/nativo.sh" "$ZUVI_BUILD/linux/bin/zuvi" "$base" "$ZUVI_MARIADB_LOG" "zuvi_cli_$short"
  done
  suite "./run.sh --native" 300 count_status bash "$ZUVI_ROOT/run.sh" --native
}

# Servers that die, freeze and come back, and texts that would reach further than they should.
server_suites() {
  local base
  base=$(mariadb_database zuvi_servidores)
  suite "servidores y textos hostiles" 600 count_gtest env ZUVI_MARIADB="$base" \
    ctest --test-dir "$ZUVI_BUILD/linux" --verbose --timeout 200 -R "$ZUVI_WAITING"
}

asan_suites() {
  local base
  base=$(mariadb_database zuvi_asan)
  ctest_suite "nativo con sanitizadores" asan "$ZUVI_WAITING" LC_ALL=C ZUVI_MARIADB="$base"
}

# The registered component under Wine, seen by COM clients and by scripts in both script runners.
wine_suites() { # build folder, name of the architecture, locales for the clients in C++
  local build=$1 arch=$2 com_locales=$3 bin=$1/bin locale short base runner temp
  make_temp temp
  for locale in $ZUVI_LOCALES; do
    short=$(short_locale "$locale")
    case " $com_locales " in
      *" $locale "*)
        suite "COM $arch $short" 600 count_last_line env LC_ALL="$locale" bash "$ZUVI_ROOT/tests/com/run.sh" "$build"
        if [ "$locale" = "${com_locales%% *}" ]; then
          suite "ventanas $arch" 600 count_last_line bash "$ZUVI_ROOT/tests/toolkit_win32/run.sh" "$build"
          suite "sistema $arch" 300 count_last_line bash "$ZUVI_ROOT/tests/toolkit_win32/run.sh" "$build" host_win32_test
          suite "Zuvi.exe en su Windows $arch" 300 count_last_line bash "$ZUVI_ROOT/tests/e2e/zuvi_exe.sh" "$bin"
        fi
        ;;
    esac
    # Those tests register and unregister by themselves, and compare the registry before and after.
    wine_register "$bin" || {
      tally "registro de las DLL $arch $short" 0 1
      continue
    }
    for runner in cscript zuvi; do
      wine_script "$runner" "$bin" operaciones "$arch $short SQLite" "$locale" "$temp/$runner-$short.db"
      wine_script "$runner" "$bin" anfitrion_guion "$arch $short SQLite" "$locale" "$temp/$runner-$short.db"
      base=$(mariadb_database "zuvi_${runner}_${arch}_$short")
      wine_script "$runner" "$bin" operaciones "$arch $short MariaDB" "$locale" \
        "$base" "$ZUVI_MARIADB_LOG" "zuvi_${runner}_${arch}_$short"
    done
    [ "$locale" != "${com_locales%% *}" ] ||
      suite "prueba de Windows $arch" 300 count_last_line bash "$ZUVI_ROOT/tests/e2e/prueba.sh" "$bin"
    wine_register "$bin" /u || tally "retirar las DLL $arch $short" 0 1
    wine_stop
  done
}
wine_script() { # runner folder script name locale base [log database]
  local runner=$1 bin=$2 script=$3 name=$4 locale=$5
  shift 5
  suite "$runner $script $name" 200 count_last_line env LC_ALL="$locale" \
    bash "$ZUVI_ROOT/tests/e2e/windows.sh" "$runner" "$bin" "$ZUVI_ROOT/tests/e2e/$script.vbs" "$@"
}

# Drivers by other names, and databases on a share.
places_suite() { # name of the architecture, folder, bits
  suite "controladores y lugares $1" 300 count_last_line bash "$ZUVI_ROOT/tests/e2e/lugares.sh" "$2" "$3"
}

# The windows by keyboard alone, in two regions that write numbers and dates differently, one for each engine;
# hands at two speeds, in the program and at a script's windows; a server that fails under them.
keyboard_suites() { # folder
  local base temp
  make_temp temp
  suite "teclado es_MX SQLite" 400 count_last_line env LC_ALL=es_MX.UTF-8 \
    bash "$ZUVI_ROOT/tests/e2e/teclado.sh" "$1" "$temp/teclado.db"
  wine_stop
  base=$(mariadb_database zuvi_teclado)
  suite "teclado es_ES MariaDB" 400 count_last_line env LC_ALL=es_ES.UTF-8 \
    bash "$ZUVI_ROOT/tests/e2e/teclado.sh" "$1" "$base" "$ZUVI_MARIADB_LOG" zuvi_teclado
  wine_stop
  base=$(mariadb_database zuvi_manos)
  suite "manos en Zuvi.exe MariaDB" 400 count_last_line env LC_ALL=es_MX.UTF-8 \
    bash "$ZUVI_ROOT/tests/e2e/manos.sh" "$1" "$base" zuvi 0.1
  suite "manos desde un guion SQLite" 400 count_last_line env LC_ALL=es_ES.UTF-8 \
    bash "$ZUVI_ROOT/tests/e2e/manos.sh" "$1" "$temp/manos.db" guion 0.35
  suite "servidor que vuelve, Zuvi.exe" 300 count_last_line env LC_ALL=es_MX.UTF-8 \
    bash "$ZUVI_ROOT/tests/e2e/reinicio.sh" "$1"
  wine_stop
}

windows_suites() {
  own_exit_commands
  wine_start win64
  wine_suites "$ZUVI_BUILD/win64" x64 "$ZUVI_LOCALES"
  places_suite x64 "$ZUVI_BUILD/win64/bin" 64
}

# In a Windows of their own: these mostly wait for somebody's hands.
hands_suites() {
  own_exit_commands
  wine_start win64
  keyboard_suites "$ZUVI_BUILD/win64/bin"
  suite "./run.sh" 600 count_status env -u DISPLAY bash "$ZUVI_ROOT/run.sh"
  suite "./run.sh --guion" 300 count_status bash "$ZUVI_ROOT/run.sh" --guion
}

wine32_suites() {
  if [ -s "$ZUVI_WINE32_REASON" ]; then
    skipped "Wine de 32 bits" "$(cat "$ZUVI_WINE32_REASON")"
  elif ! wine32_run true 2>>"$ZUVI_LOGS/wine32.log"; then
    skipped "Wine de 32 bits" "no se pudo montar el sistema i386 (build/log/wine32.log)"
  else
    wine32_run bash "$ZUVI_ROOT/scripts/wine32-suites.sh" || tally "suites de Wine de 32 bits" 0 1
  fi
}
