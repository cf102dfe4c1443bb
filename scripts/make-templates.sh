#!/usr/bin/env bash
# Builds the Excel template with its macros through LibreOffice: make-templates.sh [FOLDER [BUILD]], into build/templates
# if no folder is named. BUILD is a configured build folder; if none, what is missing is installed and build/native made.
# How the PowerPoint template is made by hand is told in docs/office-xml.md.
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
