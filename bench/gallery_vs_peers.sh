#!/bin/sh
# The gallery's thumbnails against the thumbnailers a user could run instead, on one folder
# and one box size, all on the machine's two cores: each peer runs as two parallel processes,
# one per half of the file list, and is timed as a whole; Lumbra is timed from ShowFolder to
# the end of its pass (bench_gallery). Prints pictures a second of each and the ratios.
#
# Usage: bench/gallery_vs_peers.sh FOLDER [BOX]
#          throughput: vipsthumbnail, gdk-pixbuf-thumbnailer, Lumbra cold (empty disk cache)
#          and warm (the cache the cold run left, in a new process)
#        bench/gallery_vs_peers.sh --big FOLDER_10K FOLDER_100K [BOX]
#          the big-folder figures: first screen on the first folder; peak memory, scrolled
#          frames and the UI thread's longest stall on the second
# BOX defaults to 80. Make the folders with bench/make-photos.sh (--small for the big ones).
# Environment: BUILD_DIR (default build-bench in the repository, a Release build),
# RUNS (default 3): throughput is the best of RUNS, times are their median; BIG_RUNS
# (default 1) for the folder of 100,000.
set -eu

usage="usage: gallery_vs_peers.sh FOLDER [BOX] | gallery_vs_peers.sh --big FOLDER_10K FOLDER_100K [BOX]"
big=
if [ "${1:-}" = --big ]; then
    big=1
    shift
    folder=${1:?$usage}
    folder_huge=${2:?$usage}
    box=${3:-80}
else
    folder=${1:?$usage}
    box=${2:-80}
fi
runs=${RUNS:-3}
big_runs=${BIG_RUNS:-1}

repo=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$repo/build-bench}

bash "$repo/scripts/deps.sh"
missing=
for p in libvips-tools libgdk-pixbuf2.0-bin; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $p"
done
if [ -n "$missing" ]; then
    sudo=; [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get install -y --no-install-recommends $missing >&2
fi

cmake -S "$repo" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release > /dev/null
ninja -C "$build" bench_gallery > /dev/null
bench=$build/bench/bench_gallery

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT INT TERM

now_ns() { date +%s%N; }
value() { sed -n "s/^$1=//p" "$2" | tail -n 1; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2f", a / b; else print "n/a" }'; }
per_second() { awk -v n="$1" -v ns="$2" 'BEGIN { printf "%.1f\n", n * 1e9 / ns }'; }
largest() { sort -g | tail -n 1; }
median() { sort -g | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)] }'; }
loadavg() { cut -d ' ' -f 1 /proc/loadavg; }
verdict() {
    awk -v a="$1" -v op="$2" -v b="$3" 'BEGIN {
        ok = op == ">=" ? a >= b : op == "<=" ? a <= b : a < b
        print ok ? "met" : "MISSED"
    }'
}

# Runs bench_gallery RUNS times with the given arguments, keeping each run's lines in
# $tmp/NAME.N; the last run's file stays as $tmp/NAME.
lumbra_runs() {
    name=$1
    n=$2
    shift 2
    i=1
    while [ "$i" -le "$n" ]; do
        "$bench" "$@" > "$tmp/$name.$i" 2> "$tmp/$name.err" || { cat "$tmp/$name.$i" "$tmp/$name.err" >&2; exit 1; }
        cp "$tmp/$name.$i" "$tmp/$name"
        i=$((i + 1))
    done
}
# One key over all runs of NAME.
all_runs() { for f in "$tmp/$1".[0-9]*; do value "$2" "$f"; done; }

if [ -n "$big" ]; then
    echo "box $box, load average at start $(loadavg)"
    lumbra_runs first "$runs" --cold --cache "$tmp/cache" --box "$box" --no-scroll "$folder"
    first_ms=$(all_runs first first_screen_ms | median)
    gap_first=$(all_runs first ui_gap_max_ms | largest)
    echo "first screen, $(value pictures "$tmp/first") pictures: $first_ms ms (median of $runs; runs: $(all_runs first first_screen_ms | tr '\n' ' '))" \
         "goal <= 300 ms: $(verdict "$first_ms" '<=' 300)"

    lumbra_runs huge "$big_runs" --cold --cache "$tmp/cache" --box "$box" "$folder_huge"
    rss=$(all_runs huge peak_rss_mb | largest)
    frame_max=$(all_runs huge scroll_ms_max | largest)
    gap_huge=$(all_runs huge ui_gap_max_ms | largest)
    echo "$(value pictures "$tmp/huge") pictures: load $(value pass_ms "$tmp/huge") ms ($(value thumbs_per_s "$tmp/huge") pictures/s)," \
         "first screen $(value first_screen_ms "$tmp/huge") ms"
    echo "  peak memory $rss MB, goal < 400 MB: $(verdict "$rss" '<' 400)"
    echo "  scrolled frames: $(value scroll_frames "$tmp/huge"), max $frame_max ms (paint alone $(value scroll_paint_ms_max "$tmp/huge") ms)," \
         "mean $(value scroll_ms_mean "$tmp/huge") ms, $(value scroll_blank_frames "$tmp/huge") with cells still blank;" \
         "goal <= 8 ms: $(verdict "$frame_max" '<=' 8)"
    gap=$(printf '%s\n%s\n' "$gap_first" "$gap_huge" | largest)
    echo "longest UI stall during a load: $gap ms (10,000: $gap_first ms, 100,000: $gap_huge ms; at $(value ui_gap_max_end_ms "$tmp/huge") ms into that load);" \
         "goal <= 50 ms: $(verdict "$gap" '<=' 50)"
    exit 0
fi

find "$folder" -maxdepth 1 -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) | sort > "$tmp/all"
count=$(wc -l < "$tmp/all")
[ "$count" -gt 0 ] || { echo "no JPEG files in $folder" >&2; exit 1; }
# Alternate files go to the two halves, so both get the same mix of pictures.
awk 'NR % 2 == 1' "$tmp/all" > "$tmp/half1"
awk 'NR % 2 == 0' "$tmp/all" > "$tmp/half2"
# Every tool finds the pictures in the page cache: the first one timed pays no disk reads.
xargs -d '\n' cat < "$tmp/all" > /dev/null

vips_halves() {
    for half in half1 half2; do
        xargs -d '\n' vipsthumbnail -s "$box" -o "$tmp/out/%s.png" < "$tmp/$half" 2> /dev/null &
    done
    wait
}
# One process per picture, as a file manager runs it.
gdk_halves() {
    for half in half1 half2; do
        awk -v out="$tmp/out" '{ name = $0; sub(/.*\//, "", name); print $0; print out "/" name ".png" }' "$tmp/$half" |
            xargs -d '\n' -n 2 gdk-pixbuf-thumbnailer -s "$box" &
    done
    wait
}
# Pictures a second of a peer, the best of RUNS.
time_peer() {
    i=1
    while [ "$i" -le "$runs" ]; do
        rm -rf "$tmp/out"
        mkdir "$tmp/out"
        start=$(now_ns)
        "$1"
        end=$(now_ns)
        made=$(find "$tmp/out" -type f | wc -l)
        [ "$made" -eq "$count" ] || echo "warning: $1 made $made of $count thumbnails" >&2
        per_second "$count" $((end - start))
        i=$((i + 1))
    done | largest
}

echo "$count pictures in $folder, box $box, best of $runs runs; load average at start $(loadavg)"
vips=$(time_peer vips_halves)
echo "vipsthumbnail           $vips pictures/s"
gdk=$(time_peer gdk_halves)
echo "gdk-pixbuf-thumbnailer  $gdk pictures/s"
lumbra_runs cold "$runs" --cold --cache "$tmp/cache" --box "$box" --no-scroll "$folder"
cold=$(all_runs cold thumbs_per_s | largest)
lumbra_runs warm "$runs" --warm --cache "$tmp/cache" --box "$box" --no-scroll "$folder"
warm=$(all_runs warm thumbs_per_s | largest)

fastest=$(printf '%s vipsthumbnail\n%s gdk-pixbuf-thumbnailer\n' "$vips" "$gdk" | sort -g | tail -n 1)
cold_ratio=$(ratio "$cold" "${fastest%% *}")
warm_ratio=$(ratio "$warm" "$cold")
echo "Lumbra cold             $cold pictures/s  = ${cold_ratio}x the fastest peer (${fastest#* });" \
     "goal >= 1.1: $(verdict "$cold_ratio" '>=' 1.1)"
echo "Lumbra warm             $warm pictures/s  = ${warm_ratio}x cold; goal >= 10: $(verdict "$warm_ratio" '>=' 10)"
echo "Lumbra cold, median of runs: first screen $(all_runs cold first_screen_ms | median) ms," \
     "longest UI stall $(all_runs cold ui_gap_max_ms | median) ms, peak memory $(all_runs cold peak_rss_mb | median) MB"
echo "Lumbra warm, median of runs: first screen $(all_runs warm first_screen_ms | median) ms," \
     "longest UI stall $(all_runs warm ui_gap_max_ms | median) ms, peak memory $(all_runs warm peak_rss_mb | median) MB"
echo "load average at end $(loadavg)"
