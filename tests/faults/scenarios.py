"""What is run: every verb that reads or writes files, on new and on existing results.

A scenario prepares its folder with the command itself and names the command line whose calls then fail. Most work on
one FILE: of several, those that were done before a failure rightly stay done.
"""
import functools
from dataclasses import dataclass, field
from typing import Callable

import documents

LANGUAGES = ("--source", "EN-US", "--target", "FR")


@dataclass(frozen=True)
class Scenario:
    name: str
    verb: str
    kind: str  # "new" or "existing" results; "read" when the verb writes no document
    setup: Callable
    arguments: tuple
    code: int = 0  # of an undisturbed run
    owns_home: bool = False  # the user's settings are what it writes
    options_if_known: tuple = field(default=())  # taken along where the verb has them
    reader: tuple = field(default=())  # a command that works on what this one wrote
    is_tree: bool = False  # works on several documents, each in a folder of its own

    @property
    def writes(self):
        return self.kind != "read"


class SetupFailed(Exception):
    pass


def kavo(sandbox, *arguments):
    run = sandbox.run(arguments)
    if run.code != 0:
        raise SetupFailed(f"kavo {' '.join(arguments)}: exit code {run.code}: {run.errors}")


@functools.lru_cache(maxsize=None)
def _help(kavo_path, verb):
    import subprocess
    return subprocess.run([kavo_path, *verb.split(), "--help"], capture_output=True, text=True, check=False).stdout


def command_line(sandbox, verb, arguments, options_if_known=("--overwrite",)):
    """The words of the command: the verb, those of the options that this build knows, and the arguments."""
    known = [option for option in options_if_known if option not in arguments and option in _help(sandbox.kavo, verb)]
    return [*verb.split(), *known, *arguments]


def verb_of(words):
    """How many of the words are the verb: some have a group's name in front."""
    count = 2 if words[0] in ("html", "mif", "rtf") else 1
    return " ".join(words[:count]), words[count:]


def _bilingual(document, make, tuds):
    """Bilingual documents of the first edition, with translations in them."""
    def setup(sandbox, edition=1):
        sandbox.write(document, make(edition))
        kavo(sandbox, "prepare", document, *LANGUAGES)
        for tud in tuds:
            kavo(sandbox, "pseudo", tud)
    return setup


PAGE_TUDS = ("page_asp_htm_FR.tud", "page_asp_scr_FR.tud")
HTML_TUD = "plain_htm_htm_FR.tud"
TEXT_TUD = "note_txt_FR.tud"
RTF_TUD = "letter_rtf_FR.tud"
RC_TUD = "app_rc_FR.tud"
MIF_TUDS = ("book_mif_FR.tud", "KAVO_ix_mif_FR.tud", "KAVO_xr_mif_FR.tud", "KAVO_va_mif_FR.tud")
page_tuds = _bilingual("page.asp", documents.page, PAGE_TUDS)
html_tuds = _bilingual("plain.htm", documents.html, (HTML_TUD,))
mif_tuds = _bilingual("book.mif", documents.mif, MIF_TUDS)
text_tuds = _bilingual("note.txt", documents.text, (TEXT_TUD,))
rtf_tuds = _bilingual("letter.rtf", documents.rtf, (RTF_TUD,))
rc_tuds = _bilingual("app.rc", documents.rc, (RC_TUD,))


def _source(name, make, edition=2):
    return lambda sandbox: sandbox.write(name, make(edition))


def _then(*steps):
    def setup(sandbox):
        for step in steps:
            step(sandbox)
    return setup


def _run(*arguments):
    return lambda sandbox: kavo(sandbox, *arguments)


def _remove(*names):
    import os
    def step(sandbox):
        for name in names:
            os.unlink(sandbox.path(f"docs/{name}"))
    return step


def _mode(mode, *names):
    import os
    def step(sandbox):
        for name in names:
            os.chmod(sandbox.path(f"docs/{name}"), mode)
    return step


def _translate_by_hand(name, old, new):
    def step(sandbox):
        content = sandbox.read(name)
        if old not in content:
            raise SetupFailed(f"{name} has no {old!r}")
        sandbox.write(name, content.replace(old, new))
    return step


def _prepare():
    for name, document, make, tuds, tud in (("page", "page.asp", documents.page, page_tuds, PAGE_TUDS[0]),
                                            ("html", "plain.htm", documents.html, html_tuds, HTML_TUD),
                                            ("MIF", "book.mif", documents.mif, mif_tuds, MIF_TUDS[0]),
                                            ("text", "note.txt", documents.text, text_tuds, TEXT_TUD),
                                            ("RTF", "letter.rtf", documents.rtf, rtf_tuds, RTF_TUD),
                                            ("RC", "app.rc", documents.rc, rc_tuds, RC_TUD)):
        yield Scenario(f"prepare {name}", "prepare", "new", _source(document, make), (document, *LANGUAGES))
        yield Scenario(f"prepare {name}, existing", "prepare", "existing", _then(tuds, _source(document, make)),
                       ("--overwrite", document, *LANGUAGES), reader=("rebuild", tud))


def _rebuild():
    for name, target, setup, tud in (("page", "page_FR.asp", page_tuds, PAGE_TUDS[0]),
                                     ("html", "plain_FR.htm", html_tuds, HTML_TUD),
                                     ("MIF", "book_FR.mif", mif_tuds, MIF_TUDS[0]),
                                     ("text", "note_FR.txt", text_tuds, TEXT_TUD),
                                     ("RTF", "letter_FR.rtf", rtf_tuds, RTF_TUD),
                                     ("RC", "app_FR.rc", rc_tuds, RC_TUD)):
        yield Scenario(f"rebuild {name}", "rebuild", "new", setup, (tud,))
        yield Scenario(f"rebuild {name}, existing", "rebuild", "existing",
                       _then(setup, lambda sandbox, target=target: sandbox.write(target, b"an older translation\r\n")),
                       ("--overwrite", tud))


def _bilingual_verbs():
    plain = lambda sandbox: (sandbox.write("page.asp", documents.page(1)),
                             kavo(sandbox, "prepare", "page.asp", *LANGUAGES))
    tud = PAGE_TUDS[0]
    xlf = "page_asp_htm_FR.xlf"
    yield Scenario("pseudo", "pseudo", "existing", plain, (tud,), reader=("rebuild", tud))
    yield Scenario("export", "export", "new", page_tuds, (tud,))
    yield Scenario("export, existing", "export", "existing",
                   _then(plain, _run("export", tud), _mode(0o640, xlf), _run("pseudo", tud)), (tud,),
                   options_if_known=("--overwrite",))
    yield Scenario("export with skeleton", "export", "new", page_tuds, ("--with-skeleton", tud))

    def returned(sandbox):
        plain(sandbox)
        kavo(sandbox, "pseudo", tud)
        kavo(sandbox, "export", tud)
        content = sandbox.read(tud)
        kavo(sandbox, "prepare", "--overwrite", "--fresh", "page.asp", *LANGUAGES)
        if sandbox.read(tud) == content:
            raise SetupFailed("nothing to import")
    yield Scenario("import", "import", "existing", returned, (xlf, "--to", tud))
    yield Scenario("rebuild package", "rebuild", "new", _then(page_tuds, _run("export", "--with-skeleton", tud)), (xlf,))
    yield Scenario("stats", "stats", "read", page_tuds, (tud,))
    yield Scenario("verify page", "verify", "read", _source("page.asp", documents.page), ("page.asp",))
    yield Scenario("verify MIF", "verify", "read", _source("book.mif", documents.mif), ("book.mif",))
    yield Scenario("verify text", "verify", "read", _source("note.txt", documents.text), ("note.txt",))


def _preprocess():
    for name, document, make in (("page", "page.asp", documents.page), ("html", "plain.htm", documents.html),
                                 ("MIF", "book.mif", documents.mif)):
        yield Scenario(f"preprocess {name}", "preprocess", "new", _source(document, make), (document,))
        yield Scenario(f"preprocess {name}, existing", "preprocess", "existing",
                       _then(_source(document, make, 1), _run("preprocess", document), _source(document, make)),
                       (document,), options_if_known=("--overwrite",))


def _html():
    page1, page2 = _source("page.asp", documents.page, 1), _source("page.asp", documents.page)
    protect = _run("html", "protect", "page.asp")
    translate = _translate_by_hand("page_asp.htm", "Héllo".encode(), "Bonjour à tous,".encode())
    yield Scenario("html protect", "html protect", "new", page2, ("page.asp",))
    yield Scenario("html protect, existing", "html protect", "existing", _then(page1, protect, translate, page2),
                   ("page.asp",), options_if_known=("--overwrite",),
                   reader=("html", "restore", "--output", "new.asp", "page_asp.htm"))
    yield Scenario("html restore", "html restore", "new", _then(page1, protect, translate, _remove("page.asp")),
                   ("page_asp.htm",))
    yield Scenario("html restore, existing", "html restore", "existing", _then(page1, protect, translate),
                   ("page_asp.htm",), options_if_known=("--overwrite",))
    html1, html2 = _source("plain.htm", documents.html, 1), _source("plain.htm", documents.html)
    yield Scenario("html validate", "html validate", "existing", html2, ("plain.htm",))
    yield Scenario("html validate --backup", "html validate", "new", html2, ("--backup", "plain.htm"))
    yield Scenario("html validate --backup, existing", "html validate", "existing",
                   _then(html1, _run("html", "validate", "--backup", "plain.htm"), html2), ("--backup", "plain.htm"))
    yield Scenario("html validate --check", "html validate", "read", html2, ("--check", "plain.htm"), code=3)


def _mif():
    mif1, mif2 = _source("book.mif", documents.mif, 1), _source("book.mif", documents.mif)
    sides = [f"book.mif_KAVO_{kind}.mif" for kind in ("ix", "xr", "va")]
    extract = _run("mif", "extract", "book.mif")
    remove, insert = _run("mif", "remove-objects", "book.mif"), _run("mif", "insert-objects", "book.mif")
    yield Scenario("mif extract", "mif extract", "new", mif2, ("book.mif",))
    yield Scenario("mif extract, existing", "mif extract", "existing", _then(mif1, extract, _mode(0o640, *sides), mif2),
                   ("book.mif",), options_if_known=("--overwrite",), reader=("mif", "merge", "book.mif"))
    yield Scenario("mif merge", "mif merge", "existing",
                   _then(mif1, extract, _translate_by_hand(sides[0], b"String `pump 1;", b"String `pompe;")),
                   ("book.mif",))
    yield Scenario("mif remove-objects", "mif remove-objects", "new", mif2, ("book.mif",))
    yield Scenario("mif remove-objects, existing", "mif remove-objects", "existing",
                   _then(mif1, remove, insert, _mode(0o640, "book.obj"), mif2), ("book.mif",),
                   options_if_known=("--overwrite",), reader=("mif", "insert-objects", "book.mif"))
    yield Scenario("mif insert-objects", "mif insert-objects", "existing", _then(mif1, remove), ("book.mif",))


def _rtf():
    rtf1, rtf2 = _source("letter.rtf", documents.rtf, 1), _source("letter.rtf", documents.rtf)
    extract, insert = _run("rtf", "extract", "letter.rtf"), _run("rtf", "insert", "letter.rtf")
    yield Scenario("rtf extract", "rtf extract", "new", rtf2, ("letter.rtf",), reader=("rtf", "insert", "letter.rtf"))
    yield Scenario("rtf extract, existing", "rtf extract", "existing",
                   _then(rtf1, extract, insert, _mode(0o640, "letter.obj"), rtf2), ("letter.rtf",),
                   options_if_known=("--overwrite",), reader=("rtf", "insert", "letter.rtf"))
    yield Scenario("rtf insert", "rtf insert", "existing", _then(rtf1, extract), ("letter.rtf",))


def _settings():
    nothing = lambda sandbox: None
    yield Scenario("init", "init", "new", _source("page.asp", documents.page), LANGUAGES)
    yield Scenario("settings", "settings", "read", _run("settings", "mif.split=both"), (), owns_home=True)
    yield Scenario("settings change", "settings", "new", nothing, ("mif.split=both",), owns_home=True)
    yield Scenario("settings change, existing", "settings", "existing", _run("settings", "mif.split=none"),
                   ("mif.split=both",), owns_home=True)


def _updates():
    """A changed source, whose bilingual documents are translated."""
    page2, tud = _source("page.asp", documents.page), PAGE_TUDS[0]
    both = (*LANGUAGES[:-1], "FR,DE")
    german = [name.replace("FR", "DE") for name in PAGE_TUDS]
    there_and_back = _then(page_tuds, page2, _run("prepare", "page.asp", *LANGUAGES), _run("pseudo", *PAGE_TUDS),
                           _source("page.asp", documents.page, 1))
    in_both = _then(_source("page.asp", documents.page, 1), _run("prepare", "page.asp", *both),
                    _run("pseudo", *PAGE_TUDS, *german), page2)
    for name, setup, arguments, reads in (
            ("update page", _then(page_tuds, page2), ("page.asp", *LANGUAGES), tud),
            ("update page, more removed", there_and_back, ("page.asp", *LANGUAGES), tud),
            ("update page, fresh", _then(page_tuds, page2), ("--fresh", "page.asp", *LANGUAGES), tud),
            ("update page, two languages", in_both, ("page.asp", *both), german[0]),
            ("update MIF", _then(mif_tuds, _source("book.mif", documents.mif)), ("book.mif", *LANGUAGES), MIF_TUDS[0])):
        yield Scenario(name, "prepare", "existing", setup, arguments, reader=("rebuild", reads))


def site(edition):
    def setup(sandbox):
        sandbox.write("site/a/page.asp", documents.page(edition))
        sandbox.write("site/b/note.txt", documents.text(edition))
    return setup


TO_WORK = ("site", "--recursive", "--output-dir", "work", *LANGUAGES[:-1], "FR,DE")
TO_SITES = ("work", "--recursive", "--output-dir", "out-{lang}")
site_prepared = _then(site(1), _run("prepare", *TO_WORK), _run("pseudo", "work", "--recursive"))


def _folders():
    """Trees of documents, in two languages, with folders of their own for what is made."""
    older = lambda sandbox: [sandbox.write(f"out-{language}/{name}", b"an older translation\r\n")
                             for language in ("DE", "FR") for name in ("a/page.asp", "b/note.txt")]
    yield Scenario("prepare folder", "prepare", "new", site(1), TO_WORK, is_tree=True)
    yield Scenario("update folder", "prepare", "existing", _then(site_prepared, site(2)), TO_WORK, is_tree=True,
                   reader=("rebuild", *TO_SITES))
    yield Scenario("rebuild folder", "rebuild", "new", site_prepared, TO_SITES, is_tree=True)
    yield Scenario("rebuild folder, existing", "rebuild", "existing", _then(site_prepared, older),
                   ("--overwrite", *TO_SITES), is_tree=True)
    rest = lambda sandbox: sandbox.write("site/c/style.css", b"p { color: red }\r\n")
    yield Scenario("rebuild folder with the rest", "rebuild", "new", _then(rest, site_prepared),
                   (*TO_SITES, "--copy-rest", "site"), is_tree=True)


def all_scenarios():
    return [scenario for group in (_prepare, _rebuild, _bilingual_verbs, _preprocess, _html, _mif, _rtf, _settings,
                                   _updates, _folders)
            for scenario in group()]


class Stage:
    """A scenario in a sandbox: its folder before a run, and what an undisturbed run makes of it."""

    def __init__(self, sandbox, scenario):
        self.sandbox, self.scenario = sandbox, scenario
        sandbox.restore({})
        scenario.setup(sandbox)
        self.before = sandbox.snapshot()
        self.arguments = command_line(sandbox, scenario.verb, scenario.arguments, scenario.options_if_known)
        self.undisturbed = sandbox.run(self.arguments)
        self.after = sandbox.snapshot()
        if self.undisturbed.code != scenario.code:
            raise SetupFailed(f"{scenario.name}: undisturbed, kavo {' '.join(self.arguments)} ends with exit code "
                              f"{self.undisturbed.code}: {self.undisturbed.errors}")
        if scenario.writes and self.after == self.before:
            raise SetupFailed(f"{scenario.name}: an undisturbed run changes nothing")
        sandbox.restore(self.before)
        again = sandbox.run(self.arguments)
        if again.code != scenario.code or sandbox.snapshot() != self.after or again.output != self.undisturbed.output:
            raise SetupFailed(f"{scenario.name}: two undisturbed runs give different results")

    def reader_arguments(self):
        return command_line(self.sandbox, *verb_of(self.scenario.reader))

    def run(self, prefix=()):
        self.sandbox.restore(self.before)
        return self.sandbox.run(self.arguments, prefix)
