#!/usr/bin/env bash
# Runs clang-tidy over the sources, those for Windows included. Each finding is a line; the exit code is 0 when there is
# none.
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
  --analyse) checks=(--checks='-bugprone-*,-performance-*,-cert-*'); shift ;;
  -*) sed -n '2,8s/^# \{0,1\}//p' scripts/tidy.sh >&2; exit 2 ;;
esac
scripts/setup.sh --full
# clang cannot read the headers that g++ has precompiled.
[ -f build/tidy/compile_commands.json ] ||
  cmake --preset native -B build/tidy -DKAVO_TESTS=OFF -DKAVO_PRECOMPILE=OFF >/dev/null
cmake --build build/tidy --target kavo_libreoffice_headers >/dev/null
# So does the COM skin need those of its interface.
[ -f build/windows-x64/build.ninja ] || cmake --preset windows-x64 >/dev/null
cmake --build build/windows-x64 --target kavo_automation_interface >/dev/null
interface=build/windows-x64/src/automation_server/generated
files=("$@")
[ $# -gt 0 ] || mapfile -t files < <(git ls-files 'src/*.cpp')

mkdir -p build/tidy-windows
standard=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
printf '%s\n' --target=x86_64-w64-mingw32 -std=c++20 "-I$top/src" -isystem "$top/$interface" "-I$top/src/resources" \
  -DUNICODE -D_UNICODE -D_WIN32_WINNT=0x0601 -DNOMINMAX -DWIN32_LEAN_AND_MEAN \
  -isystem "$standard" -isystem "$standard/x86_64-w64-mingw32" >build/tidy-windows/compile_flags.txt

# tidy FOLDER: the files that its input names, with the flags in that folder. The error output holds how many warnings
# there are in the system's headers.
tidy() {
  xargs -r -P2 -n4 clang-tidy -p "$1" --quiet --extra-arg=-Wno-unknown-warning-option --warnings-as-errors='*' \
    "${checks[@]}" 2>/dev/null
}
result=0
windows='/(win32|automation_server)/'
printf '%s\n' "${files[@]}" | { grep -vE "$windows" || true; } | tidy build/tidy || result=1
printf '%s\n' "${files[@]}" | { grep -E "$windows" || true; } | tidy build/tidy-windows || result=1
exit $result
