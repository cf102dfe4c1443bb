"""Two verbs on one document at the same moment: as if one ran after the other, or one is refused with a message."""
import os
import random
import re
import time
from dataclasses import dataclass

import classify
import documents
import trace
from scenarios import (LANGUAGES, MIF_TUDS, PAGE_TUDS, RTF_TUD, TO_SITES, TO_WORK, command_line, kavo, mif_tuds,
                       page_tuds, rtf_tuds, site, site_prepared, verb_of)

COLUMNS = ("runs", "both right", "one refused", "odd refusal", "silent", "wrong result", "leftover", "crash", "hang")
ROUNDS = 50  # in every second one the first run is slowed down, so that the other meets it between two changes
REST = 1000  # microseconds
REFUSAL = re.compile(r"in use|another run|other run|locked|busy", re.IGNORECASE)


@dataclass(frozen=True)
class Pair:
    name: str
    setup: object
    first: tuple
    second: tuple
    owns_home: bool = False
    writes: bool = True
    is_tree: bool = False  # several documents, whose turns may come in any order


def _page(sandbox):
    page_tuds(sandbox)
    kavo(sandbox, "export", PAGE_TUDS[0])
    kavo(sandbox, "html", "protect", "page.asp")
    sandbox.write("page_FR.asp", b"an older translation\r\n")


def _mif(sandbox):
    mif_tuds(sandbox)
    kavo(sandbox, "mif", "extract", "book.mif")
    sandbox.write("book_FR.mif", b"an older translation\r\n")


def _mif_without_objects(sandbox):
    _mif(sandbox)
    kavo(sandbox, "mif", "remove-objects", "book.mif")


def _two_books(sandbox):
    for name, edition in (("one.mif", 1), ("two.mif", 2)):
        sandbox.write(name, documents.mif(edition))
    kavo(sandbox, "prepare", "one.mif", "two.mif", *LANGUAGES)
    for tud in ("one_mif_FR.tud", "two_mif_FR.tud", *MIF_TUDS[1:]):
        kavo(sandbox, "pseudo", tud)


def _rtf(sandbox):
    sandbox.write("letter.rtf", documents.rtf(1))


def _rtf_extracted(sandbox):
    _rtf(sandbox)
    kavo(sandbox, "rtf", "extract", "letter.rtf")


def _two_documents(sandbox):
    """Translated into two languages, in one folder; then the sources changed."""
    for edition in (1, 2):
        sandbox.write("page.asp", documents.page(edition))
        sandbox.write("note.txt", documents.text(edition))
        if edition == 1:
            kavo(sandbox, "prepare", "page.asp", "note.txt", *LANGUAGES[:-1], "FR,DE")
            kavo(sandbox, "pseudo", ".")


def _sources(sandbox):
    sandbox.write("page.asp", documents.page(1))
    sandbox.write("note.txt", documents.text(1))


def _changed_site(sandbox):
    site_prepared(sandbox)
    site(2)(sandbox)


GERMAN = ("--source", "EN-US", "--target", "DE")


def _road(document, tud):
    return {"prepare FR": ("prepare", "--overwrite", document, *LANGUAGES),
            "prepare DE": ("prepare", "--overwrite", document, *GERMAN),
            "preprocess": ("preprocess", document), "pseudo": ("pseudo", tud),
            "rebuild": ("rebuild", "--overwrite", tud)}


def _languages(*words):
    """The words in each language; those of TO_WORK name theirs."""
    words = words[:-1] if words[-1] == "FR,DE" else (*words, *LANGUAGES[:-1])
    return {language: (*words, language) for language in ("FR", "DE", "FR,DE")}


# Runs on several documents, without --overwrite: what is there is updated.
TREES = (
    ("two documents", _two_documents, {**_languages("prepare", "page.asp", "note.txt"),
                                       "a folder": ("prepare", ".", *LANGUAGES)}),
    ("new in its folder", _sources, _languages("prepare", ".", *LANGUAGES[:-1], "FR,DE")),
    ("new folder", site(1), _languages("prepare", *TO_WORK)),
    ("changed folder", _changed_site, {**_languages("prepare", *TO_WORK), "rebuild": ("rebuild", "--overwrite", *TO_SITES)}),
)

FAMILIES = (
    ("page", _page, {**_road("page.asp", PAGE_TUDS[0]),
                     "export": ("export", PAGE_TUDS[0]), "verify": ("verify", "page.asp"),
                     "stats": ("stats", PAGE_TUDS[0]),
                     "import": ("import", "page_asp_htm_FR.xlf", "--to", PAGE_TUDS[0]),
                     "html protect": ("html", "protect", "page.asp"),
                     "html restore": ("html", "restore", "page_asp.htm"),
                     "html validate": ("html", "validate", "--backup", "page_asp.htm")}),
    ("MIF", _mif, {**_road("book.mif", MIF_TUDS[0]),
                   "mif extract": ("mif", "extract", "book.mif"), "mif merge": ("mif", "merge", "book.mif"),
                   "remove-objects": ("mif", "remove-objects", "book.mif"),
                   "insert-objects": ("mif", "insert-objects", "book.mif")}),
    ("MIF without objects", _mif_without_objects, {
        "insert-objects": ("mif", "insert-objects", "book.mif"),
        "remove-objects": ("mif", "remove-objects", "book.mif"),
        "rebuild": ("rebuild", "--overwrite", MIF_TUDS[0])}),
    ("two MIF documents", _two_books, {
        "rebuild": ("rebuild", "one_mif_FR.tud"), "rebuild the other": ("rebuild", "two_mif_FR.tud"),
        "prepare DE": ("prepare", "one.mif", *GERMAN), "prepare the other DE": ("prepare", "two.mif", *GERMAN)}),
    ("RTF", rtf_tuds, {**_road("letter.rtf", RTF_TUD), "extract": ("rtf", "extract", "letter.rtf"),
                       "insert": ("rtf", "insert", "letter.rtf")}),
    ("RTF extracted", _rtf_extracted, {"extract": ("rtf", "extract", "letter.rtf"),
                                       "insert": ("rtf", "insert", "letter.rtf")}),
    ("settings", lambda sandbox: None, {"split": ("settings", "mif.split=both"),
                                        "editor": ("settings", "editor.command=vi %1")}),
)


def scenarios():
    pairs = []
    for family, setup, verbs in (*FAMILIES, *TREES):
        names = list(verbs)
        for i, first in enumerate(names):
            for second in names[i:]:
                pairs.append(Pair(f"{family}: {first} + {second}", setup, verbs[first], verbs[second],
                                  owns_home=family == "settings", is_tree=(family, setup, verbs) in TREES))
    return pairs


class Stage:
    """A pair in a sandbox, and every result that counts as right."""

    def __init__(self, sandbox, pair):
        self.sandbox, self.scenario = sandbox, pair
        sandbox.restore({})
        pair.setup(sandbox)
        self.before = sandbox.snapshot()
        options = () if pair.is_tree else ("--overwrite",)
        self.commands = [command_line(sandbox, *verb_of(words), options) for words in (pair.first, pair.second)]
        self.right = {"both": [self._one_after_the_other(0, 1), self._one_after_the_other(1, 0)],
                      "refused": [self._alone(0), self._alone(1)]}
        self.seconds = {(i, is_slow): self._time(i, is_slow) for i in (0, 1) for is_slow in (False, True)}

    def _state(self):
        return state_of(self.sandbox.snapshot(), self.scenario.owns_home)

    def _one_after_the_other(self, first, second):
        self.sandbox.restore(self.before)
        codes = [0, 0]
        for i in (first, second):
            codes[i] = self.sandbox.run(self.commands[i]).code
        return tuple(codes), self._state()

    def _time(self, i, is_slow):
        self.sandbox.restore(self.before)
        started = time.monotonic()
        self.sandbox.run(self.commands[i], self.prefix(is_slow))
        return time.monotonic() - started

    def prefix(self, is_slow):
        return trace.slow_down(self.sandbox, REST) if is_slow else ()

    def _alone(self, i):
        self.sandbox.restore(self.before)
        code = self.sandbox.run(self.commands[i]).code
        return code, self._state()


def state_of(snapshot, owns_home):
    state = classify.contents(classify.files(snapshot, owns_home))
    for path, (kind, content) in state.items():
        if path.endswith("/removed.tmx"):  # who comes first puts its texts there first
            state[path] = kind, b"\n".join(sorted(content.split(b"\n")))
    return state


def _is_right(stage, codes, state):
    right = stage.right["both"]
    if (codes, state) in right or not stage.scenario.is_tree:
        return (codes, state) in right
    folders = {os.path.dirname(path) for known in (state, *(wanted for _, wanted in right)) for path in known}
    def of_folder(snapshot, folder):
        return {path: entry for path, entry in snapshot.items() if os.path.dirname(path) == folder}
    return codes in [wanted for wanted, _ in right] and all(
        any(of_folder(state, folder) == of_folder(wanted, folder) for _, wanted in right) for folder in folders)


def jobs(stage, calls, options):
    del calls
    source = random.Random(stage.scenario.name)  # the same delays each time; what the system makes of them differs
    count = 6 if options.quick else options.rounds
    # (which one starts first, whether it is slowed down, how much later the other starts)
    return [(i // 2 % 2, i % 2 == 1, source.random()) for i in range(count)]


def run_job(stage, job):
    first, is_slow, share = job
    delay = share * stage.seconds[first, is_slow]
    sandbox = stage.sandbox
    sandbox.restore(stage.before)
    outputs = [(f"{sandbox.root}.out{i}", f"{sandbox.root}.err{i}") for i in (0, 1)]
    processes = [0, 0]
    processes[first] = sandbox.start(stage.commands[first], stage.prefix(is_slow), outputs[first])
    time.sleep(delay)
    processes[1 - first] = sandbox.start(stage.commands[1 - first], outputs=outputs[1 - first])
    runs = [sandbox.finish(processes[i], outputs[i]) for i in (0, 1)]
    now = sandbox.snapshot()
    faults, column = _faults(stage, runs, now)
    return None if faults else column, [
        {"class": kind, "details": details, "error": f"{delay * 1000:.1f} ms later",
         "failed": f"{'slowly, ' if is_slow else ''}first: {' '.join(stage.commands[first])}",
         "exit": [run.code for run in runs], "output": "", "errors": [run.errors for run in runs],
         "commands": stage.commands} for kind, details in faults]


def _faults(stage, runs, now):
    faults = [fault for run in runs for fault in classify.crash_faults(run)]
    if faults:
        return faults, None
    state = state_of(now, stage.scenario.owns_home)
    codes = tuple(run.code for run in runs)
    left = [path for path in now if path.startswith("tmp/") or
            (path.startswith("home/") and ".kavo-" in path)]
    if left:
        faults.append(("leftover", ", ".join(left)))
    if _is_right(stage, codes, state):
        return faults, "both right"
    for winner in (0, 1):
        loser = runs[1 - winner]
        code, alone = stage.right["refused"][winner]
        if loser.code == 0 or runs[winner].code != code or state != alone:
            continue
        if not loser.errors.strip():
            faults.append(("silent", f"exit code {loser.code}"))
        elif not REFUSAL.search(loser.errors):
            faults.append(("odd refusal", loser.errors.strip()))
        return faults, "one refused"
    nearest = min((wanted for _, wanted in stage.right["both"]), key=lambda wanted: len(_differences(wanted, state)))
    faults.append(("wrong result", f"exit codes {codes}; " + "; ".join(_differences(nearest, state))))
    return faults, None


def _differences(wanted, now):
    found = [f"{path}: missing" for path in sorted(wanted.keys() - now.keys())]
    found += [f"{path}: new" for path in sorted(now.keys() - wanted.keys())]
    return found + [f"{path}: different" for path in sorted(wanted.keys() & now.keys()) if wanted[path] != now[path]]
