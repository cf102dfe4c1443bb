#!/usr/bin/env python3
"""Writes src/formats/html/entities.inc: the named character references of the HTML Standard, section 13.5.

  scripts/make-entities.py            writes the file
  scripts/make-entities.py --check    reports a difference with exit code 1

The names come from the table in Python's standard library (html.entities.html5), which holds all of the standard's.
"""
import sys
from html.entities import html5
from pathlib import Path

FILE = Path(__file__).resolve().parent.parent / "src/formats/html/entities.inc"
HEAD = """// The named character references of the HTML Standard, section 13.5: all of them, sorted by name. Made by
// scripts/make-entities.py from the table in Python's standard library. Columns: name, its one or two characters, and
// whether the standard takes the name without its semicolon, too.
"""


def rows():
    for name in sorted(name for name in html5 if name.endswith(";")):
        first, second = [*map(ord, html5[name]), 0][:2]
        legacy = "true" if name[:-1] in html5 else "false"
        yield f'{{"{name[:-1]}", 0x{first:X}, {f"0x{second:X}" if second else "0"}, {legacy}}},\n'


text = HEAD + "".join(sorted(rows(), key=lambda row: row.split('"')[1]))
if "--check" in sys.argv[1:]:
    if FILE.read_text(encoding="ascii") != text:
        sys.exit(f"{FILE.name} differs from what make-entities.py writes: run it and see what changed")
else:
    FILE.write_text(text, encoding="ascii")
