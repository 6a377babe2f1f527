#!/bin/bash
# fuzz.sh SECONDS [FORMAT...]: builds the fuzz targets and runs each for so long, one after the other, or as many at once
# as FUZZ_JOBS says. Tells of each how many inputs ran, how many a second, the slowest one, and what was covered (edges and
# features). What they find out about the formats is kept below build/ for the next run; so is an input that ends a
# target badly or takes too long, which makes this script fail once all have run.
set -euo pipefail
[[ "${1:-}" =~ ^[0-9]+$ ]] || { echo "usage: fuzz.sh SECONDS [FORMAT...]" >&2; exit 2; }
cd "$(dirname "$0")/.."
seconds=$1
shift
formats=("$@")
[ $# -gt 0 ] || formats=(definition legacy maplist mapinfo gamesettings draft options profile settings picture)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${formats[@]/#/fuzz_}"
programs=$PWD/build/fuzz/bin
work=$PWD/build/fuzz/work
seconds_per_input=2
mkdir -p "$work/found"
# Where memory came from is not kept, which takes a third of the time; an input that is run again alone tells it.
export ASAN_OPTIONS=malloc_context_size=0:quarantine_size_mb=16

if [ ! -d "$work/seeds/picture" ]; then
  mkdir -p "$work/seeds/picture"
  printf '\1\0\0\0\2\0\0\0abcdefgh' >"$work/seeds/picture/two-pixels"
  printf '\0\0\0\0\0\0\0\0' >"$work/seeds/picture/none"
fi

# The files of FORMAT, or of the one that it is another reader of.
shared() {
  case $1 in
    draft) echo definition ;;
    gamesettings) echo profile ;;
    *) echo "$1" ;;
  esac
}

# stat NAME LOG
stat() { sed -n "s/stat::$1: *//p" "$2"; }

fuzz() {
  local format=$1 log=$work/$1.log
  local seeds
  seeds=$PWD/fuzz/seeds/$(shared "$format")  # the targets work in a folder of their own
  [ -d "$seeds" ] || seeds=$work/seeds/$format
  local words=()
  [ -f "fuzz/$(shared "$format").dict" ] && words=(-dict="$PWD/fuzz/$(shared "$format").dict")
  mkdir -p "$work/corpus/$format"
  rm -f "$work/found/$format"-*
  local result="nothing found"
  "$programs/fuzz_$format" -max_total_time="$seconds" -timeout=$seconds_per_input -report_slow_units=$seconds_per_input \
    -rss_limit_mb=2048 -max_len=16384 -print_final_stats=1 -close_fd_mask=3 -artifact_prefix="$work/found/$format-" \
    "${words[@]}" "$work/corpus/$format" "$seeds" >"$log" 2>&1 || result="FAILED, see $log"
  compgen -G "$work/found/$format-*" >/dev/null && result="FAILED, see $work/found"
  echo "$format: $(stat number_of_executed_units "$log") inputs, $(stat average_exec_per_sec "$log") a second," \
    "slowest $(stat slowest_unit_time_sec "$log") s, $(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1), $result"
  [ "$result" = "nothing found" ]
}

failed=0
running=0
for format in "${formats[@]}"; do
  if [ "$running" -ge "${FUZZ_JOBS:-1}" ]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
  fuzz "$format" &
  running=$((running + 1))
done
while [ "$running" -gt 0 ]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit "$failed"
