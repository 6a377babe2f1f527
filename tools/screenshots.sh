#!/bin/bash
# Takes the pictures of the documents, on a screen of its own and with the demo world:
#   screenshots.sh BIN_DIR [FOLDER [DPI [SCREEN]]]
#   screenshots.sh --all BIN_DIR FOLDER   every page and dialog on screens of several sizes and densities, light and dark
# Without FOLDER they replace those of docs/screenshots. Needs xvfb, openbox, xdotool and imagemagick, and for the dark
# ones dbus and the traystub of a build with tests.
set -euo pipefail
if [ "$1" = --all ]; then
  for scene in 96:1366x768 96:1280x800 96:1920x1080 144:1366x768 144:1920x1080 192:2732x1536; do
    "$0" "$2" "$3/$scene" "${scene%:*}" "${scene#*:}"
  done
  COLOR_SCHEME=1 dbus-run-session -- "$0" "$2" "$3/dark" 96 1920x1080
  exit
fi
bin=$(realpath "$1")
source_dir=$(cd "$(dirname "$0")/.." && pwd)
folder=$(realpath -m "${2:-$source_dir/docs/screenshots}")
dpi=${3:-96}
screen=${4:-1366x768}
mkdir -p "$folder"
work=/tmp/varnik-demo # its name is seen in the pictures
mkdir "$work"
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$work"' EXIT

mkfifo "$work/display"
Xvfb -displayfd 3 -screen 0 "${screen}x24" -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
read -r number <"$work/display"
export DISPLAY=:$number QT_QPA_PLATFORM=xcb QT_FONT_DPI=$dpi
openbox >/dev/null 2>&1 &
[ -z "${COLOR_SCHEME:-}" ] || "$bin/traystub" >/dev/null 2>&1 &

"$source_dir/tools/make-demo.sh" "$work/world"
mkdir -m 700 "$work/home" "$work/run"
export HOME=$work/home XDG_CONFIG_HOME=$work/world/config XDG_DATA_HOME=$work/home/data XDG_RUNTIME_DIR=$work/run
export VARNIK_HOME=$work/world/app

await() {
  local i
  for ((i = 0; i < 100; i++)); do
    "$@" >/dev/null 2>&1 && return
    sleep 0.1
  done
  echo "screenshots.sh: no success of: $*" >&2
  exit 1
}
active() { [[ "$(xdotool getactivewindow getwindowname)" =~ ^$1$ ]]; }
press() {
  local key
  for key in "$@"; do
    xdotool key "$key"
    sleep 0.15
  done
}

# picture NAME TITLE: of the window that has the focus
picture() {
  await active "$2"
  sleep 0.7
  import -window "$(xdotool getactivewindow)" +dither -colors 200 -strip "PNG8:$folder/$1.png"
}

# click X Y: in pixels of the main window at 96 dpi
click() {
  xdotool mousemove --window "$main" $(($1 * dpi / 96)) $(($2 * dpi / 96)) click 1
  sleep 0.3
}

# page NODE...: the last of these nodes, each by its first letters and below the one before
page() {
  local node
  click 60 300
  press Home
  for node in "$@"; do
    xdotool type --delay 60 "$node"
    sleep 1.2
    [ "$node" = "${@: -1}" ] || press Right
  done
}

# dialog NAME TITLE KEY...
dialog() {
  press "${@:3}"
  picture "$1" "$2"
  press Escape
  await active Varnik
}

await xprop -root _NET_SUPPORTING_WM_CHECK
"$bin/varnik" >/dev/null 2>&1 &
await active Varnik
sleep 3 # what showed first may have been the busy window
main=$(xdotool getactivewindow)
click 60 300
press Home Tab Tab Home
xdotool type --delay 60 Frozen
sleep 1
picture main Varnik
dialog editor "Edit Mod File: .*" alt+v e
dialog locations "Add/Remove BZ2 Locations" alt+b a
dialog options "Varnik Options" alt+v o
page Command
picture commandline Varnik
page Command Edit
picture optionlist Varnik
page BZ2 1.3
picture config13 Varnik
page Extras
press alt+d Home Down
picture extras Varnik
page Maps
press n # to the question about maps of older versions
sleep 1
press Tab Home Down Down Down
sleep 1
picture maps Varnik
[ "$#" -gt 3 ] || exit 0 # the documents have no others
press ctrl+f
xdotool type --delay 60 ca
picture find Varnik
press Escape
page BZ2
picture config Varnik
dialog about "About Varnik" alt+h a
page Mods
press Tab Tab Home
xdotool type --delay 60 Frozen
sleep 1
dialog warning "Varnik WARNING" alt+e f
press alt+v c
XDG_CONFIG_HOME=$work/empty "$bin/varnik" >/dev/null 2>&1 &
sleep 3
picture first Varnik
