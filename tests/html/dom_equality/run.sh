#!/bin/bash
# Judges with an HTML parser of its own whether repaired pages mean the same as before.
#   run.sh PROGRAM BUILD_FOLDER [judge options]
# PROGRAM is repair_pages; the parser is installed into BUILD_FOLDER. Pages: generated ones, and those of the corpus
# (KAVO_CORPUS, else the folder beside the project) when there is one. Exit code 77: skipped.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
program=$1
build=$2
shift 2
if ! command -v npm >/dev/null; then
  echo "skipped: npm is not installed"
  exit 77
fi
mkdir -p "$build"
cp "$here"/{package.json,package-lock.json,judge.js,soup.js} "$build"
if ! cmp -s "$here/package-lock.json" "$build/node_modules/.installed"; then
  if ! (cd "$build" && npm ci --no-audit --no-fund --loglevel=error); then
    echo "skipped: the parser could not be installed"
    exit 77
  fi
  cp "$here/package-lock.json" "$build/node_modules/.installed"
fi
corpus=${KAVO_CORPUS:-$here/../../../../shared/corpus}
folders=()
for kind in html asp jsp php; do
  [ -d "$corpus/$kind" ] && folders+=("$corpus/$kind")
done
[ ${#folders[@]} -gt 0 ] || echo "no corpus: generated pages only"
node "$build/judge.js" --driver "$program" --work "$build/work" --soup 4000 "$@" "${folders[@]}"
