#!/usr/bin/env python3
"""Kills runs of several processes, and lets two runs work in one folder.

check_jobs.py KAVO [RUNS] [PAIRS]

A run with --jobs 2 is killed at RUNS random moments; the same command then completes it. Its workers do not outlive
it. RUNS times one worker is killed: that costs one document at most, which is named. Two processes prepare two
languages in one folder PAIRS times. Afterwards every file is there with the bytes of an undisturbed run, nothing is
left over, and a document that was complete before the kill was not made a second time.
"""
import os
import random
import signal
import shutil
import subprocess
import sys
import tempfile
import time

KAVO = os.path.abspath(sys.argv[1])
RUNS = int(sys.argv[2]) if len(sys.argv) > 2 else 50
PAIRS = int(sys.argv[3]) if len(sys.argv) > 3 else 20
FOLDERS, PAGES = 4, 8
LONGEST = 60  # seconds that a run may take


def make_site(top):
    for folder in range(FOLDERS):
        place = os.path.join(top, f"part{folder}")
        os.makedirs(place)
        for page in range(PAGES):
            with open(os.path.join(place, f"page{page}.asp"), "w") as file:
                file.write("<html><body>" + "".join(f"<p>Text {i} of page {page}</p>" for i in range(20)) +
                           f"<% MsgBox \"Hello from {page}\" %></body></html>\r\n")


def prepare(languages, jobs, top, **more):
    return subprocess.Popen([KAVO, "prepare", "site", "-r", "--output-dir", "work", "--source", "EN-US", "--target",
                             languages, "--jobs", str(jobs)], cwd=top, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            text=True, **more)


def files_of(top):
    found = {}
    for folder, _, names in os.walk(top):
        for name in names:
            path = os.path.join(folder, name)
            found[os.path.relpath(path, top)] = os.stat(path).st_mtime_ns
    return found


def bytes_of(top):
    found = {}
    for path in files_of(top):
        with open(os.path.join(top, path), "rb") as file:
            found[path] = file.read()
    return found


def check_documents(what, work, undisturbed):
    """The files of an undisturbed run are there, byte for byte, and no others."""
    found = bytes_of(work)
    check(what + ": the same files", found.keys() == undisturbed.keys(), found.keys() ^ undisturbed.keys())
    others = [path for path in found if found[path] != undisturbed[path]]
    check(what + ": the same bytes", not others, others)


def rebuilt(top, name):
    subprocess.run([KAVO, "rebuild", "work", "-r", "--output-dir", name + "-{lang}", "--jobs", "1"], cwd=top, check=True,
                   capture_output=True)
    texts = {}
    for language in ("FR", "DE"):
        folder = os.path.join(top, f"{name}-{language}")
        for path in files_of(folder):
            with open(os.path.join(folder, path), "rb") as file:
                texts[language, path] = file.read()
        shutil.rmtree(folder)
    return texts


def check(what, condition, more=""):
    if not condition:
        print("FAILED:", what, more)
        sys.exit(1)


def workers_of(run):
    """The processes that this one has started."""
    found = []
    for name in os.listdir("/proc"):
        try:
            with open(f"/proc/{name}/stat") as file:
                if name.isdigit() and int(file.read().rpartition(")")[2].split()[1]) == run.pid:
                    found.append(int(name))
        except (OSError, ValueError):
            pass
    return found


def wait_for_end(workers):
    end = time.time() + LONGEST
    while any(os.path.exists(f"/proc/{each}") for each in workers):
        check("the workers of a run that was killed end", time.time() < end)
        time.sleep(0.01)


def wait_for_a_folder(work, run):
    """Until all names of one folder have been given, or the run has ended."""
    last = [f"{work}/part{folder}/page{PAGES - 1}_asp_scr_DE.tud" for folder in range(FOLDERS)]
    while run.poll() is None and not any(os.path.exists(path) for path in last):
        pass


def complete_documents(files):
    """Of each page whose documents of both languages are there."""
    pages = [f"part{folder}/page{page}" for folder in range(FOLDERS) for page in range(PAGES)]
    parts = [f"_asp_{part}_{language}.tud" for part in ("htm", "scr") for language in ("FR", "DE")]
    return {page + part for page in pages if all(page + each in files for each in parts) for part in parts}


def main():
    random.seed(14)
    with tempfile.TemporaryDirectory() as top:
        make_site(os.path.join(top, "site"))
        work = os.path.join(top, "work")
        duration = LONGEST
        for _ in range(3):
            shutil.rmtree(work, ignore_errors=True)
            started = time.time()
            run = prepare("FR,DE", 2, top)
            errors = run.communicate(timeout=LONGEST)[1]
            check("a whole run", run.returncode == 0, errors)
            duration = min(duration, time.time() - started)
        undisturbed = bytes_of(work)
        expected = rebuilt(top, "whole")
        check("all pages come back", len(expected) == 2 * FOLDERS * PAGES)
        killed = complete = 0
        for number in range(RUNS):
            shutil.rmtree(work)
            run = prepare("FR,DE", 2, top, start_new_session=True)
            time.sleep(random.random() * duration)
            killed += run.poll() is None
            workers = workers_of(run)
            # Every second time all of its processes, else only the one that was started.
            try:
                os.killpg(run.pid, signal.SIGKILL) if number % 2 else os.kill(run.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            run.communicate(timeout=LONGEST)
            wait_for_end(workers)
            before = files_of(work) if os.path.isdir(work) else {}
            done = complete_documents(before)
            complete += len(done)
            run = prepare("FR,DE", 2, top)
            errors = run.communicate(timeout=LONGEST)[1]
            check("the same command again", run.returncode == 0, errors)
            after = files_of(work)
            check_documents("the same command again", work, undisturbed)
            twice = [name for name in done if after[name] != before[name]]
            check("nothing done twice", not twice, twice)
            check("complete documents", rebuilt(top, "again") == expected)
        print(f"{RUNS} kills, {killed} of them before the end; {complete} documents were complete and stayed")
        lost = 0
        for number in range(RUNS):
            shutil.rmtree(work)
            run = prepare("FR,DE", 2, top)
            # Every second time where it goes on to its next folder.
            if number % 2:
                wait_for_a_folder(work, run)
                time.sleep(random.random() * duration / FOLDERS / PAGES)
            else:
                time.sleep(random.random() * duration)
            for worker in workers_of(run)[:1]:
                try:
                    os.kill(worker, signal.SIGKILL)
                except ProcessLookupError:
                    pass  # it had just ended
            output, errors = run.communicate(timeout=LONGEST)
            named = sum("ended too early" in line for line in errors.splitlines() if line.startswith("site/"))
            check("one document is lost at most, or none began", named in (0, 1, FOLDERS * PAGES // 2), errors)
            check("what is lost is a failure", run.returncode == (1 if named else 0), errors)
            lost += named == 1
            left = [name for name in files_of(work) if ".kavo-run" in name] if os.path.isdir(work) else []
            check("the folders are settled", not left, left)
            run = prepare("FR,DE", 2, top)
            errors = run.communicate(timeout=LONGEST)[1]
            check("the same command again", run.returncode == 0, errors)
            check_documents("after a worker was killed", work, undisturbed)
        print(f"{RUNS} workers killed, {lost} of them in the middle of a document")
        for _ in range(PAIRS):
            shutil.rmtree(work)
            runs = [prepare(language, 1, top) for language in ("FR", "DE")]
            for run in runs:
                errors = run.communicate(timeout=LONGEST)[1]
                check("two processes", run.returncode == 0, errors)
            check_documents("both languages", work, undisturbed)
            check("complete documents of both", rebuilt(top, "pair") == expected)
        print(f"{PAIRS} times two processes in one folder")


main()
