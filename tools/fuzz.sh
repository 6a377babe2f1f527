#!/bin/bash
# fuzz.sh SECONDS [FORMAT...]: builds the fuzz targets and runs each for so long, one after the other. What they find out
# about the formats is kept below build/ for the next run; so is an input that ends a target badly, which makes this
# script fail once all have run.
set -euo pipefail
[[ "${1:-}" =~ ^[0-9]+$ ]] || { echo "usage: fuzz.sh SECONDS [FORMAT...]" >&2; exit 2; }
cd "$(dirname "$0")/.."
seconds=$1
shift
formats=("$@")
[ $# -gt 0 ] || formats=(definition legacy options maplist mapinfo profile settings picture)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${formats[@]/#/fuzz_}"
programs=$PWD/build/fuzz/bin
work=$PWD/build/fuzz/work
mkdir -p "$work/found"
[ -w /dev/shm ] && export TMPDIR=/dev/shm

if [ ! -d "$work/seeds/picture" ]; then
  mkdir -p "$work/seeds/picture"
  printf '\1\0\0\0\2\0\0\0abcdefgh' >"$work/seeds/picture/two-pixels"
  printf '\0\0\0\0\0\0\0\0' >"$work/seeds/picture/none"
fi

failed=()
for format in "${formats[@]}"; do
  seeds=$PWD/fuzz/seeds/$format  # the targets work in a folder of their own
  [ -d "$seeds" ] || seeds=$work/seeds/$format
  mkdir -p "$work/corpus/$format"
  words=()
  [ -f "fuzz/$format.dict" ] && words=(-dict="$PWD/fuzz/$format.dict")
  log=$work/$format.log
  if "$programs/fuzz_$format" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -max_len=16384 -print_final_stats=1 \
    -artifact_prefix="$work/found/$format-" "${words[@]}" "$work/corpus/$format" "$seeds" >"$log" 2>&1; then
    echo "$format: $(sed -n 's/stat::number_of_executed_units: *//p' "$log") inputs, nothing found"
  else
    failed+=("$format")
    echo "$format: FAILED, see $log"
  fi
done
[ ${#failed[@]} -eq 0 ]
