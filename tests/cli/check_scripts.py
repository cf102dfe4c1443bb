#!/usr/bin/env python3
"""Scripts that parse before a translation parse after it.

    check_scripts.py KAVO FOLDER...

Prepares every page below the folders, translates it in two ways (kavo pseudo; texts full of what may not stand in a
script) and rebuilds it. Each script of the page that its own parser takes must be taken in the rebuilt page, too: client
scripts by Node, PHP pages by `php -l`, scriptlets of JSP by java-parser, VBScript by Wine's script host. A parser that
is not there is named and left out. Exit code 77 where there is no page or no parser at all.
"""
import html
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

EXTENSIONS = {".asp", ".jsp", ".php", ".phtml", ".inc", ".htm", ".html"}
HOSTILE = "\"a\" 'b' \\ \\\" %> ?> <% <? </script> <!-- $c {$d} ${e} `f`\n*/ // \u00e9 \u0436 \u6f22 \U0001f600"
# Where a character of these can be written in no way, the command refuses: then the rest is tried alone.
PLAIN = "\"a\" 'b' \\ %> ?> </script> $c ${e} `f`"
# And where a language takes no expression in the place of a literal, what needs one.
BARE = "\"a\" 'b' \\ $c ${e} `f`"
TRANSLATIONS = {"hostile": HOSTILE, "plain": PLAIN, "bare": BARE}
BLOCK = re.compile(r"<%.*?%>|<\?(?:php\b|=|\s).*?(?:\?>|\Z)", re.S | re.I)
ELEMENT = re.compile(r"<script\b([^>]*)>(.*?)</script\s*>", re.S | re.I)
JAVA_PARSER = pathlib.Path(os.environ.get("XDG_CACHE_HOME", pathlib.Path.home() / ".cache")) / "kavo-npm"

WINE_RUN = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "wine-run.sh"

NODE_PROGRAM = """
const vm = require('vm');
const scripts = JSON.parse(require('fs').readFileSync(0, 'utf8'));
console.log(JSON.stringify(scripts.map(text => { try { new vm.Script(text); return true; } catch { return false; } })));
"""
JAVA_PROGRAM = """
import { parse } from 'java-parser';
import fs from 'fs';
const units = JSON.parse(fs.readFileSync(0, 'utf8'));
console.log(JSON.stringify(units.map(text => { try { parse(text); return true; } catch { return false; } })));
"""


def text_of(path):
    data = path.read_bytes()
    for coding in ("utf-8", "cp1252"):
        try:
            return data.decode(coding)
        except UnicodeDecodeError:
            pass
    return data.decode("latin-1")


def client_scripts(page):
    """Of a page's <script> elements those of browsers, with 0 in the place of server blocks."""
    page = re.sub(r"<%--.*?--%>", "", page, flags=re.S)
    for attributes, content in ELEMENT.findall(page):
        kind = (re.search(r"(?:type|language)\s*=\s*[\"']?([^\"'\s>]*)", attributes, re.I) or [None, "javascript"])[1]
        if re.search(r"runat|src\s*=", attributes, re.I) or not re.search("j(ava)?script|^$", kind, re.I):
            continue
        yield BLOCK.sub("0", content).replace("<!--", "//", 1)


def java_unit(page):
    """The scriptlets of a page as a class: no parser knows them otherwise."""
    page = re.sub(r"<%--.*?--%>", "", page, flags=re.S)
    members, statements, imports = [], [], []
    for block in re.findall(r"<%(.*?)%>", page, re.S):
        if block.startswith("@"):
            continue
        if block.startswith("!"):
            members.append(block[1:])
        elif block.startswith("="):
            statements.append("out.print(" + block[1:] + ");")
        else:
            statements.append(block)
    return "class Page {\n" + "\n".join(members) + "\nvoid run() {\n" + "\n".join(statements) + "\n}\n}\n"


def basic_scripts(page, is_asp):
    """The server's blocks as one script, and each element's."""
    page = re.sub(r"<%--.*?--%>", "", page, flags=re.S)
    declared = re.search(r"<%@[^%]*language\s*=\s*[\"']?(\w+)", page, re.I)
    if is_asp and (declared is None or declared[1].lower() == "vbscript"):
        blocks = re.findall(r"<%(?!@)(.*?)%>", re.sub(r"<script\b.*?</script\s*>", "", page, flags=re.S | re.I), re.S)
        if blocks:
            yield "\n".join("Response.Write " + block[1:] if block.startswith("=") else block for block in blocks)
    for attributes, content in ELEMENT.findall(page):
        if re.search(r"(?:type|language)\s*=\s*[\"']?(?:text/)?vbs", attributes, re.I):
            yield BLOCK.sub("0", content).replace("<!--", "'", 1).replace("-->", "'-->")


def basic_parses(text, work):
    """The host says nothing of a syntax error, but runs nothing of such a script either."""
    path = pathlib.Path(work) / "judged.vbs"
    text = re.sub(r"(?im)^\s*option\s+explicit\s*$", "", text)
    path.write_bytes(('WScript.Echo "parsed"\nWScript.Quit\n' + text + "\n").replace("\r\n", "\n").replace("\n", "\r\n")
                     .encode("cp1252", "replace"))
    ran = subprocess.run([str(WINE_RUN), "cscript.exe", "//nologo", "Z:" + str(path).replace("/", "\\")],
                         capture_output=True, timeout=120)
    return b"parsed" in ran.stdout


def judged(program, arguments, texts):
    if not texts:
        return []
    ran = subprocess.run(program + arguments, input=json.dumps(texts), capture_output=True, text=True, check=True)
    return json.loads(ran.stdout)


def php_parses(path):
    return subprocess.run(["php", "-l", str(path)], capture_output=True).returncode == 0


class Check:
    def __init__(self, kavo):
        self.kavo = kavo
        self.has_php = shutil.which("php") is not None
        self.has_java = (JAVA_PARSER / "node_modules" / "java-parser").is_dir()
        self.has_basic = shutil.which("wine") is not None
        self.counts = {"javascript": [0, 0], "php": [0, 0], "java": [0, 0], "vbscript": [0, 0]}
        self.failures = []
        self.refused = 0
        self.rebuilt = 0

    def run(self, *arguments):
        return subprocess.run([self.kavo, *arguments], capture_output=True, text=True)

    def verdicts(self, path, is_php, is_jsp):
        page = text_of(path)
        found = [("javascript", ok) for ok in judged(["node"], ["-e", NODE_PROGRAM], list(client_scripts(page)))]
        if is_php and self.has_php:
            found.append(("php", php_parses(path)))
        if is_jsp and self.has_java:
            program = JAVA_PARSER / "judge.mjs"
            program.write_text(JAVA_PROGRAM)
            found += [("java", ok) for ok in judged(["node"], [str(program)], [java_unit(page)])]
        if self.has_basic:
            found += [("vbscript", basic_parses(text, self.work))
                      for text in basic_scripts(page, path.suffix.lower() == ".asp")]
        return found

    def translate(self, tud, way):
        if way == "pseudo":
            self.run("pseudo", str(tud))
            # A code that pseudo-translation changes is a defect whatever a parser says.
            xml = tud.read_text(encoding="utf-8")
            for source, target in re.findall(r"<source\b[^>]*>(.*?)</source>.*?<target\b[^>]*>(.*?)</target>", xml, re.S):
                codes = re.compile(r"</?(?:x|bx|ex|g)\b[^>]*>|<(ph|bpt|ept|it)\b[^>]*>.*?</\1>", re.S)
                found = [sorted(re.sub(r' equiv-text="[^"]*"', "", match[0]) for match in codes.finditer(text))
                         for text in (source, target)]
                if found[0] != found[1]:
                    self.failures.append(f"{tud.name}: pseudo changes a code: {source[:80]}")
            return
        hostile = html.escape(TRANSLATIONS[way], quote=False)
        xml = tud.read_text(encoding="utf-8")

        def unit(match):
            if 'translate="no"' in match[1]:
                return match[0]
            return re.sub(r"<target\b[^>]*>(.*?)</target>",
                          lambda target: '<target state="translated">' + hostile + target[1] + hostile + "</target>",
                          match[0], flags=re.S)
        tud.write_text(re.sub(r"<trans-unit\b([^>]*)>.*?</trans-unit>", unit, xml, flags=re.S), encoding="utf-8")

    def road(self, page, way):
        """The rebuilt page, None where the command refuses."""
        work = pathlib.Path(tempfile.mkdtemp(dir=self.work))
        copy = work / page.name
        shutil.copy(page, copy)
        prepared = self.run("prepare", str(copy), "--source", "EN-US", "--target", "FR", "--scripts", "all")
        if prepared.returncode != 0:
            return None
        tuds = [pathlib.Path(line) for line in prepared.stdout.splitlines()]
        for tud in tuds:
            self.translate(tud, way)
        rebuilt = self.run("rebuild", str(tuds[0]))
        if rebuilt.returncode != 0:
            self.last_refusal = rebuilt.stderr.strip()
            return None
        return copy.with_name(copy.stem + "_FR" + copy.suffix)

    def page(self, page):
        is_php = page.suffix.lower() in (".php", ".phtml", ".inc") or "<?php" in text_of(page).lower()
        is_jsp = page.suffix.lower() == ".jsp"
        before = self.verdicts(page, is_php, is_jsp)
        if not any(ok for _, ok in before):
            return
        for way in ("pseudo", *TRANSLATIONS):
            self.last_refusal = ""
            rebuilt = self.road(page, way)
            if rebuilt is None:
                self.refused += 1
                print(f"refused ({way}): {page.name}: {self.last_refusal[-160:]}")
                continue
            self.rebuilt += 1
            after = self.verdicts(rebuilt, is_php, is_jsp)
            if len(before) != len(after):
                self.failures.append(f"{page.name} ({way}): {len(before)} scripts before, {len(after)} after")
                continue
            for (language, parsed), (_, parses) in zip(before, after):
                if not parsed:
                    continue
                self.counts[language][0] += 1
                self.counts[language][1] += parses
                if not parses:
                    self.failures.append(f"{page.name} ({way}): a {language} script does not parse any more")

    def all(self, folders):
        pages = sorted(path for folder in folders for path in pathlib.Path(folder).rglob("*")
                       if path.suffix.lower() in EXTENSIONS)
        if not pages or shutil.which("node") is None:
            print("skipped: no pages, or no Node")
            return 77
        with tempfile.TemporaryDirectory() as self.work:
            for page in pages:
                self.page(page)
        for name, there in (("php", self.has_php), ("java-parser", self.has_java),
                            ("wine", self.has_basic)):
            if not there:
                print(f"left out: {name} is not there (scripts/setup.sh --full installs it)")
        for language, (before, after) in self.counts.items():
            print(f"{language}: {after} of {before} scripts that parsed parse after their translation")
        print(f"{self.rebuilt} pages rebuilt, {self.refused} refused")
        for failure in self.failures:
            print("FAILED:", failure)
        return 1 if self.failures or self.rebuilt == 0 else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(Check(sys.argv[1]).all(sys.argv[2:]))
