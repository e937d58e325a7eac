#!/usr/bin/env bash
# Builds the fuzzers with clang and runs each for SECONDS (default 30), one
# after the other. A crash, hang or sanitizer report fails the run; the
# input is kept in build/fuzz/findings/ to become a regression test.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
fuzzers=(drawing_reader_fuzz command_input_fuzz drawing_session_fuzz user_settings_fuzz layer_sheet_fuzz)
scripts/setup-deps.sh
cmake --preset fuzz > /dev/null
cmake --build --preset fuzz --target "${fuzzers[@]}"
corpus=build/fuzz/corpus
mkdir -p build/fuzz/findings $corpus/drawing $corpus/commands $corpus/session $corpus/settings $corpus/sheet
cp -n resources/samples/*.pvd fuzz/corpus/drawing/* tests/data/fuzz/drawing/* $corpus/drawing/ 2>/dev/null || true
cp -n fuzz/corpus/commands/* tests/data/fuzz/commands/* $corpus/commands/ 2>/dev/null || true
cp -n resources/samples/*.pvd fuzz/corpus/drawing/* tests/data/fuzz/session/* $corpus/session/ 2>/dev/null || true
cp -n fuzz/corpus/settings/* $corpus/settings/ 2>/dev/null || true
cp -n fuzz/corpus/sheet/* $corpus/sheet/ 2>/dev/null || true
export ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
run() { # FUZZER CORPUS [OPTIONS...]
  local fuzzer=$1 dir=$2
  shift 2
  echo "== $fuzzer, ${seconds} s"
  build/fuzz/bin/"$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -artifact_prefix=build/fuzz/findings/"$fuzzer"- "$@" "$corpus/$dir"
}
run drawing_reader_fuzz drawing
run command_input_fuzz commands
# Whole drawings, changed by their structure: room to grow past the sample.
run drawing_session_fuzz session -max_len=65536
run user_settings_fuzz settings
run layer_sheet_fuzz sheet
