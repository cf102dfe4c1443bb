#!/usr/bin/env bash
# Makes the release twice, from two clones of the last commit in folders of different names, the second one without the
# compiler cache, and compares all bytes; then compares the versions that the delivered files name.
#
#   check_release.sh [--with-cache]      --with-cache: the second build may take compiled files from the cache (quicker)
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
git clone -q "$top" "$work/first"
git clone -q "$top" "$work/another/second"
"$work/first/scripts/release.sh" >"$work/log" 2>&1 || { tail -20 "$work/log" >&2; exit 1; }
[ "${1:-}" = --with-cache ] || export CCACHE_DISABLE=1
"$work/another/second/scripts/release.sh" >"$work/log" 2>&1 || { tail -20 "$work/log" >&2; exit 1; }
diff "$work"/{first,another/second}/build/release/SHA256SUMS || { echo "FAILED: the two builds differ" >&2; exit 1; }

cd "$work/first/build/release"
sha256sum --quiet -c SHA256SUMS
version=$(sed -n 's/^project(kavo VERSION \([0-9.]*\) .*/\1/p' "$top/CMakeLists.txt")
expect() { [ "$2" = "$version" ] || { echo "FAILED: $1 says $2, not $version" >&2; exit 1; }; }
for package in kavo_*.deb kavo-office_*.deb; do
  [ -f "$package" ] || continue
  expect "$package" "$(dpkg-deb -f "$package" Version)"
  expect "the name of $package" "$(echo "$package" | cut -d_ -f2)"
done
dpkg-deb -x kavo_*.deb "$work/unpacked"
expect "kavo --version" "$("$work/unpacked/usr/bin/kavo" --version | cut -d' ' -f2)"
unzip -q K19FPW-*-windows.zip -d "$work/zip"
expect "the zip's name" "$(echo K19FPW-*-windows.zip | cut -d- -f2)"
for file in K19FPW-setup.exe "$work"/zip/*/x64/*.dll "$work"/zip/*/x86/*.dll; do
  expect "the version resource of $(basename "$file")" "$(python3 "$top/tests/packaging/file_version.py" "$file")"
done
echo "two builds, the same bytes; all files name version $version"
