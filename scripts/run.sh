#!/usr/bin/env bash
# Installs what is missing, builds, writes a demo recording and shows it.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"

./scripts/make-demo.sh ./build/default/bin/zebtool demo

viewer=./build/default/bin/zeb_viewer
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ] || [ "${QT_QPA_PLATFORM:-}" = "windows" ]; then
  exec "$viewer" demo/demo.zeb
else
  echo "No display found: writing the chart of demo/demo.zeb to demo/demo.png instead."
  "$viewer" demo/demo.zeb --export-png demo/demo.png --size 1400x800
  echo "Wrote demo/demo.png"
fi
