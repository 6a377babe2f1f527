#!/bin/bash
# Runs clang-tidy over the sources of build/dev, which must have been built: it reads generated headers too.
set -euo pipefail
cd "$(dirname "$0")/.."
run-clang-tidy -quiet -j2 -p build/dev "^$PWD/src/.*\.cpp$"
