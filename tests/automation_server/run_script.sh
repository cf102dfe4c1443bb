#!/usr/bin/env bash
# Runs a test script in the system's script host: run_script.sh WINE-RUN BIN-FOLDER SCRIPT BITS [PAGE]
#
# The script's argument is an empty folder; with PAGE it is a copy of that page, which must come back as it was under the
# name "<stem>_FR". SCRIPT may be a program, which needs no script host.
#
# Both libraries are registered for the machine first and unregistered afterwards, as is a program that opens files of
# the type .asp: it leaves a file "<name>.opened" beside the one that it is given. The script host ends with 0 even
# when a script breaks off, so every script says "done" on its last line, and a line that begins with "FAILED" for each
# check that does not hold. Ends with 77 (skipped) when a 32-bit host is asked for and there is none.
set -euo pipefail
wine_run=$1
bin=$2
script=$3
host_path() { echo "Z:${1//\//\\}"; }

system='C:\windows\system32'
if [ "$4" = 32 ]; then
  system='C:\windows\syswow64'
  "$wine_run" cmd /c "if exist $system\cscript.exe (exit 0) else (exit 1)" ||
    { echo "skipped: this Wine has no 32-bit script host"; exit 77; }
fi
work=$(mktemp -d)
finish() {
  for library in K19FPW K19Suite; do
    "$wine_run" "$system\regsvr32.exe" /s /u "$(host_path "$bin/$library.dll")" || true
  done
  for key in '.asp' 'kavo.test.page'; do
    "$wine_run" reg delete "HKLM\\Software\\Classes\\$key" /f > /dev/null || true
  done
  rm -rf "$work"
}
trap finish EXIT
"$wine_run" reg add 'HKLM\Software\Classes\.asp' /ve /d 'kavo.test.page' /f > /dev/null
"$wine_run" reg add 'HKLM\Software\Classes\kavo.test.page\shell\open\command' /ve /f \
  /d 'cmd.exe /c copy nul "%1.opened"' > /dev/null
for library in K19Suite K19FPW; do
  "$wine_run" "$system\regsvr32.exe" /s "$(host_path "$bin/$library.dll")" ||
    { echo "FAILED: $library.dll cannot be registered"; exit 1; }
done

argument=$work
page=${5:-}
if [ -n "$page" ]; then
  cp "$page" "$work"
  argument=$work/$(basename "$page")
fi
host=("$system\cscript.exe" //nologo)
case $script in *.exe) host=() ;; esac
timeout 60 "$wine_run" "${host[@]}" "$(host_path "$script")" "$(host_path "$argument")" | tr -d '\r' > "$work/output"
cat "$work/output"
if grep -q '^FAILED' "$work/output"; then exit 1; fi
[ "$(tail -n 1 "$work/output")" = done ] || { echo "FAILED: the script broke off"; exit 1; }
if [ -n "$page" ]; then
  extension=${page##*.}
  cmp "$page" "${argument%.*}_FR.$extension" || { echo "FAILED: the page did not come back"; exit 1; }
fi
