#!/bin/sh
# Tests of the COM boundary under Wine: run.sh BUILD_DIR [SHARE/SHARES of the failure sweep]. The caller gives WINEPREFIX and DISPLAY; the last line
# is "N passed, N failed". Everything it registers it takes away again.
set -u
build=$(cd "$1" && pwd) || exit 2
here=$(cd "$(dirname "$0")" && pwd)
: "${WINEPREFIX:?}" "${DISPLAY:?}"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
passed=0
failed=0

check() {  # check NAME COMMAND…: one case, its output shown when it fails
  name=$1
  shift
  if out=$("$@" 2>&1); then
    passed=$((passed + 1))
    echo "ok   $name"
  else
    failed=$((failed + 1))
    echo "FAIL $name"
    echo "$out" | tail -40
  fi
}

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
# A path as users have them.
folder="$tmp/Producción y ñandúes"
mkdir "$folder"
cp "$build/bin/ZuviProduccion.dll" "$build/bin/ZuviHost.dll" "$folder/"

# Those that the loader takes from the system's folder, whatever lies beside the program. Any other is to be
# loaded by its full path.
only_known_dlls() {
  imports=$(LC_ALL=C x86_64-w64-mingw32-objdump -p "$build/bin/$1" | sed -n 's/.*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)
  echo "$imports"
  [ -n "$imports" ] && ! echo "$imports" |
    grep -vxE 'advapi32.dll|comctl32.dll|comdlg32.dll|gdi32.dll|kernel32.dll|msvcrt.dll|ole32.dll|oleaut32.dll|shell32.dll|user32.dll'
}

only_entry_points() {
  exports=$(LC_ALL=C x86_64-w64-mingw32-objdump -p "$build/bin/$1" | sed -n 's/^\t\[ *[0-9]*\] \([A-Za-z]\)/\1/p' | sort | tr '\n' ' ')
  echo "$exports"
  [ "$exports" = "DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer " ]
}

snapshot() {  # the registered classes of machine and user, as text
  for root in HKLM HKCU; do
    rm -f "$tmp/part.reg"
    timeout 60 wine reg export "$root\\Software\\Classes" "$(wine winepath -w "$tmp/part.reg" | tr -d '\r')" /y >/dev/null 2>&1
    [ -f "$tmp/part.reg" ] && iconv -f UTF-16 -t UTF-8 "$tmp/part.reg"
  done >"$1"
}

registration() {  # registration DLL ARGUMENTS…: regsvr32, silently
  file=$1
  shift
  timeout 60 wine regsvr32 /s "$@" "$(wine winepath -w "$folder/$file" | tr -d '\r')"
}

machine_and_user_apart() {  # machine_and_user_apart DLL KEY: whatever is done to one scope leaves the other as it is
  # The folders of the user's classes stay once any program has made them.
  for all in CLSID Interface TypeLib; do timeout 60 wine reg add "HKCU\\Software\\Classes\\$all" /f >/dev/null; done
  user="/n /i:user"
  snapshot "$tmp/none"
  for first in "" "$user"; do
    [ -z "$first" ] && second=$user || second=
    # shellcheck disable=SC2086
    {
      # Twice in, and the other out, which has never been there.
      for _ in 1 2; do registration "$1" $first || return 1; done
      snapshot "$tmp/one"
      for _ in 1 2; do registration "$1" /u $second || return 1; done
      snapshot "$tmp/now"
      diff "$tmp/one" "$tmp/now" || return 1
      registration "$1" $second || return 1
      for root in HKLM HKCU; do timeout 60 wine reg query "$root\\Software\\Classes\\$2" || return 1; done
      registration "$1" /u $second || return 1
      snapshot "$tmp/now"
      diff "$tmp/one" "$tmp/now" || return 1
      for _ in 1 2; do registration "$1" /u $first || return 1; done
    }
    snapshot "$tmp/now"
    diff "$tmp/none" "$tmp/now" || return 1
  done
}

names_stay_for_the_other_kind() {  # of process, whose registration of the class shares them; x64 only
  class='HKLM\Software\Classes\CLSID\{89FBD527-F735-402B-8C4A-936C3D1C49C5}'
  library='HKLM\Software\Classes\TypeLib\{7330E6FA-8958-4791-A687-AB114C772D8A}\1.0\0\win32'
  timeout 60 wine reg add "$class\\InprocServer32" /ve /d C:\\otra.dll /f /reg:32 >/dev/null || return 1
  timeout 60 wine reg add "$library" /ve /d C:\\otra.dll /f >/dev/null || return 1
  registration ZuviProduccion.dll && registration ZuviProduccion.dll /u || return 1
  timeout 60 wine reg query 'HKLM\Software\Classes\ZuviProduccion.Produccion\CLSID' || return 1
  timeout 60 wine reg query "$library" || return 1
  timeout 60 wine reg delete "$class" /f /reg:32 >/dev/null || return 1
  registration ZuviProduccion.dll && timeout 60 wine reg delete "$library" /f >/dev/null &&
    registration ZuviProduccion.dll /u || return 1
  ! timeout 60 wine reg query 'HKLM\Software\Classes\ZuviProduccion.Produccion'
}

script() {  # script FILE: run by the system's script host; its last line is the verdict
  out=$(timeout 60 wine cscript //nologo "$(wine winepath -w "$here/$1" | tr -d '\r')" | tr -d '\r')
  echo "$out"
  [ "$(echo "$out" | tail -1)" = "bien" ]
}

for file in ZuviProduccion.dll ZuviHost.dll Zuvi.exe; do
  check "imports of $file" only_known_dlls $file
done
check "exports of ZuviProduccion.dll" only_entry_points ZuviProduccion.dll
check "ZuviProduccion.dll registers for machine and user" \
  machine_and_user_apart ZuviProduccion.dll 'TypeLib\{7330E6FA-8958-4791-A687-AB114C772D8A}\1.0\0'
check "ZuviHost.dll registers for machine and user" \
  machine_and_user_apart ZuviHost.dll 'TypeLib\{E80875B8-E25C-490E-BCBE-410F0BBECFDD}\1.0\0'
[ "${WINEARCH:-win64}" = win32 ] || check "names shared with the other kind of process" names_stay_for_the_other_kind
registration ZuviProduccion.dll
check "JScript" script cliente.js
registration ZuviProduccion.dll /u

cd "$build/bin" || exit 2
# What is theirs alone in a process; x86 with the compiler's own runtime loaded, as programs of that compiler have it.
other=$(i686-w64-mingw32-g++-posix -print-file-name=libgcc_s_dw2-1.dll)
cp "$other" /usr/i686-w64-mingw32/lib/libwinpthread-1.dll "$tmp/"
export ZUVI_OTRO_RUNTIME="Z:$tmp/libgcc_s_dw2-1.dll" WINEPATH="Z:$tmp"
own=$(timeout 60 wine com_test.exe --gtest_list_tests --gtest_filter='ProcesoPropio.*' | tr -d ' \r' | grep -v '\.$')
check "tests with a process of their own" test -n "$own"
for test in $own; do
  check "$test" timeout 120 wine com_test.exe --gtest_filter="ProcesoPropio.$test"
done
[ $# -lt 2 ] || export ZUVI_BARRIDO="$2"
for program in com_test host_com_test; do
  timeout 580 wine $program.exe --gtest_filter='-ProcesoPropio.*' >"$tmp/$program.txt" 2>&1
  cases=$(grep -c '^\[       OK \]' "$tmp/$program.txt")
  if grep -q '^\[  PASSED  \]' "$tmp/$program.txt"; then
    broken=$(grep -c '^\[  FAILED  \] .*ms)' "$tmp/$program.txt")
  else
    broken=1
  fi
  [ "$broken" -eq 0 ] || grep -E -A12 'Failure|FAILED' "$tmp/$program.txt" | cut -c1-400 | head -80
  passed=$((passed + cases))
  failed=$((failed + broken))
done
grep 'failure sweep' "$tmp/com_test.txt"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
