#!/usr/bin/env bash
# Work on several machines, as docs/many-machines.md shows it: its commands are taken from there and run on 1,000 documents
# in 50 folders, by two workers here and two over ssh.
#
#   check_many_machines.sh KAVO
#
# The other machine is this one: an ssh server on a port of its own, with keys that are made for it. Exits with 77 where GNU
# parallel is missing (scripts/setup.sh --full). Where no ssh server can run, all four workers are local, and it says so.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
kavo=$(realpath "$1")
command -v parallel >/dev/null || { echo "skipped: GNU parallel is not installed (scripts/setup.sh --full)"; exit 77; }
fail() { echo "FAILED: $*" >&2; exit 1; }

work=$(mktemp -d)
server=
finish() {
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT
cache=${XDG_CACHE_HOME:-$HOME/.cache}
export HOME=$work/home PATH=${kavo%/*}:$PATH LC_ALL=C.UTF-8
mkdir -p "$HOME/.parallel" "$work/ssh" "$work/run"
touch "$HOME/.parallel/will-cite"

# start_server: an ssh server for this user alone. As root it wants a user "sshd" and a folder below /run, which it gets in
# a mount namespace of its own.
start_server() {
  local sshd=/usr/sbin/sshd port
  [ -x "$sshd" ] || sshd=$cache/kavo-sshd/usr/sbin/sshd
  [ -x "$sshd" ] && command -v ssh ssh-keygen >/dev/null || return 1
  ssh-keygen -q -t ed25519 -N '' -f "$work/ssh/host"
  ssh-keygen -q -t ed25519 -N '' -f "$work/ssh/key"
  cp "$work/ssh/key.pub" "$work/ssh/authorized_keys"
  port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
  cat >"$work/ssh/config" <<END
Port $port
ListenAddress 127.0.0.1
HostKey $work/ssh/host
PidFile none
AuthorizedKeysFile $work/ssh/authorized_keys
StrictModes no
UsePAM no
PasswordAuthentication no
PermitRootLogin prohibit-password
MaxStartups 100
MaxSessions 100
SetEnv PATH=$PATH HOME=$HOME LC_ALL=C.UTF-8
END
  local start=("$sshd" -D -e -f "$work/ssh/config")
  if [ "$(id -u)" = 0 ]; then
    { grep -v '^sshd:' /etc/passwd; echo 'sshd:x:65534:65534::/run/sshd:/usr/sbin/nologin'; } >"$work/ssh/passwd"
    unshare --mount bash -c "mount --bind '$work/ssh/passwd' /etc/passwd && mount -t tmpfs none /run && mkdir -m 755 /run/sshd &&
      exec $(printf '%q ' "${start[@]}")" >"$work/ssh/log" 2>&1 &
  else
    "${start[@]}" >"$work/ssh/log" 2>&1 &
  fi
  server=$!
  cat >"$work/ssh/client" <<END
Host build2
HostName 127.0.0.1
Port $port
IdentityFile $work/ssh/key
StrictHostKeyChecking no
UserKnownHostsFile /dev/null
LogLevel ERROR
END
  export PARALLEL_SSH="ssh -F $work/ssh/client"
  for _ in $(seq 50); do
    $PARALLEL_SSH build2 true 2>/dev/null && return 0
    sleep 0.1
  done
  cat "$work/ssh/log" >&2
  return 1
}

cd "$work"
remote=0
if start_server; then
  remote=1
  printf '2/:\n2/build2\n' >workers
else
  echo "no ssh server here: all workers are local"
  printf '4/:\n' >workers
fi

# The documents; three folders hold one that cannot be prepared.
for folder in $(seq -w 50); do
  mkdir -p "site/part$folder"
  for number in $(seq -w 18); do
    printf 'Text %s of folder %s.\n' "$number" "$folder" >"site/part$folder/text$number.txt"
  done
  cp "$top/samples/index.asp" "$top/samples/manual.mif" "site/part$folder"
done
for folder in 07 23 41; do
  printf 'LANGUAGE LANG_GERMAN, SUBLANG_GERMAN\nSTRINGTABLE\nBEGIN\n  1 "Hallo"\nEND\n' >"site/part$folder/bad.rc"
done
documents=$(find site -type f | wc -l)
[ "$documents" = 1003 ] || fail "$documents documents"

mapfile -t commands < <(sed -n 's/^\$ //p' "$top/docs/many-machines.md")
[ ${#commands[@]} = 4 ] || fail "docs/many-machines.md has ${#commands[@]} commands, not 4"
eval "${commands[0]}"
[ "$(wc -l <folders)" = 50 ] || fail "not 50 folders"
begin=$SECONDS
code=0
eval "${commands[1]}" || code=$?
echo "1,003 documents: $((SECONDS - begin)) s"
[ "$code" = 3 ] || fail "parallel ended with $code, not with 3 failed jobs"

# Each document has one line, and each line is an object.
check_results() {  # check_results LINES-OF-DOCUMENTS FAILED
  python3 - "$1" "$2" <<'END'
import collections, json, sys
lines = [json.loads(line) for line in open("results.jsonl")]
named = [line for line in lines if line["file"]]
failed = [line["file"] for line in named if not line["done"]]
done = collections.Counter(line["file"] for line in named if line["done"])
assert len(named) == int(sys.argv[1]), f"{len(named)} lines"
assert len(failed) == int(sys.argv[2]), failed
assert done and max(done.values()) == 1, [name for name, count in done.items() if count > 1]
END
}
check_results 1003 3
[ "$(eval "${commands[2]}" | wc -l)" = 3 ] || fail "not three failed documents"
awk 'NR > 1 {print $2}' jobs.log | sort | uniq -c
if [ "$remote" = 1 ]; then
  [ "$(awk 'NR > 1 && $2 != ":"' jobs.log | wc -l)" -gt 0 ] || fail "nothing was done over ssh"
fi

# One is mended, two stay bad. Only three folders are run again, and in them only the three documents.
sed -i 's/LANG_GERMAN/LANG_ENGLISH/; s/SUBLANG_GERMAN/SUBLANG_ENGLISH_US/' site/part07/bad.rc
code=0
eval "${commands[3]}" || code=$?
[ "$code" = 2 ] || fail "the second run ended with $code, not with 2 failed jobs"
check_results 1006 5

# All workers together made what one alone makes.
while read -r folder; do
  kavo prepare "$folder" --output-dir "alone/$folder" --source EN-US --target FR --quiet --no-project >alone.log 2>&1 || true
done <folders
diff -r work alone || fail "several workers made something else than one"
echo "all documents are what one worker makes of them"
