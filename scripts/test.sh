#!/usr/bin/env bash
# Sets everything up and runs every test: the string table check, the whole
# test suite built with the address and undefined behaviour sanitizers, and
# a short run of each fuzzer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-deps.sh
python3 scripts/check-strings.py
cmake --preset asan > /dev/null
cmake --build --preset asan
ctest --preset asan -j2
# The fuzzers, a short while each: any crash, hang or sanitizer report fails.
scripts/fuzz.sh "${PAVO_FUZZ_SECONDS:-30}"
