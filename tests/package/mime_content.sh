#!/usr/bin/env bash
# What a desktop makes of our files once the MIME definitions and the desktop entry are installed
# (here into a temporary XDG_DATA_HOME): recordings are known by name and, without a name, by
# their first bytes; templates by name; and the viewer is the application that opens recordings.
# Usage: mime_content.sh SOURCE_PACKAGING_DIR ZEBTOOL APP_ID
set -uo pipefail
src=$1 zebtool=$2 id=$3
failures=0 checks=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
export XDG_DATA_HOME=$tmp/share XDG_CONFIG_HOME=$tmp/config XDG_DATA_DIRS=/usr/share
# xdg-mime asks GIO, as a GNOME desktop would.
export XDG_CURRENT_DESKTOP=GNOME
mkdir -p "$XDG_DATA_HOME/mime/packages" "$XDG_DATA_HOME/applications" "$XDG_CONFIG_HOME"
cp "$src/zeb-viewer.xml" "$XDG_DATA_HOME/mime/packages/"
cp "$src/$id.desktop" "$XDG_DATA_HOME/applications/"
update-mime-database "$XDG_DATA_HOME/mime" >/dev/null 2>&1 || fail "update-mime-database"
update-desktop-database "$XDG_DATA_HOME/applications" || fail "update-desktop-database"

files=$tmp/files
mkdir "$files"
# Small recordings are one fixed-Huffman deflate block, larger ones start with a dynamic one.
"$zebtool" gen --quiet --records 5 --channels 1 "$files/small" || fail "zebtool gen"
"$zebtool" gen --quiet --records 20000 --channels 4 --gaps "$files/large" || fail "zebtool gen"
"$zebtool" gen --quiet --records 0 --channels 2 "$files/empty-recording" || fail "zebtool gen"
cp "$files/small" "$files/upper.ZEB"
cp "$files/small" "$files/partner.dvk"
printf '[General]\r\nTitle=Cold store\r\n' >"$files/cold.mse"
printf 'not a recording\n' >"$files/text.zeb"
# Other zlib streams: another level's header, and a default-level one whose first block is stored.
printf '\x78\x01\xcb\x48\xcd\xc9\xc9\x07\x00' >"$files/zlib-level1"
printf '\x78\x9c\x01\x05\x00\xfa\xffhello' >"$files/zlib-stored"
printf '[General]\r\nTitle=Cold store\r\n' >"$files/ini-text"

# file, expected type
while read -r name want; do
  checks=$((checks + 1))
  got=$(xdg-mime query filetype "$files/$name" 2>&1)
  [ "$got" = "$want" ] || fail "$name is \"$got\", expected $want"
done <<'TABLE'
small application/x-zeb-recording
large application/x-zeb-recording
empty-recording application/x-zeb-recording
upper.ZEB application/x-zeb-recording
partner.dvk application/x-zeb-recording
text.zeb application/x-zeb-recording
cold.mse application/x-zeb-template
zlib-level1 application/octet-stream
zlib-stored application/octet-stream
ini-text text/plain
TABLE

checks=$((checks + 1))
got=$(xdg-mime query default application/x-zeb-recording 2>&1)
[ "$got" = "$id.desktop" ] || fail "recordings open with \"$got\", expected $id.desktop"

echo "MIME types: $((checks - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
