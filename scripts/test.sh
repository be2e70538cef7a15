#!/usr/bin/env bash
# Installs what is missing, builds from scratch if needed and runs the whole test suite:
# once in the CI build (warnings are errors), once under address + undefined sanitizers.
# Set ZEB_SKIP_ASAN=1 to run only the first pass.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh

jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

cmake --preset ci >/dev/null
cmake --build --preset ci -j "$jobs"
ctest --preset ci -j "$jobs"

if [ "${ZEB_SKIP_ASAN:-0}" != "1" ]; then
  cmake --preset asan >/dev/null
  cmake --build --preset asan -j "$jobs"
  ctest --preset asan -j "$jobs"
fi

# A short fuzzing smoke run of the recording walk, when clang is there.
if [ "${ZEB_SKIP_FUZZ:-0}" != "1" ] && command -v clang++ >/dev/null; then
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz -j "$jobs" --target fuzz_walk
  corpus=$(mktemp -d)
  ./build/ci/tools/zebtool gen --quiet --records 50 --channels 2 --gaps "$corpus/seed.zeb"
  ./build/fuzz/fuzz/fuzz_walk -max_total_time=15 -print_final_stats=0 "$corpus" 2>&1 | tail -n 1
  rm -rf "$corpus"
fi
echo "all test passes finished"
