#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing Lumbra need,
# and only those that are missing. Source it and call lumbra_ensure_deps, or run it.

LUMBRA_PACKAGES=(
  build-essential            # g++ 12 and make tools
  cmake                      # build description
  ninja-build                # build tool
  qt6-base-dev               # Qt Core, Gui, Widgets, Concurrent, PrintSupport, DBus, Test
  qt6-base-dev-tools         # moc and rcc
  qt6-svg-dev                # QtSvg (icons)
  qt6-multimedia-dev         # Qt Multimedia: the click of the custom buttons
  libjpeg62-turbo-dev        # libjpeg: large photographs decoded at a half, a quarter or an eighth
  zlib1g-dev                 # zlib: CRC-32 of the text chunks in thumbnails
  libzip-dev                 # libzip: "Zip My Picture(s)" writes .zip archives
  pkgconf                    # finds libzip for CMake
  qt6-image-formats-plugins  # TIFF, WebP and other codecs
  libgl-dev                  # needed by Qt6Gui's CMake package
  xvfb                       # virtual display for the end-to-end test and headless runs
  xauth                      # access cookie for that display
  xdotool                    # finds the window and types keys in the end-to-end test
  openbox                    # a small window manager for the end-to-end tests
  imagemagick                # screenshot of the virtual display; test pictures
  poppler-utils              # pdfinfo, pdftoppm: the printing test reads its PDF back
  x11-utils                  # xdpyinfo, xprop, xwininfo: the virtual display and its windows
  fonts-dejavu-core          # a font, so windows draw text under Xvfb
  libglib2.0-bin             # gsettings: the wallpaper on GNOME, Cinnamon and MATE, and its test
  gsettings-desktop-schemas  # the GNOME background schema the wallpaper test writes
  desktop-file-utils         # desktop-file-validate: the install test checks the .desktop file
  appstream                  # appstreamcli: the install test validates the AppStream metainfo
  clang                      # clang++ for the libFuzzer build of the picture loader (scripts/fuzz.sh)
  libclang-rt-14-dev         # libFuzzer and the sanitizer runtimes for clang++
)

lumbra_ensure_deps() {
  local missing=() pkg
  for pkg in "${LUMBRA_PACKAGES[@]}"; do
    if [[ "$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null)" != "install ok installed" ]]; then
      missing+=("$pkg")
    fi
  done
  ((${#missing[@]} == 0)) && return 0

  echo "Installing missing packages: ${missing[*]}" >&2
  local sudo=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "error: not root and sudo is not available; install: ${missing[*]}" >&2
      return 1
    fi
    sudo=(sudo)
  fi
  "${sudo[@]}" apt-get update -q &&
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -q --no-install-recommends "${missing[@]}"
}

if [[ "${BASH_SOURCE[0]}" == "$0" ]]; then
  set -euo pipefail
  lumbra_ensure_deps
fi
