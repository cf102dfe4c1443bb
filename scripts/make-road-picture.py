#!/usr/bin/env python3
"""Draws the road of a page, docs/pictures/road.svg: what `kavo` really makes of one line of samples/index.asp.

    scripts/make-road-picture.py KAVO FILE

KAVO is the program. tests/cli/check_documents.py compares the committed picture with what this makes.
"""
import pathlib
import re
import subprocess
import sys
import tempfile
from xml.sax.saxutils import escape, unescape

TOP = pathlib.Path(__file__).resolve().parents[1]
WIDTH, LINE, BOX, GAP = 720, 20, 62, 40


def take_the_road(program):
    """The steps as (files, lines shown, command that leads on)."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)

        def kavo(*arguments):
            subprocess.run([program, *arguments, "--no-project"], cwd=folder, check=True, capture_output=True)

        def line(file, pattern):
            return re.search(pattern, (folder / file).read_text()).group(0)

        (folder / "index.asp").write_bytes((TOP / "samples/index.asp").read_bytes())
        kavo("prepare", "index.asp", "--source", "EN-US", "--target", "FR")
        for part in ("htm", "scr"):
            kavo("import", TOP / f"samples/returned/index_asp_{part}_FR.xlf", "--to", f"index_asp_{part}_FR.tud")
        kavo("rebuild", "index_asp_htm_FR.tud")

        def text(kind):  # as an editor shows it, the code as its number
            found = re.search(rf"<{kind}[^>]*>((?:Welcome|Bienvenue).*?)</{kind}>", (folder / "index_asp_htm_FR.tud").read_text())
            return unescape(re.sub(r'<ph id="(\d+)".*?</ph>', r"{\1}", found[1]))

        return [
            ("index.asp", [line("index.asp", "<h1>.*</h1>")], "kavo prepare index.asp --source EN-US --target FR"),
            ("index_asp.htm and index_asp.scr: the page without its scripts, and the scripts",
             [line("index_asp.htm", "<h1>.*</h1>"), line("index_asp.scr", "<%=Server.*%>")], ""),
            ("index_asp_htm_FR.tud: the texts, in XLIFF 1.2, for any editor",
             [text("source"), text("target")], "kavo rebuild index_asp_htm_FR.tud"),
            ("index_FR.asp: the same bytes but for the texts", [line("index_FR.asp", "<h1>.*</h1>")], ""),
        ]


def draw(steps):
    parts, top = [], 10
    for number, (title, lines, command) in enumerate(steps):
        height = BOX + LINE * (len(lines) - 1)
        parts.append(f'<rect x="10" y="{top}" width="{WIDTH - 20}" height="{height}" rx="6" class="box"/>')
        parts.append(f'<text x="24" y="{top + 22}" class="title">{escape(title)}</text>')
        for index, line in enumerate(lines):
            parts.append(f'<text x="24" y="{top + 46 + LINE * index}" class="code">{escape(line)}</text>')
        top += height
        if number + 1 < len(steps):
            parts.append(f'<path d="M40 {top} v{GAP - 8}" class="way"/><path d="M34 {top + GAP - 10} h12 l-6 9 z" class="head"/>')
            if command:
                parts.append(f'<text x="60" y="{top + 25}" class="command">{escape(command)}</text>')
            top += GAP
    style = ("text{font:14px sans-serif;fill:#222}.title{font-weight:bold}.code,.command{font:14px monospace}"
             ".command{fill:#0a58a6}.box{fill:#f6f8fa;stroke:#8a94a0}.way{stroke:#0a58a6;stroke-width:2;fill:none}.head{fill:#0a58a6}")
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{top + 10}" viewBox="0 0 {WIDTH} {top + 10}">\n'
            f'<title>From a server page to its translation</title>\n<style>{style}</style>\n'
            f'<rect width="{WIDTH}" height="{top + 10}" fill="#fff"/>\n' + "\n".join(parts) + "\n</svg>\n")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program = pathlib.Path(sys.argv[1]).resolve()
    pathlib.Path(sys.argv[2]).write_text(draw(take_the_road(program)))


main()
