#!/usr/bin/env bash
# Installs the Debian 12 packages that building and testing need, except those that are installed already.
#
#   scripts/setup.sh            everything that scripts/test.sh needs
#   scripts/setup.sh --native   what the kavo command and its tests need
#   scripts/setup.sh --debian   what scripts/release.sh --debian needs
#   scripts/setup.sh --release  what scripts/release.sh needs
#   scripts/setup.sh --full     also what scripts/test.sh --full and the benchmarks need
set -euo pipefail

native=(g++ cmake ninja-build ccache libgtest-dev libgmock-dev nlohmann-json3-dev libcli11-dev libexpat1-dev)
windows=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools googletest wine wine64 locales dpkg-dev
  fonts-dejavu-core fonts-ipafont-gothic)  # what dialogs are drawn and measured with
debian=(dpkg-dev python3)
release=(nsis zip unzip python3 faketime)
judge=(nodejs unrtf)
full=(debootstrap man-db fish zsh clang libclang-rt-14-dev clang-tidy libbenchmark-dev strace python3 tidy libxml2-utils php-symfony-translation php-cli perl
  translate-toolkit po4a omegat poppler-utils mono-mcs parallel openssh-client libwrap0 gcovr
  libreoffice-dev libreoffice-core-nogui libreoffice-writer-nogui libreoffice-calc-nogui libreoffice-impress-nogui)

case ${1:-} in
  --native) wanted=("${native[@]}") ;;
  "") wanted=("${native[@]}" "${windows[@]}" "${judge[@]}") ;;
  --debian) wanted=("${native[@]}" "${debian[@]}") ;;
  --release) wanted=("${native[@]}" "${windows[@]}" "${release[@]}") ;;
  --full) wanted=("${native[@]}" "${windows[@]}" "${release[@]}" "${judge[@]}" "${full[@]}") ;;
  *) echo "usage: setup.sh [--native | --debian | --release | --full]" >&2; exit 2 ;;
esac

# fetch_source PACKAGE: unpacks Debian's source of a package in the user's cache. The Windows builds compile it, since no
# binary package serves them. It is fetched from the package sources that the machine is set up with.
fetch_source() {
  local package=$1 folder=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-sources/$1 work version
  [ -f "$folder/complete" ] && return 0
  echo "== fetching the source of $package"
  work=$(mktemp -d)
  mkdir -p "$work/parts" "$work/lists" "$work/cache"
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$list" ] || sed -n 's/^deb[[:space:]]/deb-src /p' "$list" >> "$work/sources.list"
  done
  touch "$work/sources.list"
  for list in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$list" ] || sed 's/^Types:.*/Types: deb-src/' "$list" > "$work/parts/$(basename "$list")"
  done
  local own=(-o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts="$work/parts"
    -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User="$(id -un)")
  # Package sources without source packages may fail here. What counts is whether the package is found below.
  apt-get "${own[@]}" update >"$work/log" 2>&1 || true
  # The newest version that can be fetched: a mirror may list one that it does not hold.
  for version in $(apt-cache "${own[@]}" showsrc --only-source "$package" | sed -n 's/^Version: //p' | sort -rV); do
    if (cd "$work" && apt-get "${own[@]}" source "$package=$version" >>"$work/log" 2>&1); then
      rm -rf "$folder"
      mkdir -p "$(dirname "$folder")"
      mv "$(find "$work" -maxdepth 1 -type d -name "$package-*")" "$folder"
      touch "$folder/complete"
      rm -rf "$work"
      return 0
    fi
  done
  tail -20 "$work/log" >&2
  rm -rf "$work"
  echo "setup.sh: the source of $package could not be fetched (see above); check the machine's package sources" >&2
  return 1
}

missing=()
for package in "${wanted[@]}"; do
  # Node may have been installed in another way, so look for the command, not for the package.
  [ "$package" = nodejs ] && command -v node npm >/dev/null && continue
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
# Debian's nodejs comes without npm.
command -v npm >/dev/null || case " ${wanted[*]} " in *" nodejs "*) missing+=(npm) ;; esac

if [ ${#missing[@]} -gt 0 ]; then
  echo "== installing ${missing[*]}"
  as_root=()
  [ "$(id -u)" = 0 ] || as_root=(sudo)
  log=$(mktemp)
  trap 'rm -f "$log"' EXIT
  export DEBIAN_FRONTEND=noninteractive
  if ! { "${as_root[@]}" apt-get update && "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -20 "$log" >&2
    echo "setup.sh: the packages above could not be installed; install them by hand and run this again" >&2
    exit 1
  fi
fi

case " ${wanted[*]} " in *" googletest "*) fetch_source expat ;; esac

# What judges rebuilt scripts of Java (tests/cli/check_scripts.py) and the host in PowerShell (tests/cli/check_hosts.py).
parsers=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-npm
case " ${wanted[*]} " in
  *" php-cli "*)
    [ -d "$parsers/node_modules/java-parser" ] || {
      mkdir -p "$parsers"
      npm install --silent --prefix "$parsers" java-parser@3.0.1
    }
    [ -d "$parsers/node_modules/tree-sitter-powershell" ] ||
      npm install --silent --ignore-scripts --prefix "$parsers" web-tree-sitter@0.25.10 tree-sitter-powershell@0.26.4
    # The server of tests/machines, unpacked only: installed, it would begin to serve.
    server=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-sshd
    [ -d "$server/usr" ] || {
      mkdir -p "$server"
      (cd "$server" && apt-get download openssh-server >/dev/null 2>&1 && dpkg-deb -x openssh-server_*.deb .) ||
        echo "setup.sh: openssh-server could not be fetched; work on several machines is not tested over ssh" >&2
    }
    # Pages whose literals were labelled by hand (tests/cli/check_labels.py); they are unpacked only.
    pages=${XDG_CACHE_HOME:-$HOME/.cache}/kavo-pages
    for package in phpldapadmin tt-rss tomcat10-examples tomcat10-admin mlmmj-php-web mlmmj-php-web-admin \
      postfixadmin slbackup-php bandwidthd-pgsql php-getid3 nagios4-cgi nagvis php-fpdf phpwebcounter collectd-core \
      ganglia-webfrontend roundcube-core phpsysinfo shaarli davical dokuwiki cacti ocsinventory-reports wordpress \
      zoph zoneminder smarty3 simplesamlphp php-cas php-geshi phpmyadmin; do
      [ -d "$pages/$package" ] || {
        mkdir -p "$pages/download"
        (cd "$pages/download" && apt-get download "$package" >/dev/null 2>&1 &&
          dpkg-deb -x "$package"_*.deb "../$package.new" && mv "../$package.new" "../$package") ||
          echo "setup.sh: $package could not be fetched; its pages are left out" >&2
      }
    done
    for package in kindeditor@4.1.10 editor.md@1.5.0; do
      folder=$pages/${package%@*}
      [ -d "$folder" ] || {
        mkdir -p "$pages/download" "$folder.new"
        (cd "$pages/download" && tar xzf "$(npm pack --silent "$package")" -C "$folder.new" && mv "$folder.new" "$folder") ||
          echo "setup.sh: $package could not be fetched; its pages are left out" >&2
      }
    done
    ;;
esac
