#!/usr/bin/env bash
# The viewer's window caption as the desktop gets it: on a real X server (Xvfb) the window's
# name must be exactly the caption the program sets, "ZEB Viewer [64] [FILE]", with no program
# name added by Qt or the desktop. Usage: caption.sh ZEB_VIEWER ZEBTOOL
set -euo pipefail
viewer=$1 zebtool=$2
for tool in Xvfb xwininfo xprop; do
  command -v "$tool" >/dev/null || { echo "caption: $tool is missing (scripts/install-deps.sh installs it)"; exit 1; }
done

tmp=$(mktemp -d)
xvfb_pid='' viewer_pid=''
cleanup() {
  [ -n "$viewer_pid" ] && kill "$viewer_pid" 2>/dev/null
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null
  rm -rf "$tmp"
}
trap cleanup EXIT

# A display of our own: Xvfb picks a free number and writes it to the descriptor.
exec 3>"$tmp/display"
Xvfb -displayfd 3 -nolisten tcp -screen 0 1280x1024x24 >"$tmp/xvfb.log" 2>&1 &
xvfb_pid=$!
exec 3>&-
# The number is complete once its line ends.
for _ in $(seq 100); do [ "$(tail -c 1 "$tmp/display" 2>/dev/null)" = "" ] && [ -s "$tmp/display" ] && break; sleep 0.1; done
export DISPLAY=":$(head -n 1 "$tmp/display")"
# Xvfb answers once it is ready.
for _ in $(seq 100); do xwininfo -root >/dev/null 2>&1 && break; sleep 0.1; done

export ZEB_SETTINGS_FILE="$tmp/settings.ini" QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$tmp"
"$zebtool" gen --quiet --records 200 --channels 2 "$tmp/rec.zeb"
"$viewer" "$tmp/rec.zeb" >"$tmp/viewer.log" 2>&1 &
viewer_pid=$!

want="ZEB Viewer [64] [$tmp/rec.zeb]"
id=''
# The caption shows the file once it has loaded ("ZEB Viewer> [64]" while loading).
for _ in $(seq 300); do
  id=$(xwininfo -root -tree 2>/dev/null | awk -v w="\"$want\"" 'index($0, w) { print $1; exit }' || true)
  [ -n "$id" ] && break
  kill -0 "$viewer_pid" 2>/dev/null || { echo "caption: the viewer ended"; cat "$tmp/viewer.log"; exit 1; }
  sleep 0.1
done
if [ -z "$id" ]; then
  echo "caption: no window named \"$want\"; the windows are:"
  xwininfo -root -tree | grep '"' || true
  exit 1
fi

# Both the old and the UTF-8 name must hold the caption alone. Qt sets them one after the
# other, so the one read second may still be on its way.
fail=0
for prop in WM_NAME _NET_WM_NAME; do
  got=''
  for _ in $(seq 100); do
    got=$(xprop -id "$id" "$prop" | sed -n 's/^[^=]*= "\(.*\)"$/\1/p')
    [ "$got" = "$want" ] && break
    sleep 0.1
  done
  if [ "$got" != "$want" ]; then
    echo "caption: $prop is \"$got\", expected \"$want\""
    fail=1
  fi
done
# The class lets the desktop tie the window to its entry (StartupWMClass).
class=$(xprop -id "$id" WM_CLASS)
case "$class" in
  *'"zeb_viewer"'*) ;;
  *) echo "caption: WM_CLASS is $class"; fail=1 ;;
esac
[ "$fail" -eq 0 ] && echo "caption: \"$want\" as it should be"
exit "$fail"
