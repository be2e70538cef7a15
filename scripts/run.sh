#!/usr/bin/env bash
# Installs what is missing, builds, writes a demo recording and shows it.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"

mkdir -p demo
./build/default/tools/zebtool gen --seed 7 --channels 4 --records 20000 --gaps demo/demo.zeb
./build/default/tools/zebtool blocks demo/demo.zeb
