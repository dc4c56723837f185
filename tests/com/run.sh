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
cp "$build/bin/ZuviProduccion.dll" "$folder/"
dll=$(wine winepath -w "$folder/ZuviProduccion.dll" | tr -d '\r')

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

registers_and_removes() {  # registers_and_removes KEY REGSVR32_ARGUMENTS…: twice in, twice out, nothing left
  key=$1
  shift
  # The folder of the user's classes stays once any program has made it.
  timeout 60 wine reg add 'HKCU\Software\Classes\CLSID' /f >/dev/null
  snapshot "$tmp/before"
  for _ in 1 2; do timeout 60 wine regsvr32 /s "$@" "$dll" || return 1; done
  timeout 60 wine reg query "$key\\Software\\Classes\\ZuviProduccion.Produccion\\CLSID" || return 1
  for _ in 1 2; do timeout 60 wine regsvr32 /s /u "$@" "$dll" || return 1; done
  snapshot "$tmp/after"
  diff "$tmp/before" "$tmp/after"
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
check "registration per machine" registers_and_removes HKLM
check "registration per user" registers_and_removes HKCU /n /i:user
timeout 60 wine regsvr32 /s "$dll"
check "JScript" script cliente.js
timeout 60 wine regsvr32 /s /u "$dll"

cd "$build/bin" || exit 2
[ $# -lt 2 ] || export ZUVI_BARRIDO="$2"
for program in com_test host_com_test; do
  timeout 580 wine $program.exe >"$tmp/$program.txt" 2>&1
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
