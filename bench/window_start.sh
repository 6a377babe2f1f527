#!/usr/bin/env bash
# From the start of varnik to its window on screen, with 1,000 definitions and 3 installs, beside an empty Qt window with as many widgets,
# in turn: window_start.sh BIN_DIR [RUNS]. Then the memory and, over five seconds at rest, the processor time of the program.
set -euo pipefail
bin=$1
runs=${2:-10}
widgets=185  # in the main window, its pages and its menus, besides the window and its inside
source_dir=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$work"' EXIT

mkfifo "$work/display"
Xvfb -displayfd 3 -screen 0 1366x768x24 -noreset 3>"$work/display" >/dev/null 2>&1 &
read -r number <"$work/display"
export DISPLAY=:$number

"$source_dir/tools/make-demo.sh" "$work/world"
mkdir -m 700 "$work/run" "$work/home"
export HOME=$work/home XDG_CONFIG_HOME=$work/world/config XDG_RUNTIME_DIR=$work/run VARNIK_HOME=$work/world/app
game=$work/world/games/bz2-1.3
cp -r "$game" "$work/world/games/third"
sed -i "s#\"Active\"#\"BZ2Loc2\": \"$work/world/games/third/\", \"BZ2Sel2\": \"Yes\", \"Active\"#" "$XDG_CONFIG_HOME/varnik/settings.json"
for i in $(seq 1000); do
  printf 'BZ2HALD5\r\ndname(Mod %d);\r\ndescription(One of many);\r\nversion(1.2,1.3);\r\nrename(a%d,b%d);\r\nfold(mod%d);\r\n' $i $i $i $i >"$game/mod$i.bzm"
done

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for _ in $(seq "$runs"); do
  "$bin/window_shown" "$bin/varnik" >>"$work/varnik.ms"
  "$bin/window_shown" "$bin/window_empty" $widgets >>"$work/empty.ms"
done
ours=$(median <"$work/varnik.ms")
empty=$(median <"$work/empty.ms")
echo "shown after: varnik $ours ms, empty window $empty ms, ratio $(awk "BEGIN { printf \"%.2f\", $ours / $empty }")"

"$bin/varnik" >/dev/null 2>&1 &
program=$!
sleep 4
ticks() { awk '{ print $14 + $15 }' "/proc/$program/stat"; }
before=$(ticks)
sleep 5
echo "at rest: $(($(ticks) - before)) ticks of processor time in 5 s, $(awk '/VmRSS/ { print $2 }' "/proc/$program/status") KiB resident"
