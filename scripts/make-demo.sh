#!/usr/bin/env bash
# Writes the demo recording and its display settings: FOLDER/demo.zeb and FOLDER/demo.mse.
# Usage: make-demo.sh ZEBTOOL FOLDER
set -euo pipefail
zebtool=$1 folder=$2
mkdir -p "$folder"
"$zebtool" gen --quiet --seed 7 --channels 4 --records 20000 --gaps "$folder/demo.zeb"
# The recording's own display settings: the viewer reads them from the file of the same name.
cat >"$folder/demo.mse" <<'MSE'
[General]
Title='Cold store, March 2024'
[Curve2]
ModulName='ZEB-P1'
ChannelName='Pressure'
Axis=2
MSE
