#!/usr/bin/env python3
"""Prints the text "FileVersion" of a Windows file's version resource: file_version.py FILE"""
import pathlib
import re
import sys

name = "FileVersion".encode("utf-16-le")
found = re.search(re.escape(name) + rb"(?:\0\0)+((?:[0-9.]\0)+)", pathlib.Path(sys.argv[1]).read_bytes())
if not found:
    sys.exit(f"{sys.argv[1]} has no version resource")
print(found.group(1).decode("utf-16-le"))
