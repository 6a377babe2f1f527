#!/usr/bin/env bash
# The real program on a screen of its own, with a real pointer and keyboard: desktop_test.sh BIN_DIR CASE
set -Eeuo pipefail
bin=$1
case=$2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)

cleanup() {
  [ -n "${screen_jobs:-}" ] && kill $screen_jobs 2>/dev/null
  pkill -9 -f "$work" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
trap 'echo "$case: line $LINENO failed" >&2' ERR

fail() {
  echo "$case: $*" >&2
  import -window root "${TMPDIR:-/tmp}/varnik-$case.png" 2>/dev/null || true
  exit 1
}

# await WHAT COMMAND...: until the command succeeds
await() {
  local what=$1 i
  shift
  for ((i = 0; i < 200; i++)); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.1
  done
  fail "no $what"
}

# A window that comes ahead of it is never framed, and vanishes for a moment when it is taken over.
window_manager() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

start_screen() {
  local number
  mkfifo "$work/display"
  Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
  screen_jobs=$!
  read -r number <"$work/display"
  export DISPLAY=:$number
  openbox >/dev/null 2>&1 &
  screen_jobs="$screen_jobs $!"
  await "window manager" window_manager
}

make_world() {
  "$source_dir/tools/make-demo.sh" "$work/world"
  mkdir -p -m 700 "$work/home" "$work/run"
  export HOME=$work/home XDG_CONFIG_HOME=$work/world/config XDG_DATA_HOME=$work/home/data XDG_RUNTIME_DIR=$work/run
  export VARNIK_HOME=$work/world/app QT_QPA_PLATFORM=xcb DEMO_SECONDS=${1:-1}
  game=$work/world/games/bz2-1.3
}

window() { xdotool search --onlyvisible --name "^$1\$" 2>/dev/null; }
# The busy window has the same title and is less tall.
main_window() {
  local id
  for id in $(window Varnik); do
    xwininfo -id "$id" | awk '/Height:/ { exit !($2 > 300) }' && echo "$id" && return
  done
  return 1
}
no_window() { ! window "$1"; }
start() { "$bin/varnik" "$@" >"$work/output" 2>&1 & program=$!; }
has_focus() { [ "$(xdotool getactivewindow getwindowname)" = "$1" ] && sleep 0.5; }
ended() { ! kill -0 "$program" 2>/dev/null; }
gone() { [ ! -e "$1" ]; }

# Everything in the install but what a run leaves on purpose.
checksums() { (cd "$1" && find . -type f ! -name battlezone.log -print0 | LC_ALL=C sort -z | xargs -0 cksum); }

# click X Y: in twips of the main window's inside
click() {
  local id x y
  id=$(main_window)
  read -r x y < <(xwininfo -id "$id" | awk '/Absolute upper-left/ { printf "%s ", $NF } END { print "" }')
  xdotool mousemove $((x + $1 / 15)) $((y + $2 / 15 + menu_height))
  sleep 0.2
  xdotool click 1
}
menu_height=21

select_mod() {
  click 5000 4700
  xdotool key Home
  xdotool type "$1"
  sleep 0.3
}

press() { for key in "$@"; do xdotool key "$key"; sleep 0.1; done; }

# By keyboard alone: adds an install to an empty list, offers it in the menu, selects it there and runs the game.
run_first_start() {
  make_world
  rm -r "$XDG_CONFIG_HOME"
  start
  await "window" main_window
  await "focus" has_focus Varnik
  press alt+b a
  await "dialog" window "Add/Remove BZ2 Locations"
  press Tab Tab Tab
  xdotool type "$game"
  press Tab space
  press shift+Tab shift+Tab shift+Tab shift+Tab Home space
  press Tab Tab Tab Tab Tab Tab Tab Tab space
  await "list of installs" grep -q BZ2Loc0 "$XDG_CONFIG_HOME/varnik/settings.json"
  grep -q '"BZ2Sel0": "Yes"' "$XDG_CONFIG_HOME/varnik/settings.json" || fail "the install is not offered"
  await "end of the dialog" no_window "Add/Remove BZ2 Locations"
  press alt+b Return
  await "selected install" grep -q '"Active": "0"' "$XDG_CONFIG_HOME/varnik/settings.json"
  sleep 0.5
  click 6600 5880
  await "game" test -s "$work/world/played/bz2-1.3.txt"
}

run_plain_mod() {
  make_world
  local before
  before=$(checksums "$game")
  start
  await "window" main_window
  select_mod Arena
  click 6600 5880
  await "game" test -s "$work/world/played/bz2-1.3.txt"
  no_window Varnik || fail "the window stays while the game runs"
  await "window after the game" main_window
  grep -q "folder: $game" "$work/world/played/bz2-1.3.txt" || fail "the game ran elsewhere"
  diff <(echo "$before" | cut -d' ' -f3-) <(cut -d' ' -f3- "$work/world/played/bz2-1.3.files") >/dev/null &&
    fail "the mod was not in force"
  diff <(echo "$before") <(checksums "$game") || fail "files differ after the run"
  xdotool key alt+v
  sleep 0.3
  xdotool key c
  await "end" ended
}

run_killed_game() {
  make_world 30
  local before
  before=$(checksums "$game")
  start
  await "window" main_window
  select_mod Arena
  click 6600 5880
  await "game" test -s "$work/world/played/bz2-1.3.txt"
  kill -9 "$program"
  pkill -9 -f 'sleep 30' || true
  diff <(echo "$before") <(checksums "$game") >/dev/null && fail "the mod was not in force"
  start
  await "end of the start that repairs" ended
  no_window Varnik || fail "the start that repairs shows a window"
  diff <(echo "$before") <(checksums "$game") || fail "files differ after the repair"
  start
  await "window" main_window
}

run_second_start() {
  make_world
  start
  await "window" main_window
  local first=$program
  start
  await "message" window "Varnik Already Running"
  xdotool key Return
  await "end of the second" ended
  program=$first
  kill -0 "$first" || fail "the first is gone"
  "$bin/varnik" close
  await "end of the first" ended
}

run_end_of_session() {
  make_world 30
  start
  await "window" main_window
  select_mod Arena
  click 6600 5880
  await "game" test -s "$work/world/played/bz2-1.3.txt"
  kill -TERM "$program"
  sleep 1
  kill -0 "$program" || fail "the program left the game alone"
  grep -q bz2loc "$XDG_CONFIG_HOME/varnik/settings.json" || fail "there is no marker"
}

stored() { grep -q "\"$1\": \"$2\"" "$XDG_CONFIG_HOME/varnik/settings.json"; }

start_tray() {
  : >"$work/tray"
  "$bin/traystub" <"$work/tray-input" >"$work/tray" &
  screen_jobs="$screen_jobs $!"
}

run_tray() {
  make_world
  mkfifo "$work/bus" "$work/tray-input"
  dbus-daemon --session --nofork --print-address=3 3>"$work/bus" &
  screen_jobs="$screen_jobs $!"
  read -r DBUS_SESSION_BUS_ADDRESS <"$work/bus"
  export DBUS_SESSION_BUS_ADDRESS
  exec 4<>"$work/tray-input"

  start
  await "window" main_window
  sleep 2  # it shows for a moment while it loads
  press alt+v s
  await "refusal without a tray" stored TrayIcon 0
  start_tray
  await "tray" gdbus introspect --session --dest org.kde.StatusNotifierWatcher --object-path /
  press alt+v s
  await "icon" grep -q icon "$work/tray"
  press alt+F4
  await "hidden window" no_window Varnik
  kill -0 "$program" || fail "the close box ended the program"
  echo click >&4
  sleep 1
  no_window Varnik || fail "one click opened the window"
  printf 'click\nclick\n' >&4
  await "window after a double click" main_window
  press alt+F4
  await "hidden window" no_window Varnik
  echo menu >&4
  sleep 1
  press Up Return
  await "end by the menu of the icon" ended
  stored TrayIcon 1 || fail "the icon is forgotten"

  kill "${screen_jobs##* }"
  start
  sleep 1.5
  start_tray
  await "icon in a tray that comes late" grep -q icon "$work/tray"
  kill -TERM "$program"
  await "end" ended
}

start_screen
"run_${case//-/_}"
echo "$case: passed"
