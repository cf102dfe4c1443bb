#!/usr/bin/env bash
# Makes the Word document, presentation and workbook of samples/ through LibreOffice, of the texts in scripts/samples.
#
#   scripts/make-office-samples.sh [FOLDER]   default folder: samples
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$(realpath "${1:-$top/samples}")
profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
convert() { soffice "-env:UserInstallation=file://$profile" --headless --convert-to "$1" --outdir "$folder" "$top/scripts/samples/$2" >/dev/null; }
convert "doc:MS Word 97" report.fodt
convert "ppt:MS PowerPoint 97" deck.fodp
convert "xls:MS Excel 97" book.fods
ls -l "$folder"/report.doc "$folder"/deck.ppt "$folder"/book.xls
