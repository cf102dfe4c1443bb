#!/usr/bin/env bash
# Installs what is missing, builds and runs the tests: those of the command native, those of the rooms under sanitizers,
# and on Windows under Wine what depends on the system. It takes half an hour on a fresh clone and is quick when nothing
# has changed.
#
#   scripts/test.sh                 that
#   scripts/test.sh --native        all native tests
#   scripts/test.sh --sanitizers    all of them under address, undefined-behaviour and leak sanitizers
#   scripts/test.sh --windows       the Windows tests only
#   scripts/test.sh --full          all native tests, those of the rooms under sanitizers, all under Wine, fuzzing for a
#                                   minute a target, clang-tidy, the Office programs with LibreOffice, scripts judged by
#                                   their own parsers, a thousand documents on several workers, the packages installed
#                                   and removed, and the command disturbed from outside
set -uo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top" || exit 1

# The command and its tests take as long to build as all libraries, and so do the tests of the rooms.
command_tests='^(cli|office_text)'
room_tests=(test_{platform,common,formats,forms,html,mif,office,ui,driver,suite,workflow} repair_pages)

parts=(native sanitizers windows)
native_targets=(kavo test_cli test_cli_roads)
native_tests=(-R "$command_tests")
sanitizer_targets=("${room_tests[@]}")
sanitizer_tests=(-E "$command_tests")
windows_targets=(all)
windows_tests=(-LE slow)
case ${1:-} in
  "") ;;
  --native) parts=(native) native_targets=(all) native_tests=() ;;
  --sanitizers) parts=(sanitizers) sanitizer_targets=(all) sanitizer_tests=() ;;
  --windows) parts=(windows) ;;
  --full)
    parts=(native sanitizers windows fuzz tidy office scripts machines packages faults)
    native_targets=(all)
    native_tests=()
    windows_targets=(all slow_tests)
    windows_tests=()
    ;;
  *) sed -n '2,14s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
esac

# Paths below the top folder count as relative ones for ccache, so that clones share what they compile.
export CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1

passed=0
failed=0
summary=()

step() { printf '== %s (%s s)\n' "$1" "$SECONDS"; }
note() {  # note RESULT NAME: 0 is a pass
  if [ "$1" = 0 ]; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
  summary+=("$([ "$1" = 0 ] && echo ok || echo FAILED)  $2")
}
build() {  # build PRESET [TARGET...]
  local folder=build/$1 preset=$1
  shift
  [ -f "$folder/build.ninja" ] || cmake --preset "$preset" >"$folder.log" 2>&1 || {
    cat "$folder.log" >&2
    return 1
  }
  cmake --build --preset "$preset" ${@:+--target "$@"}
}
run_tests() {  # run_tests PRESET [CTEST ARGUMENT...]
  ctest --preset "$@"
}

show_pages() {  # show_pages PRESET: how many pages mean the same to an HTML parser before and after their repair
  grep -hsE '^[a-z].* pages, .* equal ' "build/$1/Testing/Temporary/LastTest.log" | sed 's/^/   /'
}

case " ${parts[*]} " in *" fuzz "*) scripts/setup.sh --full ;; *" windows "*) scripts/setup.sh ;; *) scripts/setup.sh --native ;; esac || exit 1
mkdir -p build

for part in "${parts[@]}"; do
  case $part in
    native)
      step "native build"
      build native "${native_targets[@]}" && { step "native tests"; run_tests native -LE slow "${native_tests[@]}"; }
      note $? "native"
      echo "   the Office engine runs with LibreOffice: its tests are skipped here and run with --full"
      show_pages native
      ;;
    sanitizers)
      step "sanitizer build"
      build sanitizers "${sanitizer_targets[@]}" && {
        step "tests under sanitizers"
        ASAN_OPTIONS=detect_leaks=1 run_tests sanitizers -LE slow "${sanitizer_tests[@]}"
      }
      note $? "address, undefined-behaviour and leak sanitizers"
      show_pages sanitizers
      ;;
    windows)
      # Once in some hundred runs Wine itself hangs, so a test that runs out of time is run once more.
      step "Windows x64 build"
      build windows-x64 "${windows_targets[@]}" &&
        { step "Windows tests under Wine"; run_tests windows-x64 ${windows_tests[@]+"${windows_tests[@]}"} --repeat after-timeout:2; }
      note $? "Windows x64 under Wine"
      step "Windows x86 build"
      # Debian's 64-bit Wine runs no 32-bit programs. So the tables in the library files are tested everywhere, and
      # script hosts only where Wine can run them.
      build windows-x86 K19FPW K19Suite sample_host &&
        { step "Windows x86 library tests"; run_tests windows-x86 -R '_tables|script_'; }
      note $? "Windows x86 library"
      scripts/wine-run.sh --stop
      WINEPREFIX=$top/build/windows-x64/wine scripts/wine-run.sh --stop  # of the command's tests
      ;;
    office)
      # Configures again, because LibreOffice may have been installed since.
      step "the Office engine"
      cmake build/native >build/native.log && build native && run_tests native -L slow --no-tests=error
      note $? "the Office engine with LibreOffice"
      step "RTF documents as people see them"
      python3 tests/office/libreoffice/check_rtf.py build/native/src/cli/kavo samples ../shared/corpus
      result=$?
      [ "$result" = 77 ] && result=0
      note $result "RTF documents in LibreOffice and unrtf, texts and pages"
      step "Office documents as LibreOffice shows them"
      python3 tests/office/libreoffice/check_office.py build/native/src/cli/kavo ../shared/corpus 20
      result=$?
      [ "$result" = 77 ] && result=0
      note $result "Word documents, presentations and workbooks, texts and times"
      ;;
    scripts)
      step "scripts after a translation, by their own parsers"
      python3 tests/cli/check_scripts.py build/native/src/cli/kavo ../shared/corpus
      result=$?
      [ "$result" = 77 ] && result=0
      note $result "scripts after a translation"
      step "texts of scripts that were labelled by hand"
      python3 tests/cli/check_labels.py build/native/src/cli/kavo ../shared/corpus \
        "${XDG_CACHE_HOME:-$HOME/.cache}/kavo-pages"
      result=$?
      [ "$result" = 77 ] && result=0
      note $result "texts of scripts"
      ;;
    machines)
      step "a thousand documents, several workers and ssh"
      tests/machines/check_many_machines.sh build/native/src/cli/kavo
      result=$?
      [ "$result" = 77 ] && result=0
      note $result "many machines"
      ;;
    packages)
      step "the packages"
      tests/packaging/check_release.sh && scripts/release.sh >build/release.log 2>&1 &&
        tests/packaging/check_debian_packages.sh build/release
      note $? "two releases with the same bytes, the Debian package in a fresh system"
      tests/packaging/check_installer.sh build/release-work
      note $? "the Windows installer under Wine"
      ;;
    fuzz)
      step "fuzz targets"
      scripts/fuzz.sh --minutes 1
      note $? "fuzzing, a minute a target"
      ;;
    faults)
      step "failing calls, kills, a full disk, two runs at once"
      scripts/faults.sh
      note $? "the command disturbed from outside"
      ;;
    tidy)
      step "clang-tidy"
      scripts/tidy.sh
      note $? "clang-tidy"
      ;;
  esac
done

printf '== done in %s s\n' "$SECONDS"
printf '   %s\n' "${summary[@]}"
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
