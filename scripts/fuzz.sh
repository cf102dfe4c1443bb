#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for a number of seconds: fuzz.sh [SECONDS] [TARGET...]
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
seconds=${1:-60}
shift || true

scripts/setup.sh --full
mkdir -p build
[ -f build/fuzz/build.ninja ] || cmake --preset fuzz >build/fuzz.log 2>&1 || { cat build/fuzz.log >&2; exit 1; }
cmake --build build/fuzz

targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(cd fuzz && ls -- *_fuzz.cpp | sed 's/_fuzz\.cpp$//')
for target in "${targets[@]}"; do
  echo "== fuzzing $target for $seconds s"
  found=build/fuzz/found/$target
  mkdir -p "$found"
  # Findings stay in the build folder. Make a seed or a test of each one that matters.
  "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -max_len=65536 \
    -artifact_prefix="$found/" -print_final_stats=1 "$found" "fuzz/seeds/$target" 2>"build/fuzz/$target.log" || {
    tail -40 "build/fuzz/$target.log" >&2
    exit 1
  }
  grep -E 'stat::number_of_executed_units|stat::peak_rss_mb' "build/fuzz/$target.log" | sed 's/^/   /'
done
