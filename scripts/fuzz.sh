#!/usr/bin/env bash
# Builds the fuzzers with clang and runs each for SECONDS (default 30).
# A crash, hang or sanitizer report fails the run; the input is kept in
# build/fuzz/findings/ to become a regression test.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
scripts/setup-deps.sh
cmake --preset fuzz > /dev/null
cmake --build --preset fuzz --target drawing_reader_fuzz command_input_fuzz user_settings_fuzz
mkdir -p build/fuzz/findings build/fuzz/corpus/drawing build/fuzz/corpus/commands build/fuzz/corpus/settings
cp resources/samples/*.pvd fuzz/corpus/drawing/* tests/data/fuzz/drawing/* build/fuzz/corpus/drawing/ 2>/dev/null || true
cp fuzz/corpus/commands/* tests/data/fuzz/commands/* build/fuzz/corpus/commands/ 2>/dev/null || true
cp fuzz/corpus/settings/* build/fuzz/corpus/settings/ 2>/dev/null || true
export ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
build/fuzz/bin/drawing_reader_fuzz -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
  -artifact_prefix=build/fuzz/findings/ build/fuzz/corpus/drawing
build/fuzz/bin/command_input_fuzz -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
  -artifact_prefix=build/fuzz/findings/ build/fuzz/corpus/commands
build/fuzz/bin/user_settings_fuzz -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
  -artifact_prefix=build/fuzz/findings/ build/fuzz/corpus/settings
