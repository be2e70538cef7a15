#!/usr/bin/env bash
# The Debian package as a user gets it: built by CPack from this build, its control fields and
# file list, and the programs run from the unpacked tree, so a file left out or a wrong path
# inside the package fails here.
# Usage: deb.sh CPACK CPACK_CONFIG VERSION PROGRAM_DIR APP_ID PROGRAM...
set -uo pipefail
cpack=$1 config=$2 version=$3 programdir=$4 id=$5
shift 5
programs=("$@")
failures=0 checks=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
expect() { # description, condition...
  local what=$1
  shift
  checks=$((checks + 1))
  "$@" || fail "$what"
}

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
if ! "$cpack" -G DEB --config "$config" -B "$tmp/out" >"$tmp/cpack.log" 2>&1; then
  cat "$tmp/cpack.log"
  echo "package: cpack failed"
  exit 1
fi
debs=("$tmp"/out/zeb-viewer_*.deb)
[ -f "${debs[0]}" ] || { echo "package: no zeb-viewer_*.deb"; ls "$tmp/out"; exit 1; }
deb=${debs[0]}
arch=$(dpkg --print-architecture)
expect "file name $(basename "$deb")" [ "$(basename "$deb")" = "zeb-viewer_${version}_${arch}.deb" ]

field() { dpkg-deb -f "$deb" "$1"; }
expect "Package" [ "$(field Package)" = zeb-viewer ]
expect "Version" [ "$(field Version)" = "$version" ]
expect "Maintainer" grep -q '<.*@.*>' <<<"$(field Maintainer)"
expect "Description" [ -n "$(field Description)" ]
# Computed from the programs: Qt, QCustomPlot and zlib are there with their versions.
depends=$(field Depends)
for lib in libqt6core6 libqt6widgets6 libqt6gui6 libqcustomplot2.1-qt6 zlib1g libc6; do
  expect "Depends names $lib ($depends)" grep -q "\\b$lib (>= " <<<"$depends"
done
expect "Depends names the fonts ($depends)" grep -q "\\bfonts-liberation2\\b" <<<"$depends"

# Every program in one folder, each reachable from bin through a link into that folder.
list=$(dpkg-deb -c "$deb" | awk '{ print $6 ($7 == "->" ? " -> " $8 : "") }')
for p in "${programs[@]}"; do
  expect "$p in /usr/$programdir" grep -qx "\./usr/$programdir/$p" <<<"$list"
  expect "$p in /usr/bin" grep -q "^\./usr/bin/$p -> .*$programdir/$p\$" <<<"$list"
done
for f in "share/applications/$id.desktop" share/mime/packages/zeb-viewer.xml "share/metainfo/$id.metainfo.xml" \
         "share/icons/hicolor/scalable/apps/$id.svg" "share/icons/hicolor/48x48/apps/$id.png" \
         share/icons/hicolor/256x256/mimetypes/application-x-zeb-recording.png \
         share/icons/hicolor/scalable/mimetypes/application-x-zeb-template.svg; do
  expect "$f" grep -qx "\./usr/$f" <<<"$list"
done
# Nothing of the build or the tests comes along.
expect "only the programs are executable" [ -z "$(dpkg-deb -c "$deb" | awk '$1 ~ /^-..x/ { print $6 }' |
  grep -v "^\./usr/$programdir/")" ]

# Unpacked anywhere, the programs work from bin.
root=$tmp/root
dpkg-deb -x "$deb" "$root"
bin=$root/usr/bin
# A fresh settings file follows the system language: English here.
export ZEB_SETTINGS_FILE=$tmp/settings.ini XDG_RUNTIME_DIR=$tmp LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
expect "zebtool gen" "$bin/zebtool" gen --quiet --records 3000 --channels 3 --gaps "$tmp/rec.zeb"
expect "zebtool info" grep -q "curves:  *3" <<<"$("$bin/zebtool" info "$tmp/rec.zeb")"
expect "the viewer's picture export" "$bin/zeb_viewer" "$tmp/rec.zeb" --export-png "$tmp/chart.png" --size 800x500
expect "the picture is a PNG" [ "$(head -c 8 "$tmp/chart.png" 2>/dev/null | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ]
expect "the viewer's report" "$bin/zeb_viewer" "$tmp/rec.zeb" --report "$tmp/report.pdf"
expect "the report is a PDF" [ "$(head -c 5 "$tmp/report.pdf" 2>/dev/null)" = "%PDF-" ]
expect "the converter" "$bin/${programs[3]}" "$tmp/rec.zeb" "$tmp/rec.csv"
expect "the text has a line per record" [ "$(wc -l <"$tmp/rec.csv" 2>/dev/null)" -gt 3000 ]
# The viewer started through its link finds the companions in the unpacked folder.
companions=$("$bin/zeb_viewer" --version | sed -n 2p)
expect "companions found: $companions" [ "$companions" = \
  "Companion programs in $(cd "$root/usr/$programdir" && pwd -P): ${programs[2]}, ${programs[3]}, ${programs[4]}" ]
for p in "${programs[@]}"; do
  expect "$p --help" "$bin/$p" --help >/dev/null
done
# The installed entry starts a program the package has.
exec_program=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$root/usr/share/applications/$id.desktop")
expect "Exec names $exec_program in bin" [ -x "$bin/$exec_program" ]

echo "package: $((checks - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
