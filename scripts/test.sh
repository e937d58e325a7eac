#!/usr/bin/env bash
# Sets everything up and runs every test: the string table check and the
# whole test suite built with the address and undefined behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-deps.sh
python3 scripts/check-strings.py
cmake --preset asan > /dev/null
cmake --build --preset asan
ctest --preset asan -j2
