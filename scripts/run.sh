#!/usr/bin/env bash
# Sets everything up, builds pavo (release) and runs it. Arguments go to
# pavo: with none it opens the embedded sample drawing.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-deps.sh
cmake --preset release > /dev/null
cmake --build --preset release --target pavo VxLayerCmds
exec build/release/bin/pavo "$@"
