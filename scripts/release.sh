#!/usr/bin/env bash
# Makes everything that is delivered, with one version, in build/release:
#
#   kavo_VERSION_amd64.deb, kavo-office_VERSION_amd64.deb   Debian packages (the second where LibreOffice's headers are)
#   K19FPW-setup.exe                                        the Windows installer
#   K19FPW-VERSION-windows.zip                              the same files without an installer
#   SHA256SUMS                                              their sums
#
#   scripts/release.sh             all of it
#   scripts/release.sh --debian    the Debian packages only
#
# The version is that of CMakeLists.txt, and CHANGELOG.md must have a section for it or "Unreleased". All files get the date
# of the last commit, so two builds of one commit have the same bytes. When KAVO_SIGN is set, it is a command that is run with
# the name of each Windows program, library and installer, and signs it in place.
set -euo pipefail
case ${1:-} in "" | --debian) only=${1:-} ;; *) echo "usage: release.sh [--debian]" >&2; exit 2 ;; esac
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"
version=$(sed -n 's/^project(kavo VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
grep -qE "^## ($version|Unreleased)\$" CHANGELOG.md || { echo "release.sh: CHANGELOG.md has no section for $version" >&2; exit 1; }
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH TZ=UTC CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1
result=$top/build/release
work=$top/build/release-work
rm -rf "$result" "$work"
mkdir -p "$result" "$work"

scripts/setup.sh ${only:---release}

build() {  # build PRESET TARGET..., in build/release-PRESET
  local folder=build/release-$1 preset=$1
  shift
  echo "== $preset"
  # Without precompiled headers each file proves what it includes, and the compiler sees what it does not see through
  # them.
  cmake --preset "$preset" -B "$folder" -DCMAKE_BUILD_TYPE=Release -DKAVO_TESTS=OFF -DKAVO_PRECOMPILE=OFF >"$folder.log"
  cmake --build "$folder" ${@:+--target "$@"} >>"$folder.log" || { tail -20 "$folder.log" >&2; exit 1; }
}
same_date() { find "$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +; }
sign() { for file in "$@"; do [ -z "${KAVO_SIGN:-}" ] || $KAVO_SIGN "$file"; done; }

build native
(cd build/release-native && cpack -B "$work/packages" >>../release-native.log)
cp "$work"/packages/*_"$version"_*.deb "$result"

sums() { (cd "$result" && sha256sum -- * >SHA256SUMS && cat SHA256SUMS); }
[ -z "$only" ] || { sums; exit 0; }

files=$work/K19FPW-$version
mkdir -p "$files"/x64 "$files"/x86
build windows-x64
build windows-x86 K19FPW K19Suite
cp build/release-windows-x64/{bin/K19Subst.exe,src/cli/kavo.exe} "$files/x64"
for width in x64 x86; do
  cp build/release-windows-$width/bin/{K19FPW,K19Suite}.{dll,manifest} "$files/$width"
done
cp README.md CHANGELOG.md "$files"
cp build/release-native/copyright "$files/NOTICES.txt"
for package in gcc-mingw-w64-base mingw-w64-common; do  # the compiler's run-time, linked in as well
  printf '\n==== %s ====\n\n' $package
  cat /usr/share/doc/$package/copyright
done >>"$files/NOTICES.txt"
cp -r docs samples "$files"
# What the uninstaller removes of these two folders.
(cd "$files" && { find docs samples -type f | sort | sed 's/.*/Delete "$INSTDIR\/&"/'
  find docs samples -type d | sort -r | sed 's/.*/RMDir "$INSTDIR\/&"/'; } | tr / '\\') >"$work/remove.nsh"
sign "$files"/x64/*.exe "$files"/x64/*.dll "$files"/x86/*.dll
same_date "$files"

echo "== installer"
makensis -V2 -DVERSION="$version" -DFILES="$files" -DREMOVE="$work/remove.nsh" -DOUTPUT="$result/K19FPW-setup.exe" packaging/windows/setup.nsi
sign "$result/K19FPW-setup.exe"
(cd "$work" && find "K19FPW-$version" -type f | LC_ALL=C sort | zip -q -X -@ "$result/K19FPW-$version-windows.zip")

sums
