#!/usr/bin/env bash
# Has another editor translate bilingual documents: check_omegat.sh KAVO
#
# OmegaT (Debian's omegat, a console run) gets a project of exported documents and a memory with two translations; what
# it hands back must be taken over whole, and the rebuilt documents must hold the translations. Without it the test is
# skipped.
set -euo pipefail
kavo=$1
command -v omegat >/dev/null || { echo "skipped: no omegat"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_CONFIG_HOME=$folder/config
mkdir -p "$folder"/project/{source,target,omegat,tm,glossary,dictionary} "$folder/documents" "$folder/config"
cd "$folder/documents"
printf 'One two three\nFour\n' > note.txt
printf '<html lang=en><body>\n<p>One <b>two</b> three</p><p>Five &amp; <br>six <%%= x %%></p>\n</body></html>\n' > page.asp
printf '{\\rtf1\\ansi\\ansicpg1252 One two three\\par One {\\b two} three\\par}\n' > letter.rtf
script() { printf 'LANGUAGE %s\n\nSTRINGTABLE\nBEGIN\n    1 "%s"\n    2 "Four %%d"\nEND\n' "$1" "$2"; }
script 'LANG_ENGLISH, SUBLANG_ENGLISH_US' 'One two three' > app.rc
book() { printf "<MIFFile 7.00>\n<TextFlow\n <Para\n  <ParaLine\n   <String \`%s'>\n  >\n >\n>\n" "$1"; }
book 'One two three' > book.mif
"$kavo" prepare -q note.txt page.asp letter.rtf app.rc book.mif --source EN-US --target FR >/dev/null
# The editor skips texts without a target and takes an existing one as the source, so targets hold the source.
# The documents of MIF's side files (KAVO_*) hold no text here.
for tud in [!K]*.tud; do "$kavo" export -q "$tud" --to "../project/source/${tud%.tud}.xlf" >/dev/null; done
names=$(for part in source target tm glossary dictionary; do echo "<${part}_dir>__DEFAULT__</${part}_dir>"; done)
cat > ../project/omegat.project <<END
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<omegat><project version="1.0">$names<source_lang>EN-US</source_lang><target_lang>FR</target_lang>
<sentence_seg>false</sentence_seg><support_default_translations>true</support_default_translations>
<remove_tags>false</remove_tags></project></omegat>
END
unit() { echo "<tu><tuv lang=\"EN-US\"><seg>$1</seg></tuv><tuv lang=\"FR\"><seg>$2</seg></tuv></tu>"; }
cat > ../project/omegat/project_save.tmx <<END
<?xml version="1.0" encoding="UTF-8"?>
<tmx version="1.1"><header creationtool="OmegaT" o-tmf="OmegaT TMX" adminlang="EN-US" datatype="plaintext"
creationtoolversion="3" segtype="paragraph" srclang="EN-US"/><body>
$(unit 'One two three' 'Un deux trois')
$(unit 'One &lt;g0&gt;two&lt;/g0&gt; three' 'Un &lt;g0&gt;deux&lt;/g0&gt; trois')
</body></tmx>
END
timeout 300 omegat --mode=console-translate "$folder/project" --config-dir="$folder/config" >"$folder/log" 2>&1 ||
  { tail -20 "$folder/log"; exit 1; }
for tud in [!K]*.tud; do "$kavo" import -q "../project/target/${tud%.tud}.xlf" --to "$tud" >/dev/null; done
"$kavo" rebuild -q note_txt_FR.tud page_asp_htm_FR.tud letter_rtf_FR.tud app_rc_FR.tud book_mif_FR.tud >/dev/null
diff <(printf 'Un deux trois\nFour\n') note_FR.txt
diff <(printf '<html lang=fr><body>\n<p>Un <b>deux</b> trois</p><p>Five &amp; <br>six <%%= x %%></p>\n</body></html>\n') page_FR.asp
diff <(printf '{\\rtf1\\ansi\\ansicpg1252 Un deux trois\\par Un {\\b deux} trois\\par}\n') letter_FR.rtf
diff <(script 'LANG_FRENCH, SUBLANG_FRENCH' 'Un deux trois') app_FR.rc
diff <(book 'Un deux trois') book_FR.mif
echo "OmegaT translated $(ls [!K]*.tud | wc -l) documents"
