#!/usr/bin/env bash
# Installs what is missing, builds, writes a demo recording and shows it.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"

mkdir -p demo
./build/default/bin/zebtool gen --seed 7 --channels 4 --records 20000 --gaps demo/demo.zeb
# The recording's own display settings: the viewer reads them from the file of the same name.
cat > demo/demo.mse <<'MSE'
[General]
Title='Cold store, March 2024'
[Curve2]
ModulName='ZEB-P1'
ChannelName='Pressure'
Axis=2
MSE

viewer=./build/default/bin/zeb_viewer
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ] || [ "${QT_QPA_PLATFORM:-}" = "windows" ]; then
  exec "$viewer" demo/demo.zeb
else
  echo "No display found: writing the chart of demo/demo.zeb to demo/demo.png instead."
  "$viewer" demo/demo.zeb --export-png demo/demo.png --size 1400x800
  echo "Wrote demo/demo.png"
fi
