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
  program=build/fuzz/fuzz/fuzz_$target log=build/fuzz/$target.log
  corpus=build/fuzz/corpus/$target found=build/fuzz/found/$target seeds=fuzz/seeds/$target
  mkdir -p "$corpus" "$found"
  before=$(finding_count "$found")
  # The entropic schedule takes half of the time of targets as quick as these.
  "$program" -max_total_time=$((minutes * 60)) -timeout=20 -rss_limit_mb=2048 -max_len=65536 -entropic=0 -print_final_stats=1 \
    -artifact_prefix="$found/" "$corpus" "$seeds" >"$log" 2>&1 || true
  findings=$(($(finding_count "$found") - before))
  rm -rf "$corpus.reduced"
  mkdir "$corpus.reduced"
  if "$program" -merge=1 -timeout=20 -artifact_prefix="$found/" "$corpus.reduced" "$seeds" "$corpus" >"$log.merge" 2>&1; then
    rm -rf "$corpus"
    mv "$corpus.reduced" "$corpus"
  fi
  edges=$(grep -oE 'cov: [0-9]+' "$log" | tail -1 | cut -d' ' -f2)
  printf '%-18s %12s %8s %8s %8s %10s\n' "$target" "$(statistic number_of_executed_units "$log")" \
    "$(statistic average_exec_per_sec "$log")" "${edges:-0}" "$(finding_count "$corpus")" "$findings"
  # A target that did not come to its end has a finding, or could not be run.
  if [ "$findings" -gt 0 ] || ! grep -q '^Done ' "$log"; then
    failed=1
    tail -40 "$log" >&2
  fi
done
exit "$failed"
