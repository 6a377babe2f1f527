#!/usr/bin/env bash
# The real program on a screen of its own, with a real pointer and keyboard: desktop_test.sh BIN_DIR CASE
set -Eeuo pipefail
bin=$1
case=$2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)

# What runs in this test's home, such as a game that outlives the program.
ours() { grep -lsz "^HOME=$work/home$" /proc/[0-9]*/environ | cut -d / -f 3 || true; }

cleanup() {
  kill -9 $(ours) 2>/dev/null || true
  [ -n "${screen_jobs:-}" ] && kill $screen_jobs 2>/dev/null
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
  HOME=$work XDG_CACHE_HOME=$work openbox >/dev/null 2>&1 &  # several may start at once, and would share files
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
# It shows for a moment while it loads.
settled() { main_window && sleep 0.7 && main_window; }
no_window() { ! window "$1"; }
start() { "$bin/varnik" "$@" >"$work/output" 2>&1 & program=$!; }
has_focus() { [ "$(xdotool getactivewindow getwindowname)" = "$1" ] && sleep 0.5; }
ended() { ! kill -0 "$program" 2>/dev/null; }
gone() { [ ! -e "$1" ]; }

# Everything in the install but what a run leaves on purpose.
checksums() { (cd "$1" && find . -type f ! -name battlezone.log -print0 | LC_ALL=C sort -z | xargs -0 cksum); }
as_before() { [ "$before" = "$(checksums "$game")" ]; }
was_active() { ! diff <(echo "$before" | cut -d' ' -f3-) <(cut -d' ' -f3- "$work/world/played/bz2-1.3.files") >/dev/null; }

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
  await "window" settled
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

play_arena() {
  select_mod Arena
  click 6600 5880
  await "game" test -s "$work/world/played/bz2-1.3.txt"
}

start_and_play() {
  before=$(checksums "$game")
  start
  await "window" settled
  play_arena
}

run_plain_mod() {
  make_world
  start_and_play
  no_window Varnik || fail "the window stays while the game runs"
  await "window after the game" main_window
  grep -q "folder: $game" "$work/world/played/bz2-1.3.txt" || fail "the game ran elsewhere"
  was_active || fail "the mod was not active"
  as_before || fail "files differ after the run"
  xdotool key alt+v
  sleep 0.3
  xdotool key c
  await "end" ended
}

run_killed_game() {
  make_world 30
  start_and_play
  kill -9 "$program"
  kill -9 $(ours)
  as_before && fail "the mod was not active"
  start
  await "end of the start that repairs" ended
  no_window Varnik || fail "the start that repairs shows a window"
  as_before || fail "files differ after the repair"
  start
  await "window" settled
}

run_second_start() {
  make_world
  start
  await "window" settled
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

stored() { grep -q "\"$1\": \"$2\"" "$XDG_CONFIG_HOME/varnik/settings.json"; }

# Each row of the menu bar by its keys: the window that it opens, which Escape closes.
run_menus() {
  make_world
  start
  await "window" settled
  await "focus" has_focus Varnik
  select_mod Frozen
  local keys title
  while IFS='|' read -r keys title; do
    press $keys
    await "window of $keys" window "$title"
    press Escape
    await "end of $title" no_window "$title"
  done <<'ROWS'
alt+v o|Varnik Options
alt+b a|Add/Remove BZ2 Locations
alt+h a|About Varnik
alt+e f|Varnik WARNING
alt+v e|Edit Mod File: .*
alt+v n|Create New Mod File
ROWS
  # The title of the page hands the focus on to the tree.
  click 5000 260
  press Down
  await "page of the maps" window "Convert Maps."
  press n
  await "end of the question" no_window "Convert Maps."
  rm "$game/varnik.lst"
  press F5
  sleep 1
  press alt+b Return
  await "other install" stored Active 1
  press alt+v c
  await "end" ended
}

start_bus() {
  [ -p "$work/bus" ] || mkfifo "$work/bus"
  dbus-daemon --session --nofork --print-address=3 3>"$work/bus" 2>/dev/null &
  screen_jobs="$screen_jobs $!"
  read -r DBUS_SESSION_BUS_ADDRESS <"$work/bus"
  export DBUS_SESSION_BUS_ADDRESS
}

# Two kinds of tray: the one that lives on the session bus, where a desktop's own would, and the one on the X server.
start_tray() {
  if [ "$tray" = bus ]; then
    : >"$work/icons"
    "$bin/traystub" >"$work/icons" &
  else
    trayer --edge bottom --align right --widthtype request --height 32 >/dev/null 2>&1 &
  fi
  tray_job=$!
  screen_jobs="$screen_jobs $tray_job"
  await "tray" tray_is_there
}

tray_is_there() {
  if [ "$tray" = bus ]; then
    gdbus introspect --session --dest org.kde.StatusNotifierWatcher --object-path /
  else
    xwininfo -root -tree | grep '"panel"'
  fi
}

icon() {
  if [ "$tray" = bus ]; then
    tail -n 1 "$work/icons" | grep .
  else
    xwininfo -root -tree | grep '"varnik": ("varnik" "varnik")  22x30'
  fi
}

on_icon() { gdbus call --session --dest "$(icon)" --object-path "$1" --method "${@:2}"; }

# icon_click BUTTON [COUNT]
icon_click() {
  local method=Activate i
  [ "$1" = 3 ] && method=ContextMenu
  if [ "$tray" = x11 ]; then
    xdotool mousemove 1354 752 click --repeat "${2:-1}" "$1"
    return
  fi
  for ((i = 0; i < ${2:-1}; i++)); do
    on_icon /StatusNotifierItem org.kde.StatusNotifierItem.$method 600 300 >/dev/null
  done
}

popup() { xdotool search --maxdepth 1 --onlyvisible --class '^varnik$'; }

# icon_menu KEY...: opens the menu of the icon and presses keys there
icon_menu() {
  icon_click 3
  await "menu of the icon" popup
  sleep 0.3
  press "$@"
}

tip_is() { [ "$tray" = x11 ] || on_icon /StatusNotifierItem org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem ToolTip | grep -q "'$1'"; }

# choose_row CAPTION: in the menu that the tray shows by itself
choose_row() {
  local layout id
  layout=$(on_icon /MenuBar com.canonical.dbusmenu.GetLayout 0 -- -1 "[]")
  id=$(grep -o "([0-9]*, {'enabled': <true>, 'label': <'$1'>" <<<"$layout" | tr -dc '0-9 ' | cut -d ' ' -f 1)
  on_icon /MenuBar com.canonical.dbusmenu.Event "$id" clicked "<''>" 0
}

windows_listed() { xprop -root _NET_CLIENT_LIST; }

icon_turned_on() {
  start
  await "window" settled
  await "focus" has_focus Varnik
  press alt+v s
  await "refusal without a tray" stored TrayIcon 0
  press alt+F4
  await "end without a tray" ended
  start_tray
  start
  await "window" settled
  await "focus" has_focus Varnik
  press alt+v s
  await "icon" icon
}

window_hidden_and_back() {
  press alt+F4
  await "hidden window" no_window Varnik
  kill -0 "$program" || fail "the close box ended the program"
  icon_click 1
  sleep 1
  no_window Varnik || fail "one click opened the window"
  icon_click 1 2
  await "window after a double click" main_window
  await "focus" has_focus Varnik
  press alt+v h
  await "window hidden by the menu" no_window Varnik
}

installs_selected_from_icon() {
  icon_menu Down Down Right Return
  await "other install" stored Active 1
  sleep 0.5
  icon_menu Down Down Right Return
  await "first install" stored Active 0
  sleep 0.5
  mv "$VARNIK_HOME/varnik.cmd" "$work"
  icon_menu Down Down Right Down Return
  await "message of the reload" has_focus Varnik
  press Return
  await "end of the reload" no_window Varnik
  mv "$work/varnik.cmd" "$VARNIK_HOME"
}

mod_run_from_icon() {
  local before listed row
  before=$(checksums "$game")
  listed=$(windows_listed)
  row=$("$bin/varnik-cli" mods | awk '/^arena/ { print NR - 1 }')
  xprop -root -spy _NET_CLIENT_LIST >"$work/windows" &
  screen_jobs="$screen_jobs $!"
  icon_menu Down Down Down Right $(printf 'Down %.0s' $(seq "$row")) Return
  await "game" test -s "$work/world/played/bz2-1.3.txt"
  was_active || fail "the mod was not active"
  tip_is "Varnik: Running Battlezone II" || fail "the tip does not tell of the run"
  icon_click 1 2
  icon_click 3
  [ "$tray" = x11 ] || choose_row "Open Varnik Window"
  sleep 0.5
  popup && fail "the icon acts while the game runs"
  as_before && fail "the run was over too soon"
  await "files as before" as_before
  await "tip after the game" tip_is Varnik
  sleep 0.5
  [ "$(sort -u "$work/windows")" = "$listed" ] || fail "a window showed during the run"
}

run_tray() {
  tray=$1
  make_world 8
  start_bus
  icon_turned_on
  window_hidden_and_back
  installs_selected_from_icon
  mod_run_from_icon
  icon_menu Down Return
  await "window opened from the menu" main_window
  await "focus" has_focus Varnik
  press alt+F4
  await "hidden window" no_window Varnik
  if [ "$tray" = bus ]; then
    choose_row "Open Varnik Window"
    await "window opened by the tray" main_window
  fi
  icon_menu Up Return
  await "end by the menu of the icon" ended
  stored TrayIcon 1 || fail "the icon is forgotten"
}

run_tray_on_bus() { run_tray bus; }
run_tray_on_screen() { run_tray x11; }

# log_in NAME...: starts these entries as a session does
log_in() {
  local name
  for name in "$@"; do
    desktop-file-validate "$XDG_CONFIG_HOME/autostart/$name.desktop" || fail "the entry $name is not valid"
    (env -u XDG_CONFIG_HOME -u VARNIK_HOME gio launch "$XDG_CONFIG_HOME/autostart/$name.desktop" >>"$work/output" 2>&1)
  done
}

# The start with the desktop is switched on, a run is cut off by the end of the session, and the next log-in mends the
# install and ends up in a tray that comes later than the program.
run_end_of_session() {
  make_world 30
  start_bus
  tray=bus
  local before
  before=$(checksums "$game")
  start_tray
  start
  await "window" settled
  await "focus" has_focus Varnik
  press alt+v s
  await "icon" icon
  press alt+v o
  await "options" window "Varnik Options"
  press Tab Tab Tab Tab Tab space Escape
  await "entry" test -s "$XDG_CONFIG_HOME/autostart/varnik-autoload.desktop"
  await "end of the options" no_window "Varnik Options"
  play_arena
  kill -TERM "$program"
  sleep 1
  kill -0 "$program" || fail "the program left the game alone"
  kill -9 $(ours | grep -vx "$tray_job")
  kill "$tray_job"
  as_before && fail "the mod was not active"

  start_bus
  log_in varnik-autoload varnik-crash-recovery
  sleep 1.5
  start_tray
  await "icon in a tray that comes late" icon
  await "files as before" as_before
  await "log-in without a window" eval '! windows_listed | grep 0x'
  [ ! -e "$XDG_CONFIG_HOME/autostart/varnik-crash-recovery.desktop" ] || fail "the repair would be repeated"
}

start_screen
"run_${case//-/_}"
echo "$case: passed"
