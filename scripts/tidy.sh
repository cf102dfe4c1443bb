#!/usr/bin/env bash
# Runs clang-tidy over the native sources with the checks of .clang-tidy.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
scripts/setup.sh --full
[ -f build/native/compile_commands.json ] || cmake --preset native >/dev/null
git ls-files 'src/*.cpp' | grep -vE '/win32/|automation_server/' |
  xargs -P2 -n4 clang-tidy -p build/native --quiet --extra-arg=-Wno-unknown-warning-option --warnings-as-errors='*' 2>/dev/null
