#!/usr/bin/env python3
"""Which texts of scripts are offered, of pages that were labelled by hand (script_labels.tsv).

    check_labels.py KAVO CORPUS PACKAGES

PACKAGES holds the unpacked Debian and npm packages that the pages come from (a folder for each), CORPUS the corpus.
Pages that are not there are left out; exit code 77 when none is. Prints, for each language, how many labelled texts
stand whole in an open unit, and how many open units hold one; then every miss of both.
"""
import html
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

LABELS = pathlib.Path(__file__).with_name("script_labels.tsv")
LANGUAGES = {".php": "php", ".jsp": "java", ".asp": "vbscript"}
PREFIXES = ("", "usr/share/{}", "usr/share/tt-rss/www", "usr/share/tomcat10-examples/examples")
# At least so much of the texts must be offered, and of the open units be right, in total. Three texts stand behind a
# "?>" in a literal of PHP, where by contract the page goes on: they are offered as text of the page, with the script
# around them.
LEAST_OFFERED = 0.98
LEAST_RIGHT = 0.95


def words(text):
    """A text as one run of words, however it is written."""
    return re.sub(r"\s+", " ", text).strip()


def literal_at(page, line, column):
    """The literal between its quotes, as it stands in the page, and whether PHP fills in variables."""
    lines = page.split(b"\n")
    begin = sum(len(row) + 1 for row in lines[: line - 1]) + column - 1
    here = re.match(rb"<<<[ \t]*['\"]?(\w+)['\"]?\r?\n(.*?)\n[ \t]*\1\b", page[begin:], re.S)
    if here:
        return here[2].decode("utf-8", "replace"), page[begin + 3:begin + 4] != b"'"
    quote = page[begin:begin + 1]
    end = begin + 1
    while page[end:end + 1] != quote:
        end += 2 if page[end:end + 1] == b"\\" else 1
    return page[begin + 1:end].decode("utf-8", "replace"), quote == b'"'


def runs_of(literal, interpolates):
    """What of a literal is words: without tags, styles, values and escapes."""
    literal = re.sub(r"<style\b.*?</style>", "", literal, flags=re.S | re.I)
    captions = re.findall(r"""(?:alt|title|value|placeholder)=\\?["']([^\W\d][^"'\\]*)""", literal)
    text = re.sub(r"<\\?/?[A-Za-z][^>]*>|<[A-Za-z][^>]*$|^[^<>]*>|\\[nrt]|\\(?=['\"])", "\0", literal)
    text = "\0".join([text, *captions])
    text = text.replace("\\$", "\1")
    if interpolates:
        text = re.sub(r"\{\$[^}]*\}|\$\{[^}]*\}|\$\w+(\[[^\]]*\]|->\w+)?", "\0", text)
    text = re.sub(r"%\w\b|https?://[^\s<]+", "\0", text).replace("\1", "$")
    return [run for run in (words(html.unescape(part)) for part in text.split("\0")) if re.search(r"\w", run)]


def open_units(kavo, page, work):
    copy = pathlib.Path(tempfile.mkdtemp(dir=work)) / page.name
    shutil.copy(page, copy)
    ran = subprocess.run([kavo, "prepare", str(copy), "--source", "EN-US", "--target", "FR"], capture_output=True,
                         text=True)
    if ran.returncode != 0:
        sys.exit(f"{page} cannot be prepared: {ran.stderr}")
    tud = next(line for line in ran.stdout.splitlines() if "_scr" in line)
    xml = pathlib.Path(tud).read_text(encoding="utf-8")
    units = []
    for attributes, unit in re.findall(r"<trans-unit\b([^>]*)>(.*?)</trans-unit>", xml, re.S):
        source = re.search(r"<source\b[^>]*>(.*?)</source>", unit, re.S)[1]
        source = re.sub(r"<(ph|bpt|ept|it)\b[^>]*>.*?</\1>|<[^>]*>", "\0", source)
        if 'translate="no"' not in attributes:
            units.append([words(part) for part in html.unescape(source).split("\0") if words(part)])
    return units


def main(kavo, corpus, packages):
    pages = {}
    for row in LABELS.read_text(encoding="utf-8").splitlines():
        if row and not row.startswith("#"):
            name, line, column, label = row.split("\t")
            labels = pages.setdefault(name, [])
            if label == "text":
                labels.append((int(line), int(column)))
    counts, misses, there = {}, [], 0
    with tempfile.TemporaryDirectory() as work:
        for name, labels in pages.items():
            package, _, rest = name.partition("/")
            places = [pathlib.Path(corpus) / rest] if package == "corpus" else [
                pathlib.Path(packages) / package / prefix.format(package) / rest for prefix in PREFIXES]
            page = next((place for place in places if place.is_file()), None)
            if page is None:
                continue
            there += 1
            count = counts.setdefault(LANGUAGES[page.suffix.lower()], [0, 0, 0, 0])
            texts = [(line, column, runs_of(*literal_at(page.read_bytes(), line, column))) for line, column in labels]
            units = open_units(kavo, page, work)
            for line, column, runs in texts:
                missing = [run for run in runs
                           if not any(run in " ".join(unit) or any(run in part for part in unit) for unit in units)]
                count[0] += 1
                count[1] += not missing
                if missing:
                    misses.append(f"missed: {name}:{line}:{column} {missing}")
            labelled = [run for _, _, runs in texts for run in runs]
            for unit in units:
                right = any(run in part or part in run for run in labelled for part in unit if re.search(r"\w\w", part))
                count[2] += 1
                count[3] += right
                if not right:
                    misses.append(f"no text: {name}: {unit}")
    if there == 0:
        print("skipped: none of the labelled pages is there")
        return 77
    print(f"{there} of {len(pages)} labelled pages")
    for language, count in sorted(counts.items()) + [("all", [sum(column) for column in zip(*counts.values())])]:
        print(f"{language:10} texts {count[0]:4}, offered {count[1]:4}   open units {count[2]:4}, right {count[3]:4}")
    for miss in misses:
        print(miss)
    # Too few pages for a verdict.
    if there < len(pages):
        return 0
    texts, offered, units, right = (sum(column) for column in zip(*counts.values()))
    return 0 if offered >= LEAST_OFFERED * texts and right >= LEAST_RIGHT * units else 1


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
