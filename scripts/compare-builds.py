#!/usr/bin/env python3
"""Compares two builds of the `kavo` command on real documents: the files they write, messages, exit codes and times.

    scripts/compare-builds.py BEFORE AFTER [--corpus FOLDER] [--only WORD] [--times [MEGABYTES]]

BEFORE and AFTER are two `kavo` programs. Each takes every document of the corpus through its commands in a folder of the
same name; then both folders are compared byte for byte, with exit codes, results and messages. Every difference is
listed. Exits with 1 when there is one.

--times compares whole processes instead: documents of 50 MB (or MEGABYTES) made by bench/make_document, 15 runs of each
command, the two programs in turn; prints the medians and their ratio.
"""
import argparse
import filecmp
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
PREPARE = ["prepare", "{file}", "--source", "EN-US", "--target", "FR"]


GROUPS = ("html", "mif", "rtf")
# These converters begin with the document itself; the others continue in the folder of the step before.
FRESH = ("protect", "validate", "extract")


def road(*tuds):
    """Prepare, fill with a test translation, rebuild the first document."""
    return [PREPARE, ["pseudo", *tuds], ["stats", *tuds], ["rebuild", tuds[0]], ["verify", "{file}"]]


def steps(path):
    """The commands of one document, by its type. `{file}`, `{stem}` and `{ext}` stand for parts of its name."""
    extension = path.suffix.lower()[1:]
    if extension in ("asp", "jsp", "php"):
        # Where both programs refuse a document, their refusals are compared.
        return [["html", "protect", "{file}"], ["html", "restore", "{stem}_{ext}.htm"], *road(
            "{stem}_{ext}_htm_FR.tud", "{stem}_{ext}_scr_FR.tud")]
    if extension in ("htm", "html"):
        return [["html", "validate", "{file}"], *road("{stem}_{ext}_htm_FR.tud", "{stem}_{ext}_scr_FR.tud")]
    if extension == "mif":
        return [["mif", "extract", "{file}"], ["mif", "merge", "{file}"], *road("{stem}_mif_FR.tud")]
    if extension == "rtf":
        return [["rtf", "extract", "{file}"], ["rtf", "insert", "{file}"], PREPARE]
    if extension == "txt":
        return road("{stem}_txt_FR.tud")
    return [PREPARE]


def run_all(program, documents, folder):
    """Takes each document through its commands in a folder of its own; returns messages and exit codes by document and step."""
    said = {}
    for document in documents:
        place = folder / document.parent.name / document.name
        place.mkdir(parents=True)
        for number, step in enumerate(steps(document)):
            # Each converter works on a copy of its own, so that its output is not in the way of the other commands.
            at = place / "road"
            if step[0] in GROUPS:
                at = place / str(number if step[1] in FRESH else number - 1)
            if not at.exists():
                at.mkdir()
                shutil.copy(document, at / document.name)
            names = {"file": document.name, "stem": document.stem, "ext": document.suffix[1:]}
            words = [program, *(word.format(**names) for word in step)]
            ran = subprocess.run(words, cwd=at, stdin=subprocess.DEVNULL, capture_output=True, timeout=300,
                                 env={**os.environ, "HOME": str(folder), "XDG_CONFIG_HOME": str(folder / "config")})
            said[f"{document.parent.name}/{document.name}: {' '.join(step[:2])}"] = (ran.returncode, ran.stdout, ran.stderr)
    return said




def files_below(folder):
    return {str(file.relative_to(folder)): file for file in folder.rglob("*") if file.is_file()}


def compare_outputs(before, after, documents):
    top = pathlib.Path(tempfile.mkdtemp(prefix="kavo-compare-"))
    results = {}
    for name, program in (("before", before), ("after", after)):
        work = top / "work"  # one name for both programs, since results and messages hold paths
        work.mkdir()
        results[name] = run_all(program, documents, work)
        work.rename(top / name)
    differences = 0
    for key, first in results["before"].items():
        second = results["after"][key]
        for what, one, other in zip(("exit code", "results", "messages"), first, second):
            if one != other:
                differences += 1
                print(f"{key}: {what} differ\n  before: {one!r:.400}\n  after:  {other!r:.400}")
    first, second = files_below(top / "before"), files_below(top / "after")
    for name in sorted(first.keys() | second.keys()):
        if name not in first or name not in second:
            differences += 1
            print(f"{name}: only {'after' if name not in first else 'before'}")
        elif not filecmp.cmp(first[name], second[name], shallow=False):
            differences += 1
            print(f"{name}: bytes differ")
    failed = sum(code not in (0, 3) for code, _, _ in results["before"].values())
    print(f"{len(documents)} documents, {len(results['before'])} commands ({failed} refused by the first program), "
          f"{len(first)} files: {differences} differences")
    if differences:
        print(f"both are kept in {top}")
    else:
        shutil.rmtree(top)
    return differences == 0


# The commands that are timed, in order, in one folder for each kind of document.
TIMED = (("page", "source.asp", [["html", "protect", "{}"], ["html", "restore", "source_asp.htm"]]),
         ("html", "source.htm", [["html", "validate", "{}"]]),
         ("mif", "source.mif", [["mif", "extract", "{}"], ["mif", "merge", "{}"]]),
         ("rtf", "source.rtf", [["rtf", "extract", "{}"], ["rtf", "insert", "{}"]]),
         ("text", "source.txt", road("source_txt_FR.tud")[:2] + road("source_txt_FR.tud")[3:4]))


def time_once(program, source, commands):
    """The seconds of each command, run one after the other on a copy of the document in a folder of their own."""
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(source, folder)
        seconds = []
        for command in commands:
            words = [program, *(word.format(source.name, file=source.name) for word in command)]
            started = time.perf_counter()
            subprocess.run(words, cwd=folder, check=True, stdin=subprocess.DEVNULL, capture_output=True)
            seconds.append(time.perf_counter() - started)
        return seconds


def compare_times(before, after, maker, megabytes, only):
    runs = 15
    print(f"{megabytes} MB, {runs} runs in turn, seconds (median)")
    print(f"{'command':<22}{'before':>9}{'after':>9}{'ratio':>8}")
    for kind, name, commands in TIMED:
        if only not in name:
            continue
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / name
            with source.open("wb") as document:
                subprocess.run([maker, kind, str(megabytes)], check=True, stdout=document)
            times = {before: [], after: []}
            for _ in range(runs):
                for program in (before, after):
                    times[program].append(time_once(program, source, commands))
        for number, command in enumerate(commands):
            first, second = (statistics.median(run[number] for run in times[program]) for program in (before, after))
            print(f"{kind + ' ' + command[0 if command[0] not in GROUPS else 1]:<22}{first:>9.3f}{second:>9.3f}"
                  f"{second / first:>8.3f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("before")
    parser.add_argument("after")
    parser.add_argument("--corpus", default=TOP.parent / "shared" / "corpus", type=pathlib.Path)
    parser.add_argument("--only", default="", help="documents, or commands of --times, whose name holds this")
    parser.add_argument("--times", nargs="?", const=50, type=int, metavar="MEGABYTES")
    parser.add_argument("--maker", default=TOP / "build" / "bench" / "bench" / "make_document",
                        help="the program that makes the documents of --times")
    options = parser.parse_args()
    before, after = (str(pathlib.Path(program).resolve()) for program in (options.before, options.after))
    if options.times:
        compare_times(before, after, options.maker, options.times, options.only)
        return 0
    documents = sorted(file for file in options.corpus.glob("*/*") if file.is_file() and options.only in str(file))
    if not documents:
        print(f"{options.corpus} holds no document", file=sys.stderr)
        return 2
    return 0 if compare_outputs(before, after, documents) else 1


if __name__ == "__main__":
    sys.exit(main())
