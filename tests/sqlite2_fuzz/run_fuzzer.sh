#!/usr/bin/env bash
# Builds the reader fuzzer with clang (libFuzzer, ASan, UBSan) and runs it
# for a bounded time, seeded with the SQLite 2.x fixtures.
# Usage: run_fuzzer.sh SOURCE_DIR FIXTURES_DIR WORK_DIR SECONDS
set -euo pipefail
source_dir=$1 fixtures=$2 work=$3 seconds=$4
mkdir -p "$work/corpus"
cp -n "$fixtures"/*.db "$work/corpus/" 2>/dev/null || true
clang++-14 -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -I"$source_dir/sqlite2/include" -I"$source_dir/sqlite2/src" -I"$source_dir/include" \
  "$source_dir/tests/sqlite2_fuzz/read_fuzzer.cpp" "$source_dir"/sqlite2/src/*.cpp \
  "$source_dir/include/sqlite/zt_packedtablebuilder.cpp" "$source_dir/include/sqlite/zt_resultmemory.cpp" \
  -lsqlite3 -o "$work/read_fuzzer"
cd "$work"  # artifacts (crash-*, timeout-*) land here
"$work/read_fuzzer" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2048 -detect_leaks=1 \
  -print_final_stats=1 "$work/corpus"
