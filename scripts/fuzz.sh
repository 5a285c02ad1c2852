#!/usr/bin/env bash
# Fuzzes the picture loader with libFuzzer for a while: scripts/fuzz.sh [SECONDS] (default 60).
# Builds fuzz/ with clang++ into build-fuzz/, seeds it with the public corpora (copied into
# build-fuzz/, never into the project) and exits non-zero when an input crashes the loader;
# the input is then left in build-fuzz/ as crash-* (or timeout-*, oom-*).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$repo/build-fuzz
seconds=${1:-60}
if ! [[ $seconds =~ ^[0-9]+$ ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS]" >&2
  exit 2
fi

source "$repo/scripts/deps.sh"
lumbra_ensure_deps

if [[ ! -f "$build/CMakeCache.txt" ]]; then
  cmake -S "$repo/fuzz" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++
fi
cmake --build "$build"

# Seeds: the small picture files of the corpora; large ones only slow every run down.
corpora=$repo/../shared/corpora
seeds=$build/seeds
work=$build/corpus
mkdir -p "$seeds" "$work"
if [[ -d $corpora ]]; then
  find "$corpora" -type f -size -64k \
    ! -name '*.txt' ! -name '*.tsv' ! -name '*.md' ! -name '*.conf' ! -name '*.html' \
    ! -name 'README*' ! -name 'SOURCES*' ! -name 'MANIFEST*' -print0 |
    while IFS= read -r -d '' file; do
      relative=${file#"$corpora"/}
      cp -f "$file" "$seeds/${relative//\//_}"
    done
fi

cd "$build"
export QT_QPA_PLATFORM=offscreen
# Qt keeps caches for the life of the process; they are not the loader's leaks. Decoders ask
# for absurd buffers on hostile headers and cope with a refusal, as they do outside the fuzzer.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:allocator_may_return_null=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
./fuzz_loader -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 -max_len=65536 \
  -print_final_stats=1 \
  -close_fd_mask=3 "$work" "$seeds" # the decoders' own complaints would drown the report
