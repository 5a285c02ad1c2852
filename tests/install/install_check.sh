#!/usr/bin/env bash
# Installs the build into a temporary prefix and checks what a desktop needs of it: the
# program, its tips and samples, the .desktop file and AppStream metainfo (validated with the
# desktop's own tools when they are there), and the icon at every size of the hicolor theme.
# usage: install_check.sh BUILD_DIR APP_ID
set -uo pipefail

build=$1
app_id=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

if ! cmake --install "$build" --prefix "$prefix" >"$prefix/install.log" 2>&1; then
  cat "$prefix/install.log" >&2
  echo "FAIL: cmake --install" >&2
  exit 1
fi

share=$prefix/share
[[ -x $prefix/bin/lumbra ]] || fail "bin/lumbra is missing or not executable"
[[ -s $share/lumbra/TIPOFDAY.TXT ]] || fail "share/lumbra/TIPOFDAY.TXT is missing"
[[ -n $(ls -A "$share/lumbra/samples" 2>/dev/null) ]] || fail "share/lumbra/samples is empty"

desktop=$share/applications/$app_id.desktop
metainfo=$share/metainfo/$app_id.metainfo.xml
[[ -f $desktop ]] || fail "$app_id.desktop is missing"
[[ -f $metainfo ]] || fail "$app_id.metainfo.xml is missing"

# The desktop offers Lumbra for every picture type it reads.
mimetypes=$(sed -n 's/^MimeType=//p' "$desktop")
for type in image/bmp image/gif image/jpeg image/png image/tiff image/webp image/x-icon \
            image/vnd.microsoft.icon image/x-win-bitmap image/wmf image/x-wmf; do
  [[ ";$mimetypes" == *";$type;"* ]] || fail "MimeType lacks $type"
done
grep -qx 'Exec=lumbra %F' "$desktop" || fail "Exec is not 'lumbra %F'"
grep -qx 'Categories=Graphics;Viewer;' "$desktop" || fail "Categories is not Graphics;Viewer;"
grep -q "<id>$app_id</id>" "$metainfo" || fail "metainfo id is not $app_id"
grep -q "<launchable type=\"desktop-id\">$app_id.desktop</launchable>" "$metainfo" ||
  fail "metainfo does not launch $app_id.desktop"

icon=$(sed -n 's/^Icon=//p' "$desktop")
[[ -f $share/icons/hicolor/scalable/apps/$icon.svg ]] || fail "scalable icon $icon.svg is missing"
for size in 16 22 24 32 48 64 128 256; do
  png=$share/icons/hicolor/${size}x${size}/apps/$icon.png
  if [[ ! -f $png ]]; then
    fail "icon ${size}x${size} is missing"
    continue
  fi
  # Width and height are the big-endian words at bytes 16 and 20 of a PNG.
  read -r w h < <(od -An -tu1 -j16 -N8 "$png" |
    awk '{ print $1*16777216+$2*65536+$3*256+$4, $5*16777216+$6*65536+$7*256+$8 }')
  [[ "$w x $h" == "$size x $size" ]] || fail "icon ${size}x${size} is ${w}x${h}"
done

if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate "$desktop" || fail "desktop-file-validate"
else
  echo "desktop-file-validate not installed: .desktop file not validated"
fi
if command -v appstreamcli >/dev/null; then
  appstreamcli validate --no-net "$metainfo" || fail "appstreamcli validate"
else
  echo "appstreamcli not installed: metainfo not validated"
fi

((failures == 0)) && echo "install layout OK"
exit $((failures > 0))
