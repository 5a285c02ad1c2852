#!/usr/bin/env bash
# End-to-end: the typical road through the real program on a private Xvfb, driven with xdotool.
#  1. Starts on a folder of 4 pictures; the gallery opens on it. A second folder (3 pictures)
#     typed into the gallery's address bar becomes the gallery's folder in the settings.
#  2. Tools > My Images; the browser is sent to the second folder through its address bar;
#     F2 renames a picture (the extension is kept), the Delete key (no question asked when
#     option 3 is off) moves another to the trash of $XDG_DATA_HOME.
#  3. File > Exit leaves both folders and My Images as the last used window in the settings;
#     a second start with option 9 on opens and exits cleanly on those settings.
# Screenshots e2e-typical-road-N.png are kept in the current folder.
# There is no window manager: child windows sit where a fresh start puts them, so clicks are
# made at fixed places in the main window; every click is followed by a check on the files.
# Usage: typical_road.sh PATH/TO/lumbra     (exit 77: Xvfb, xdotool or ImageMagick missing)
set -uo pipefail

lumbra=${1:?usage: typical_road.sh PATH/TO/lumbra}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
shots_dir=$PWD

source "$here/common.sh"
lumbra_need_tools Xvfb xdotool convert import
lumbra_make_world
ini="$XDG_CONFIG_HOME/Lumbra/Lumbra.ini"

# ini_value SECTION KEY: the value in the settings file, empty when absent.
ini_value() {
  [[ -f "$ini" ]] || return 0
  awk -v section="[$1]" -v key="$2" '
    /^\[/ { inside = ($0 == section); next }
    inside && index($0, key "=") == 1 { print substr($0, length(key) + 2); exit }
  ' "$ini"
}

# wait_for SECONDS COMMAND...: polls until the command succeeds.
wait_for() {
  local deadline=$((SECONDS + $1))
  shift
  while ((SECONDS < deadline)); do
    "$@" && return 0
    sleep 0.2
  done
  "$@"
}
ini_is() { [[ "$(ini_value "$1" "$2")" == "$3" ]]; }
absent() { [[ ! -e "$1" ]]; }
present() { [[ -f "$1" ]]; }

shot=0
screenshot() {
  shot=$((shot + 1))
  import -window root "$shots_dir/e2e-typical-road-$shot.png" 2>/dev/null ||
    echo "note: screenshot $shot could not be taken" >&2
}

# set_general KEY VALUE: writes a General option into the settings file (program not running).
set_general() {
  mkdir -p "$(dirname "$ini")"
  touch "$ini"
  sed -i "/^\[General\]\$/,/^\[/{/^$1=/d}" "$ini"
  if grep -q '^\[General\]$' "$ini"; then
    sed -i "/^\[General\]\$/a $1=$2" "$ini"
  else
    printf '[General]\n%s=%s\n\n%s' "$1" "$2" "$(cat "$ini")" >"$ini"
  fi
}

# click_at X Y: a left click at a place in the main window.
click_at() {
  xdotool mousemove --window "$wid" "$1" "$2" click 1
  sleep 0.4
}

menu() { # menu ALT_LETTER ITEM_LETTER
  xdotool windowfocus "$wid" 2>/dev/null
  sleep 0.3
  xdotool key "alt+$1"
  sleep 0.5
  xdotool key "$2"
}

exit_by_menu() { # exit_by_menu WHEN
  menu f e
  if ! lumbra_wait_exit 20; then
    fail "lumbra did not exit within 20 s of File > Exit ($1)"
    lumbra_show_app_output
    lumbra_finish
  fi
  ((app_status == 0)) || { fail "lumbra exited with status $app_status after File > Exit ($1)"; lumbra_show_app_output; }
}

first="$world/first"
second="$world/second"
mkdir -p "$first" "$second"
made=1
for i in 1 2 3 4; do convert -size 120x90 "xc:rgb($((i * 50)),40,90)" "$first/red$i.jpg" || made=0; done
for name in apple berry cherry; do convert -size 100x80 gradient:navy-gold "$second/$name.jpg" || made=0; done
((made)) || { fail "could not make test pictures with convert"; lumbra_finish; }

# No tip window at start-up (option 6) and no question before deleting (option 3).
set_general Options_6 0
set_general Options_3 0

lumbra_start_xvfb "$world/x" || { fail "no virtual display"; lumbra_finish; }

# --- 1. the gallery on the first folder, then the second folder typed into its address bar ---
lumbra_launch "$first"
lumbra_wait_main_window 60 || lumbra_finish
lumbra_focus_main_window || lumbra_finish
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$first/"; then
  fail "the gallery did not open on the folder given on the command line: [frmThumbnails] BrowsePath='$(ini_value frmThumbnails BrowsePath)', expected '$first/'"
fi
screenshot # the gallery with 4 thumbnails

click_at 200 118 # the gallery's address box
xdotool key ctrl+a
xdotool type --delay 15 "$second"
xdotool key Return
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$second/"; then
  fail "the folder typed into the gallery's address bar was not taken: [frmThumbnails] BrowsePath='$(ini_value frmThumbnails BrowsePath)', expected '$second/'"
fi
sleep 0.5
screenshot # the gallery with 3 thumbnails, "Images: 3" in the status strip

# --- 2. My Images: rename with F2, delete with the Delete key ---
menu t i
if ! wait_for 20 ini_is frmMyImages Drive /; then
  fail "Tools > My Images did not open the picture browser (no [frmMyImages] Drive in the settings)"
fi
click_at 627 157 # the browser's address box
xdotool key ctrl+a
xdotool type --delay 15 "$second"
xdotool key Return
if ! wait_for 20 ini_is frmMyImages Dir "$second/"; then
  fail "the picture browser did not go to the typed folder: [frmMyImages] Dir='$(ini_value frmMyImages Dir)', expected '$second/'"
fi
sleep 0.5
screenshot # the browser listing apple.jpg, berry.jpg, cherry.jpg

click_at 558 189 # the first row: apple.jpg
xdotool key F2
sleep 0.5
xdotool type --delay 15 "zebra"
xdotool key Return
if wait_for 10 present "$second/zebra.jpg"; then
  [[ ! -e "$second/apple.jpg" ]] || fail "apple.jpg is still there after it was renamed to zebra.jpg"
else
  fail "F2 and typing 'zebra' did not rename apple.jpg to zebra.jpg (extension kept); the folder holds: $(ls "$second" | tr '\n' ' ')"
fi
sleep 0.5

click_at 558 189 # the first row, now berry.jpg
xdotool key Delete
if wait_for 10 absent "$second/berry.jpg"; then
  [[ -f "$XDG_DATA_HOME/Trash/files/berry.jpg" ]] ||
    fail "berry.jpg left its folder but is not in \$XDG_DATA_HOME/Trash/files"
  [[ -f "$XDG_DATA_HOME/Trash/info/berry.jpg.trashinfo" ]] ||
    fail "berry.jpg is in the trash without its berry.jpg.trashinfo"
else
  fail "the Delete key did not move berry.jpg to the trash (a question shown with option 3 off?)"
fi
[[ -f "$second/cherry.jpg" && -f "$second/zebra.jpg" ]] ||
  fail "the folder should keep cherry.jpg and zebra.jpg; it holds: $(ls "$second" | tr '\n' ' ')"
sleep 0.5
screenshot # the browser listing cherry.jpg and zebra.jpg

# --- 3. exit, and a second start on the settings left behind ---
exit_by_menu "first run"
ini_is frmThumbnails BrowsePath "$second/" ||
  fail "after exit the gallery's folder is '$(ini_value frmThumbnails BrowsePath)', expected '$second/'"
ini_is frmMyImages BrowsePath "$second/" ||
  fail "after exit the browser's folder is '$(ini_value frmMyImages BrowsePath)', expected '$second/'"
ini_is mdiMain 'Last%20Used' 0 ||
  fail "after exit [mdiMain] Last Used is '$(ini_value mdiMain 'Last%20Used')', expected 0 (My Images opened last)"

# Option 9 (reopen the last used window) on; the second start is given the first folder again.
set_general Options_9 1
lumbra_launch "$first"
lumbra_wait_main_window 60 || lumbra_finish
lumbra_focus_main_window
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$first/"; then
  fail "the second start did not open the gallery on '$first/': BrowsePath='$(ini_value frmThumbnails BrowsePath)'"
fi
sleep 0.5
screenshot # the second start
exit_by_menu "second run"
grep -q '^Options_3=0$' "$ini" || fail "option 3 written before the first start did not survive two runs"

lumbra_finish
