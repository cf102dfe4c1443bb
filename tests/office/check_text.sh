#!/usr/bin/env bash
# What another program reads in a document before and after its pictures were taken out: check_text.sh KAVO FOLDER
#
# unrtf turns every document of the folder into words, twice. What it says about pictures, and the marks in their
# places (which it does not hide), do not count; nothing else may differ. Documents with binary data are the exception:
# unrtf takes that for RTF and loses text behind it, so there the words of before must all be among those of after.
set -euo pipefail
kavo=$1
corpus=${KAVO_CORPUS:+$KAVO_CORPUS/rtf}
corpus=${corpus:-$2}
command -v unrtf >/dev/null || { echo "skipped: no unrtf"; exit 77; }
[ -d "$corpus" ] || { echo "skipped: no corpus, set KAVO_CORPUS to its folder"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

words() {  # words FILE: one a line, from the end of unrtf's own heading on
  (cd "$folder" && unrtf --text --nopict "$1" 2>/dev/null) |
    sed -e '1,/^-----------------$/d' -e 's/### picture data found, .*//' -e 's/OBJ [0-9]* \?/ /g' | tr -s '[:space:]' '\n'
}

documents=0
objects=0
failed=0
for document in "$corpus"/*.rtf; do
  rm -f "$folder/a.obj"  # the objects of the document before
  cp "$document" "$folder/a.rtf"
  chmod u+w "$folder/a.rtf"
  words a.rtf > "$folder/before"
  moved=$("$kavo" rtf extract --json "$folder/a.rtf" | sed -n 's/.*"objects": *\([0-9]*\).*/\1/p')
  words a.rtf > "$folder/after"
  documents=$((documents + 1))
  objects=$((objects + moved))
  difference=$(diff "$folder/before" "$folder/after" || true)
  if LC_ALL=C grep -qaE '\\bin[0-9]' "$document"; then difference=$(grep '^<' <<<"$difference" || true); fi
  [ -z "$difference" ] && continue
  failed=$((failed + 1))
  printf '%s\n' "$(basename "$document")" "$difference" | head -20
done
[ "$documents" -gt 0 ] && [ "$objects" -gt 0 ] || { echo "no objects in $documents documents"; exit 1; }
echo "$documents documents, $objects objects, $failed differ"
[ "$failed" = 0 ]
