#!/usr/bin/env python3
"""What describes the command is what its help says: docs/verbs.md, the manual pages, the completions. The help's examples
are right usage.

    check_descriptions.py KAVO

The completions of bash are tried, and those of fish where it is installed.
"""
import gzip
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[2]
MAKER = TOP / "scripts" / "make-command-docs.py"
ASKED = {  # what is typed, and what it becomes
    "kavo reb": ["rebuild"],
    "kavo html ": ["protect", "restore", "validate"],
    "kavo prepare --scr": ["--scripts"],
    "kavo prepare a.asp --scripts ": ["all", "likely", "none"],
    "kavo settings highlight.m": ["highlight.match"],
}


def make(program, kind, place):
    subprocess.run([sys.executable, MAKER, program, kind, place], check=True)


def in_bash(file, line):
    words = line.split(" ")
    script = (f"source {file}; COMP_WORDS=({' '.join(repr(word) for word in words)}); COMP_CWORD={len(words) - 1}; "
              f"_kavo kavo {words[-1]!r} {words[-2]!r}; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
    return subprocess.run(["bash", "-c", script], check=True, capture_output=True, text=True).stdout.split()


def in_fish(file, line):
    script = f"source {file}; complete -C {line!r}"
    answer = subprocess.run(["fish", "-c", script], check=True, capture_output=True, text=True).stdout
    return [found.split("\t")[0] for found in answer.splitlines()]


def wrong_examples(program, folder):
    """In an empty folder the files of an example are missing, but its options must be right."""
    described = json.loads(subprocess.run([program, "help", "--json"], check=True, capture_output=True).stdout)
    examples = [example for verb in described["verbs"] for example in verb["examples"]]
    surroundings = {"PATH": f"{pathlib.Path(program).parent}:/usr/bin:/bin", "HOME": str(folder), "LC_ALL": "C.UTF-8"}
    wrong = [] if len(examples) > 20 else ["the help has hardly any examples"]
    for example in examples:
        ran = subprocess.run(["bash", "-c", example], cwd=folder, env=surroundings, stdin=subprocess.DEVNULL,
                             capture_output=True, text=True)
        if ran.returncode not in (0, 1):  # done, or the files are missing
            wrong.append(f"an example of the help ends with {ran.returncode}: {example}: {ran.stderr}")
    return wrong


def main():
    program = sys.argv[1]
    faults = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        make(program, "reference", folder / "verbs.md")
        if (folder / "verbs.md").read_text() != (TOP / "docs" / "verbs.md").read_text():
            faults.append("docs/verbs.md is not what the help says: scripts/make-command-docs.py KAVO reference docs/verbs.md")
        make(program, "man", folder / "man")
        verbs = [line.split("## kavo ")[1] for line in (TOP / "docs" / "verbs.md").read_text().splitlines()
                 if line.startswith("## kavo ")]
        for verb in verbs:
            page = folder / "man" / f"kavo-{verb.replace(' ', '-')}.1.gz"
            if "SYNOPSIS" not in gzip.decompress(page.read_bytes()).decode():
                faults.append(f"the manual page of {verb} has no synopsis")
        (folder / "empty").mkdir()
        faults += wrong_examples(program, folder / "empty")
        make(program, "completion", folder / "completion")
        shells = [("bash", in_bash, folder / "completion" / "kavo")]
        if shutil.which("fish"):
            shells.append(("fish", in_fish, folder / "completion" / "kavo.fish"))
        for shell, ask, file in shells:
            for line, expected in ASKED.items():
                if (found := sorted(ask(file, line))) != expected:
                    faults.append(f"{shell}: {line!r} becomes {found}, not {expected}")
    print("\n".join(faults) or f"{len(verbs)} verbs described as their help says")
    sys.exit(1 if faults or len(verbs) < 20 else 0)


main()
