#!/usr/bin/env bash
# Takes the pictures of the dialogs that the documentation shows: docs/pictures/*.png, from a Windows build under Wine.
#
#   scripts/screenshots.sh [BUILD FOLDER]   default: build/windows-x64, which scripts/test.sh --windows makes
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(realpath "${1:-$top/build/windows-x64}")
pictures=$top/docs/pictures
cmake --build "$build" --target test_dialogs
"$top/scripts/wine-run.sh" "$build/tests/ui/win32/test_dialogs.exe" --gtest_brief=1 --gtest_filter='*LegibilityTest*'
mkdir -p "$pictures"
for dialog in wizard set-language-more mif-options html-options excel-options progress; do
  cp "$build/screenshots/$dialog-96.png" "$pictures/$dialog.png"
done
cp "$build/screenshots/wizard-ja-96.png" "$pictures/wizard-ja.png"
ls -l "$pictures"
