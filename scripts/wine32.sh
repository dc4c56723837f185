# shellcheck shell=bash
# 32-bit Wine. Debian installs it beside the 64-bit one only on a machine with two architectures, so it gets a
# small i386 system of its own (debootstrap, about 700 MB, made once and kept in the cache). Needs root and
# mounts; where these are not to be had the 32-bit suites are skipped and say why. Sourced after wine.sh.

ZUVI_WINE32_ROOT=$ZUVI_CACHE/wine32
ZUVI_WINE32_REASON=$ZUVI_LOGS/wine32.reason

# Makes the root, in the background of the builds; the reason why not goes to a file.
wine32_root() {
  local site proxy start=$SECONDS
  : >"$ZUVI_WINE32_REASON"
  [ ! -f "$ZUVI_WINE32_ROOT/.made" ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "hace falta root" >"$ZUVI_WINE32_REASON"
    return 0
  fi
  if ! unshare --mount true 2>/dev/null; then
    echo "este contenedor no permite montar" >"$ZUVI_WINE32_REASON"
    return 0
  fi
  (need wine32) || { echo "no se pudo instalar debootstrap" >"$ZUVI_WINE32_REASON"; return 0; }
  # shellcheck disable=SC2016
  site=$(apt-get indextargets --format '$(SITE) $(CODENAME)' 'Created-By: Packages' 2>/dev/null |
    awk '$2 == "bookworm" {print $1; exit}')
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  [ -z "${proxy:-}" ] || export http_proxy=$proxy
  rm -rf "$ZUVI_WINE32_ROOT"
  # Its own mounts (/proc while packages are set up) end with it.
  if timeout 600 unshare --mount debootstrap --arch=i386 --variant=minbase \
    --include=wine32,wine,unixodbc,libsqliteodbc,odbc-mariadb bookworm "$ZUVI_WINE32_ROOT" ${site:+"$site"} \
    >"$ZUVI_LOGS/wine32-root.log" 2>&1 </dev/null; then
    rm -f "$ZUVI_WINE32_ROOT"/var/cache/apt/archives/*.deb
    : >"$ZUVI_WINE32_ROOT/.made"
    printf '  hecho  sistema i386 para Wine (%d s)\n' $((SECONDS - start))
  else
    rm -rf "$ZUVI_WINE32_ROOT"
    echo "debootstrap no terminó (build/log/wine32-root.log)" >"$ZUVI_WINE32_REASON"
  fi
}

# wine32_run COMMAND…: with `wine` and `wineserver` meaning those of the i386 system, which sees the project
# and /tmp under their usual names. The mounts live and die with the command.
wine32_run() {
  local bin
  make_temp bin
  local program
  for program in wine wineserver; do
    cat >"$bin/$program" <<EOF
#!/bin/sh
unset LOCPATH
PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/lib/wine
export PATH
exec /usr/sbin/chroot "$ZUVI_WINE32_ROOT" /bin/sh -c 'cd "\$1" && shift && exec "\$@"' - "\$PWD" $program "\$@"
EOF
  done
  chmod +x "$bin"/*
  mkdir -p "$ZUVI_WINE32_ROOT$ZUVI_ROOT"
  # shellcheck disable=SC2016
  PATH=$bin:$PATH env -u ODBCSYSINI unshare --mount sh -c '
    root=$1 project=$2
    shift 2
    mount -t proc proc "$root/proc" && mount --bind /tmp "$root/tmp" &&
      mount --bind "$project" "$root$project" && exec "$@"' - "$ZUVI_WINE32_ROOT" "$ZUVI_ROOT" "$@"
}
