#!/usr/bin/env bash
# Whole-process runs, in turn with what a user would otherwise run: compare.sh [html|mif|rtf|road]... [--sizes "1 10 50"]
# Prints one table a size (MB): median of the rounds, throughput, ratio to the first line, peak memory.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"

subjects=()
sizes="1 10 50"
rounds=5
while [ $# -gt 0 ]; do
  case $1 in
    html|mif|rtf|road) subjects+=("$1") ;;
    --sizes) sizes=$2; shift ;;
    --rounds) rounds=$2; shift ;;
    *) sed -n '2,3s/^# //p' "$0" >&2; exit 2 ;;
  esac
  shift
done
[ ${#subjects[@]} -gt 0 ] || subjects=(html mif rtf road)

scripts/setup.sh --full
mkdir -p build
[ -f build/bench/build.ninja ] || cmake --preset bench >build/bench.log 2>&1 || { cat build/bench.log >&2; exit 1; }
cmake --build build/bench --target kavo floor measure make_document >build/bench.log 2>&1 || { cat build/bench.log >&2; exit 1; }

bin=$top/build/bench
kavo=$bin/src/cli/kavo
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

measure() { "$bin/bench/measure" "$rounds" "$@"; }

for size in $sizes; do
  for subject in "${subjects[@]}"; do
    rm -rf ./*
    echo "$subject, $size MB"
    case $subject in
      html)
        "$bin/bench/make_document" page "$size" > page.asp
        "$bin/bench/make_document" html "$size" > page.htm
        "$kavo" html protect -q page.asp
        cp page_asp.htm kept.htm; cp page_asp.scr kept.scr
        bytes=$(stat -c %s page.asp)
        measure "$bytes" \
          "floor: read, scan, write" "" "$bin/bench/floor page.asp out" \
          "kavo html protect" "" "$kavo html protect -q page.asp" \
          "kavo html restore" "cp kept.htm page_asp.htm; cp kept.scr page_asp.scr" "$kavo html restore -q page_asp.htm" \
          "kavo html validate (clean page)" "cp page.htm v.htm" "$kavo html validate -q v.htm" \
          "kavo html validate (to repair)" "sed 's,</b>,,' page.htm > v.htm" "$kavo html validate -q v.htm" \
          "perl, one-pass cut of <%...%>" "" "perl -0777 -ne 's/<%.*?%>/<!-- x -->/gs; print' page.asp" \
          "tidy" "" "tidy -q -o out.htm page.htm" \
          "xmllint --html" "" "xmllint --html --noout page.htm"
        ;;
      mif)
        "$bin/bench/make_document" mif "$size" > book.mif
        bytes=$(stat -c %s book.mif)
        "$kavo" mif extract -q book.mif
        cp book.mif removed.mif
        "$kavo" mif remove-objects -q removed.mif
        measure "$bytes" \
          "floor: read, scan, write" "" "$bin/bench/floor book.mif out" \
          "kavo mif extract" "" "$kavo mif extract -q book.mif" \
          "kavo mif merge" "" "$kavo mif merge -q book.mif" \
          "kavo mif remove-objects" "cp book.mif r.mif" "$kavo mif remove-objects -q r.mif" \
          "kavo mif insert-objects" "cp removed.mif r.mif; cp removed.obj r.obj" "$kavo mif insert-objects -q r.mif" \
          "grep -c '<Marker '" "" "grep -c '<Marker ' book.mif > count" \
          "perl, line by line" "" "perl -ne '/<MText \`(.*?)\x27/ and \$s{\$1}++; /<XRefDef \`(.*?)\x27/ and \$s{\$1}++; /<VariableDef \`(.*?)\x27/ and \$s{\$1}++; END { print scalar keys %s }' book.mif"
        ;;
      rtf)
        "$bin/bench/make_document" rtf "$size" > doc.rtf
        bytes=$(stat -c %s doc.rtf)
        cp doc.rtf extracted.rtf
        "$kavo" rtf extract -q extracted.rtf
        measure "$bytes" \
          "floor: read, scan, write" "" "$bin/bench/floor doc.rtf out" \
          "kavo rtf extract" "cp doc.rtf r.rtf" "$kavo rtf extract -q r.rtf" \
          "kavo rtf insert" "cp extracted.rtf r.rtf; cp extracted.obj r.obj" "$kavo rtf insert -q r.rtf" \
          "perl, counting braces" "" "perl -0777 -ne 'my \$d = 0; while (/([{}])/g) { \$d += \$1 eq \"{\" ? 1 : -1 } print \$d' doc.rtf" \
          "perl, recursive expression" "" "perl -0777 -ne 's/(\\{\\\\pict(?:[^{}]|(?1))*\\})/{}/g; print length' doc.rtf"
        ;;
      road)
        # The whole way of a document, with what a user would otherwise take where that is installed: translate-toolkit
        # and po4a. They are slow, so each runs once and is stopped after five minutes: html2po takes eight times as
        # long for a page of twice the size.
        "$bin/bench/make_document" html "$size" > page.htm
        "$bin/bench/make_document" mif "$size" > book.mif
        "$bin/bench/make_document" text "$size" > note.txt
        "$bin/bench/make_document" letter "$size" > letter.rtf
        "$bin/bench/make_document" rc "$size" > app.rc
        mkdir kept
        cp page.htm book.mif note.txt letter.rtf app.rc kept
        languages="--source EN-US --target FR"
        road() {  # road NAME FILE TUD [NAME BEFORE COMMAND]...
          local name=$1 file=$2 tud=$3
          shift 3
          echo "$name, $size MB"
          measure "$(stat -c %s "kept/$file")" \
            "floor: read, scan, write" "" "$bin/bench/floor kept/$file out" \
            "kavo prepare" "cp kept/$file $file" "$kavo prepare -q $languages $file" \
            "kavo pseudo" "" "$kavo pseudo -q $tud" \
            "kavo rebuild" "" "$kavo rebuild -q --overwrite $tud"
          if [ $# -gt 0 ]; then "$bin/bench/measure" 1 "$(stat -c %s "kept/$file")" "$@"; fi
        }
        others=()
        ! command -v html2po >/dev/null || others+=("html2po" "" "timeout 300 html2po --progress=none kept/page.htm page.po"
          "po2html" "" "timeout 300 po2html --progress=none -t kept/page.htm page.po out.htm")
        ! command -v po4a-updatepo >/dev/null || others+=("po4a-updatepo" "rm -f page4.po" "timeout 300 po4a-updatepo -f xhtml -M UTF-8 -m kept/page.htm -p page4.po")
        road page page.htm page_htm_htm_FR.tud "${others[@]}"
        road manual book.mif book_mif_FR.tud
        road letter letter.rtf letter_rtf_FR.tud
        others=()
        ! command -v rc2po >/dev/null || others+=("rc2po" "" "timeout 300 rc2po --progress=none --charset=windows-1252 kept/app.rc app.po"
          "po2rc" "" "timeout 300 po2rc --progress=none --charset=windows-1252 -t kept/app.rc app.po out.rc")
        road "resource script" app.rc app_rc_FR.tud "${others[@]}"
        others=()
        ! command -v txt2po >/dev/null || others+=("txt2po" "" "timeout 300 txt2po --progress=none kept/note.txt note.po"
          "po2txt" "" "timeout 300 po2txt --progress=none -t kept/note.txt note.po out.txt")
        ! command -v po4a-updatepo >/dev/null || others+=("po4a-updatepo" "rm -f note4.po" "timeout 300 po4a-updatepo -f text -M UTF-8 -m kept/note.txt -p note4.po")
        road text note.txt note_txt_FR.tud "${others[@]}"
        ;;
    esac
  done
done
