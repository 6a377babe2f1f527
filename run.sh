#!/bin/bash
# Builds Varnik, makes a small world to try it in below build/, and starts it there, with settings of its own. Arguments
# go to the program. Where no display can be reached it shows a run on the command line instead.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup.sh run
cmake --preset release
cmake --build --preset release

demo=$PWD/build/demo
tools/make-demo.sh "$demo"
export XDG_CONFIG_HOME=$demo/config XDG_DATA_HOME=$demo/data VARNIK_HOME=$demo/app
programs=$PWD/build/release/bin
status=0
"$programs/varnik" "$@" || status=$?
[ $status -eq 69 ] || exit $status
echo "A run on the command line instead:"
echo
exec tools/show-run.sh "$programs/varnik-cli" "$demo"
