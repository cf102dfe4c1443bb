#!/usr/bin/env bash
# Installs, uses, upgrades and removes what the Windows installer brings, in a Wine prefix of its own: for the machine, then
# for one user. This Wine runs no 32-bit programs; of the x86 library the files are looked at, and the installer must say that
# it could not register it.
#
#   check_installer.sh WORK      WORK: the folder build/release-work of scripts/release.sh
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
release=$(cd "$1" && pwd)
files=$(echo "$release"/K19FPW-*)
version=${files##*-}
command -v makensis >/dev/null && [ -x /usr/lib/wine/wine64 ] || { echo "skipped: makensis or Wine is not installed"; exit 77; }

work=$(mktemp -d)
export WINEPREFIX=$work/prefix
wine() { "$top/scripts/wine-run.sh" "$@"; }
trap '"$top/scripts/wine-run.sh" --stop; rm -rf "$work"' EXIT
host_path() { echo "Z:${1//\//\\}"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
value() { wine reg query "$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z_]* *//p"; }
key_is_there() { wine reg query "$1" >/dev/null 2>&1; }
setup() {  # setup FILE SWITCH...: the exit code is in $code
  local file=$1
  shift
  code=0
  wine "$(host_path "$file")" /S "$@" || code=$?
}
build() {  # build FILES VERSION OUTPUT
  makensis -V1 -DVERSION="$2" -DFILES="$1" -DREMOVE="$release/remove.nsh" -DOUTPUT="$3" "$top/packaging/windows/setup.nsi"
}

build "$files" "$version" "$work/setup.exe"
# The next version differs in its library, if only by a byte behind its end.
cp -r "$files" "$work/next"
echo >>"$work/next/x64/K19FPW.dll"
build "$work/next" 9.9.9 "$work/next.exe"

class='Software\Classes\CLSID\{55F81CDA-5CE8-4FA2-B706-CC5AF95E905E}'
uninstall='Software\Microsoft\Windows\CurrentVersion\Uninstall\K19FPW'
environment='HKLM\SYSTEM\CurrentControlSet\Control\Session Manager\Environment'
wine cmd /c exit
path_before=$(value "$environment" Path)
mkdir "$work/host" "$work/host2"

echo "== for the machine"
setup "$work/setup.exe" /AllUsers /PATH
folder=$WINEPREFIX/drive_c/Program\ Files/K19FPW
[ -f "$folder/install.log" ] || fail "nothing is installed (exit code $code)"
if [ $code = 4 ]; then
  grep -q 'x86.K19FPW.dll could not be registered' "$folder/install.log" || fail "$(cat "$folder/install.log")"
  echo "   the x86 library could not be registered here, and the installer said so"
elif [ $code != 0 ]; then
  fail "exit code $code"
fi
cmp "$folder/K19FPW.dll" "$files/x64/K19FPW.dll"
cmp "$folder/x86/K19FPW.dll" "$files/x86/K19FPW.dll"
[ "$(wine "$folder/kavo.exe" --version | tr -d '\r')" = "kavo $version" ] || fail "kavo --version"
[ "$(value "HKLM\\$uninstall" DisplayVersion)" = "$version" ] || fail "the list of programs has another version"
case $(value "$environment" Path) in *'C:\Program Files\K19FPW') ;; *) fail "not on the PATH" ;; esac
find "$WINEPREFIX/drive_c" -name 'KAVO File Processing Wizard.lnk' | grep -q . || fail "no entry in the start menu"
key_is_there "HKLM\\$class" || fail "the class is not registered"
[ "$(wine 'C:\windows\system32\cscript.exe' //nologo "$(host_path "$top/tests/packaging/host.vbs")" "$(host_path "$work/host")" | tr -d '\r')" = prepared ] ||
  fail "a host cannot prepare a page"
[ -f "$work/host/page_asp.htm" ] && [ -f "$work/host/page_asp.scr" ] || fail "the page is not prepared"

echo "== an upgrade while a host holds the library"
wine 'C:\windows\system32\cscript.exe' //nologo "$(host_path "$top/tests/packaging/host.vbs")" "$(host_path "$work/host2")" \
  "$(host_path "$work/go")" >/dev/null &
host=$!
for _ in $(seq 300); do [ ! -f "$work/go.holds" ] || break; sleep 0.1; done
[ -f "$work/go.holds" ] || fail "the host did not start"
# Windows lets nobody write to the file of a loaded library. Wine does, so the system forbids it here.
chattr +i "$folder/K19FPW.dll" || { echo "skipped: this file system cannot forbid writing to a file"; exit 77; }
setup "$work/next.exe" /AllUsers /NOX86
chattr -i "$folder/K19FPW.dll"
[ $code = 3 ] || fail "exit code $code instead of 3: $(cat "$folder/install.log")"
grep -q 'is in use' "$folder/install.log" || fail "the log does not say that the library is in use"
cmp -s "$folder/K19FPW.dll" "$files/x64/K19FPW.dll" || fail "the library was replaced under the host"
touch "$work/go"
wait $host
# Windows starts anew.
"$top/scripts/wine-run.sh" --stop
wine wineboot >/dev/null 2>&1
cmp "$folder/K19FPW.dll" "$work/next/x64/K19FPW.dll" || fail "the library was not replaced at the next start"
[ ! -f "$folder/K19FPW.dll.new" ] || fail "the new library is still beside the old one"
[ "$(value "HKLM\\$uninstall" DisplayVersion)" = 9.9.9 ] || fail "the list of programs has the old version"

echo "== removed"
wine "$folder/kavo.exe" settings mif.split=both >/dev/null
touch "$folder/samples/mine.txt"
wine "$folder/uninstall.exe" /AllUsers /S
for _ in $(seq 100); do key_is_there "HKLM\\$uninstall" || break; sleep 0.2; done
[ "$(cd "$folder" && find . -type f)" = ./samples/mine.txt ] || fail "left: $(cd "$folder" && find . -type f)"
! key_is_there "HKLM\\$uninstall" && ! key_is_there "HKLM\\$class" || fail "keys are left"
[ "$(value "$environment" Path)" = "$path_before" ] || fail "the PATH is not what it was"
! find "$WINEPREFIX/drive_c" -name 'KAVO File Processing Wizard.lnk' | grep -q . || fail "the start menu still has an entry"
wine "$(host_path "$files/x64/kavo.exe")" settings | grep -q 'mif.split.*both' || fail "the user's settings are gone"
rm -r "$folder"

echo "== for one user"
setup "$work/setup.exe" /CurrentUser /NOX86
folder=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/K19FPW)
[ $code = 0 ] && [ -f "$folder/K19FPW.dll" ] || fail "exit code $code"
[ ! -d "$folder/x86" ] || fail "the x86 library is there although it was not wanted"
key_is_there "HKCU\\$class" && ! key_is_there "HKLM\\$class" || fail "the class is not registered for the user alone"
[ "$(value "HKCU\\$uninstall" DisplayVersion)" = "$version" ] || fail "the list of programs has another version"
wine "$folder/uninstall.exe" /CurrentUser /S
for _ in $(seq 100); do key_is_there "HKCU\\$uninstall" || break; sleep 0.2; done
! key_is_there "HKCU\\$class" && [ ! -d "$folder" ] || fail "something is left"

echo "== removed while an upgrade waits for the next start"
setup "$work/setup.exe" /CurrentUser /NOX86
chattr +i "$folder/K19FPW.dll"
setup "$work/next.exe" /CurrentUser /NOX86
chattr -i "$folder/K19FPW.dll"
[ $code = 3 ] && [ -f "$folder/K19FPW.dll.new" ] || fail "exit code $code instead of 3: $(cat "$folder/install.log")"
wine "$folder/uninstall.exe" /CurrentUser /S
for _ in $(seq 100); do key_is_there "HKCU\\$uninstall" || break; sleep 0.2; done
"$top/scripts/wine-run.sh" --stop
wine wineboot >/dev/null 2>&1
[ ! -d "$folder" ] || fail "left: $(find "$folder")"
echo "installed for the machine, used by a host, upgraded under it, removed; installed for one user and removed"
