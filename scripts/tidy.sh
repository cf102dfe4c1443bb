#!/usr/bin/env bash
# Runs clang-tidy over the native sources. Each finding is a line; the exit code is 0 when there is none.
#
#   scripts/tidy.sh                        the checks of .clang-tidy
#   scripts/tidy.sh --analyse              the checks of clang's static analyser alone: it follows the paths through each
#                                          function, as scan-build does
#   scripts/tidy.sh [--analyse] FILE...    these files below src
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
checks=()
case ${1:-} in
  --analyse) checks=(--checks='-*,clang-analyzer-*'); shift ;;
  -*) sed -n '2,8s/^# \{0,1\}//p' scripts/tidy.sh >&2; exit 2 ;;
esac
scripts/setup.sh --full
[ -f build/native/compile_commands.json ] || cmake --preset native >/dev/null
files=("$@")
[ $# -gt 0 ] || mapfile -t files < <(git ls-files 'src/*.cpp' | grep -vE '/win32/|automation_server/')
# What clang-tidy counts on its error output are warnings of the system's headers.
printf '%s\n' "${files[@]}" | xargs -P2 -n4 clang-tidy -p build/native --quiet --extra-arg=-Wno-unknown-warning-option \
  --warnings-as-errors='*' "${checks[@]}" 2>/dev/null
