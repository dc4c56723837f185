# shellcheck shell=bash
# A person's hands at the windows of the display: real key events, and waiting for what shows, never for a time
# that might be too short. Sourced after comun.sh.

# Both leave the window's number in ZUVI_WINDOW.
# Until the window that has the keyboard is titled like that (a regular expression); false after 30 seconds.
await_window() { # title
  local tries title='' nobody=0
  for ((tries = 0; tries < 600; tries++)); do
    title=$(timeout 5 xdotool getwindowfocus getwindowname 2>/dev/null)
    if [[ $title =~ $1 ]]; then
      ZUVI_WINDOW=$(timeout 5 xdotool getwindowfocus)
      return 0
    fi
    # A display without a window manager may give the keyboard to nobody when a window goes.
    if [ -z "$title" ] && ((++nobody % 40 == 0)); then
      timeout 5 xdotool search --onlyvisible --name "$1" windowfocus 2>/dev/null
    fi
    sleep 0.05
  done
  say "no apareció la ventana \"$1\"; el teclado lo tiene \"$title\"" >&2
  return 1
}
# Until a message or question shows. It gets the keys even if the display takes its time to give it the focus.
await_box() { # title
  local tries
  for ((tries = 0; tries < 300; tries++)); do
    ZUVI_WINDOW=$(timeout 5 xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1)
    if [ -n "$ZUVI_WINDOW" ]; then
      sleep 0.3
      return 0
    fi
    sleep 0.1
  done
  say "no apareció el mensaje \"$1\"" >&2
  return 1
}
keys() { timeout 20 xdotool key --delay 12 "$@"; }
typed() { timeout 60 xdotool type --delay 12 "$1"; }

# A press of the left button in the window with the keyboard, in pixels from its left edge, or from the right one
# with a minus, and from its top.
click_at() { # x y
  # shellcheck disable=SC2034
  local WINDOW X Y WIDTH HEIGHT SCREEN
  eval "$(timeout 5 xdotool getwindowfocus getwindowgeometry --shell)"
  timeout 5 xdotool mousemove "$((X + ($1 < 0 ? WIDTH + $1 : $1)))" "$((Y + $2))" click 1
}
# The window is closed with the mouse, by the button at the end of its title bar.
click_close() { click_at -13 12; }

# Leaves a picture of the window last waited for where pictures are wanted, once it has drawn itself.
picture() { # name
  [ -n "${ZUVI_CAPTURAS:-}" ] || return 0
  sleep 0.7
  timeout 20 import -window "$ZUVI_WINDOW" -strip -define png:exclude-chunk=date,time \
    "$ZUVI_CAPTURAS/$1.png" && say "  $1.png"
}

# Answers the host's question with yes; its default is no.
answer_yes() { # name of its picture
  await_box '^Zuvi$' || return 1
  picture "$1"
  keys Left Return
}
