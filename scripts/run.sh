#!/usr/bin/env bash
# Builds Lumbra (Release, incrementally) and runs it: scripts/run.sh [FOLDER | PICTURE...]
# Without a display, runs it in a private Xvfb, saves a PNG of the screen once the
# main window shows, then closes the program.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${LUMBRA_BUILD_DIR:-$repo/build}

source "$repo/scripts/deps.sh"
lumbra_ensure_deps

if [[ -f "$build/CMakeCache.txt" ]]; then
  cmake -S "$repo" -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
else
  cmake -S "$repo" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
fi
cmake --build "$build" --target lumbra

if [[ -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ]]; then
  exec "$build/lumbra" "$@"
fi

# No display: use a virtual one.
source "$repo/tests/e2e/xvfb.sh"
shot=${LUMBRA_SCREENSHOT:-$build/lumbra-screen.png}
xdir=$(mktemp -d)
app_pid=
cleanup() {
  if [[ -n "$app_pid" ]] && kill -0 "$app_pid" 2>/dev/null; then
    kill -TERM "$app_pid" 2>/dev/null
    for _ in {1..50}; do kill -0 "$app_pid" 2>/dev/null || break; sleep 0.1; done
    kill -KILL "$app_pid" 2>/dev/null || true
  fi
  lumbra_stop_xvfb
  rm -rf "$xdir"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

lumbra_start_xvfb "$xdir"
if [[ -z "${XDG_RUNTIME_DIR:-}" ]]; then
  export XDG_RUNTIME_DIR="$xdir/runtime"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
fi
echo "No display: running Lumbra in a virtual display ($DISPLAY)" >&2
QT_QPA_PLATFORM=xcb "$build/lumbra" "$@" &
app_pid=$!

# Wait up to 60 s for the main window, but not once the program has ended.
deadline=$((SECONDS + 60))
until lumbra_main_window >/dev/null; do
  if ! kill -0 "$app_pid" 2>/dev/null; then
    status=0
    wait "$app_pid" || status=$?
    app_pid=
    if ((status == 0)); then
      exit 0 # e.g. --help or --version: nothing to show
    fi
    echo "error: Lumbra ended with status $status before showing its window" >&2
    exit 1
  fi
  if ((SECONDS >= deadline)); then
    echo "error: no window named \"Lumbra\" appeared within 60 s" >&2
    exit 1
  fi
  sleep 0.2
done

sleep 2 # let it paint
mkdir -p "$(dirname "$shot")"
import -window root "$shot"
echo "Screenshot of the virtual display: $shot"
exit 0
