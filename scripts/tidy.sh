#!/usr/bin/env bash
# clang-tidy, with .clang-tidy, over what changed: every finding is an error.
#   scripts/tidy.sh            the sources changed last, newest first, for at most ZUVI_TIDY_SECONDS (60)
#   scripts/tidy.sh --todo     every source that a preset built
#   scripts/tidy.sh FILE…      these
# A changed header is looked at through a source that includes it. Wants a configured preset `linux`; the
# Windows sources are looked at when `win64` is there too.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
seconds=${ZUVI_TIDY_SECONDS:-60}

# The compilers' lists of commands without the precompiled header, which is not clang's; and where the Windows
# compiler has its headers.
for preset in linux win64; do
  [ -f "build/$preset/compile_commands.json" ] || continue
  mkdir -p "build/tidy/$preset"
  sed -E 's/ -Winvalid-pch( -include [^ ]*cmake_pch\.hxx)?//' "build/$preset/compile_commands.json" \
    >"build/tidy/$preset/compile_commands.json"
done
windows_headers() {
  x86_64-w64-mingw32-g++-posix -std=c++20 -E -v -xc++ /dev/null 2>&1 | sed -n '/^#include </,/^End/s/^ //p' |
    grep -E '/c\+\+(/x86_64-w64-mingw32)?$|/x86_64-w64-mingw32/include$' | sed 's/^/--extra-arg=-isystem/'
}
mapfile -t headers < <([ ! -d build/tidy/win64 ] || windows_headers)

sources() { find base services toolkit automation windows orders shifts fractions component com host -name '*.cpp'; }
# Newest first: what is not committed yet, then commit by commit.
changed() {
  {
    git diff --name-only HEAD
    git log --format= --name-only -n 60
  } 2>/dev/null | awk '!seen[$0]++' | while read -r file; do
    [ -f "$file" ] || continue
    case $file in
      tests/* | bench/* | sdk/* | cmake/*) ;;
      *.cpp) printf '%s\n' "$file" ;;
      *.h) if [ -f "${file%.h}.cpp" ]; then printf '%s\n' "${file%.h}.cpp"; else grep -rl --include='*.cpp' --exclude-dir=build \
        --exclude-dir=tests --exclude-dir=bench "\"$file\"" . | sed 's,^\./,,' | sort | head -n 1; fi ;;
    esac
  done | awk '!seen[$0]++'
}

built_by() { grep -qs "/$2\"" "build/tidy/$1/compile_commands.json"; } # preset source
one() { # source
  local where
  for where in linux win64; do
    built_by "$where" "$1" || continue
    local more=()
    [ "$where" = linux ] || more=("${headers[@]}")
    clang-tidy-16 -p "build/tidy/$where" --quiet --warnings-as-errors='*' "${more[@]}" "$1" 2>/dev/null
    return
  done
}

case ${1:-} in
  '')
    mapfile -t files < <(changed)
    # Sources without their history: whatever there is time for.
    [ "${#files[@]}" -gt 0 ] || mapfile -t files < <(sources)
    ;;
  --todo)
    mapfile -t files < <(sources)
    seconds=$((24 * 3600))
    ;;
  *)
    files=("$@")
    seconds=$((24 * 3600))
    ;;
esac
started=$SECONDS looked=0 bad=0 running=()
reap() { wait "${running[0]}" || bad=$((bad + 1)); running=("${running[@]:1}"); }
for file in "${files[@]}"; do
  if [ $((SECONDS - started)) -ge "$seconds" ]; then break; fi
  built_by linux "$file" || built_by win64 "$file" || continue
  one "$file" &
  running+=($!)
  looked=$((looked + 1))
  [ "${#running[@]}" -lt "$(nproc)" ] || reap
done
while [ "${#running[@]}" -gt 0 ]; do reap; done
printf 'clang-tidy: %d fuentes vistas de %d, %d con hallazgos\n' "$looked" "${#files[@]}" "$bad"
[ "$bad" -eq 0 ]
