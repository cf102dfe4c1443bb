#!/usr/bin/env bash
# Builds the kavo command and shows it at work on the documents of samples/. A page, a MIF manual and a text become
# bilingual documents and documents again; then the steps of that way are shown one by one. The script works on copies,
# and is quick when nothing has changed.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

bold=$'\e[1m' plain=$'\e[0m'
[ -t 1 ] || bold='' plain=''
title() { printf '\n%s== %s%s\n' "$bold" "$*" "$plain"; }
show() {  # show COMMAND...: prints and runs it
  printf '%s$ %s%s\n' "$bold" "$*" "$plain"
  "$@"
}
same() {  # same ORIGINAL RESTORED
  if cmp -s "$1" "$2"; then
    echo "   $2 is $1 again, byte for byte"
  else
    echo "   $2 differs from $1:" >&2
    diff "$1" "$2" >&2
    exit 1
  fi
}

title "building the kavo command (some minutes the first time)"
"$top/scripts/setup.sh" --native
mkdir -p "$top/build"
[ -f "$top/build/native/build.ninja" ] ||
  (cd "$top" && cmake --preset native) >"$top/build/native.log" 2>&1 ||
  { cat "$top/build/native.log" >&2; exit 1; }
quiet=()
[ -t 1 ] || quiet=(-- --quiet)
cmake --build "$top/build/native" --target kavo "${quiet[@]}"
PATH=$top/build/native/src/cli:$PATH

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/original"
cp "$top"/samples/*.{asp,jsp,php,htm,mif,txt} "$work/original"
cp "$work"/original/* "$work"
cd "$work"

road() {  # road NAME SOURCE TARGET LINES: there and back, and what changed
  local name=$1 source=$2 target=$3 lines=$4
  title "the whole road: $name"
  show kavo prepare -q "$source" --source EN-US --target FR
  show kavo stats ./*.tud
  for tud in *.tud; do kavo pseudo -q "$tud" >/dev/null; done
  echo "   every text has its test translation (kavo pseudo); a translator would use kavo export and import, or kavo edit"
  show kavo rebuild -q "${source%.*}_${source##*.}${5:-}_FR.tud"
  echo "What is different in $target:"
  diff "original/$source" "$target" | grep '^[<>]' | head -"$lines" | cut -c1-110 | sed 's/^/   /' || true
  rm -f ./*.tud ./*.skl
}
road "a server page, with the texts in its scripts" index.asp index_FR.asp 8 _htm
road "a FrameMaker manual, with its hidden texts" manual.mif manual_FR.mif 8
road "a plain text" notice.txt notice_FR.txt 8
rm -rf ./*
cp -r "$top"/samples original
cp original/*.* .

title "and the proof, on copies"
show kavo verify index.asp broken.htm list.jsp manual.mif notice.txt

title "a server page loses its scripts"
show kavo preprocess index.asp
echo
echo "The page that is translated:"
sed -n '/<body/,$p' index_asp.htm | sed 's/^/   | /'
echo "The first scripts, kept beside it:"
sed -n '2,11p' index_asp.scr | sed 's/^/   | /'

title "and gets them back"
show kavo html restore index_asp.htm
same original/index.asp index.asp

title "translated, only the text is different"
sed -i 's/Welcome/Willkommen/; s/Your cart is empty/Ihr Korb ist leer/' index_asp.htm
show kavo html restore index_asp.htm
diff original/index.asp index.asp | sed 's/^/   /' || true

title "JSP and PHP pages go the same way"
show kavo preprocess --quiet list.jsp
show kavo html restore list_jsp.htm
same original/list.jsp list.jsp
show kavo html protect shop.php
show kavo html restore shop_php.htm --output restored.php
same original/shop.php restored.php

title "a page with mistakes is repaired"
code=0
show kavo html validate --check broken.htm || code=$?
echo "   exit code $code: the page would be changed, and was not"
echo
show kavo html validate --backup --quiet broken.htm
diff broken.htm.bak broken.htm | sed 's/^/   /' || true
show kavo html validate --check broken.htm
echo "   nothing left to repair"

title "for programs: one JSON object a line"
show kavo preprocess --json index.asp missing.jsp || true
