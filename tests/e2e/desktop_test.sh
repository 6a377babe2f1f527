#!/usr/bin/env bash
# The real program on a screen of its own, with a real pointer and keyboard: desktop_test.sh BIN_DIR CASE
set -Eeuo pipefail
bin=$1
case=$2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
jobs_here=()

# What runs in this test's home, such as a game that outlives the program.
ours() { grep -lsz "^HOME=$work/home$" /proc/[0-9]*/environ | cut -d / -f 3 || true; }

cleanup() {
  kill -9 $(ours) 2>/dev/null || true
  kill "${jobs_here[@]}" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
trap 'echo "$case: line $LINENO failed" >&2' ERR

fail() {
  echo "$case: $*" >&2
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
  jobs_here+=($!)
  read -r number <"$work/display"
  export DISPLAY=:$number
  HOME=$work XDG_CACHE_HOME=$work openbox >/dev/null 2>&1 &  # several may start at once, and would share files
  jobs_here+=($!)
  await "window manager" window_manager
}

make_world() {
  "$source_dir/tools/make-demo.sh" "$work/world"
  mkdir -p -m 700 "$work/home" "$work/run"
  export HOME=$work/home XDG_CONFIG_HOME=$work/world/config XDG_DATA_HOME=$work/home/data XDG_RUNTIME_DIR=$work/run
  # A program that ends before the desktop has answered leaves the library's own memory of the question.
  echo leak:libdbus >"$work/suppressions"
  export LSAN_OPTIONS=suppressions=$work/suppressions:print_suppressions=0
  export VARNIK_HOME=$work/world/app QT_QPA_PLATFORM=xcb DEMO_SECONDS=${1:-1}
  game=$work/world/games/bz2-1.3
  played=$work/world/played/bz2-1.3
  settings=$XDG_CONFIG_HOME/varnik/settings.json
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
# It shows for a moment while it loads.
settled() { main_window && sleep 0.7 && main_window; }
no_window() { ! window "$1"; }
has_focus() { [ "$(xdotool getactivewindow getwindowname)" = "$1" ] && sleep 0.5; }
ended() { ! kill -0 "$program" 2>/dev/null; }
stored() { grep -q "\"$1\": \"$2\"" "$settings"; }

start() { "$bin/varnik" "$@" >"$work/output" 2>&1 & program=$!; }
start_window() {
  start
  await "window" settled
  await "focus" has_focus Varnik
}

# Everything in the install but what a run leaves on purpose.
checksums() { (cd "$game" && find . -type f ! -name battlezone.log -print0 | LC_ALL=C sort -z | xargs -0 cksum); }
as_before() { [ "$before" = "$(checksums)" ]; }
mod_was_active() { ! diff <(echo "$before" | cut -d' ' -f3-) <(cut -d' ' -f3- "$played.files") >/dev/null; }

# click X Y: in twips of the main window's inside
click() {
  local x y
  read -r x y < <(xwininfo -id "$(main_window)" | awk '/Absolute upper-left/ { printf "%s ", $NF } END { print "" }')
  xdotool mousemove $((x + $1 / 15)) $((y + $2 / 15 + 21))  # the menu bar is 21 high
  sleep 0.2
  xdotool click 1
}

press() { for key in "$@"; do xdotool key "$key"; sleep 0.1; done; }

play_arena() {
  before=$(checksums)
  click 5000 4700
  press Home
  xdotool type Arena
  sleep 0.3
  click 6600 5880
  await "game" test -s "$played.txt"
}

# By keyboard alone: adds an install to an empty list, selects it in the menu and runs the game.
run_first_start() {
  make_world
  rm -r "$XDG_CONFIG_HOME"
  start_window
  grep -q "Varnik" "$XDG_CONFIG_HOME/varnik/registry.json" || fail "the home page is not published"
  press alt+b a
  await "dialog" window "Add/Remove BZ2 Locations"
  press Tab Tab Tab
  xdotool type "$game"
  press Tab space alt+c
  await "list of installs" stored BZ2Sel0 Yes
  await "end of the dialog" no_window "Add/Remove BZ2 Locations"
  press alt+b Return
  await "selected install" stored Active 0
  sleep 0.5
  click 6600 5880
  await "game" test -s "$played.txt"
}

run_plain_mod() {
  make_world
  start_window
  [ "/proc/$program/cwd" -ef "$VARNIK_HOME" ] || fail "the program runs in another folder than its own"
  play_arena
  no_window Varnik || fail "the window stays while the game runs"
  kill -TERM "$program"  # it cannot be closed now
  await "window after the game" main_window
  grep -q "folder: $game" "$played.txt" || fail "the game ran elsewhere"
  mod_was_active || fail "the mod was not active"
  as_before || fail "files differ after the run"
  await "focus" has_focus Varnik
  press alt+v c
  await "end" ended
}

run_killed_game() {
  make_world 30
  start_window
  play_arena
  kill -9 $(ours)
  as_before && fail "the mod was not active"
  start
  await "end of the start that repairs" ended
  no_window Varnik || fail "the start that repairs shows a window"
  as_before || fail "files differ after the repair"
  start_window
}

run_second_start() {
  make_world
  start /boot
  await "end of a hidden start without a tray" ended
  start_window
  local first=$program
  start
  await "message" window "Varnik Already Running"
  press Return
  await "end of the second" ended
  program=$first
  ended && fail "the first is gone"
  "$bin/varnik" close
  await "end of the first" ended
}

start_bus() {
  [ -p "$work/bus" ] || mkfifo "$work/bus"
  dbus-daemon --session --nofork --print-address=3 3>"$work/bus" 2>/dev/null &
  jobs_here+=($!)
  read -r DBUS_SESSION_BUS_ADDRESS <"$work/bus"
  export DBUS_SESSION_BUS_ADDRESS
}

# A desktop's tray, which prints the service of each icon that comes.
start_tray() {
  : >"$work/icons"
  "$bin/traystub" >"$work/icons" &
  tray_job=$!
  jobs_here+=("$tray_job")
  await "tray" gdbus introspect --session --dest org.kde.StatusNotifierWatcher --object-path /
}

start_with_icon() {
  start_bus
  start_tray
  start_window
  press alt+v s
  await "icon" icon
}

icon() { tail -n 1 "$work/icons" | grep .; }
on_icon() { gdbus call --session --dest "$(icon)" --object-path "$1" --method "${@:2}"; }
icon_click() { on_icon /StatusNotifierItem "org.kde.StatusNotifierItem.$1" 600 300 >/dev/null; }
tip_is() { on_icon /StatusNotifierItem org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem ToolTip | grep -q "'$1'"; }
popup() { xdotool search --maxdepth 1 --onlyvisible --class '^varnik$'; }

# icon_menu KEY...: opens the menu of the icon and presses keys there
icon_menu() {
  icon_click ContextMenu
  await "menu of the icon" popup
  sleep 0.3
  press "$@"
}

# choose_row CAPTION: in the menu that the tray shows by itself
choose_row() {
  local layout id
  layout=$(on_icon /MenuBar com.canonical.dbusmenu.GetLayout 0 -- -1 "[]")
  id=$(grep -o "([0-9]*, {'enabled': <true>, 'label': <'$1'>" <<<"$layout" | tr -dc '0-9 ' | cut -d ' ' -f 1)
  on_icon /MenuBar com.canonical.dbusmenu.Event "$id" clicked "<''>" 0
}

mod_run_from_icon() {
  local row
  before=$(checksums)
  row=$("$bin/varnik-cli" mods | awk '/^arena/ { print NR - 1 }')
  icon_menu Down Down Down Right $(printf 'Down %.0s' $(seq "$row")) Return
  await "game" test -s "$played.txt"
  tip_is "Varnik: Running Battlezone II" || fail "the tip does not tell of the run"
  icon_click Activate
  icon_click Activate
  icon_click ContextMenu
  choose_row "Open Varnik Window"
  sleep 0.5
  popup && fail "the icon acts while the game runs"
  as_before && fail "the run was over too soon"
  await "files as before" as_before
  await "tip after the game" tip_is Varnik
  no_window Varnik || fail "a window showed"
}

run_tray() {
  make_world 8
  start_with_icon
  press alt+F4
  await "hidden window" no_window Varnik
  icon_click Activate
  sleep 1
  no_window Varnik || fail "one click opened the window"
  icon_click Activate
  icon_click Activate
  await "window after a double click" main_window
  await "focus" has_focus Varnik
  press alt+v h
  await "window hidden by the menu" no_window Varnik
  mod_run_from_icon
  choose_row "Open Varnik Window"
  await "window opened from the menu" main_window
  icon_menu Up Return
  await "end by the menu of the icon" ended
  stored TrayIcon 1 || fail "the icon is forgotten"
}

# The start with the desktop is switched on, a run is cut off by the end of the session, and the next log-in mends the
# install and ends up in a tray that comes later than the program.
run_end_of_session() {
  make_world 30
  start_with_icon
  press alt+v o
  await "options" window "Varnik Options"
  press Tab Tab Tab Tab Tab space Escape
  await "entry" test -s "$XDG_CONFIG_HOME/autostart/varnik-autoload.desktop"
  await "end of the options" no_window "Varnik Options"
  play_arena
  kill -TERM "$program"
  sleep 1
  ended && fail "the program left the game alone"
  kill -9 $(ours | grep -vx "$tray_job")
  kill "$tray_job"
  as_before && fail "the mod was not active"
  start_bus
  local entry
  for entry in "$XDG_CONFIG_HOME"/autostart/varnik-{autoload,crash-recovery}.desktop; do
    desktop-file-validate "$entry" || fail "$entry is not valid"
    env -u XDG_CONFIG_HOME -u VARNIK_HOME gio launch "$entry" >>"$work/output" 2>&1
  done
  sleep 1.5
  start_tray
  await "icon in a tray that comes late" icon
  await "files as before" as_before
  await "log-in without a window" no_window Varnik
  [ ! -e "$entry" ] || fail "the repair would be repeated"
}

start_screen
"run_${case//-/_}"
echo "$case: passed"
