#!/usr/bin/env bash
# Installs the Debian packages in a fresh Debian 12, takes documents through the whole road there as an ordinary user,
# removes the packages, and looks for what they left: first `kavo` alone, with a page, a manual and a text, then `kavo`
# and `kavo-office`, with a Word document, a presentation and a workbook as well.
#
#   check_debian_packages.sh FOLDER      FOLDER holds kavo_*.deb and kavo-office_*.deb (scripts/release.sh)
#
# The fresh system is made once by debootstrap, in the user's cache, from the package sources of this machine. LibreOffice,
# which kavo-office needs, is fetched from there as well (200 MB, kept in the cache). Exits with 77 when this user cannot
# make a fresh system.
set -euo pipefail
packages=$(cd "$1" && pwd)
[ "$(id -u)" = 0 ] || { echo "skipped: only root can make a fresh system"; exit 77; }
command -v debootstrap >/dev/null || { echo "skipped: debootstrap is not installed (scripts/setup.sh --full)"; exit 77; }

base=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-debian12
if [ ! -f "$base/complete" ]; then
  rm -rf "$base"
  mkdir -p "$base"
  # A system has a list in one of two forms, or both.
  lists=$(cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources 2>/dev/null || true)
  source=$(sed -n 's/^deb[[:space:]]\+\(\[[^]]*\][[:space:]]*\)\?\([^ ]*\)[[:space:]]\+bookworm[[:space:]].*/\2/p
    s/^URIs:[[:space:]]*\([^ ]*\).*/\1/p' <<<"$lists" | sed -n 1p)
  [ -n "$source" ] || { echo "FAILED: the package sources of this machine name no Debian 12" >&2; exit 1; }
  debootstrap --variant=minbase --include=ca-certificates bookworm "$base/root" "$source" >"$base/log" 2>&1 ||
    { tail -20 "$base/log" >&2; exit 1; }
  touch "$base/complete"
fi
mkdir -p "$base/archives/partial"

work=$(mktemp -d)
leave() {  # unmounts and deletes the fresh system, even if somebody is looking into it
  umount --lazy "$work/root/var/cache/apt/archives" "$work/root/proc" 2>/dev/null || true
  rm -rf --one-file-system "$work/root"
}
trap 'leave; rm -rf "$work"' EXIT
inside() { chroot "$work/root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME="${home:-/root}" LC_ALL=C.UTF-8 "$@"; }
get() { inside apt-get -qq -y --no-install-recommends -o APT::Sandbox::User=root "$@" >"$work/log" 2>&1 || { tail -20 "$work/log" >&2; exit 1; }; }
processes() {  # those that run in the fresh system
  local process
  for process in /proc/[0-9]*; do
    [ "$(readlink "$process/root" 2>/dev/null)" != "$work/root" ] || tr '\0' ' ' <"$process/cmdline"
  done
}
list() { (cd "$work/root" && find . -xdev \( -path ./proc -o -path ./tmp -o -path ./home -o -path './var/lib/dpkg' \
  -o -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log -o -path './etc/ld.so.cache' \) -prune -o -print | sort); }

cat >"$work/road.sh" <<'ROAD'
# road.sh DOCUMENT:BILINGUAL_DOCUMENT...
set -euo pipefail
cd ~
cp /usr/share/doc/kavo/examples/*.* .
mkdir original && cp ./*.* original/
documents=() bilingual=()
for pair; do documents+=("${pair%:*}") bilingual+=("${pair#*:}"); done
for document in "${documents[@]}"; do
  kavo prepare -q "$document" --source EN-US --target FR >/dev/null
done
kavo pseudo -q ./*.tud >/dev/null
kavo rebuild -q "${bilingual[@]}"
for document in "${documents[@]}"; do
  cmp -s "$document" "original/$document" || { echo "$document has changed" >&2; exit 1; }
  translated=${document%.*}_FR.${document##*.}
  [ -s "$translated" ] && ! cmp -s "$document" "$translated" || { echo "$document was not translated" >&2; exit 1; }
done
kavo verify -q "${documents[@]}"
ROAD

# check "PACKAGE..." DOCUMENT:BILINGUAL_DOCUMENT...: these packages and documents in a fresh system of their own
check() {
  local names=$1 name files=() needs=()
  shift
  cp -a "$base/root" "$work/root"
  mount -t proc proc "$work/root/proc"
  mount --bind "$base/archives" "$work/root/var/cache/apt/archives"
  cp "$work/road.sh" "$work/root/tmp"
  for name in $names; do
    cp "$packages/$name"_*.deb "$work/root/tmp/$name.deb"
    files+=("/tmp/$name.deb")
    needs+=("$(dpkg-deb -f "$work/root/tmp/$name.deb" Depends | sed 's/^kavo ([^)]*), //')")
  done
  inside useradd -m translator
  # What the packages need comes first, so that only their own files are compared.
  get update
  get satisfy "${needs[@]}"
  list >"$work/before"
  get install "${files[@]}"
  [ "$(inside kavo --version)" = "kavo $(inside dpkg-query -W -f '${Version}' kavo)" ]
  home=/home/translator inside setpriv --reuid translator --regid translator --init-groups bash /tmp/road.sh "$@"
  [ -z "$(processes)" ] || { echo "still running: $(processes)" >&2; exit 1; }
  inside test -f /usr/share/man/man1/kavo-prepare.1.gz
  inside bash -c 'source /usr/share/bash-completion/completions/kavo; COMP_WORDS=(kavo reb) COMP_CWORD=1; _kavo kavo reb kavo; [ "${COMPREPLY[*]}" = rebuild ]'
  case $names in
    *kavo-office*) ;;
    *) inside sh -c 'cd /tmp && cp /usr/share/doc/kavo/examples/report.doc . &&
        ! kavo prepare report.doc --source EN-US --target FR 2>&1' |
      grep -q 'install the package kavo-office' || { echo "kavo alone does not say what Word documents need" >&2; exit 1; } ;;
  esac
  # shellcheck disable=SC2086
  get purge $names
  list >"$work/after"
  diff "$work/before" "$work/after" || { echo "the packages left the files above" >&2; exit 1; }
  leave
  echo "$names: installed, $# documents translated and verified, removed: nothing is left"
}

roads=(index.asp:index_asp_htm_FR.tud manual.mif:manual_mif_FR.tud notice.txt:notice_txt_FR.tud)
check kavo "${roads[@]}"
check "kavo kavo-office" "${roads[@]}" report.doc:report_doc_rtf_FR.tud deck.ppt:deck_ppt_FR.tud book.xls:book_xls_FR.tud
