#!/usr/bin/env bash
# End-to-end: the real program on a private Xvfb. It opens a folder, takes three screenshots,
# is closed with File > Exit from the keyboard, exits by itself with status 0 and leaves its settings.
# Also checks the command line: --version, --help, and status 2 on bad arguments.
# Usage: startup_exit.sh PATH/TO/lumbra     (exit 77: Xvfb or xdotool missing)
set -uo pipefail

lumbra=${1:?usage: startup_exit.sh PATH/TO/lumbra}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

for tool in Xvfb xdotool; do
  if ! command -v "$tool" >/dev/null; then
    echo "SKIP: $tool is not installed"
    exit 77
  fi
done

failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

world=$(mktemp -d)
app_pid=
source "$here/xvfb.sh"
cleanup() {
  if [[ -n "$app_pid" ]]; then
    kill -KILL "$app_pid" 2>/dev/null
    wait "$app_pid" 2>/dev/null
  fi
  lumbra_stop_xvfb
  rm -rf "$world"
}
trap cleanup EXIT
trap 'exit 1' INT TERM

# A world of its own: never the real home, settings or caches.
export HOME="$world/home"
export XDG_CONFIG_HOME="$world/config"
export XDG_CACHE_HOME="$world/cache"
export XDG_DATA_HOME="$world/data"
export XDG_RUNTIME_DIR="$world/runtime"
export LUMBRA_HOME="$world/lumbra"
export DBUS_SESSION_BUS_ADDRESS="unix:path=$world/no-bus"
unset WAYLAND_DISPLAY SESSION_MANAGER
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME" "$LUMBRA_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"

# --- command line (no display needed) ---
run_cli() { # run_cli NAME ARGS...: sets out, err, status
  QT_QPA_PLATFORM=offscreen timeout 30 "$lumbra" "${@:2}" \
    >"$world/$1.out" 2>"$world/$1.err"
  status=$?
  out=$(<"$world/$1.out")
  err=$(<"$world/$1.err")
}

run_cli version --version
((status == 0)) || fail "lumbra --version exited with $status"
[[ "$out" =~ [0-9]+\.[0-9]+ ]] || fail "lumbra --version printed no version: '$out'"

run_cli help --help
((status == 0)) || fail "lumbra --help exited with $status"
[[ -n "$out" ]] || fail "lumbra --help printed nothing"

run_cli badopt --no-such-option
((status == 2)) || fail "lumbra --no-such-option exited with $status, not 2"
[[ -n "$err" ]] || fail "lumbra --no-such-option printed nothing on stderr"

run_cli badfolder "$world/no/such/folder"
((status == 2)) || fail "lumbra with a missing folder exited with $status, not 2"
[[ -n "$err" ]] || fail "lumbra with a missing folder printed nothing on stderr"

# --- start-up and File > Exit on a virtual display ---
pictures="$world/pictures"
mkdir -p "$pictures"
if ! convert -size 160x120 gradient:navy-gold "$pictures/gradient.jpg" ||
  ! convert -size 90x140 xc:tomato "$pictures/plain.png"; then
  fail "could not make test pictures with convert"
fi

lumbra_start_xvfb "$world/x" || {
  echo "FAIL: no virtual display" >&2
  exit 1
}

QT_QPA_PLATFORM=xcb "$lumbra" "$pictures" >"$world/app.out" 2>"$world/app.err" &
app_pid=$!

show_app_output() {
  echo "--- lumbra stdout ---" >&2
  cat "$world/app.out" >&2
  echo "--- lumbra stderr ---" >&2
  cat "$world/app.err" >&2
}

# Wait up to 60 s for the main window, but not once the program has ended.
wid=
deadline=$((SECONDS + 60))
while ((SECONDS < deadline)); do
  wid=$(lumbra_main_window)
  [[ -n "$wid" ]] && break
  kill -0 "$app_pid" 2>/dev/null || break
  sleep 0.2
done
if [[ -z "$wid" ]]; then
  if kill -0 "$app_pid" 2>/dev/null; then
    fail "no visible window named \"Lumbra\" within 60 s"
  else
    fail "lumbra ended before showing a window named \"Lumbra\""
  fi
  show_app_output
  exit 1
fi

# There is no window manager: give the main window the keyboard focus directly. Start-up
# may still replace the window (a changed window flag makes a new one) or take the focus
# away, so find it again each time and go on once the same window has kept the focus.
focused=
for ((i = 0; i < 30; i++)); do
  wid=$(lumbra_main_window) || { sleep 0.5; continue; }
  xdotool windowfocus "$wid" 2>/dev/null
  sleep 0.5
  if [[ "$(xdotool getwindowfocus 2>/dev/null)" == "$wid" && "$(lumbra_main_window)" == "$wid" ]]; then
    if [[ "$focused" == "$wid" ]]; then
      break
    fi
    focused=$wid
  else
    focused=
  fi
done
[[ -n "$focused" ]] || fail "could not give the main window the keyboard focus"

# --- three screenshots from Stuff > ScreenShot! ---
# The first is ScreenShot.bmp; the next two each replace ScreenShot(1).bmp. Every one is a
# bitmap of the whole screen and opens in a picture window.
wait_for_file() { # wait_for_file PATH NEWER_THAN_MARKER
  local deadline=$((SECONDS + 15))
  while ((SECONDS < deadline)); do
    [[ -f "$1" && "$1" -nt "$2" ]] && return 0
    sleep 0.2
  done
  return 1
}
shots=("ScreenShot.bmp" "ScreenShot(1).bmp" "ScreenShot(1).bmp")
for shot in "${shots[@]}"; do
  sleep 1.1 # a newer modification time than the marker, even on coarse clocks
  touch "$world/marker"
  sleep 1.1
  xdotool windowfocus "$wid" 2>/dev/null
  xdotool key alt+s
  sleep 0.5
  xdotool key s
  if ! wait_for_file "$LUMBRA_HOME/$shot" "$world/marker"; then
    fail "Stuff > ScreenShot! did not write $shot"
    break
  fi
  sleep 1 # the file is renamed into place whole; let the picture window open
  geometry=$(identify -format '%m %wx%h' "$LUMBRA_HOME/$shot" 2>/dev/null)
  [[ "$geometry" == BMP*" 1280x1024" ]] || fail "$shot is not a bitmap of the whole screen: '$geometry'"
done
[[ ! -e "$LUMBRA_HOME/ScreenShot(2).bmp" ]] || fail "a third screenshot file was written"

xdotool windowfocus "$wid" 2>/dev/null
sleep 0.5
xdotool key alt+f
sleep 0.5
xdotool key e

status=
deadline=$((SECONDS + 15))
while ((SECONDS < deadline)); do
  if ! kill -0 "$app_pid" 2>/dev/null; then
    wait "$app_pid"
    status=$?
    app_pid=
    break
  fi
  sleep 0.1
done
if [[ -z "$status" ]]; then
  fail "lumbra did not exit within 15 s of File > Exit"
  show_app_output
  exit 1
fi
((status == 0)) || { fail "lumbra exited with status $status after File > Exit"; show_app_output; }

ini="$XDG_CONFIG_HOME/Lumbra/Lumbra.ini"
if [[ ! -f "$ini" ]]; then
  fail "no settings file at \$XDG_CONFIG_HOME/Lumbra/Lumbra.ini"
  find "$world" -name '*.ini' >&2
elif ! grep -q '^WindowState=' "$ini"; then
  fail "the settings file holds no WindowState= line"
  cat "$ini" >&2
fi

if ((failures > 0)); then
  echo "$failures check(s) failed" >&2
  exit 1
fi
echo "PASS"
