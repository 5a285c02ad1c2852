#!/usr/bin/env bash
# End-to-end: the real program on a private Xvfb. It opens a folder, takes three screenshots,
# is closed with File > Exit from the keyboard, exits by itself with status 0 and leaves its settings.
# Also checks the command line: --version, --help, and status 2 on bad arguments.
# Usage: startup_exit.sh PATH/TO/lumbra     (exit 77: Xvfb or xdotool missing)
set -uo pipefail

lumbra=${1:?usage: startup_exit.sh PATH/TO/lumbra}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

source "$here/common.sh"
lumbra_need_tools Xvfb xdotool
lumbra_make_world

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
lumbra_start_wm

lumbra_launch "$pictures"
lumbra_wait_main_window 60 || exit 1
lumbra_focus_main_window

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

if ! lumbra_wait_exit 15; then
  fail "lumbra did not exit within 15 s of File > Exit"
  lumbra_show_app_output
  exit 1
fi
((app_status == 0)) || { fail "lumbra exited with status $app_status after File > Exit"; lumbra_show_app_output; }

ini="$XDG_CONFIG_HOME/Lumbra/Lumbra.ini"
if [[ ! -f "$ini" ]]; then
  fail "no settings file at \$XDG_CONFIG_HOME/Lumbra/Lumbra.ini"
  find "$world" -name '*.ini' >&2
elif ! grep -q '^WindowState=' "$ini"; then
  fail "the settings file holds no WindowState= line"
  cat "$ini" >&2
fi

lumbra_finish
