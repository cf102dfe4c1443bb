#!/usr/bin/env bash
# Validates bilingual documents by the strict XLIFF 1.2 schema: check_xliff.sh FOLDER_OF_THIS_SCRIPT TEST_PROGRAM
#
# The documents are those that the test program writes when it is told a folder. The schema is that of Debian's
# php-symfony-translation (or the one that KAVO_XLIFF_SCHEMA names); without it, or without xmllint, the test is skipped.
set -euo pipefail
schema=${KAVO_XLIFF_SCHEMA:-/usr/share/php/Symfony/Component/Translation/Resources/schemas/xliff-core-1.2-strict.xsd}
if [ ! -f "$schema" ] || ! command -v xmllint >/dev/null; then
  echo "skipped: no XLIFF schema, or no xmllint"
  exit 77
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# The schema imports one that lies elsewhere; what it needs of it stands beside this script.
sed "s|schemaLocation=\"http://www.w3.org/2001/xml.xsd\"|schemaLocation=\"$1/xml.xsd\"|" "$schema" > "$folder/strict.xsd"
mkdir "$folder/documents"
KAVO_TUD_FOLDER=$folder/documents "$2" --gtest_filter='XliffSamples.*' >/dev/null
count=$(find "$folder/documents" -name '*.tud' | wc -l)
[ "$count" -ge 5 ] || { echo "only $count documents were written"; exit 1; }
xmllint --nonet --noout --schema "$folder/strict.xsd" "$folder"/documents/*.tud
echo "$count documents are valid"
