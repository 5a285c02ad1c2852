#!/usr/bin/env bash
# Builds everything (Debug) and runs every test: scripts/test.sh [--sanitize]
# --sanitize builds with AddressSanitizer and UndefinedBehaviorSanitizer in build-asan/.
# The end-to-end test starts its own virtual display, so no display is needed.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$repo/build-test
cmake_args=(-DCMAKE_BUILD_TYPE=Debug)
for arg in "$@"; do
  case $arg in
    --sanitize)
      build=$repo/build-asan
      cmake_args+=(-DLUMBRA_SANITIZE=ON)
      # Decoders ask for absurd buffers on hostile headers and cope when malloc refuses, as
      # it does outside the sanitizer; aborting there would hide the real faults.
      export ASAN_OPTIONS=${ASAN_OPTIONS:-allocator_may_return_null=1}
      ;;
    -h | --help)
      echo "usage: scripts/test.sh [--sanitize]"
      exit 0
      ;;
    *)
      echo "scripts/test.sh: unknown argument: $arg (usage: scripts/test.sh [--sanitize])" >&2
      exit 2
      ;;
  esac
done

source "$repo/scripts/deps.sh"
lumbra_ensure_deps

if [[ -f "$build/CMakeCache.txt" ]]; then
  cmake -S "$repo" -B "$build" "${cmake_args[@]}"
else
  cmake -S "$repo" -B "$build" -G Ninja "${cmake_args[@]}"
fi
cmake --build "$build"

status=0
ctest --test-dir "$build" --output-on-failure -j2 || status=$?
exit "$status"
