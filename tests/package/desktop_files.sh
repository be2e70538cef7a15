#!/usr/bin/env bash
# The desktop integration files as the desktop's own tools read them, and as they refer to each
# other: a renamed icon, MIME type or entry breaks the link between them without any tool noticing.
# Usage: desktop_files.sh SOURCE_PACKAGING_DIR BUILD_PACKAGING_DIR APP_ID VERSION
set -uo pipefail
src=$1 build=$2 id=$3 version=$4
failures=0 checks=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
check() { # description, command...
  local what=$1
  shift
  checks=$((checks + 1))
  local out
  if ! out=$("$@" 2>&1); then fail "$what"; echo "$out"; fi
}

desktop=$src/$id.desktop
mimexml=$src/zeb-viewer.xml
metainfo=$build/$id.metainfo.xml

check "desktop entry validates" desktop-file-validate "$desktop"
check "MIME definitions are well-formed" xmllint --noout "$mimexml"
check "metainfo is well-formed" xmllint --noout "$metainfo"
check "metainfo validates" appstreamcli validate --no-net "$metainfo"
for svg in "$src"/icons/*.svg; do
  check "$(basename "$svg") is well-formed" xmllint --noout "$svg"
done

# update-mime-database reads every element; it complains on stderr about what it does not know.
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
mkdir -p "$tmp/mime/packages"
cp "$mimexml" "$tmp/mime/packages/"
checks=$((checks + 1))
if ! err=$(XDG_DATA_HOME=$tmp update-mime-database "$tmp/mime" 2>&1 >/dev/null) || [ -n "$err" ]; then
  fail "update-mime-database takes the definitions without a word"
  echo "$err"
fi

key() { sed -n "s/^$1=//p" "$desktop"; }
xpath() { xmllint --xpath "$1" "$2" 2>/dev/null; }

# The entry starts the viewer on one file and shows it in German, English and French.
checks=$((checks + 1))
[ "$(key Exec)" = "zeb_viewer %f" ] || fail "Exec is \"$(key Exec)\""
for field in GenericName Comment; do
  for lang in de fr; do
    checks=$((checks + 1))
    [ -n "$(key "$field\\[$lang\\]")" ] || fail "$field[$lang] is missing"
  done
done

# Every type the entry opens is defined, with an icon of its own; so is every defined type's icon.
types=$(xpath "//*[local-name()='mime-type']/@type" "$mimexml" | sed 's/ type="\([^"]*\)"/\1\n/g')
for type in $(key MimeType | tr ';' ' '); do
  checks=$((checks + 1))
  grep -qx "$type" <<<"$types" || fail "the entry opens $type, which is not defined"
done
for type in $types; do
  checks=$((checks + 1))
  [ -f "$src/icons/${type/\//-}.svg" ] || fail "no icon for $type"
done
checks=$((checks + 1))
[ -f "$src/icons/$(key Icon).svg" ] || fail "no icon named $(key Icon)"

# Software centres promise what the metainfo says the program opens; the entry is what opens it.
checks=$((checks + 1))
mediatypes=$(xpath "//provides/mediatype/text()" "$metainfo" | sort | tr '\n' ' ')
opened=$(key MimeType | tr ';' '\n' | sed '/^$/d' | sort | tr '\n' ' ')
[ "$mediatypes" = "$opened" ] || fail "metainfo provides [$mediatypes], the entry opens [$opened]"

# The metainfo names the entry, the icon and this version.
checks=$((checks + 3))
[ "$(xpath "string(//component/id)" "$metainfo")" = "$id" ] || fail "metainfo id"
[ "$(xpath "string(//launchable)" "$metainfo")" = "$id.desktop" ] || fail "metainfo launchable"
[ "$(xpath "string(//releases/release[1]/@version)" "$metainfo")" = "$version" ] || fail "metainfo release version"

echo "desktop files: $((checks - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
