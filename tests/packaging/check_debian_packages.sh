#!/usr/bin/env bash
# Installs the Debian package in a fresh Debian 12, takes a page, a manual and a text through the whole road there as an
# ordinary user, removes the package, and looks for what it left.
#
#   check_debian_packages.sh FOLDER      FOLDER holds kavo_*.deb (scripts/release.sh)
#
# The fresh system is made once by debootstrap, in the user's cache, from the package sources of this machine. Exits with
# 77 when this user cannot make one.
set -euo pipefail
packages=$(cd "$1" && pwd)
[ "$(id -u)" = 0 ] || { echo "skipped: only root can make a fresh system"; exit 77; }
command -v debootstrap >/dev/null || { echo "skipped: debootstrap is not installed (scripts/setup.sh --full)"; exit 77; }

base=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-debian12
if [ ! -f "$base/complete" ]; then
  rm -rf "$base"
  mkdir -p "$base"
  source=$(sed -n 's/^deb[[:space:]]\+\(\[[^]]*\][[:space:]]*\)\?\([^ ]*\)[[:space:]]\+bookworm[[:space:]].*/\2/p; s/^URIs:[[:space:]]*//p' \
    /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -1)
  debootstrap --variant=minbase --include=ca-certificates bookworm "$base/root" "$source" >"$base/log" 2>&1 ||
    { tail -20 "$base/log" >&2; exit 1; }
  touch "$base/complete"
fi

work=$(mktemp -d)
trap 'umount "$work/root/proc" 2>/dev/null || true; rm -rf "$work"' EXIT
cp -a "$base/root" "$work/root"
mount -t proc proc "$work/root/proc"
cp "$packages"/kavo_*.deb "$work/root/tmp/kavo.deb"
inside() { chroot "$work/root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME="${home:-/root}" LC_ALL=C.UTF-8 "$@"; }
files() { (cd "$work/root" && find . -xdev \( -path ./proc -o -path ./tmp -o -path ./home -o -path './var/lib/dpkg' \
  -o -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log -o -path './etc/ld.so.cache' \) -prune -o -print | sort); }

inside useradd -m translator
# What the package needs, so that only its own files are compared.
inside apt-get update -qq
inside apt-get install -qq -y --no-install-recommends libstdc++6 >/dev/null
files >"$work/before"
inside apt-get install -qq -y --no-install-recommends /tmp/kavo.deb >/dev/null
[ "$(inside kavo --version)" = "kavo $(inside dpkg-query -W -f '${Version}' kavo)" ]

cat >"$work/root/tmp/road.sh" <<'ROAD'
set -euo pipefail
cd ~
cp /usr/share/doc/kavo/examples/*.* .
mkdir original && cp ./*.* original/
for document in index.asp manual.mif notice.txt; do
  kavo prepare -q "$document" --source EN-US --target FR >/dev/null
done
kavo pseudo -q ./*.tud >/dev/null
kavo rebuild -q index_asp_htm_FR.tud manual_mif_FR.tud notice_txt_FR.tud
for pair in index:asp manual:mif notice:txt; do
  name=${pair%:*} extension=${pair#*:}
  cmp -s "$name.$extension" "original/$name.$extension" || { echo "$name.$extension has changed" >&2; exit 1; }
  ! cmp -s "$name.$extension" "${name}_FR.$extension" || { echo "$name was not translated" >&2; exit 1; }
done
kavo verify -q index.asp manual.mif notice.txt
ROAD
home=/home/translator inside setpriv --reuid translator --regid translator --init-groups bash /tmp/road.sh
inside test -f /usr/share/man/man1/kavo-prepare.1.gz
inside bash -c 'source /usr/share/bash-completion/completions/kavo; COMP_WORDS=(kavo reb) COMP_CWORD=1; _kavo kavo reb kavo; [ "${COMPREPLY[*]}" = rebuild ]'

inside apt-get purge -qq -y kavo >/dev/null
files >"$work/after"
diff "$work/before" "$work/after" || { echo "the package left the files above" >&2; exit 1; }
echo "installed, three documents translated and verified, removed: nothing is left"
