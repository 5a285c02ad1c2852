#!/bin/sh
# Times the gallery's scan and sort of 100,000 small .jpg files against
# find -printf | sort over the same folder, best of several runs each, and prints the ratios.
# Usage: bench/scan_vs_find.sh BENCH_SCAN_BINARY [FILES] [RUNS]
# (build the binary with: ninja -C BUILD_DIR bench_scan, preferably a Release build)
set -eu
bench=${1:?usage: scan_vs_find.sh BENCH_SCAN_BINARY [FILES] [RUNS]}
files=${2:-100000}
runs=${3:-5}

dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT INT TERM

"$bench" make "$dir" "$files"
# Warm the directory and inode caches once for both sides.
find "$dir" -name '*.jpg' > /dev/null

find_best=
i=0
while [ "$i" -lt "$runs" ]; do
    start=$(date +%s%N)
    find "$dir" -name '*.jpg' -printf '%s %T@ %f\n' | sort > /dev/null
    end=$(date +%s%N)
    ms=$(( (end - start) / 1000000 ))
    if [ -z "$find_best" ] || [ "$ms" -lt "$find_best" ]; then find_best=$ms; fi
    i=$((i + 1))
done
echo "find | sort: best ${find_best} ms of $runs runs, $files files"

"$bench" run "$dir" "$runs" | while read -r _ sortation ms count; do
    ratio=$(awk -v a="$ms" -v b="$find_best" 'BEGIN { if (b > 0) printf "%.2f", a / b; else print "n/a" }')
    echo "scan + sort by $sortation: best $ms ms ($count files), ${ratio}x find"
done
