#!/usr/bin/env python3
"""Runs the commands that the documents show, and compares what they print with what the documents say.

    check_documents.py KAVO                  every document
    check_documents.py KAVO DOCUMENT...      these
    check_documents.py --update KAVO [...]   writes what the commands print into the documents instead

A command stands in a fenced block:

    ```console
    $ kavo prepare notice.txt --source EN-US --target FR
    notice_txt_FR.tud
    ```

The commands of a document run in order, in one shell, in a folder with copies of samples/ and a home of its own. What a
command prints (output and errors) must be what stands below it. "..." alone on a line stands for any lines, at the end or
inside of a line for any characters. Each command must succeed. A word behind "console" says otherwise:

    fresh             the shell begins anew here, in a new folder
    exit N            the last command of the block ends with exit code N
    not run: REASON   nothing runs here (another system, needs root ...); such commands are counted and listed

A command outside of such a block (in another fence, or indented) is a fault: nobody would notice when it stops working.
So is a link to a file or a heading that is not there.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^( *)(```+)(.*)$")
SYNOPSIS = re.compile(r"\[options\]")
COMMAND = re.compile(r"^(\$ |(sudo )?(kavo|scripts/|cmake|ctest|apt|regsvr32|build/|bench/|parallel|git|msiexec)\b)")
PICTURE = "docs/pictures/road.svg"
DONE = "kavo-documents-done"


class Command:
    def __init__(self, line, number):
        self.text, self.number, self.shown, self.code = line, number, [], 0


class Block:
    """A console block: its commands, and where its lines stand in the document (from 0, behind the fence)."""

    def __init__(self, info, indent, first):
        self.info, self.indent, self.first, self.end, self.commands = info, indent, first, first, []


def read(document):
    """The console blocks of a document and its faults."""
    lines = document.read_text().splitlines()
    blocks, faults = [], []
    fence = block = None
    for number, line in enumerate(lines):
        mark = FENCE.match(line)
        where = f"{document.relative_to(TOP)}:{number + 1}"
        if fence is None:
            if mark:
                fence = mark
                word, _, info = mark[3].strip().partition(" ")
                block = Block(info.strip(), mark[1], number + 1) if word == "console" else None
                if block and not re.fullmatch(r"(fresh)?|(fresh )?exit \d+|not run: .+", block.info):
                    faults.append(f"{where}: unknown word behind console: {block.info}")
            elif re.match(r" {4}", line) and COMMAND.match(line.strip()):
                faults.append(f"{where}: a command outside of a console block: {line.strip()}")
        elif mark and mark[2] == fence[2] and not mark[3].strip():
            if block:
                block.end = number
                blocks.append(block)
            fence = block = None
        elif block is None:
            if COMMAND.match(line.strip()) and not SYNOPSIS.search(line):
                faults.append(f"{where}: a command outside of a console block: {line.strip()}")
        else:
            line = line.removeprefix(block.indent)
            before = block.commands[-1] if block.commands else None
            if line.startswith("$ "):
                block.commands.append(Command(line[2:], number + 1))
            elif before is None:
                faults.append(f"{where}: a console block begins with a command ($ ...)")
            elif before.text.endswith("\\") and not before.shown:
                before.text += "\n" + line.removeprefix("> ")
            else:
                before.shown.append(line)
    for block in blocks:
        code = re.search(r"exit (\d+)", block.info)
        if code and block.commands:
            block.commands[-1].code = int(code[1])
    return blocks, faults


def run(program, commands):
    """What each command prints, and its exit code."""
    with tempfile.TemporaryDirectory(prefix="kavo-documents-") as name:
        folder = pathlib.Path(name)
        (folder / "home").mkdir()
        (folder / "scratch").mkdir()
        shutil.copytree(TOP / "samples", folder / "work")
        surroundings = {"PATH": f"{program.parent}:/usr/bin:/bin", "HOME": str(folder / "home"), "LC_ALL": "C.UTF-8",
                        "TMPDIR": str(folder / "scratch")}
        script = folder / "script"
        script.write_text("".join(f"{command.text}\nprintf '\\n{DONE} %s\\n' $?\n" for command in commands))
        ran = subprocess.run(["bash", script], cwd=folder / "work", env=surroundings, text=True, errors="replace",
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
        results = re.split(rf"\n{DONE} (\d+)\n", ran.stdout)
        return [(text.rstrip("\n").split("\n") if text.strip() else [], int(code))
                for text, code in zip(results[0:-1:2], results[1::2])]


def fits(shown, printed):
    """Whether what was printed is what is shown, "..." standing for what is left out."""
    pattern = ""
    for line in shown:
        line = line.rstrip()
        if line.strip() == "...":
            pattern += r"(?:.*\n)*?"
        else:
            pattern += re.escape(line).replace(r"\.\.\.", ".*?") + r"\n"
    return re.fullmatch(pattern, "".join(line.rstrip() + "\n" for line in printed)) is not None


def check(program, document, update):
    """Runs the commands of a document: how many ran, which did not, the faults."""
    blocks, faults = read(document)
    place = document.relative_to(TOP)
    left = [(f"{place}:{command.number}", block.info.removeprefix("not run: "), command.text)
            for block in blocks if block.info.startswith("not run:") for command in block.commands]
    shells = []
    for block in blocks:
        if not block.info.startswith("not run:"):
            if block.info.startswith("fresh") or not shells:
                shells.append([])
            shells[-1] += block.commands
    count = 0
    for commands in shells:
        results = run(program, commands)
        if len(results) != len(commands):
            faults.append(f"{place}: the shell ended after {len(results)} of {len(commands)} commands")
        for command, (printed, code) in zip(commands, results):
            count += 1
            if code != command.code:
                faults.append(f"{place}:{command.number}: exit code {code}, not {command.code}: {command.text}\n  "
                              + "\n  ".join(printed[-5:]))
            elif not fits(command.shown, printed) and not update:
                faults.append(f"{place}:{command.number}: {command.text}\n  shown:\n    " + "\n    ".join(command.shown)
                              + "\n  printed:\n    " + "\n    ".join(printed[:40]))
            elif not fits(command.shown, printed):
                command.shown = printed
    if update:
        write(document, [block for block in blocks if not block.info.startswith("not run:")])
    return count, left, faults


def write(document, blocks):
    lines = document.read_text().splitlines()
    for block in reversed(blocks):
        new = []
        for command in block.commands:
            new += [block.indent + line for line in ("$ " + command.text.replace("\n", "\n> ")).split("\n") + command.shown]
        lines[block.first:block.end] = new
    document.write_text("\n".join(lines) + "\n")


def check_links(document):
    """Links to files and headings of this project lead somewhere."""
    faults = []
    text = re.sub(r"^ *```.*?^ *```$", "", document.read_text(), flags=re.M | re.S)
    for link in re.findall(r"\]\(([^)\s]+)\)", text):
        name, _, heading = link.partition("#")
        target = (document.parent / name).resolve() if name else document
        if "://" in link:
            continue
        if not target.exists():
            faults.append(f"{document.relative_to(TOP)}: {link} leads nowhere")
        elif heading and heading not in headings(target):
            faults.append(f"{document.relative_to(TOP)}: {link}: there is no such heading")
    return faults


def headings(document):
    """As links name them: lower case, hyphens for blanks, no punctuation."""
    titles = re.findall(r"^#+ (.*)$", document.read_text(), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def check_picture(program):
    """README's picture is made of real output, too."""
    with tempfile.TemporaryDirectory() as folder:
        made = pathlib.Path(folder, "road.svg")
        subprocess.run([sys.executable, TOP / "scripts/make-road-picture.py", program, made], check=True)
        if made.read_text() != (TOP / PICTURE).read_text():
            return [f"{PICTURE} is not what scripts/make-road-picture.py makes"]
    return []


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    if not arguments:
        sys.exit(__doc__)
    program = pathlib.Path(arguments[0]).resolve()
    documents = [pathlib.Path(name).resolve() for name in arguments[1:]] or [
        TOP / "README.md", TOP / "CONTRIBUTING.md", *sorted((TOP / "docs").rglob("*.md"))]
    total, left_out, faults = 0, [], check_picture(program)
    for document in documents:
        begin = time.monotonic()
        count, left, wrong = check(program, document, "--update" in sys.argv)
        total += count
        left_out += left
        faults += wrong + check_links(document)
        if count:
            print(f"{document.relative_to(TOP)}: {count} commands, {time.monotonic() - begin:.1f} s")
    for reason in dict.fromkeys(reason for _, reason, _ in left_out):
        places = [place for place, its_reason, _ in left_out if its_reason == reason]
        print(f"{len(places)} not run, {reason}: {' '.join(places)}")
    print("\n".join(faults))
    print(f"{total} commands of {len(documents)} documents ran, {len(left_out)} are not run, {len(faults)} faults")
    sys.exit(1 if faults or (total < 1) else 0)


main()
