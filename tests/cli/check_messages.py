#!/usr/bin/env python3
"""docs/messages.md has a row for each text of the string table: a message with its words, cause and cure, or a label."""
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
TEXT = r'u"(?:[^"\\]|\\.)*"'


def table():
    """The texts by name; those of the namespace `text` without it."""
    rows = {}
    for namespace, content in re.findall(r"namespace (\w*text) \{(.*?)\}  // namespace",
                                         (TOP / "src/resources/string_table.h").read_text(), flags=re.S):
        for name, literals in re.findall(rf"TextRow (k\w+)\{{\s*\d+,\s*((?:{TEXT}\s*)+)\}}", content):
            parts = re.findall(r'u"((?:[^"\\]|\\.)*)"', literals)
            rows[name if namespace == "text" else f"{namespace}::{name}"] = "".join(parts).replace('\\"', '"')
    return rows


def as_shown(text):
    """The words as the document has them, with places for values in braces."""
    text = re.sub(r"%(\d)%", r"{\1}", text).replace("&", "&amp;")
    return re.sub(r"(: | of )$", r"\1{file}", text)


def main():
    page = (TOP / "docs/messages.md").read_text()
    rows = table()
    faults, told = [], []
    for name, words, cause, cure in re.findall(r"^\| `([\w:]+)` \| (.*?) \| (.*?) \|(.*)\|$", page, flags=re.M):
        told.append(name)
        if name not in rows:
            faults.append(f"{name} is not in the string table")
        elif words != as_shown(rows[name]):
            faults.append(f"{name} is: {as_shown(rows[name])}\n  not: {words}")
        elif not cause or (not cure.strip() and "Stands below" not in cause and "heading" not in cause):
            faults.append(f"{name} has no cause or no cure")
    labels = re.findall(r"`([\w:]+)`", page[page.index("## Labels of dialogs"):])
    for name in labels:
        if name not in rows:
            faults.append(f"the label {name} is not in the string table")
    twice = [name for name in set(told + labels) if (told + labels).count(name) > 1]
    faults += [f"{name} stands twice" for name in twice]
    faults += [f"{name} is missing: {rows[name]}" for name in rows if name not in told and name not in labels]
    print("\n".join(faults) or f"{len(told)} messages and {len(labels)} labels, as the string table has them")
    sys.exit(1 if faults or len(rows) < 100 else 0)


main()
