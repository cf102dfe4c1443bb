#!/usr/bin/env bash
# Builds the Excel template with its macros through LibreOffice: make-templates.sh [FOLDER], build/templates if none.
# How the PowerPoint template is made by hand is told in docs/office-xml.md.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$top/build/templates}
"$top/scripts/setup.sh" --full
mkdir -p "$folder" "$top/build"
cmake -S "$top" -B "$top/build/native" -G Ninja -DCMAKE_BUILD_TYPE=Release >"$top/build/native.log" 2>&1 ||
  { cat "$top/build/native.log" >&2; exit 1; }
cmake --build "$top/build/native" --target make_excel_template
"$top/build/native/src/office/libreoffice/make_excel_template" "$folder/kavo.xls" \
  "$top"/src/office/templates/{KavoXml,KavoWorkbook}.bas
ls -l "$folder/kavo.xls"
