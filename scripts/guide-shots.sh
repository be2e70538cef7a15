#!/usr/bin/env bash
# Makes the user guide's pictures in docs/images anew, with the program itself: the chart through
# the viewer's picture export, the window's pages and analysis views through an offscreen capture
# of the real window (zeb_guide_shots). Run it after a change the pictures show.
# ZEB_BUILD=FOLDER uses a configured build folder of your own instead of the default preset's.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
build=${ZEB_BUILD:-build/default}
[ -n "${ZEB_BUILD:-}" ] || cmake --preset default >/dev/null
cmake --build "$build" -j "$(nproc)" --target zeb_viewer zebtool zeb_guide_shots
bin=$build/bin

# A folder of a fixed name: the report prints the recording's path.
work=/tmp/zeb-guide
rm -rf "$work"
mkdir -p "$work"
chmod 700 "$work" # it is the runtime folder of the programs below too
trap 'rm -rf "$work"' EXIT
# Settings of their own, in English, never the user's.
export ZEB_SETTINGS_FILE=$work/settings.ini LC_ALL=C.UTF-8 LANGUAGE= QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work

# The demo recording of run.sh, with its display settings next to it.
./scripts/make-demo.sh "$bin/zebtool" "$work"

out=docs/images
mkdir -p "$out"
"$bin/zeb_viewer" "$work/demo.zeb" --export-png "$out/chart-export.png" --size 1100x620
echo "wrote $out/chart-export.png"
# The report's first two pages, as its PDF shows them.
"$bin/zeb_viewer" "$work/demo.zeb" --report "$work/report.pdf"
pdftoppm -png -r 60 -f 1 -l 2 "$work/report.pdf" "$work/report"
cp "$work/report-1.png" "$out/report-page1.png"
cp "$work/report-2.png" "$out/report-page2.png"
echo "wrote $out/report-page1.png $out/report-page2.png"
# A shipment of loggers for the summary: shelves with one to three channels, one without limits.
mkdir -p "$work/shipment"
for i in $(seq -w 1 12); do
  limits=()
  [ "$i" = 05 ] && limits=(--no-limits)
  "$bin/zebtool" gen --quiet --seed "$i" --channels $((1 + 10#$i % 3)) --records $((3000 + 10#$i * 400)) \
    --logger "Shelf $i" "${limits[@]}" "$work/shipment/shelf-$i.zeb"
done
"$bin/zeb_guide_shots" "$work/demo.zeb" "$out" "$work/shipment" 2> >(grep -v "does not support" >&2)
