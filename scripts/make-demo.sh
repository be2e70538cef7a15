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
[Text0]
Text='Received at store 3'
X=300
Y=120
[TimeText0]
Text='Door opened for loading'
X=762739200
Y=22
[TimeText1]
Text='Defrost cycle'
X=763344000
Y=18
MSE
