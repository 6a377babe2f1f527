#!/bin/bash
# Builds and runs all tests; the last lines are the summary of CTest, its exit status is that of this script.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup.sh test
cmake --preset dev
cmake --build --preset dev
ctest --preset dev -j2
