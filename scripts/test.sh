#!/usr/bin/env bash
# Installs what is missing, builds from scratch if needed and runs the whole test suite:
# once in the CI build (warnings are errors), once under the address, undefined-behaviour and leak
# sanitizers.
# Then a short fuzzing run. ZEB_SKIP_ASAN=1 leaves out the sanitizer pass, ZEB_SKIP_FUZZ=1 the fuzzing.
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

# A short fuzzing smoke run of the recording walk, the template reader and the settings, when
# clang is there. New inputs go to a scratch folder; the seeds in the tree stay as they are.
# A run ends with an error on a crash, on an input taking over 5 s, or above 2 GB of memory.
if [ "${ZEB_SKIP_FUZZ:-0}" != "1" ] && command -v clang++ >/dev/null; then
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz -j "$jobs" --target fuzz_walk fuzz_template fuzz_settings
  corpus=$(mktemp -d)
  trap 'rm -rf "$corpus"' EXIT
  mkdir "$corpus/walk" "$corpus/template" "$corpus/settings"
  ./build/ci/bin/zebtool gen --quiet --records 50 --channels 2 --gaps "$corpus/walk/seed.zeb"
  fuzz() { # target, seconds, corpus folders
    local target=$1 seconds=$2
    shift 2
    ./build/fuzz/bin/"$target" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048 \
      -print_final_stats=0 "$@" 2>&1 | tail -n 1
    return "${PIPESTATUS[0]}"
  }
  fuzz fuzz_walk 15 "$corpus/walk"
  fuzz fuzz_template 10 "$corpus/template" tests/fixtures/templates -max_len=1024
  fuzz fuzz_settings 10 "$corpus/settings" fuzz/seeds/settings
fi
echo "all test passes finished"
