# shellcheck shell=bash
# Installs what is missing on a bare Debian 12. Sourced after comun.sh; `need GROUP…` asks nothing of the
# network when everything is there already.

packages_of() { # group
  case $1 in
    native)
      echo g++ cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev \
        libutfcpp-dev libcli11-dev unixodbc unixodbc-dev libsqliteodbc odbc-mariadb locales ;;
    # Only the server itself: the full package would start one of its own.
    mariadb) echo mariadb-server-core mariadb-client-core odbc-mariadb ;;
    windows)
      echo cmake ninja-build googletest g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools \
        libutfcpp-dev wine wine64 libwine libwine-dev xvfb unixodbc libsqliteodbc odbc-mariadb ;;
    # The version is fixed: another one formats differently.
    format) echo clang-format-14 clang-tidy-16 ;;
    wine32) echo debootstrap ;;
    screenshots) echo xvfb imagemagick xdotool fonts-dejavu-core ;;
    *) die "grupo de paquetes desconocido: $1" ;;
  esac
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo -n "$@"
  else
    return 1
  fi
}

missing_packages() { # package…
  local package
  for package in "$@"; do
    case $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) in
      installed) ;;
      *) printf '%s\n' "$package" ;;
    esac
  done
}

apt_install() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
    -o DPkg::Lock::Timeout=120 -o Acquire::Retries=3 -o Dpkg::Use-Pty=0 install "$@"
}

# need GROUP…: everything of these groups is installed afterwards, or the run ends with the reason.
need() {
  local group wanted=() missing=() log=$ZUVI_LOGS/apt.log
  for group in "$@"; do
    # shellcheck disable=SC2207
    wanted+=($(packages_of "$group"))
  done
  mapfile -t missing < <(missing_packages "${wanted[@]}" | sort -u)
  [ "${#missing[@]}" -eq 0 ] && return 0
  say "Se instalan: ${missing[*]}"
  as_root true || die "faltan paquetes y no hay permiso para instalarlos (root o sudo): ${missing[*]}"
  local attempt
  for attempt in 1 2; do
    if as_root apt-get -q -o DPkg::Lock::Timeout=120 update >>"$log" 2>&1 </dev/null &&
      apt_install "${missing[@]}" >>"$log" 2>&1 </dev/null; then
      mapfile -t missing < <(missing_packages "${missing[@]}")
      [ "${#missing[@]}" -eq 0 ] && return 0
    fi
    # What an interrupted installation left half-way is finished first.
    [ "$attempt" -eq 2 ] || as_root env DEBIAN_FRONTEND=noninteractive dpkg --configure -a >>"$log" 2>&1 </dev/null
  done
  tail -n 20 "$log" >&2
  die "no se pudo instalar: ${missing[*]}"
}

# The drivers by the names that connection strings use. What the system has not registered is registered in
# a private folder, for this run only.
need_drivers() {
  local system dir
  system=$(odbcinst -j 2>/dev/null | sed -n 's/^DRIVERS\.*: *//p')
  if grep -qs '^\[SQLite3\]' "$system" && grep -qs '^\[MariaDB Unicode\]' "$system"; then return 0; fi
  make_temp dir
  [ -f "$system" ] && cat "$system" >"$dir/odbcinst.ini"
  grep -qs '^\[SQLite3\]' "$dir/odbcinst.ini" ||
    printf '[SQLite3]\nDescription=SQLite3\nDriver=libsqlite3odbc.so\n\n' >>"$dir/odbcinst.ini"
  grep -qs '^\[MariaDB Unicode\]' "$dir/odbcinst.ini" ||
    printf '[MariaDB Unicode]\nDescription=MariaDB\nDriver=libmaodbc.so\nThreading=0\n\n' >>"$dir/odbcinst.ini"
  export ODBCSYSINI=$dir
}

# The four locales, made for real in the build folder: a missing one would silently mean C.
need_locales() {
  local dir=$ZUVI_CACHE/locale name expected
  mkdir -p "$dir"
  for name in $ZUVI_LOCALES; do
    case $name in C) continue ;; esac
    [ -d "$dir/$name" ] || localedef -i "${name%.*}" -f UTF-8 "$dir/$name" ||
      die "no se pudo generar la configuración regional $name"
  done
  export LOCPATH=$dir
  for name in $ZUVI_LOCALES; do
    case $name in es_ES* | tr_TR*) expected=, ;; *) expected=. ;; esac
    [ "$(LC_ALL=$name locale decimal_point)" = "$expected" ] ||
      die "la configuración regional $name no es la verdadera"
  done
}
