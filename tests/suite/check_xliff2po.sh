#!/usr/bin/env bash
# Has another program read bilingual documents: check_xliff2po.sh TEST_PROGRAM
#
# The documents are those that the test program writes when it is told a folder; the reader is xliff2po of Debian's
# translate-toolkit, which must give an entry for each text. Without it the test is skipped.
set -euo pipefail
command -v xliff2po >/dev/null || { echo "skipped: no xliff2po"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/documents"
KAVO_TUD_FOLDER=$folder/documents "$1" --gtest_filter='XliffSamples.*' >/dev/null
checked=0
for document in "$folder"/documents/*.tud; do
  cp "$document" "$folder/document.xlf"
  rm -f "$folder/document.po"
  xliff2po --progress=none "$folder/document.xlf" "$folder/document.po"
  # A package holds one document for each language; the same unit of two of them becomes one entry.
  units=$({ grep -o '<trans-unit id="[^"]*"' "$document" || true; } | sort -u | wc -l)
  # It writes no file for a document without a text; the first entry is the header.
  entries=0
  [ ! -f "$folder/document.po" ] || entries=$(($(grep -c '^msgid ' "$folder/document.po") - 1))
  [ "$entries" = "$units" ] || { echo "$(basename "$document"): $entries entries for $units texts"; exit 1; }
  checked=$((checked + 1))
done
[ "$checked" -ge 5 ] || { echo "only $checked documents were written"; exit 1; }
echo "xliff2po reads $checked documents"
