# shellcheck shell=bash
# Builds by preset. Sourced after comun.sh.

# build_preset NAME [target…]: quiet when all is well, the compiler's words when not. A build that fails
# counts as a failure.
build_preset() {
  local preset=$1 log=$ZUVI_LOGS/build-$1.log start=$SECONDS
  shift
  local targets=() made_in
  # CMake would stop with a trace of its own at a folder that came along with a copy or a move of the sources.
  made_in=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$ZUVI_BUILD/$preset/CMakeCache.txt" 2>/dev/null)
  if [ -n "$made_in" ] && [ "$made_in" != "$ZUVI_ROOT" ]; then
    printf '  FALLA  build/%s se construyó para las fuentes de %s; bórrela y corra otra vez: rm -r %q\n' \
      "$preset" "$made_in" "$ZUVI_BUILD/$preset"
    [ -z "${ZUVI_RESULTS:-}" ] || printf '0 1 construcción %s\n' "$preset" >>"$ZUVI_RESULTS"
    return 1
  fi
  [ $# -eq 0 ] || targets=(--target "$@")
  if (cd "$ZUVI_ROOT" && timeout 300 cmake --preset "$preset" && timeout 1200 cmake --build --preset "$preset" \
    -j "$(nproc)" "${targets[@]}") >"$log" 2>&1 </dev/null; then
    printf '  hecho  construcción %s (%d s)\n' "$preset" $((SECONDS - start))
    return 0
  fi
  printf '  FALLA  construcción %s (build/log/build-%s.log)\n' "$preset" "$preset"
  grep -aE 'error|FAILED|Error' "$log" | head -n 30 | cut -c1-300 | sed 's/^/    | /'
  [ -z "${ZUVI_RESULTS:-}" ] || printf '0 1 construcción %s\n' "$preset" >>"$ZUVI_RESULTS"
  return 1
}
