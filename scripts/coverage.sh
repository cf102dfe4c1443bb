#!/usr/bin/env bash
# Prints how much of each room the tests run: lines and branches, as a table. Needs gcovr (scripts/setup.sh --full).
#
#   scripts/coverage.sh                every room that has a test program
#   scripts/coverage.sh formats mif    these rooms, by the test programs of these rooms
#   scripts/coverage.sh --own ...      each room by its own test program only
#   scripts/coverage.sh --missed ...   also the lines that no test runs, file by file
#
# The readers of `formats` are tested through the converters and filters above it, so --own shows little of them. The build
# is one of its own, build/coverage, without optimisation. Branches that only an exception takes do not count: the compiler
# makes one at nearly every call.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
export CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1
missed='' own=''
rooms=()
for argument in "$@"; do
  case $argument in
    --missed) missed=1 ;;
    --own) own=1 ;;
    -*) sed -n '2,11s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
    *) [ -d "tests/$argument" ] || { echo "coverage.sh: there is no room tests/$argument" >&2; exit 2; }
       rooms+=("$argument") ;;
  esac
done
[ ${#rooms[@]} -gt 0 ] || rooms=(platform common formats forms html mif office ui driver suite workflow)
command -v gcovr >/dev/null || { echo "coverage.sh: gcovr is not installed: scripts/setup.sh --full" >&2; exit 1; }

build=build/coverage
mkdir -p build
[ -f $build/build.ninja ] || cmake --preset native -B $build -DCMAKE_BUILD_TYPE=Coverage -DCMAKE_CXX_FLAGS_COVERAGE="-O0 --coverage" \
  -DCMAKE_EXE_LINKER_FLAGS_COVERAGE=--coverage -DCMAKE_SHARED_LINKER_FLAGS_COVERAGE=--coverage \
  -DCMAKE_MODULE_LINKER_FLAGS_COVERAGE=--coverage >build/coverage.log 2>&1 || { cat build/coverage.log >&2; exit 1; }
cmake --build $build --target "${rooms[@]/#/test_}" >build/coverage.log 2>&1 || { tail -30 build/coverage.log >&2; exit 1; }

reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT
forget() { find $build -name '*.gcda' -delete; }
run() {  # run ROOM: what it leaves in .gcda files counts even when a test of it fails
  TMPDIR=$([ -d /dev/shm ] && echo /dev/shm || echo /tmp) $build/tests/"$1"/test_"$1" >"$reports/log" 2>&1 ||
    { echo "a test of $1 failed:" >&2; grep '^\[  FAILED' "$reports/log" >&2 || tail -3 "$reports/log" >&2; }
}
report() {  # report ROOM
  gcovr --root . --object-directory $build $build --filter "src/$1/" --exclude-throw-branches --exclude-unreachable-branches \
    --json "$reports/$1.json" --gcov-ignore-parse-errors >"$reports/log" 2>&1 || { cat "$reports/log" >&2; exit 1; }
}
forget
if [ -n "$own" ]; then
  for room in "${rooms[@]}"; do forget; run "$room"; report "$room"; done
else
  for room in "${rooms[@]}"; do run "$room"; done
  for room in "${rooms[@]}"; do report "$room"; done
fi

python3 - "$reports" "$missed" "${rooms[@]}" <<'END'
import json, pathlib, sys
reports, missed, *rooms = sys.argv[1:]
print(f"{'room':<12}{'lines':>9}{'run':>9}{'':>8}{'branches':>11}{'taken':>9}")
for room in rooms:
    files = json.loads(pathlib.Path(reports, room + ".json").read_text())["files"]
    assert files, f"no file of {room} was measured"
    lines = [line for file in files for line in file["lines"] if not line.get("gcovr/noncode")]
    branches = [branch for line in lines for branch in line["branches"]]
    run = sum(line["count"] > 0 for line in lines)
    taken = sum(branch["count"] > 0 for branch in branches)
    print(f"{room:<12}{len(lines):>9}{run:>9}{100 * run / len(lines):>7.1f}%{len(branches):>11}{taken:>9}"
          f"{100 * taken / max(1, len(branches)):>7.1f}%")
    for file in files if missed else []:
        numbers = [line["line_number"] for line in file["lines"] if not line["count"] and not line.get("gcovr/noncode")]
        if numbers:
            print(f"    {file['file']}: {' '.join(map(str, numbers))}")
END
