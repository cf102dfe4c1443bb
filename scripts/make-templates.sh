#!/usr/bin/env bash
# Builds the Excel template kavo.xls with its macros through LibreOffice.
#
#   scripts/make-templates.sh [FOLDER [BUILD]]   default folder: build/templates
#
# BUILD is a configured build folder. Without it the script installs what is missing and configures build/native.
# The PowerPoint template is made by hand: docs/office-xml.md says how.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$top/build/templates}
build=${2:-$top/build/native}
mkdir -p "$folder"
if [ $# -lt 2 ]; then
  "$top/scripts/setup.sh" --full
  mkdir -p "$top/build"
  cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >"$build.log" 2>&1 || { cat "$build.log" >&2; exit 1; }
fi
cmake --build "$build" --target make_excel_template
"$build/src/office/libreoffice/make_excel_template" "$folder/kavo.xls" \
  "$top"/src/office/templates/{KavoHost,KavoXml,KavoWorkbook}.bas
ls -l "$folder/kavo.xls"
