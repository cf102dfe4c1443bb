#!/usr/bin/env python3
"""Measures what a page of a folder costs: prepare, the same again, rebuild.

    bench/folders.py [--kavo PROGRAM] [--folder FOLDER] [COUNT[:ROUNDS]...]

Makes COUNT small server pages, in one folder and in eight, and takes them through the command with one worker and with
two, ROUNDS times (1). Prints the median time and processor time for a page in milliseconds and the largest memory of a
process in MB. FOLDER is where the pages are made: on a disk the flushes count, in /dev/shm they do not. Without COUNT:
100:5 1000:3 10000.
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
FOLDERS_AND_JOBS = ((1, 1), (8, 1), (8, 2))
PREPARE = ["prepare", "site", "--recursive", "--output-dir", "work", "--source", "EN-US", "--target", "FR"]
STEPS = {"prepare": PREPARE, "again": PREPARE, "rebuild": ["rebuild", "work", "--recursive", "--output-dir", "out"]}


def make_pages(site, count, folders):
    paragraphs = "".join(f"<p>Text {number} of the page</p>" for number in range(10))
    for number in range(count):
        folder = site / f"f{number % folders}" if folders > 1 else site
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"page{number:05}.asp").write_text(
            f'<html><body><h1>Page {number}</h1>{paragraphs}<% MsgBox "Hello there" %></body></html>\r\n', newline="")


def run(command, top):
    """Seconds, seconds of the processor, and MB of a command in the folder."""
    began = time.monotonic()
    process = subprocess.Popen(command, cwd=top, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               env={**os.environ, "XDG_CONFIG_HOME": str(top / "config")})
    errors = process.stderr.read().decode(errors="replace")
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{' '.join(command)} failed: {errors}")
    return time.monotonic() - began, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("counts", nargs="*", default=["100:5", "1000:3", "10000"], metavar="COUNT[:ROUNDS]")
    parser.add_argument("--kavo", type=pathlib.Path, default=TOP / "build" / "native" / "src" / "cli" / "kavo")
    parser.add_argument("--folder", type=pathlib.Path)
    options = parser.parse_args()
    place = pathlib.Path(tempfile.mkdtemp(prefix="kavo-folders-", dir=options.folder))
    try:
        measure_all(options, place)
    finally:
        # Not between the rounds: ext4 without a journal makes files more slowly for minutes after many were removed.
        shutil.rmtree(place)


def measure_all(options, place):
    print(f"{'pages':>6} {'folders':>7} {'jobs':>4} {'step':8} {'ms a page':>9} {'processor':>9} {'MB':>4}")
    for each in options.counts:
        count, _, rounds = each.partition(":")
        measured = {}
        for number in range(int(rounds or 1)):
            for folders, jobs in FOLDERS_AND_JOBS:
                top = place / f"{count}-{number}-{folders}-{jobs}"
                make_pages(top / "site", int(count), folders)
                os.sync()  # what the pages themselves cost is not measured
                for step, arguments in STEPS.items():
                    command = [str(options.kavo.resolve()), *arguments, "-q", "--jobs", str(jobs)]
                    measured.setdefault((folders, jobs, step), []).append(run(command, top))
        for (folders, jobs, step), runs in measured.items():
            wall, processor = (statistics.median(column) / int(count) * 1000 for column in list(zip(*runs))[:2])
            print(f"{count:>6} {folders:7} {jobs:4} {step:8} {wall:9.2f} {processor:9.2f} "
                  f"{max(memory for *_, memory in runs):4.0f}", flush=True)


if __name__ == "__main__":
    main()
