#!/usr/bin/env bash
# Helpers shared by the end-to-end scripts. Source this file (it sources xvfb.sh), then:
#   lumbra_need_tools TOOL...      exits 77 when one of them is missing
#   lumbra_make_world              makes a temporary world in $world: HOME, the XDG folders and
#                                  LUMBRA_HOME point into it; installs a clean-up trap
#   fail MESSAGE                   reports a failed check and counts it in $failures
#   lumbra_launch ARGS...          starts $lumbra on the virtual display; sets app_pid
#   lumbra_wait_main_window SECS   waits for the main window; sets wid (fails when it ends)
#   lumbra_focus_main_window       gives the main window the keyboard focus and keeps it there
#   lumbra_wait_exit SECS          waits for the program to end; sets app_status
#   lumbra_show_app_output         prints what the program wrote
#   lumbra_finish                  prints PASS or the number of failed checks and exits

here=${here:-$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)}
source "$here/xvfb.sh"

failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

lumbra_need_tools() {
  local tool
  for tool in "$@"; do
    if ! command -v "$tool" >/dev/null; then
      echo "SKIP: $tool is not installed"
      exit 77
    fi
  done
}

app_pid=
app_runs=0
lumbra_cleanup() {
  if [[ -n "$app_pid" ]]; then
    kill -KILL "$app_pid" 2>/dev/null
    wait "$app_pid" 2>/dev/null
  fi
  lumbra_stop_xvfb
  [[ -n "${world:-}" ]] && rm -rf "$world"
}

# A world of its own: never the real home, settings or caches.
lumbra_make_world() {
  world=$(mktemp -d)
  trap lumbra_cleanup EXIT
  trap 'exit 1' INT TERM
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
}

# Each run writes its own app-N.out and app-N.err in the world.
lumbra_launch() {
  app_runs=$((app_runs + 1))
  QT_QPA_PLATFORM=xcb "$lumbra" "$@" >"$world/app-$app_runs.out" 2>"$world/app-$app_runs.err" &
  app_pid=$!
}

lumbra_show_app_output() {
  echo "--- lumbra stdout ---" >&2
  cat "$world/app-$app_runs.out" >&2
  echo "--- lumbra stderr ---" >&2
  cat "$world/app-$app_runs.err" >&2
}

# Waits for the main window, but not once the program has ended.
lumbra_wait_main_window() {
  local deadline=$((SECONDS + $1))
  wid=
  while ((SECONDS < deadline)); do
    wid=$(lumbra_main_window)
    [[ -n "$wid" ]] && return 0
    kill -0 "$app_pid" 2>/dev/null || break
    sleep 0.2
  done
  if kill -0 "$app_pid" 2>/dev/null; then
    fail "no visible window named \"Lumbra\" within $1 s"
  else
    fail "lumbra ended before showing a window named \"Lumbra\""
  fi
  lumbra_show_app_output
  return 1
}

# Give the main window the keyboard focus directly (a window manager may not). Start-up
# may still replace the window (a changed window flag makes a new one) or take the focus
# away, so find it again each time and go on once the same window has kept the focus.
lumbra_focus_main_window() {
  local focused= i
  for ((i = 0; i < 30; i++)); do
    wid=$(lumbra_main_window) || { sleep 0.5; continue; }
    xdotool windowfocus "$wid" 2>/dev/null
    sleep 0.5
    if [[ "$(xdotool getwindowfocus 2>/dev/null)" == "$wid" && "$(lumbra_main_window)" == "$wid" ]]; then
      [[ "$focused" == "$wid" ]] && return 0
      focused=$wid
    else
      focused=
    fi
  done
  fail "could not give the main window the keyboard focus"
  return 1
}

lumbra_wait_exit() {
  local deadline=$((SECONDS + $1))
  app_status=
  while ((SECONDS < deadline)); do
    if ! kill -0 "$app_pid" 2>/dev/null; then
      wait "$app_pid"
      app_status=$?
      app_pid=
      return 0
    fi
    sleep 0.1
  done
  return 1
}

lumbra_finish() {
  if ((failures > 0)); then
    echo "$failures check(s) failed" >&2
    exit 1
  fi
  echo "PASS"
  exit 0
}
