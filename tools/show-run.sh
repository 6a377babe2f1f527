#!/usr/bin/env bash
# Shows what a run does to an install: show-run.sh VARNIK-CLI DEMO, with DEMO made by make-demo.sh. Ends with 1 when the run
# left anything behind.
set -euo pipefail
cli=$(realpath "$1")
demo=$(realpath "$2")
install=$demo/games/bz2-1.3
export XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data VARNIK_HOME=$demo/app
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sums() { (cd "$install" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 cksum); }
# Names with + for a file that the second list has alone, - for one that it lacks, ~ for one that it has with another content.
differences() {
  awk '{ sum = $1; sub(/^[0-9]+ [0-9]+ /, "") }
       NR == FNR { before[$0] = sum; next }
       !($0 in before) { print "  + " $0; next }
       { if (before[$0] != sum) print "  ~ " $0; delete before[$0] }
       END { for (name in before) print "  - " name }' "$1" "$2" | LC_ALL=C sort -k 2
}

echo '$ varnik-cli mods'
"$cli" mods
echo
sums >"$work/before"
echo '$ varnik-cli run frozen-frontier.bzm --map duel.bzn'
"$cli" run frozen-frontier.bzm --map duel.bzn
sums >"$work/after"
echo
echo "What the game was given:"
sed 's/^/  /' "$demo/played/bz2-1.3.txt"
echo "What it saw that differed from before the run:"
differences "$work/before" "$demo/played/bz2-1.3.files"
echo "What differs after the run:"
if cmp -s "$work/before" "$work/after"; then
  echo "  nothing"
else
  differences "$work/before" "$work/after"
  exit 1
fi
