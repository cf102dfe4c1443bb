#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each in turn.
#
#   scripts/fuzz.sh --minutes 10                every target for ten minutes
#   scripts/fuzz.sh --minutes 1 rtf mif         two of them for a minute
#
# Without --minutes each target runs for one minute. Each begins with its seeds (fuzz/seeds) and with the corpus of
# earlier runs (build/fuzz/corpus); afterwards the corpus is reduced to the inputs that cover something. A line for each
# target shows what was done: executions, edges of the program that they covered, inputs in the corpus, findings. A
# finding is kept in build/fuzz/found: make a seed or a test of it. The exit code is 0 when there was none.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() { sed -n '2,11s/^# \{0,1\}//p' scripts/fuzz.sh; }
minutes=1
targets=()
while [ $# -gt 0 ]; do
  case $1 in
    -h | --help) usage; exit 0 ;;
    --minutes) minutes=${2:-}; shift 2 || { usage >&2; exit 2; } ;;
    -*) echo "fuzz.sh: there is no option $1" >&2; usage >&2; exit 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
[[ $minutes =~ ^[1-9][0-9]*$ ]] || { echo "fuzz.sh: --minutes takes a whole number from 1" >&2; exit 2; }
all=()
for file in fuzz/*_fuzz.cpp; do
  name=${file##*/}
  all+=("${name%_fuzz.cpp}")
done
[ ${#targets[@]} -gt 0 ] || targets=("${all[@]}")
for target in "${targets[@]}"; do
  [[ " ${all[*]} " == *" $target "* ]] || { echo "fuzz.sh: there is no target $target, but: ${all[*]}" >&2; exit 2; }
done

scripts/setup.sh --full
mkdir -p build
[ -f build/fuzz/build.ninja ] || cmake --preset fuzz >build/fuzz.log 2>&1 || { cat build/fuzz.log >&2; exit 1; }
cmake --build build/fuzz --target "${targets[@]/#/fuzz_}"

# The targets that write files need no disk for them.
[ ! -d /dev/shm ] || export TMPDIR=/dev/shm
statistic() { sed -n "s/^stat::$1: *//p" "$2"; }  # statistic NAME LOG
finding_count() { find "$1" -type f | wc -l; }
failed=0
printf '%-18s %12s %8s %8s %8s %10s\n' target executions 'a second' edges corpus findings
for target in "${targets[@]}"; do
  echo "== fuzzing $target for $seconds s"
  found=build/fuzz/found/$target
  mkdir -p "$found"
  # Findings stay in the build folder. Make a seed or a test of each one that matters.
  "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -max_len=65536 -entropic=0 \
    -artifact_prefix="$found/" -print_final_stats=1 "$found" "fuzz/seeds/$target" 2>"build/fuzz/$target.log" || {
    tail -40 "build/fuzz/$target.log" >&2
    exit 1
  }
  grep -E 'stat::number_of_executed_units|stat::peak_rss_mb' "build/fuzz/$target.log" | sed 's/^/   /'
done
exit "$failed"
