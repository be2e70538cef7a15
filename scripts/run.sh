#!/usr/bin/env bash
# Installs what is missing, builds the programs (no tests, no benchmarks: build/run is a folder
# of its own), writes a demo recording and shows it.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset run >/dev/null
cmake --build --preset run -j "$(nproc)"

./scripts/make-demo.sh ./build/run/bin/zebtool demo

viewer=./build/run/bin/zeb_viewer
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ] || [ "${QT_QPA_PLATFORM:-}" = "windows" ]; then
  exec "$viewer" demo/demo.zeb
else
  echo "No display found: writing the chart of demo/demo.zeb to demo/demo.png instead."
  "$viewer" demo/demo.zeb --export-png demo/demo.png --size 1400x800
  echo "Wrote demo/demo.png"
fi
