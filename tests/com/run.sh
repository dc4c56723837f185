#!/usr/bin/env bash
# Tests of the COM boundary under Wine: run.sh BUILD_DIR. The caller gives WINEPREFIX and DISPLAY; the last line
# is "N passed, N failed". Everything it registers it takes away again.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for part in comun wine; do
  # shellcheck disable=SC1090
  . "$here/../../scripts/$part.sh"
done
build=$(cd "$1" && pwd) || exit 2
: "${WINEPREFIX:?}" "${DISPLAY:?}"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
passed=0 failed=0

check() { # name command…: one case, its output shown when it fails
  local name=$1 out
  shift
  if out=$("$@" 2>&1); then
    passed=$((passed + 1))
    echo "ok   $name"
  else
    failed=$((failed + 1))
    echo "FAIL $name"
    tail -40 <<<"$out"
  fi
}

make_temp tmp
# A path as users have them.
# shellcheck disable=SC2154
folder="$tmp/Producción y ñandúes"
mkdir "$folder"
cp "$build/bin/ZuviProduccion.dll" "$build/bin/ZuviHost.dll" "$folder/"
classes='HKLM\Software\Classes'

objdump() { LC_ALL=C x86_64-w64-mingw32-objdump -p "$build/bin/$1"; }

# Those that the loader takes from the system's folder, whatever lies beside the program. Any other is to be
# loaded by its full path.
only_known_dlls() {
  local imports
  imports=$(objdump "$1" | sed -n 's/.*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)
  echo "$imports"
  [ -n "$imports" ] && ! grep -vxE <<<"$imports" \
    '(advapi32|comctl32|comdlg32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|user32)\.dll'
}

only_entry_points() {
  local exports
  exports=$(objdump "$1" | sed -n 's/^\t\[ *[0-9]*\] \([A-Za-z]\)/\1/p' | sort | tr '\n' ' ')
  echo "$exports"
  [ "$exports" = "DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer " ]
}

# What the program tells the system of itself.
manifest() {
  local text
  for text in '>PerMonitorV2, PerMonitor<' '>true</dpiAware>' '>true</longPathAware>' '{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}'; do
    grep -aq -- "$text" "$build/bin/Zuvi.exe" || { echo "$text"; return 1; }
  done
}

registry() { run_wine 60 reg "$@"; }
snapshot() { # the registered classes of machine and user, as text
  local root
  for root in HKLM HKCU; do
    rm -f "$tmp/part.reg"
    registry export "$root\\Software\\Classes" "$(windows_path "$tmp/part.reg")" /y >/dev/null 2>&1
    [ ! -f "$tmp/part.reg" ] || iconv -f UTF-16 -t UTF-8 "$tmp/part.reg"
  done >"$1"
}
# As it was in that snapshot.
same() { snapshot "$tmp/now" && diff "$tmp/$1" "$tmp/now"; }

registration() { # dll arguments…: regsvr32, silently
  local file=$1
  shift
  run_wine 60 regsvr32 /s "$@" "$(windows_path "$folder/$file")"
}
twice() { "$@" && "$@"; }

machine_and_user_apart() { # dll key: whatever is done to one scope leaves the other as it is
  local user="/n /i:user" first second root all
  # The folders of the user's classes stay once any program has made them.
  for all in CLSID Interface TypeLib; do registry add "HKCU\\Software\\Classes\\$all" /f >/dev/null; done
  snapshot "$tmp/none"
  for first in "" "$user"; do
    [ -z "$first" ] && second=$user || second=
    # shellcheck disable=SC2086
    {
      twice registration "$1" $first || return 1
      snapshot "$tmp/one"
      # The other out, which has never been there.
      twice registration "$1" /u $second && same one && registration "$1" $second || return 1
      for root in HKLM HKCU; do registry query "$root\\Software\\Classes\\$2" || return 1; done
      registration "$1" /u $second && same one && twice registration "$1" /u $first || return 1
    }
    same none || return 1
  done
}

names_stay_for_the_other_kind() { # of process, whose registration of the class shares them; x64 only
  local class="$classes\\CLSID\\{89FBD527-F735-402B-8C4A-936C3D1C49C5}"
  local library="$classes\\TypeLib\\{7330E6FA-8958-4791-A687-AB114C772D8A}\\1.0\\0\\win32"
  registry add "$class\\InprocServer32" /ve /d C:\\otra.dll /f /reg:32 >/dev/null &&
    registry add "$library" /ve /d C:\\otra.dll /f >/dev/null &&
    registration ZuviProduccion.dll && registration ZuviProduccion.dll /u &&
    registry query "$classes\\ZuviProduccion.Produccion\\CLSID" && registry query "$library" &&
    registry delete "$class" /f /reg:32 >/dev/null &&
    registration ZuviProduccion.dll && registry delete "$library" /f >/dev/null &&
    registration ZuviProduccion.dll /u && ! registry query "$classes\\ZuviProduccion.Produccion"
}

script() { # file: run by the system's script host; its last line is the verdict
  local out
  out=$(run_wine 60 cscript //nologo "$(windows_path "$here/$1")" | tr -d '\r')
  echo "$out"
  [ "$(tail -1 <<<"$out")" = "bien" ]
}

for file in ZuviProduccion.dll ZuviHost.dll Zuvi.exe; do
  check "imports of $file" only_known_dlls $file
done
check "exports of ZuviProduccion.dll" only_entry_points ZuviProduccion.dll
check "manifest of Zuvi.exe" manifest
check "ZuviProduccion.dll registers for machine and user" \
  machine_and_user_apart ZuviProduccion.dll 'TypeLib\{7330E6FA-8958-4791-A687-AB114C772D8A}\1.0\0'
check "ZuviHost.dll registers for machine and user" \
  machine_and_user_apart ZuviHost.dll 'TypeLib\{E80875B8-E25C-490E-BCBE-410F0BBECFDD}\1.0\0'
[ "${WINEARCH:-win64}" = win32 ] || check "names shared with the other kind of process" names_stay_for_the_other_kind
registration ZuviProduccion.dll
check "JScript" script cliente.js
registration ZuviProduccion.dll /u

# What is theirs alone in a process; x86 with the compiler's own runtime loaded, as programs of that compiler have it.
other=$(i686-w64-mingw32-g++-posix -print-file-name=libgcc_s_dw2-1.dll)
cp "$other" /usr/i686-w64-mingw32/lib/libwinpthread-1.dll "$tmp/"
export ZUVI_OTRO_RUNTIME="Z:$tmp/libgcc_s_dw2-1.dll" WINEPATH="Z:$tmp"
program() { bash "$here/../toolkit_win32/run.sh" "$build" "$@"; }
cd "$build/bin" || exit 2
own=$(timeout 60 wine com_test.exe --gtest_list_tests --gtest_filter='ProcesoPropio.*' | tr -d ' \r' | grep -v '\.$')
check "tests with a process of their own" test -n "$own"
for test in $own; do check "$test" program com_test "ProcesoPropio.$test"; done
for tests in com_test host_com_test; do
  program $tests '-ProcesoPropio.*' >"$tmp/out"
  read -r p f < <(count_last_line <"$tmp/out")
  [ "$f" -eq 0 ] || cat "$tmp/out"
  passed=$((passed + p)) failed=$((failed + f))
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
