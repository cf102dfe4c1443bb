#!/usr/bin/env bash
# Checks what a library exports and what it needs: check_tables.sh OBJDUMP LIBRARY.dll
#
# Exactly the five functions of an automation library go out, under their plain names; only libraries that every
# Windows has come in, so that nothing has to be shipped beside it.
set -euo pipefail
tables=$("$1" -p "$2")

exports=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\] *//p' <<<"$tables" | tr -d '\r' | sort)
expected='DllCanUnloadNow
DllGetClassObject
DllInstall
DllRegisterServer
DllUnregisterServer'
if [ "$exports" != "$expected" ]; then
  printf 'exports differ; found:\n%s\nexpected:\n%s\n' "$exports" "$expected"
  exit 1
fi

imports=$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$tables" | tr -d '\r' | tr '[:upper:]' '[:lower:]' | sort -u)
[ -n "$imports" ] || { echo "no import was found"; exit 1; }
foreign=$(grep -vxE '(advapi32|bcrypt|comctl32|comdlg32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|user32)\.dll' <<<"$imports" || true)
[ -z "$foreign" ] || { printf 'needs libraries that a Windows need not have:\n%s\n' "$foreign"; exit 1; }
echo "exports: $(wc -l <<<"$exports"); imports:" $imports
