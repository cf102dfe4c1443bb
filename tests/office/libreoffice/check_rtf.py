#!/usr/bin/env python3
"""What people see of RTF documents before and after translation: check_rtf.py KAVO SAMPLES [CORPUS]

LibreOffice, unrtf and pdftoppm are the judges; without them the check is skipped.

1. Each word of LibreOffice's plain text export stands in one segment, in the same order. Headers, notes, text boxes,
   the document's information and hidden text are segments that this export leaves out; bullets and numbers of lists
   are text that nobody typed. Anything else is counted as missing.
2. LibreOffice shows the words of the translated document in the same way. unrtf, which knows neither UTF-8 nor each
   use of \\u, shows as many of a translation in the letters of ASCII as of the source.
3. A document that came back unchanged has the bytes of its source. The pages of one whose texts were translated and
   then translated back, so that each was written anew, look like those of the source to the last point. A document
   whose pages differ is drawn several times: where LibreOffice draws the source itself in several ways, pictures prove
   nothing; the document is named and counted, and its texts alone are compared. LibreOffice moves letters where
   the language changes, or the font that Chinese letters would have; a changed text is one run. So where the pages of
   a document without Arabic and Chinese letters differ, source and translation are drawn without these control words,
   and then they must be the same. A document of the check's own proves first that this is LibreOffice's doing.
4. The pages of a highlighted document hold points in its colour, those of the source none.
"""
import codecs, collections, difflib, html, pathlib, re, shutil, subprocess, sys, tempfile
import xml.etree.ElementTree as ElementTree

XLIFF = "{urn:oasis:names:tc:xliff:document:1.2}"
COLOUR = bytes((0, 200, 0))
ATTEMPTS = 5  # how often a document whose pages differ is drawn again
NOTE = "\x01"  # in the place of a number that the word processor gives
LABEL = re.compile(r"[•◦▪o\uE000-\uF8FF]|(\d+(\.\d+)*|[a-zA-Z]|[ivxIVX]+)[.)]")
# Documents that cannot pass, and the words that may be missing in them.
CANNOT_PASS = {
    "tika_testRTFInvalidUnicode.rtf": (3, "characters that are none are shown as question marks"),
    "striprtf_encoding.rtf": (1, "the name of the program that wrote it stands in a group that is no destination"),
}
TOKEN = re.compile(rb"\\([a-zA-Z]+)(-?\d+)? ?|\\'..|\\.|[^\\]", re.S)
UNSEEN = re.compile(rb"(lang|langfe|langnp|langfenp|noproof|(ins|char|par)rsid)$")
# How letters of other scripts would look in text that has none of them, and the characters of these scripts.
UNSEEN_LOOK = re.compile(rb"\\rtlch\\fcs1\s*(?:\\(?:af|afs|ab|ai|alang)(?:-?\d+)?\s*)*\\ltrch\\fcs0 ?|\\dbch\\af\d+ ?")
OTHER_SCRIPTS = re.compile("[\u0590-\u08FF\u2E80-\u9FFF\uAC00-\uD7FF\uF900-\uFDFF\uFE30-\uFEFF]")
KERNED = "{\\rtf1\\ansi{\\fonttbl{\\f0\\froman Times New Roman;}}\\f0\\fs40 %s\\par}"


class Folder:
    """A working folder with a user of its own for every program."""

    def __init__(self, path, kavo):
        self.path, self.kavo = path, kavo

    def run(self, *command, **options):
        done = subprocess.run([str(part) for part in command], capture_output=True, env={
            "HOME": str(self.path), "PATH": "/usr/local/bin:/usr/bin:/bin", "LC_ALL": "C.UTF-8"}, **options)
        if done.returncode:
            sys.exit(f"{' '.join(map(str, command))}\n{(done.stdout + done.stderr).decode(errors='replace')[-2000:]}")
        return done.stdout

    def kavo_run(self, *arguments):
        return self.run(self.kavo, *arguments)

    def convert(self, form, documents, target, user="user"):
        """By LibreOffice, in one run; what it cannot load is left out. It keeps what it has learned for its user."""
        target.mkdir()
        self.run("soffice", f"-env:UserInstallation=file://{self.path}/{user}", "--headless", "--convert-to", form,
                 "--outdir", target, *documents)
        return target


def text_of(element):
    text = element.text or ""
    if element.tag in (XLIFF + "ph", XLIFF + "bpt", XLIFF + "ept", XLIFF + "it"):
        text = {"x-note": NOTE, "x-tab": " ", "lb": " ", "x-field": " "}.get(element.get("ctype"), "")
    return text + "".join(text_of(inner) + (inner.tail or "") for inner in element)


def segments(tud, element):
    return [text_of(unit.find(XLIFF + element)) for unit in ElementTree.parse(tud).iter(XLIFF + "trans-unit")]


def words(text):
    return text.replace("\u00AD", "").split()


def differences(shown, offered):
    """How many of the shown words are in no segment, of these the labels of lists, and how many only in segments."""
    missing, labels, extra = [], 0, 0
    for kind, a, b, c, d in difflib.SequenceMatcher(None, shown, offered, autojunk=False).get_opcodes():
        # Codes divide words in one of them only.
        pattern = re.escape("".join(offered[c:d])).replace(NOTE, r"\w*")
        if kind == "equal" or re.fullmatch(pattern, "".join(shown[a:b])):
            continue
        labels += sum(1 for word in shown[a:b] if LABEL.fullmatch(word))
        missing += [word for word in shown[a:b] if not LABEL.fullmatch(word)]
        extra += d - c
    return missing, labels, extra


def pages(folder, pdf):
    """The pixels of each page."""
    prefix = pdf.with_suffix("")
    folder.run("pdftoppm", "-r", "60", "-aa", "no", "-aaVector", "no", pdf, prefix)
    made = sorted(pdf.parent.glob(prefix.name + "-*.ppm"))
    result = [page.read_bytes() for page in made]
    for page in made:
        page.unlink()
    return result


def points(page):
    """How many points of a page have the colour."""
    pixels = page.split(b"\n", 3)[3]
    return sum(pixels[at:at + 3] == COLOUR for at in range(0, len(pixels), 3)) if COLOUR in pixels else 0


def without_what_nobody_sees(rtf):
    """The document without languages, revision numbers and the look of letters of other scripts."""
    rtf = UNSEEN_LOOK.sub(lambda match: b"\n", rtf)
    parts, at, is_word = [], 0, False
    while at < len(rtf):
        token = TOKEN.match(rtf, at)
        at = token.end()
        if token[1] and UNSEEN.match(token[1]):
            continue
        if is_word and re.match(rb"[A-Za-z0-9 -]", token[0]):
            parts.append(b" ")
        is_word = token[1] is not None and not token[0].endswith(b" ")
        parts.append(token[0])
        if token[1] == b"bin" and token[2]:
            data = max(int(token[2]), 0)
            parts.append(rtf[at:at + data])
            at, is_word = at + data, False
    return b"".join(parts)


def moves_letters(folder):
    """Whether LibreOffice draws a text in another way when its language changes inside, and only then."""
    texts = {"plain": "WAVE", "changed": "{\\lang1033 W}{\\lang2057 AV}{\\lang1033 E}"}
    drawn = []
    for name, text in texts.items():
        document = folder.path / f"{name}.rtf"
        document.write_bytes((KERNED % text).encode())
        drawn.append(document)
        bare = folder.path / f"{name}_bare.rtf"
        bare.write_bytes(without_what_nobody_sees(document.read_bytes()))
        drawn.append(bare)
    made = folder.convert("pdf", drawn, folder.path / "kerned")
    plain, plain_bare, changed, changed_bare = (pages(folder, made / f"{document.stem}.pdf") for document in drawn)
    return plain == plain_bare == changed_bare and plain != changed


class Document:
    def __init__(self, folder, source):
        self.name = source.name
        self.source = folder.path / "source" / source.name
        shutil.copyfile(source, self.source)

    def rebuild(self, folder, name, target, change, *options, source=None):
        """The document in a folder of its name, prepared for a language, after `change` of the bilingual document."""
        work = folder.path / name
        work.mkdir(exist_ok=True)
        copy = work / self.name
        shutil.copyfile(source or self.source, copy)
        # Without --fresh, translations of other documents in the folder would be filled in.
        folder.kavo_run("prepare", "-q", "--fresh", "--source", "EN-US", "--target", target, copy)
        self.tud = work / f"{copy.stem}_rtf_{target}.tud"
        change(self.tud)
        folder.kavo_run("rebuild", "-q", "--overwrite", "--output", copy, *options, self.tud)
        return copy


def mark_translated(tud):
    tud.write_bytes(tud.read_bytes().replace(b'<target state="new">', b'<target state="translated">'))


def translate_into_ascii(tud):
    """Each letter is the thirteenth behind it."""
    def turned(match):
        return match[1] or codecs.encode(match[2], "rot13")
    mark_translated(tud)
    text = re.sub(r'(?<=<target state="translated">).*?(?=</target>)', lambda target: re.sub(
        r"(<(?:ph|bpt|ept|it) .*?</(?:ph|bpt|ept|it)>|<[^>]*>|&[^;]*;)|([A-Za-z])", turned, target[0]),
        tud.read_bytes().decode(), flags=re.S)
    tud.write_bytes(text.encode())


def check_texts(folder, documents):
    translated = []
    for document in documents:
        turned = document.rebuild(folder, "turned", "FR", translate_into_ascii)
        document.offered = segments(document.tud, "source")
        document.turned = shown_by_unrtf(folder, turned, segments(document.tud, "target"))
        translated.append(document.rebuild(folder, "translated", "FR", lambda tud: folder.kavo_run("pseudo", "-q", tud)))
        document.expected = segments(document.tud, "target")
    form = "txt:Text (encoded):UTF8"
    before = folder.convert(form, [document.source for document in documents], folder.path / "text")
    after = folder.convert(form, translated, folder.path / "translated_text")
    faults, total = [], collections.Counter()
    for document in documents:
        shown = before / (document.source.stem + ".txt")
        if not shown.exists():
            print(f"{document.name}: LibreOffice cannot load the source either")
            continue
        if not (after / shown.name).exists():
            faults.append(f"{document.name}: LibreOffice does not load the translated document")
            continue
        missing, labels, extra = differences(words(shown.read_text("utf-8-sig")), words("\n".join(document.offered)))
        lost, labels_after, _ = differences(words((after / shown.name).read_text("utf-8-sig")),
                                            words("\n".join(document.expected)))
        count = len(words(shown.read_text("utf-8-sig")))
        seen, seen_after = shown_by_unrtf(folder, document.source, document.offered), document.turned
        if re.search(rb"\\bin\d", document.source.read_bytes()):
            seen = seen_after = 0  # unrtf takes binary data for RTF, and loses text behind it
        total.update(documents=1, segments=len(document.offered), shown=count, missing=len(missing), labels=labels,
                     only_in_segments=extra, missing_translated=len(lost), unrtf=seen, unrtf_translated=seen_after)
        allowed, reason = CANNOT_PASS.get(document.name, (0, ""))
        if missing or lost:
            print(f"{document.name}: {len(missing)} of {count} words are in no segment, {len(lost)} translated ones "
                  f"not shown: {missing[:9]} {lost[:9]} {reason}")
        if len(missing) > allowed or len(lost) > allowed:
            faults.append(f"{document.name}: words are missing")
        if labels_after != labels:
            faults.append(f"{document.name}: {labels} labels of lists before, {labels_after} after")
        if seen_after < seen:
            faults.append(f"{document.name}: unrtf shows {seen_after} words of the translation, {seen} of the source")
    print(", ".join(f"{name.replace('_', ' ')} {number}" for name, number in total.items()))
    return faults if total["shown"] else faults + ["no words"]


def shown_by_unrtf(folder, document, texts):
    # Its plain text has no letters but those of ASCII.
    page = folder.run("unrtf", "--html", "--nopict", document.name, cwd=document.parent).decode(errors="replace")
    shown = html.unescape(re.sub(r"<[^>]*>", "", re.sub(r"<(br|/p|/div|/t[dr])>", " ", page)))
    return sum((collections.Counter(words(shown)) & collections.Counter(words("\n".join(texts)))).values())


def drawn_alone(folder, path, place):
    """The pages of a document that LibreOffice draws in a run of its own, with nothing learned from other documents."""
    return pages(folder, folder.convert("pdf", [path], folder.path / place, f"user_{place}") / f"{path.stem}.pdf")


def same_without_what_nobody_sees(folder, document, source, anew):
    bare = folder.path / f"bare_{document.source.stem}"
    bare.mkdir()
    drawn = []
    for road, path in (("source", source), ("anew", anew)):
        copy = bare / f"{road}.rtf"
        copy.write_bytes(without_what_nobody_sees(path.read_bytes()))
        drawn.append(copy)
    made = folder.convert("pdf", drawn, bare / "pdf")
    bare_source, bare_anew = (pages(folder, made / f"{path.stem}.pdf") for path in drawn)
    return bool(bare_source) and bare_source == bare_anew


def compare_pages(folder, document, files, made, has_moves):
    """How the pages written anew look beside those of the source.

    "same"; "moved": the same without what nobody sees; "unsteady": LibreOffice draws the source itself in several
    ways; or the numbers of the pages that differ.
    """
    name = document.source.stem + ".pdf"
    source = [pages(folder, made[road] / name) for road in ("source", "again")]
    anew = [pages(folder, made["anew"] / name) if (made["anew"] / name).exists() else []]
    if anew[0] in source:
        return "same"
    for attempt in range(ATTEMPTS):
        # What stood before a document in the same run may change a point of it.
        source.append(drawn_alone(folder, files["source"], f"source_{attempt}_{name}"))
        anew.append(drawn_alone(folder, files["anew"], f"anew_{attempt}_{name}"))
        if any(pictures in source for pictures in anew):
            return "same"
        if attempt == 0 and has_moves and len(anew[-1]) == len(source[-1]) and not OTHER_SCRIPTS.search(
                "".join(document.offered)) and same_without_what_nobody_sees(folder, document, **files):
            return "moved"
    if any(pictures != source[0] for pictures in source):
        return "unsteady"
    count = max(len(anew[-1]), len(source[-1]))
    return [number for number in range(1, count + 1) if anew[-1][number - 1:number] != source[-1][number - 1:number]]


def check_colour(folder, document, made):
    """What is wrong with the pages of the highlighted document; whether they show the colour."""
    name = document.source.stem + ".pdf"
    faults = []
    shown = sum(map(points, pages(folder, made["coloured"] / name)))
    if any(map(points, pages(folder, made["source"] / name))):
        faults.append(f"{document.name}: the source has the colour already")
    # Titles and entries have no colour.
    if (shown == 0) != (document.shown_words == 0):
        faults.append(f"{document.name}: {shown} points are coloured, {document.shown_words} words are shown")
    return faults, shown != 0


def check_pages(folder, documents):
    faults = []
    for document in documents:
        unchanged = document.rebuild(folder, "unchanged", "EN-US", lambda tud: None)
        if unchanged.read_bytes() != document.source.read_bytes():
            faults.append(f"{document.name}: other bytes, though nothing was changed")
    roads = {"source": [document.source for document in documents]}
    roads["again"] = roads["source"]
    roads["anew"] = [document.rebuild(folder, "anew", "EN-US", translate_into_ascii, source=document.rebuild(
        folder, "turned_once", "EN-US", translate_into_ascii)) for document in documents]
    folder.kavo_run("settings", "highlight.translated=#00C800")
    roads["coloured"] = [document.rebuild(folder, "coloured", "EN-US", mark_translated, "--highlight")
                         for document in documents]
    other = sum((folder.path / "anew" / d.name).read_bytes() != d.source.read_bytes() for d in documents)
    made = {name: folder.convert("pdf", files, folder.path / f"{name}_pages") for name, files in roads.items()}
    total = collections.Counter()
    has_moves = moves_letters(folder)
    for number, document in enumerate(documents):
        if not (made["source"] / (document.source.stem + ".pdf")).exists():
            continue
        files = {road: roads[road][number] for road in ("source", "anew")}
        result = compare_pages(folder, document, files, made, has_moves)
        total["pages"] += len(pages(folder, made["source"] / (document.source.stem + ".pdf")))
        if result == "unsteady":
            print(f"{document.name}: LibreOffice draws the source in several ways, so only its texts are compared")
        elif result == "moved":
            print(f"{document.name}: the same pages without languages and the look of other letters")
        elif result != "same" and document.name in CANNOT_PASS:
            print(f"{document.name}: other pictures on pages {result}; {CANNOT_PASS[document.name][1]}")
        elif result != "same":
            faults.append(f"{document.name}: other pictures on pages {result[:9]}")
        if isinstance(result, str):
            total[result] += 1
        wrong, is_coloured = check_colour(folder, document, made)
        faults += wrong
        total["coloured"] += is_coloured
    print(f"{total['pages']} pages, those of {total['same'] + total['moved']} documents as in their sources "
          f"({total['moved']} without what nobody sees), {other} of which have other bytes; {total['coloured']} documents "
          "show the colour of translated texts")
    return (faults if total["pages"] and total["coloured"] else faults + ["no pages"]), total["unsteady"]


def main():
    kavo = pathlib.Path(sys.argv[1]).resolve()
    for program in ("soffice", "unrtf", "pdftoppm"):
        if not shutil.which(program):
            print(f"skipped: no {program}")
            sys.exit(77)
    sources = sorted(pathlib.Path(sys.argv[2]).glob("*.rtf"))
    if len(sys.argv) > 3 and (pathlib.Path(sys.argv[3]) / "rtf").is_dir():
        sources += sorted((pathlib.Path(sys.argv[3]) / "rtf").glob("*.rtf"))
    if not sources:
        sys.exit("no documents")
    with tempfile.TemporaryDirectory(prefix="kavo-rtf-") as name:
        folder = Folder(pathlib.Path(name), kavo)
        (folder.path / "source").mkdir()
        documents = [Document(folder, source) for source in sources]
        faults = check_texts(folder, documents)
        for document in documents:
            text = folder.path / "text" / (document.source.stem + ".txt")
            document.shown_words = len(words(text.read_text("utf-8-sig"))) if text.exists() else 0
        wrong, unsteady = check_pages(folder, documents)
        faults += wrong
    print("\n".join(faults))
    print(f"{len(documents)} documents, {len(faults)} faults, {unsteady} compared by their texts only")
    sys.exit(1 if faults else 0)


main()
