#!/usr/bin/env bash
# End-to-end: the typical road through the real program on a private Xvfb with a small window
# manager, driven with xdotool.
#  1. Starts on a folder of 4 pictures; the gallery opens on it. A second folder (3 pictures of
#     plain colours) typed into the gallery's address bar becomes the gallery's folder. A click
#     on a thumbnail previews it; a double click opens it in a picture window, a double click
#     there shows it full screen, and Esc goes back (closing the picture window with it).
#  2. Tools > My Images; the browser is sent to the second folder through its address bar;
#     F2 renames a picture (the extension is kept), the Delete key (no question asked when
#     option 3 is off) moves another to the trash of $XDG_DATA_HOME.
#  3. Tools > Slide Show; in a folder of red, green, blue and yellow pictures the first three
#     are checked and played full screen, one second each: red, green and blue are shown in
#     that order, never yellow, and the player closes at the end.
#  4. Stuff > ScreenShot! saves the whole screen as a bitmap. File > Exit leaves the folders and
#     the slideshow builder as the last used window in the settings; a second start with
#     option 9 on opens the builder again by itself.
# Screenshots e2e-typical-road-N.png are kept in the current folder.
# Child windows sit where a fresh start puts them, so clicks are made at fixed places in the
# main window; every click is followed by a check on the files, the settings or the screen.
# Usage: typical_road.sh PATH/TO/lumbra     (exit 77: Xvfb, xdotool or ImageMagick missing)
set -uo pipefail

lumbra=${1:?usage: typical_road.sh PATH/TO/lumbra}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
shots_dir=$PWD

source "$here/common.sh"
lumbra_need_tools Xvfb xdotool convert import identify xwininfo
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

# set_ini SECTION KEY VALUE: writes a value into the settings file (program not running).
set_ini() {
  mkdir -p "$(dirname "$ini")"
  touch "$ini"
  sed -i "/^\[$1\]\$/,/^\[/{/^$2=/d}" "$ini"
  if grep -q "^\[$1\]\$" "$ini"; then
    sed -i "/^\[$1\]\$/a $2=$3" "$ini"
  else
    printf '[%s]\n%s=%s\n\n' "$1" "$2" "$3" >>"$ini"
  fi
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

# colour_at X Y: "R G B" (0-255) of the screen at a place in the main window.
colour_at() {
  local origin x y
  origin=$(xwininfo -id "$wid" 2>/dev/null | awk '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF } END { print x, y }')
  read -r x y <<<"$origin"
  screen_colour $((x + $1)) $((y + $2))
}
# screen_colour X Y: "R G B" of the screen at X Y.
screen_colour() {
  import -window root -crop "1x1+$1+$2" -depth 8 txt:- 2>/dev/null |
    sed -n 's/^0,0: (\([0-9]*\),\([0-9]*\),\([0-9]*\).*/\1 \2 \3/p'
}
# near "R G B" R G B: true when the colours differ by at most 40 in each channel (JPEG).
near() {
  local r g b
  read -r r g b <<<"$1"
  [[ -n "$r" ]] || return 1
  local d
  for d in $((r - $2)) $((g - $3)) $((b - $4)); do
    ((d < -40 || d > 40)) && return 1
  done
  return 0
}
main_colour_is() { near "$(colour_at "$1" "$2")" "${@:3}"; } # main_colour_is X Y R G B
centre_colour_is() { near "$(screen_colour 640 512)" "$@"; }  # centre_colour_is R G B

# The full-screen windows cover the whole 1280x1024 screen.
full_screen_window() {
  local id
  for id in $(xdotool search --onlyvisible --name '.' 2>/dev/null); do
    [[ "$(xdotool getwindowgeometry "$id" 2>/dev/null)" == *"Geometry: 1280x1024"* ]] && return 0
  done
  return 1
}
no_full_screen_window() { ! full_screen_window; }

# click_at X Y [REPEAT]: a left click (or a double click) at a place in the main window.
click_at() {
  xdotool mousemove --window "$wid" "$1" "$2" click --repeat "${3:-1}" --delay 80 1
  sleep 0.4
}

menu() { # menu ALT_LETTER ITEM_LETTER
  xdotool windowfocus "$wid" 2>/dev/null
  sleep 0.3
  xdotool key "alt+$1"
  sleep 0.5
  xdotool key "$2"
}

# type_address X Y TEXT: types TEXT into the address box at X Y and confirms it.
type_address() {
  click_at "$1" "$2"
  xdotool key ctrl+a
  xdotool type --delay 15 "$3"
  xdotool key Return
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
show="$world/show"
mkdir -p "$first" "$second" "$show"
made=1
for i in 1 2 3 4; do convert -size 120x90 "xc:rgb($((i * 50)),40,90)" "$first/red$i.jpg" || made=0; done
convert -size 100x80 xc:rgb\(200,40,40\) "$second/apple.jpg" || made=0
convert -size 100x80 xc:rgb\(40,160,40\) "$second/berry.jpg" || made=0
convert -size 100x80 xc:rgb\(40,40,200\) "$second/cherry.jpg" || made=0
for name in a_red:red b_green:lime c_blue:blue d_yellow:yellow; do
  convert -size 200x150 "xc:${name#*:}" "$show/${name%:*}.png" || made=0
done
((made)) || { fail "could not make test pictures with convert"; lumbra_finish; }

# No tip window at start-up (option 6), no question before deleting (option 3), and a slide
# a second.
set_ini General Options_6 0
set_ini General Options_3 0
set_ini SlideShow Timer_Delay 1

lumbra_start_xvfb "$world/x" || { fail "no virtual display"; lumbra_finish; }
lumbra_start_wm

# --- 1. the gallery: a folder typed in, a preview, a picture window, full screen and back ---
lumbra_launch "$first"
lumbra_wait_main_window 60 || lumbra_finish
lumbra_focus_main_window || lumbra_finish
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$first/"; then
  fail "the gallery did not open on the folder given on the command line: [frmThumbnails] BrowsePath='$(ini_value frmThumbnails BrowsePath)', expected '$first/'"
fi
screenshot # the gallery with 4 thumbnails

type_address 200 118 "$second"
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$second/"; then
  fail "the folder typed into the gallery's address bar was not taken: [frmThumbnails] BrowsePath='$(ini_value frmThumbnails BrowsePath)', expected '$second/'"
fi
sleep 0.5
screenshot # the gallery with 3 thumbnails, "Images: 3" in the status strip

click_at 243 165 # the first thumbnail: apple.jpg, red
wait_for 10 main_colour_is 180 298 200 40 40 ||
  fail "a click on the first thumbnail did not preview apple.jpg: the preview shows '$(colour_at 180 298)'"
click_at 243 165 2
wait_for 10 main_colour_is 705 253 200 40 40 ||
  fail "a double click on the first thumbnail did not open apple.jpg in a picture window: '$(colour_at 705 253)' where it should be"
screenshot # the picture window beside the gallery
click_at 705 253 2
if wait_for 10 full_screen_window; then
  wait_for 5 centre_colour_is 200 40 40 || fail "the full-screen view does not show apple.jpg: '$(screen_colour 640 512)' in the middle"
  screenshot # apple.jpg full screen
  xdotool key Escape
  wait_for 10 no_full_screen_window || fail "Esc did not leave the full-screen view"
else
  fail "a double click on the picture window did not show the picture full screen"
fi
lumbra_focus_main_window # the picture window closed with the full-screen view

# --- 2. My Images: rename with F2, delete with the Delete key ---
menu t i
if ! wait_for 20 ini_is frmMyImages Drive /; then
  fail "Tools > My Images did not open the picture browser (no [frmMyImages] Drive in the settings)"
fi
type_address 627 157 "$second"
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
menu f c # closes the browser
wait_for 10 ini_is frmMyImages BrowsePath "$second/" ||
  fail "after closing the browser its folder is '$(ini_value frmMyImages BrowsePath)', expected '$second/'"

# --- 3. the slideshow builder: three of four pictures checked and played full screen ---
menu t s
wait_for 20 ini_is frmSlideshow Drive / ||
  fail "Tools > Slide Show did not open the slideshow builder (no [frmSlideshow] Drive in the settings)"
type_address 640 158 "$show"
wait_for 20 ini_is frmSlideshow Dir "$show/" ||
  fail "the slideshow builder did not go to the typed folder: [frmSlideshow] Dir='$(ini_value frmSlideshow Dir)'"
sleep 0.5
click_at 590 190 2 # a double click on the list checks every picture
click_at 590 254   # d_yellow.png, the fourth row
click_at 517 119   # "Check selected item(s)" unchecks it
click_at 670 118   # the Full Screen toggle of the play bar
wait_for 5 ini_is frmSlideshow tlbPlay_7 1 || fail "the play bar's Full Screen toggle was not stored as pressed"
screenshot # three of four pictures checked
click_at 557 118 # Play
seen=()
last=
deadline=$((SECONDS + 20))
while ((SECONDS < deadline)); do
  colour=$(screen_colour 640 512)
  name=
  if near "$colour" 255 0 0; then name=red
  elif near "$colour" 0 255 0; then name=green
  elif near "$colour" 0 0 255; then name=blue
  elif near "$colour" 255 255 0; then name=yellow
  fi
  if [[ -n "$name" && "$name" != "$last" ]]; then
    seen+=("$name")
    last=$name
  fi
  [[ "${seen[*]}" == "red green blue" ]] && ! full_screen_window && break
  sleep 0.1
done
[[ "${seen[*]}" == "red green blue" ]] ||
  fail "the show of the three checked pictures showed '${seen[*]}', expected 'red green blue'"
wait_for 5 no_full_screen_window || fail "the full-screen player did not close at the end of the show"
screenshot # the builder after the show

# --- 4. a screenshot, exit, and a second start that reopens the builder by itself ---
menu s s # Stuff > ScreenShot!
if wait_for 15 present "$LUMBRA_HOME/ScreenShot.bmp"; then
  sleep 1 # the file is renamed into place whole; let its picture window open
  geometry=$(identify -format '%m %wx%h' "$LUMBRA_HOME/ScreenShot.bmp" 2>/dev/null)
  [[ "$geometry" == BMP*" 1280x1024" ]] || fail "ScreenShot.bmp is not a bitmap of the whole screen: '$geometry'"
else
  fail "Stuff > ScreenShot! wrote no ScreenShot.bmp"
fi
screenshot # the screenshot in a picture window
exit_by_menu "first run"
ini_is frmThumbnails BrowsePath "$second/" ||
  fail "after exit the gallery's folder is '$(ini_value frmThumbnails BrowsePath)', expected '$second/'"
ini_is mdiMain 'Last%20Used' 4 ||
  fail "after exit [mdiMain] Last Used is '$(ini_value mdiMain 'Last%20Used')', expected 4 (the slideshow builder opened last)"

# Option 9 (reopen the last used window) on, and the builder's trace wiped: only its opening
# in the second run can write it again.
set_ini General Options_9 1
sed -i '/^\[frmSlideshow\]$/,/^\[/{/^Drive=/d}' "$ini"
lumbra_launch "$first"
lumbra_wait_main_window 60 || lumbra_finish
lumbra_focus_main_window
if ! wait_for 20 ini_is frmThumbnails BrowsePath "$first/"; then
  fail "the second start did not open the gallery on '$first/': BrowsePath='$(ini_value frmThumbnails BrowsePath)'"
fi
wait_for 20 ini_is frmSlideshow Drive / ||
  fail "with option 9 on, the second start did not reopen the slideshow builder, the last window used"
sleep 0.5
screenshot # the second start, with the builder open
exit_by_menu "second run"
grep -q '^Options_3=0$' "$ini" || fail "option 3 written before the first start did not survive two runs"

lumbra_finish
