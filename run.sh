#!/bin/bash
# Builds Varnik and starts it. Arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup.sh
cmake --preset release
cmake --build --preset release
exec build/release/bin/varnik "$@"
