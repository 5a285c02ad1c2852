#!/bin/sh
# Makes a folder of pictures for the gallery benchmarks, named photo-00001.jpg and on.
#
# Usage: bench/make-photos.sh N FOLDER
#          N photographs of 12 megapixels (4000x3000 JPEG, quality 90) made from the
#          photographs Debian ships as desktop backgrounds (mate-backgrounds,
#          plasma-workspace-wallpapers): each source in turn, at its own crop offset, every
#          other round mirrored, with a camera's grain, so no two files are alike and each
#          decodes like a photograph (about 3 bits a pixel). No EXIF thumbnail is embedded:
#          every thumbnailer has to decode the picture.
#        bench/make-photos.sh --small N FOLDER
#          N files hard-linked to eight 640x480 JPEGs: a big folder (10,000, 100,000) in
#          seconds, for the figures that need many files but not many pixels. Each path is a
#          picture of its own to the gallery and its cache.
#
# Installs libvips-tools and the two background packages when they are missing (as root,
# or through sudo).
set -eu
# Some backgrounds name an EXIF resolution unit libvips does not know; it only warns.
export VIPS_WARNING=0

small=
if [ "${1:-}" = --small ]; then small=1; shift; fi
count=${1:?usage: make-photos.sh [--small] N FOLDER}
folder=${2:?usage: make-photos.sh [--small] N FOLDER}

packages="libvips-tools mate-backgrounds plasma-workspace-wallpapers"
missing=
for p in $packages; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $p"
done
if [ -n "$missing" ]; then
    sudo=; [ "$(id -u)" -eq 0 ] || sudo=sudo
    echo "Installing$missing" >&2
    $sudo apt-get install -y --no-install-recommends $missing >&2
fi

# The photographs among the backgrounds (the others are drawings and renderings).
sources=
for f in /usr/share/backgrounds/mate/nature/Blinds.jpg /usr/share/backgrounds/mate/nature/Dune.jpg \
         /usr/share/backgrounds/mate/nature/LadyBird.jpg /usr/share/backgrounds/mate/nature/RainDrops.jpg \
         /usr/share/backgrounds/mate/nature/Storm.jpg /usr/share/backgrounds/mate/nature/TwoWings.jpg \
         /usr/share/backgrounds/mate/nature/Wood.jpg; do
    [ -f "$f" ] && sources="$sources $f"
done
for name in Path ColorfulCups FallenLeaf BytheWater EveningGlow Kite ColdRipple DarkestHour summer_1am OneStandsOut; do
    f=/usr/share/wallpapers/$name/contents/images/2560x1600.jpg
    [ -f "$f" ] && sources="$sources $f"
done
[ -n "$sources" ] || { echo "no source photographs found" >&2; exit 1; }

mkdir -p "$folder"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT INT TERM

# File names wide enough for N, at least five digits.
digits=$(printf '%s' "$count" | wc -c)
[ "$digits" -ge 5 ] || digits=5
name_of() { printf '%s/photo-%0*d.jpg' "$folder" "$digits" "$1"; }

if [ -n "$small" ]; then
    seeds=0
    for f in $sources; do
        [ "$seeds" -lt 8 ] || break
        seeds=$((seeds + 1))
        vips thumbnail "$f" "$work/seed$seeds.jpg[Q=85,strip]" 640 --height 480 --crop centre
    done
    # One process for all the links: a hundred thousand ln calls would take minutes.
    perl -e '
        my ($work, $folder, $count, $digits, $seeds) = @ARGV;
        for my $i (1 .. $count) {
            my $to = sprintf("%s/photo-%0*d.jpg", $folder, $digits, $i);
            unlink $to;
            link(sprintf("%s/seed%d.jpg", $work, ($i - 1) % $seeds + 1), $to) or die "$to: $!\n";
        }' "$work" "$folder" "$count" "$digits" "$seeds"
    echo "$count files in $folder, linked to $seeds pictures of 640x480"
    exit 0
fi

# A base per source and side: 4400x3300, so each photograph is a 4000x3000 crop of it at an
# offset of its own. The grain is what a camera adds and an upscaled wallpaper lacks.
vips gaussnoise "$work/grain.v" 4400 3300 --sigma 7 --mean 0
s=0
for f in $sources; do
    s=$((s + 1))
    scale=$(vipsheader -f width "$f" | awk -v h="$(vipsheader -f height "$f")" '{ a = 4400 / $1; b = 3300 / h; printf "%.4f", (a > b ? a : b) * 1.001 }')
    vips resize "$f" "$work/big.v" "$scale"
    vips crop "$work/big.v" "$work/cut.v" 0 0 4400 3300
    vips add "$work/cut.v" "$work/grain.v" "$work/sum.v"
    vips cast "$work/sum.v" "$work/base$s.v" uchar
    vips flip "$work/base$s.v" "$work/base$s-m.v" horizontal
done
rm -f "$work/big.v" "$work/cut.v" "$work/sum.v" "$work/grain.v"

i=1
while [ "$i" -le "$count" ]; do
    round=$(( (i - 1) / s ))
    side=; [ $((round % 2)) -eq 1 ] && side=-m
    # Offsets that differ from round to round and stay inside the 400x300 margin.
    printf '%s %d %d %s\n' "$work/base$(( (i - 1) % s + 1 ))$side.v" $(( round * 137 % 400 )) $(( round * 89 % 300 )) "$(name_of "$i")"
    i=$((i + 1))
done | xargs -P "$(nproc)" -L 1 sh -c 'vips crop "$0" "$3[Q=90,strip]" "$1" "$2" 4000 3000'
echo "$count photographs of 4000x3000 in $folder ($(du -sh "$folder" | cut -f1))"
