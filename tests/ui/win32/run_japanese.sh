#!/usr/bin/env bash
# Runs a Windows program under Wine as a Japanese system does, with the ANSI code page 932:
#
#   run_japanese.sh PROGRAM.exe [ARGUMENT...]
#
# Exits with 77 when the machine cannot make the locale that this rests on.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../.." && pwd)
locales=$(mktemp -d)
trap 'rm -rf "$locales"' EXIT
# A copy of its own: which locales the machine has is nobody's business here.
localedef -i ja_JP -f UTF-8 "$locales/ja_JP.UTF-8" || { echo "no Japanese locale can be made"; exit 77; }
LOCPATH=$locales LC_ALL=ja_JP.UTF-8 "$top/scripts/wine-run.sh" "$@"
