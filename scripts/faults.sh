#!/usr/bin/env bash
# Disturbs the kavo command from outside and judges what it leaves behind.
#
#   scripts/faults.sh [--quick] [inject|kill|disk|memory|pairs]...
#
#   inject   every file-related system call of every verb fails once, with each error that it can give; of verbs with
#            thousands of calls the first and the last one of each place in the program (--all: all of them)
#   kill     SIGKILL, SIGINT and SIGTERM at the calls of every verb that writes; then the command is run again
#   disk     a disk of 1 MB with 15 amounts of free space, the temporary folder there and elsewhere
#   memory   allocations of every verb fail: one, two in a row, all from one on
#   pairs    every pair of verbs on one document, of updates and of runs on folders at the same moment, 50 times
#
#   scripts/faults.sh --only "rebuild page" inject                         scenarios whose name holds these words
#   scripts/faults.sh --workers 1                                          one run at a time
#   scripts/faults.sh show "rebuild page" rename 3 EIO                     one run, with its calls, messages and files
#   scripts/faults.sh show "rebuild page, existing" rename 3 SIGKILL
#
# Without the name of a part all parts run, which takes an hour and a half on two cores. --quick makes a tenth of the
# runs, --step 4 every fourth one. Each part prints a table. Each violation is a line of JSON in build/faults.jsonl, with
# the arguments for `show`. The exit code is 0 when there was no violation.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
case ${1:-} in -h | --help) sed -n '2,21s/^# \{0,1\}//p' "scripts/faults.sh"; exit 0 ;; esac

for tool in strace python3 unshare; do
  command -v "$tool" >/dev/null || { echo "faults.sh: $tool is missing: run scripts/setup.sh --full" >&2; exit 2; }
done
export PYTHONDONTWRITEBYTECODE=1 CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
mkdir -p build
[ -f build/native/build.ninja ] || cmake --preset native >build/native.log
cmake --build build/native --target kavo failing_new >build/faults-build.log || { tail -20 build/faults-build.log >&2; exit 2; }
exec python3 tests/faults/run.py --kavo build/native/src/cli/kavo "$@"
