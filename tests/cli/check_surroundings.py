#!/usr/bin/env python3
"""Takes documents through the whole road in poor surroundings, and compares with what comes of good ones.

check_surroundings.py KAVO

In some of them (no HOME, 300 MB of memory) everything must work, with the same bytes. In others (ten open files, a
folder that nobody may write to) a verb may fail: then with a message that names a file and the system's reason, nothing
that was there has changed, and nothing is left over.
"""
import os
import pathlib
import pwd
import resource
import shutil
import subprocess
import sys
import tempfile

KAVO = os.path.abspath(sys.argv[1])
SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "samples"
SOURCES = {"index.asp": "index_asp_htm_FR.tud", "list.jsp": "list_jsp_htm_FR.tud", "manual.mif": "manual_mif_FR.tud",
           "letter.rtf": "letter_rtf_FR.tud", "notice.txt": "notice_txt_FR.tud", "app.rc": "app_rc_FR.tud"}
LARGE = "large.txt"
LANGUAGES = ("--source", "EN-US", "--target", "FR")
LONG_NAME = "a" * 32_000 + ".txt"
DEEP_FOLDER = "folder/" * 4_600 + "a.txt"  # 32,000 characters
failures = []


def limit(kind, most):
    return lambda: resource.setrlimit(kind, (most, most))


def become_nobody():
    """Permissions do not bind root."""
    if os.getuid() == 0:
        os.setuid(pwd.getpwnam("nobody").pw_uid)


class Place:
    """Copies of the samples in a folder of their own."""

    def __init__(self, top):
        self.top = pathlib.Path(top)
        self.work = self.top / "work"
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir(parents=True)
        for name in SOURCES:
            shutil.copy(SAMPLES / name, self.work)
        for name in ("home", "tmp"):
            (self.top / name).mkdir(exist_ok=True)
        self.variables = {"HOME": str(self.top / "home"), "TMPDIR": str(self.top / "tmp"), "LC_ALL": "C.UTF-8"}

    def run(self, *arguments, prepare_process=None, folder=None):
        return subprocess.run([KAVO, *arguments], cwd=folder or self.work, env=self.variables, text=True, timeout=600,
                              preexec_fn=prepare_process, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, errors="replace")

    def verbs(self, documents):
        """The command lines of the road for one document after the other."""
        for source, tud in documents.items():
            yield ("prepare", source, *LANGUAGES)
            yield ("pseudo", tud)
            yield ("rebuild", tud)

    def files(self):
        found = {}
        for folder, folders, names in os.walk(self.top):
            for name in folders:
                found[os.path.relpath(os.path.join(folder, name), self.top)] = None
            for name in names:
                path = pathlib.Path(folder, name)
                found[str(path.relative_to(self.top))] = path.read_bytes()
        return found


def fail(case, run, why):
    failures.append(f"{case}: kavo {' '.join(run.args[1:])[:80]}: {why}\nexit code {run.returncode}\n{run.stdout}{run.stderr}")


def check_works(case, top, wanted, documents=None, variables=None, prepare_process=None, folder=None):
    """The road works here and gives the same bytes."""
    place = Place(top)
    for name, value in (variables or {}).items():
        if value is None:
            place.variables.pop(name)
        else:
            place.variables[name] = value
    if LARGE in (documents or {}):
        make_large(place)
    if folder:
        os.symlink(place.work, folder)
    for words in place.verbs(documents or SOURCES):
        run = place.run(*words, prepare_process=prepare_process, folder=folder)
        if run.returncode != 0:
            return fail(case, run, "failed")
    results = {name: content for name, content in place.files().items() if name.startswith("work/")}
    if results != wanted:
        different = [name for name in results.keys() | wanted.keys() if results.get(name) != wanted.get(name)]
        fail(case, run, f"other files than in good surroundings: {', '.join(sorted(different))}")
    return None


def check_whole(case, top, reason, variables=None, prepare_process=None, must_fail=False):
    """Each verb works or fails whole, with the reason. Of a verb that failed the rest is done in good surroundings."""
    place = Place(top)
    good = dict(place.variables)
    failed = 0
    for words in place.verbs(SOURCES):
        before = place.files()
        place.variables = {**good, **(variables or {})}
        run = place.run(*words, prepare_process=prepare_process)
        place.variables = good
        if run.returncode == 0:
            continue
        failed += 1
        if run.returncode < 0 or run.returncode >= 128:
            fail(case, run, "ended by a signal")
        elif reason not in run.stderr or not any(name in run.stderr for name in (*SOURCES, *SOURCES.values())):
            fail(case, run, f"the message names no document, or not the reason ({reason})")
        now = place.files()
        if now != before:
            different = [name for name in now.keys() | before.keys() if now.get(name) != before.get(name)]
            fail(case, run, f"it failed and changed {', '.join(sorted(different))}")
        if place.run(*words).returncode != 0:
            fail(case, run, "afterwards it does not work in good surroundings")
    if must_fail and not failed:
        failures.append(f"{case}: every verb succeeded, so this case shows nothing")


def check_refused(case, top, *arguments):
    """A name that the system cannot take: a message, not a crash."""
    place = Place(top)
    before = place.files()
    run = place.run(*arguments)
    if run.returncode not in (1, 2) or "File name too long" not in run.stderr:
        fail(case, run, "it should fail with the system's reason")
    if place.files() != before:
        fail(case, run, "it changed files")


def check_deep_current_folder(top):
    """Its path has 32,000 characters, so nothing in it can be opened by its whole path."""
    place = Place(top)

    def go_down():
        for _ in range(128):
            os.makedirs("d" * 250, exist_ok=True)
            os.chdir("d" * 250)

    run = place.run("prepare", "index.asp", *LANGUAGES, prepare_process=go_down)
    if run.returncode != 1 or "the current folder cannot be found: its path is longer" not in run.stderr:
        fail("a current folder of 32,000 characters", run, "it should fail and say that the path is too long")
    subprocess.run(["rm", "-r", place.work], check=True)  # Python's own removal uses whole paths


def make_large(place):
    """A text of 5 MB."""
    paragraph = "Rinse the filter of the pump every month, and renew it when it is torn.\r\n\r\n"
    (place.work / LARGE).write_bytes(paragraph.encode() * (5_000_000 // len(paragraph)))


def results_of(top, documents):
    place = Place(top)
    if LARGE in documents:
        make_large(place)
    for words in place.verbs(documents):
        run = place.run(*words)
        if run.returncode != 0:
            sys.exit(f"in good surroundings: {run.args}: {run.stderr}")
    return {name: content for name, content in place.files().items() if name.startswith("work/")}


def main():
    with tempfile.TemporaryDirectory(prefix="kavo-surroundings-", dir="/dev/shm" if os.path.isdir("/dev/shm") else None) as top:
        os.chmod(top, 0o755)
        wanted = results_of(f"{top}/good", SOURCES)
        assert len(wanted) > 3 * len(SOURCES)
        check_works("no HOME", f"{top}/1", wanted, variables={"HOME": None})
        check_works("a HOME that is not there", f"{top}/2", wanted, variables={"HOME": "/nowhere"})
        check_works("a HOME that is no folder", f"{top}/3", wanted, variables={"HOME": "/dev/null"})
        check_works("no TMPDIR", f"{top}/4", wanted, variables={"TMPDIR": None})
        check_works("sixteen open files", f"{top}/5", wanted, prepare_process=limit(resource.RLIMIT_NOFILE, 16))
        check_works("a link to the folder", f"{top}/6", wanted, folder=f"{top}/link")
        large = {LARGE: "large_txt_FR.tud"}
        check_works("300 MB of memory", f"{top}/7", results_of(f"{top}/good", large), documents=large,
                    prepare_process=limit(resource.RLIMIT_AS, 300_000_000))
        for most in range(4, 14):
            check_whole(f"{most} open files", f"{top}/8", "Too many open files",
                        prepare_process=limit(resource.RLIMIT_NOFILE, most), must_fail=most <= 8)
        check_whole("a TMPDIR that is not there", f"{top}/9", "No such file or directory",
                    variables={"TMPDIR": "/nowhere"}, must_fail=True)
        check_whole("a folder that nobody may write to", f"{top}/10", "Permission denied",
                    prepare_process=become_nobody, must_fail=True)
        for verb in ("prepare", "preprocess", "verify"):
            languages = LANGUAGES if verb == "prepare" else ()
            check_refused(f"a name of 32,000 characters, {verb}", f"{top}/11", verb, LONG_NAME, *languages)
            check_refused(f"a path of 32,000 characters, {verb}", f"{top}/12", verb, DEEP_FOLDER, *languages)
        check_deep_current_folder(f"{top}/13")
    for text in failures:
        print(text)
    print(f"{len(failures)} faults")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
