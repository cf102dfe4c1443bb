#!/usr/bin/env bash
# Runs one Windows program under Wine: wine-run.sh PROGRAM.exe [ARGUMENT...]
#
# The first call makes the Wine prefix in the user's cache folder. A desktop stays open and keeps Wine's server running,
# so that a later start costs 20 to 45 ms. `wine-run.sh --stop` ends the server.
set -euo pipefail
wine=/usr/lib/wine/wine64  # not plain "wine", which runs the 32-bit Wine where one is installed
export WINEPREFIX=${WINEPREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/kavo-wine}
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d'
export LC_ALL=${LC_ALL:-C.UTF-8}

if [ "${1:-}" = --stop ]; then
  wineserver -k >/dev/null 2>&1 || true
  exec 9>"$WINEPREFIX.keeper"
  flock -w 10 9 || true  # waits until the desktop has ended, too
  exit 0
fi
[ $# -gt 0 ] || { echo "usage: wine-run.sh PROGRAM.exe [ARGUMENT...] | --stop" >&2; exit 2; }

# With address space randomisation one start in some thousands dies with "failed to map the shared user data".
if [ -z "${KAVO_WINE_FIXED_LAYOUT:-}" ]; then
  KAVO_WINE_FIXED_LAYOUT=1 exec setarch -R "$0" "$@"
fi

mkdir -p "$(dirname "$WINEPREFIX")"
exec 8>"$WINEPREFIX.lock"
flock 8
if [ ! -f "$WINEPREFIX/ready" ]; then
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  # The null graphics driver runs windows and dialogs without any X server.
  printf '%s\n' 'WINE REGISTRY Version 2' ';; All keys relative to \\User\\S-1-5-21-0-0-0-1000' '' '#arch=win64' '' \
    '[Software\\Wine\\Drivers]' '"Graphics"="null"' '' '[Software\\Wine\\WineDbg]' '"ShowCrashDialog"=dword:00000000' \
    > "$WINEPREFIX/user.reg"
  wineserver -p 8>&- >/dev/null 2>&1 </dev/null
  # Any first program makes the prefix. Naming wineboot would start the services twice, and then none of them can be
  # reached, such as the running object table.
  "$wine" cmd /c exit 8>&- >/dev/null 2>&1 </dev/null
  touch "$WINEPREFIX/ready"
fi
# Without a common desktop each test with a window starts an explorer (1 to 8 s instead of 0.1). The process that holds
# this second lock is the desktop. A process number in a file would some day belong to another process.
exec 9>"$WINEPREFIX.keeper"
if flock -n 9; then
  wineserver -p 8>&- 9>&- >/dev/null 2>&1 </dev/null || true
  # The services start with the first program, the desktop with the first one that needs it, and both keep the streams
  # of that program. They must not get those of the program to run: a reader of its output would wait for their end.
  "$wine" cmd /c exit 8>&- 9>&- >/dev/null 2>&1 </dev/null || true
  setsid "$wine" notepad 8>&- >/dev/null 2>&1 </dev/null &
  "$wine" rundll32 user32.dll,GetDesktopWindow 8>&- 9>&- >/dev/null 2>&1 </dev/null || true
fi
exec 9>&-
flock -u 8
exec 8>&-
exec "$wine" "$@" </dev/null
