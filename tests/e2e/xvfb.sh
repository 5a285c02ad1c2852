#!/usr/bin/env bash
# Starts and stops a private virtual X display. Source this file, then:
#   lumbra_start_xvfb DIR   starts Xvfb on a free display number with an access cookie
#                           kept in DIR; exports DISPLAY and XAUTHORITY; sets LUMBRA_XVFB_PID
#   lumbra_start_wm         starts openbox on it, when installed, so that windows get frames,
#                           focus and full-screen states as on a desktop
#   lumbra_stop_xvfb        stops both
#   lumbra_main_window      prints the id of the visible main window, if any

lumbra_start_xvfb() {
  local dir=$1 n cookie
  mkdir -p "$dir"
  export XAUTHORITY="$dir/Xauthority"
  : >"$XAUTHORITY"
  cookie=$(od -An -N16 -tx1 /dev/urandom | tr -d ' \n')
  # Start the search at a varying number so that parallel runs rarely collide.
  local start=$((100 + RANDOM % 300))
  for ((n = start; n < start + 50; n++)); do
    [[ -e /tmp/.X$n-lock || -e /tmp/.X11-unix/X$n ]] && continue
    xauth -q -f "$XAUTHORITY" add ":$n" . "$cookie" || return 1
    Xvfb ":$n" -auth "$XAUTHORITY" -nolisten tcp -noreset -screen 0 1280x1024x24 \
      >"$dir/xvfb.log" 2>&1 &
    LUMBRA_XVFB_PID=$!
    local i
    for ((i = 0; i < 100; i++)); do
      if ! kill -0 "$LUMBRA_XVFB_PID" 2>/dev/null; then
        break # lost a race for this number: try the next one
      fi
      if xdpyinfo -display ":$n" >/dev/null 2>&1; then
        export DISPLAY=":$n"
        return 0
      fi
      sleep 0.1
    done
    kill "$LUMBRA_XVFB_PID" 2>/dev/null
    wait "$LUMBRA_XVFB_PID" 2>/dev/null
    LUMBRA_XVFB_PID=
  done
  echo "error: could not start Xvfb (last log: $dir/xvfb.log)" >&2
  cat "$dir/xvfb.log" >&2 2>/dev/null
  return 1
}

lumbra_start_wm() {
  command -v openbox >/dev/null || return 0
  openbox --sm-disable >/dev/null 2>&1 &
  LUMBRA_WM_PID=$!
  local i
  for ((i = 0; i < 50; i++)); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && return 0
    sleep 0.1
  done
  echo "note: openbox did not announce itself; going on without a window manager" >&2
}

lumbra_stop_xvfb() {
  if [[ -n "${LUMBRA_WM_PID:-}" ]]; then
    kill "$LUMBRA_WM_PID" 2>/dev/null
    wait "$LUMBRA_WM_PID" 2>/dev/null
    LUMBRA_WM_PID=
  fi
  if [[ -n "${LUMBRA_XVFB_PID:-}" ]]; then
    kill "$LUMBRA_XVFB_PID" 2>/dev/null
    wait "$LUMBRA_XVFB_PID" 2>/dev/null
    LUMBRA_XVFB_PID=
  fi
  return 0
}

# The splash screen is also named "Lumbra": take only a window of the normal type.
lumbra_main_window() {
  local id
  for id in $(xdotool search --onlyvisible --name '^Lumbra$' 2>/dev/null); do
    if [[ "$(xprop -id "$id" _NET_WM_WINDOW_TYPE 2>/dev/null)" =~ =\ _NET_WM_WINDOW_TYPE_NORMAL(,|$) ]]; then
      echo "$id"
      return 0
    fi
  done
  return 1
}
