#!/usr/bin/env bash
# Checks the layout: check_rooms.sh SOURCE_FOLDER RULE_FILE. Prints every include that it forbids and every type defined twice.
set -euo pipefail
rule=$(realpath "$2")
cd "$1"

# A line of the rule: a room, then the rooms that it may include beside itself, as its CMakeLists.txt says.
declare -A may
while read -r room others; do may[$room]="$room $others"; done < "$rule"
status=0
complain() { echo "$1"; status=1; }

checked=0
for folder in */; do
  room=${folder%/}
  [ -n "${may[$room]:-}" ] || { complain "src/$room: a room that the include rule does not know"; continue; }
  while IFS=: read -r file line include; do
    used=${include#*\"}
    used=${used%%/*}
    checked=$((checked + 1))
    case " ${may[$room]} " in *" $used "*) ;; *) complain "src/$file:$line: room $room must not include room $used" ;; esac
  done < <(grep -rnE '^#include "[^"]+/' "$room" --include=*.h --include=*.cpp || true)
done

# Only the adapters, the COM skin and the window renderer may know the Windows headers; shared code has no platform
# switches: the build picks the files.
while read -r hit; do complain "src/$hit: Windows header outside the adapters"; done < <(
  grep -rnE '#include <(windows|winsock2|objbase|oleauto|ole2|shellapi|commctrl|commdlg)\.h>' . --include=*.h --include=*.cpp |
    sed 's|^\./||' | grep -vE '^(platform/win32|automation_server|ui/win32)/' || true)
while read -r hit; do complain "src/$hit: platform switch in shared code"; done < <(
  grep -rnE '^#\s*if.*\b(_WIN32|__linux__|__unix__)\b' . --include=*.h --include=*.cpp |
    sed 's|^\./||' | grep -vE '^platform/(win32|posix)/' || true)

# The rooms are linked into one program: of two types of one name and namespace the linker would silently take one.
types() {  # namespace, type and file of each type that a header defines for others
  find . -name '*.h' -exec awk '
    /^namespace [a-z:]+ \{/ { space = $2 }
    /^(class|struct|enum class) [A-Za-z0-9_]+( final)?( :.*)? \{/ { print space "::" ($1 == "enum" ? $3 : $2), FILENAME }
  ' {} +
}
while read -r name; do
  complain "src: the type $name is defined in $(types | awk -v name="$name" '$1 == name { print $2 }' | sed 's|^\./||' | paste -sd' ')"
done < <(types | awk '{ print $1 }' | sort | uniq -d)

[ "$checked" -gt 0 ] || complain "no include was checked"
[ "$status" = 0 ] && echo "$checked includes between rooms, all allowed"
exit "$status"
