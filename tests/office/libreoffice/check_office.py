#!/usr/bin/env python3
"""Texts and times of Word documents, presentations and workbooks: check_office.py KAVO CORPUS [COUNT]

LibreOffice is the judge; without it, or without a corpus, the check is skipped.

1. Each word that LibreOffice shows in a document is in a segment: in its plain text of a Word document, in the cells of
   its text files of a workbook, in the paragraphs of its flat XML of a presentation. What is left out is counted by its
   reason: words without a letter (numbers, also those of formulas), labels of lists and numbers of notes, and words
   that a document shows more often than it holds them (texts of masters, formulas that repeat a cell). Anything else is
   missing, and so is a document that `kavo verify` does not pass.
2. COUNT copies of the smallest document of each type (100) go there and back in one run. The time of each is that
   between its result and the result before it, so the start of LibreOffice counts for the first alone, which is left
   out. The times are shown, and no bound is checked: they are those of the machine and of its load.
"""
import collections, os, pathlib, re, shutil, statistics, subprocess, sys, tempfile
import xml.etree.ElementTree as ElementTree

XLIFF = "{urn:oasis:names:tc:xliff:document:1.2}"
TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"
FORMS = {"doc": "txt:Text (encoded):UTF8", "ppt": "fodp",
         "xls": "csv:Text - txt - csv (StarCalc):9,34,76,1,,0,false,true,false,false,false,-1"}
FIELDS = {TEXT + name for name in ("page-number", "page-count", "date", "time", "sheet-name", "author-name", "title")}
LABEL = re.compile(r"[•◦▪o\uE000-\uF8FF]|(\d+(\.\d+)*|[a-zA-Z]|[ivxIVX]+)[.)]")
# Documents that show words that nobody typed, and documents whose translated texts do not all come back.
CANNOT_PASS = {"tika_testWORD_numbered_list.doc": (2, "the numbers of a list have words around them")}
CANNOT_COME_BACK = {
    "tika_testWORD_numbered_list.doc": "LibreOffice does not write texts in frames beside comments, as rebuild says",
    "tika_testMSEquation-govdocs-863534.doc": "characters of a symbol font are text in the next preparation",
}
TUD = {"doc": "{}_doc_rtf_FR.tud", "ppt": "{}_ppt_FR.tud", "xls": "{}_xls_FR.tud"}


class Folder:
    def __init__(self, path, kavo):
        self.path, self.kavo = path, kavo

    def run(self, *command):
        return subprocess.run([str(part) for part in command], capture_output=True, env={
            "HOME": str(self.path), "PATH": "/usr/local/bin:/usr/bin:/bin", "LC_ALL": "C.UTF-8"})

    def kavo_run(self, *arguments):
        done = self.run(self.kavo, *arguments)
        return done.returncode, (done.stdout + done.stderr).decode(errors="replace")


def words(text):
    return re.findall(r"[^\s\x00-\x1f]+", text.replace("\u00AD", "").replace("\u00A0", " "))


def joined(text):
    """The letters and digits alone: codes and line ends divide words in one of the two only."""
    return re.sub(r"[\W_]+", "", text)


def text_of(element):
    text = "" if element.tag.startswith(XLIFF) and element.tag[len(XLIFF):] in ("ph", "bpt", "ept", "it") else element.text
    return (text or "") + "".join(text_of(inner) + (inner.tail or "") for inner in element)


def segments(tud):
    return [text_of(unit.find(XLIFF + "source")) for unit in ElementTree.parse(tud).iter(XLIFF + "trans-unit")]


def paragraph_text(paragraph):
    text = paragraph.text or ""
    for inner in paragraph:
        between = {TEXT + "s": " ", TEXT + "tab": " ", TEXT + "line-break": " "}.get(inner.tag)
        is_shown = inner.tag not in FIELDS and not inner.tag.endswith("}annotation")
        text += between or (paragraph_text(inner) if is_shown else "")
        text += inner.tail or ""
    return text


def shown_words(folder, document):
    """What LibreOffice shows; nothing when it cannot load the document."""
    kind = document.suffix[1:].lower()
    target = folder.path / "shown" / kind / document.stem
    folder.run("soffice", f"-env:UserInstallation=file://{folder.path}/profile", "--headless", "--convert-to",
               FORMS[kind], "--outdir", target, document)
    made = sorted(target.glob("*")) if target.is_dir() else []
    if not made:
        return None
    if kind != "ppt":
        return words("\n".join(path.read_text("utf-8-sig", errors="replace") for path in made).replace("\t", " "))
    body = ElementTree.parse(made[0]).getroot()
    return words("\n".join(paragraph_text(p) for tag in ("p", "h") for p in body.iter(TEXT + tag)))


def check_texts(folder, documents):
    faults, total = [], {kind: collections.Counter() for kind in FORMS}
    for document in documents:
        kind = document.suffix[1:].lower()
        work = folder.path / "texts" / kind
        work.mkdir(parents=True, exist_ok=True)
        copy = work / document.name
        shutil.copyfile(document, copy)
        counts = total[kind]
        counts["documents"] += 1
        shown = shown_words(folder, copy)
        code, told = folder.kavo_run("prepare", "-q", "--source", "EN-US", "--target", "FR", copy)
        if code or shown is None:
            reason = told.strip().splitlines()[-1] if code else "prepared, but LibreOffice has no text of it"
            print(f"{document.name}: {reason}")
            counts["refused"] += 1
            # What LibreOffice itself does not load is rightly refused.
            if not code or shown is not None:
                faults.append(f"{document.name}: {reason}")
            continue
        offered = segments(work / TUD[kind].format(copy.stem))
        known, everything = collections.Counter(words("\n".join(offered))), joined("".join(offered))
        missing = []
        for word, number in collections.Counter(shown).items():
            rest = number - known[word]
            if rest <= 0:
                continue
            if not re.search(r"[^\W\d_]", word):
                counts["without letters"] += rest
            elif LABEL.fullmatch(word) or (word[-1].isdigit() and word.rstrip("0123456789") in known):
                counts["labels and notes"] += rest
            elif known[word] or joined(word) in everything:
                counts["shown again"] += rest if known[word] else 0
            else:
                missing += [word] * rest
        counts.update(shown=len(shown), segments=len(offered), missing=len(missing))
        allowed, reason = CANNOT_PASS.get(document.name, (0, ""))
        if missing:
            print(f"{document.name}: {len(missing)} of {len(shown)} words are in no segment: {missing[:12]} {reason}")
        if len(missing) > allowed:
            faults.append(f"{document.name}: words are missing")
        verified, told = folder.kavo_run("verify", "--source", "EN-US", "--target", "FR", copy)
        counts["survive"] += verified == 0
        if verified and document.name in CANNOT_COME_BACK:
            print(f"{document.name}: {CANNOT_COME_BACK[document.name]}")
        elif verified:
            faults.append(f"{document.name}: {told.strip()[:400]}")
    for kind, counts in total.items():
        print(f".{kind}: " + ", ".join(f"{name} {number}" for name, number in counts.items()))
    return faults


def times(folder, kind, source, count):
    work = folder.path / f"many_{kind}"
    work.mkdir()
    names = [f"n{number:03}" for number in range(count + 1)]
    for name in names:
        shutil.copyfile(source, work / f"{name}.{kind}")
    tuds = [work / TUD[kind].format(name) for name in names]
    ways = {"prepare": ([work / f"{name}.{kind}" for name in names], tuds, ["--source", "EN-US", "--target", "FR"]),
            "rebuild": (tuds, [work / f"{name}_FR.{kind}" for name in names], [])}
    for way, (given, made, options) in ways.items():
        code, told = folder.kavo_run(way, "-q", *options, *given)
        if code:
            return [f"{source.name}, {count} copies: {told.strip()[-300:]}"]
        ends = sorted(path.stat().st_mtime_ns for path in made)
        each = sorted((after - before) / 1e9 for before, after in zip(ends, ends[1:]))
        print(f"{way} .{kind} ({source.name}, {source.stat().st_size} bytes), {count} documents after the first: "
              f"min {each[0]:.2f}, median {statistics.median(each):.2f}, 90 % {each[len(each) * 9 // 10]:.2f}, "
              f"max {each[-1]:.2f} s")
    return []


def main():
    kavo, corpus = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 100
    documents = [path for kind in FORMS for path in sorted((corpus / kind).glob(f"*.{kind}"))]
    if not shutil.which("soffice") or not documents:
        print("skipped: no soffice" if documents else "skipped: no corpus")
        sys.exit(77)
    with tempfile.TemporaryDirectory(prefix="kavo-office-check-") as name:
        folder = Folder(pathlib.Path(name), kavo)
        faults = check_texts(folder, documents)
        for kind in FORMS if count else ():
            sizes = sorted((path.stat().st_size, path) for path in documents if path.suffix == f".{kind}")
            for _, source in sizes:
                if (folder.path / "texts" / kind / TUD[kind].format(source.stem)).exists():
                    faults += times(folder, kind, source, count)
                    break
        print(f"load {os.getloadavg()[0]:.1f}")
    print("\n".join(faults))
    print(f"{len(documents)} documents, {len(faults)} faults")
    sys.exit(1 if faults else 0)


main()
