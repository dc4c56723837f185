#!/usr/bin/env bash
# Refuses an include against the arrows that README.md draws ("sala ← salas que puede incluir"). A room is a
# folder of the sources; tests/, bench/ and sdk/ may see every room, and no room sees them. Refuses, too, a source
# that no list names: it would be neither compiled nor run, and a test or a native control be missed by nobody.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bad=0
while IFS= read -r source; do
  grep -qswF -- "${source##*/}" "${source%/*}/CMakeLists.txt" "${source%/*}/../CMakeLists.txt" && continue
  echo "$source: no está en la lista del CMakeLists.txt de su carpeta"
  bad=1
done < <(find . -regex '\./\(build\|bench\|sdk\)' -prune -o -name '*.cpp' -printf '%P\n')
mapfile -t sources < <(find . -regex '\./\(build\|tests\|bench\|sdk\|cmake\)' -prune -o \
  \( -name '*.h' -o -name '*.cpp' \) -printf '%P\n')
sed -n '/^```flechas$/,/^```$/p' README.md | awk '
  function room(file) { sub(/\/[^\/]*$/, "", file); return file }
  FNR == NR {
    if (/^```/ || NF == 0) next
    known[$1]; allowed[$1, $1]
    for (i = 3; i <= NF; ++i) allowed[$1, $i]
    next
  }
  FNR == 1 && !(room(FILENAME) in known) { print FILENAME ": su carpeta no está en la lista de README.md"; bad = 1 }
  /^[ \t]*#[ \t]*include[ \t]*"[^"]*\// {
    split($0, part, "\""); to = room(part[2])
    if (!((room(FILENAME), to) in allowed)) {
      print FILENAME ":" FNR ": " room(FILENAME) " no puede incluir " to; bad = 1
    }
  }
  END { exit bad }' - "${sources[@]}" || bad=1
exit "$bad"
