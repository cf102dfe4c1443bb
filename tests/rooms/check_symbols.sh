#!/usr/bin/env bash
# Checks that no two rooms define the same symbol: check_symbols.sh BUILD_FOLDER. The rooms are linked into one
# library; of two classes of one name the linker would silently take one.
set -euo pipefail
cd "$1"

mapfile -t libraries < <(find . -name 'libkavo_*.a' ! -name 'libkavo_test_support.a')
[ ${#libraries[@]} -gt 1 ] || { echo "no libraries in $1" >&2; exit 1; }
twice=$(for library in "${libraries[@]}"; do
  # Templates and inline functions of shared headers and of the standard library are the same wherever they stand;
  # classes of a room are told by their functions that are no templates.
  nm --defined-only "$library" 2>/dev/null | awk '$2 == "T" || $2 == "D" || $2 == "B" { print $3 }' | sort -u
done | sort | uniq -d)
if [ -n "$twice" ]; then
  echo "defined by more than one room:"
  c++filt <<<"$twice"
  exit 1
fi
echo "${#libraries[@]} libraries, no symbol twice"
