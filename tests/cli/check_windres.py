#!/usr/bin/env python3
"""Compiles translated resource scripts: check_windres.py KAVO FOLDER_OF_OWN_SCRIPTS [CORPUS]

Each script is prepared, translated, rebuilt and compiled by MinGW's resource compiler, before and after. Every
translation must then stand in the compiled resources as the program will read it. Own scripts compile as they are; real
ones include headers and name files of their projects, for which stand-ins are made here: empty headers, a number for
each identifier, pictures of one point. The compiler does not read UTF-16: such scripts, and theirs that have a mark,
become UTF-8 for it. Without the compiler the test is skipped.
"""
import pathlib, re, shutil, struct, subprocess, sys, tempfile
import xml.etree.ElementTree as ElementTree

COMPILER = "x86_64-w64-mingw32-windres"
PREPROCESSOR = "x86_64-w64-mingw32-gcc"
XLIFF = "{urn:oasis:names:tc:xliff:document:1.2}"
SHOWN = {"\\n": "\n", "\\r\\n": "\r\n", "\\t": "\t"}
# Of scripts that do not say it, the language that they are in.
LANGUAGES = {"wcs_deu_dictpad": "DE", "wcs_cht_dictpad": "ZH-TW"}


class Failed(Exception):
    pass


def run(*command, **options):
    done = subprocess.run([str(c) for c in command], capture_output=True, **options)
    if done.returncode:
        raise Failed(f"{' '.join(map(str, command))}\n{(done.stdout + done.stderr).decode(errors='replace')[-2000:]}")
    return done.stdout


def readable(script):
    """The script's bytes as the compiler reads them."""
    data = script.read_bytes()
    for mark, coding in ((b"\xef\xbb\xbf", "utf-8"), (b"\xff\xfe", "utf-16-le"), (b"\xfe\xff", "utf-16-be")):
        if data.startswith(mark):
            text = re.sub(r"code_page\(\d+\)", "code_page(65001)", data[len(mark):].decode(coding))
            return ("#pragma code_page(65001)\n" + text).encode()
    return data


def icon():
    image = struct.pack("<IiiHHIIiiII", 40, 1, 2, 1, 24, 0, 8, 0, 0, 0, 0) + bytes(8)
    return struct.pack("<HHHBBBBHHII", 0, 1, 1, 1, 1, 0, 0, 1, 24, len(image), 22) + image


def bitmap():
    image = struct.pack("<IiiHHIIiiII", 40, 1, 1, 1, 24, 0, 4, 0, 0, 0, 0) + bytes(4)
    return struct.pack("<2sIHHI", b"BM", 14 + len(image), 0, 0, 14) + image


def make_stand_ins(folder, source):
    """Headers and files that a real script asks for."""
    text = readable(source).decode("latin-1")
    plain = re.sub(r'^\s*#[^\n]*|L?"(?:[^"]|"")*"|//[^\n]*|/\*.*?\*/', " ", text, flags=re.S | re.M)
    names = sorted(set(re.findall(r"\b[A-Z]\w*_\w+\b|\b[a-z]+[A-Z]\w*\b", plain)))
    # Those that the compiler's own headers know come from there.
    header = "#include <windows.h>\n#include <commctrl.h>\n" + "".join(
        f"#ifndef {name}\n#define {name} {number}\n#endif\n" for number, name in enumerate(names, 2000))
    stand_ins = folder / "stand_ins.h"
    stand_ins.write_text(header)
    for name in re.findall(r'^\s*#\s*include\s+[<"]([^">]+)[">]', text, flags=re.M):
        if name not in ("windows.h", "commctrl.h", "winres.h"):
            made = folder / name
            made.parent.mkdir(parents=True, exist_ok=True)
            made.write_text("")
            (folder / name.replace("\\", "/")).parent.mkdir(parents=True, exist_ok=True)
            (folder / name.replace("\\", "/")).write_text("")
    flags = r"(?:DISCARDABLE\s+|MOVEABLE\s+|PURE\s+)*"
    for kind, name in re.findall(r'^\w+\s+(\w+)\s+' + flags + r'"([^"]+\.\w+)"', text, flags=re.M):
        for path in (folder / name.replace("\\\\", "/").replace("\\", "/"), folder / name.replace("\\\\", "\\")):
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(icon() if kind == "ICON" else bitmap())
    return stand_ins


def compiled(folder, script, stand_ins):
    source = folder / f"{script.stem}_to_compile.rc"
    include = f'#include "{stand_ins.name}"\n'.encode() if stand_ins else b""
    source.write_bytes(include + readable(script))
    target = source.with_suffix(".res")
    result = b""
    for branch in ("RELEASE", "_DEBUG"):
        run(COMPILER, "-D", branch, "-I", folder, "-J", "rc", "-O", "res", source.name, "-o", target, cwd=folder)
        result += target.read_bytes()
    return result


def macros_of(script, names):
    """What the preprocessor puts in the place of macros that stand between literals."""
    lines = readable(script).decode("latin-1").splitlines()
    defines = [line for line in lines if re.match(r"\s*#\s*define\b", line)]
    shown = run(PREPROCESSOR, "-E", "-P", "-x", "c", "-", input="\n".join(defines + names).encode()).decode()
    values = shown.splitlines()[-len(names):] if names else []
    return {name: value[1:-1] for name, value in zip(names, values) if value.startswith('"')}


def texts_of(tud, script):
    """The translations as a program reads them; of a text with a code that no one here can read, the longest piece."""
    units = list(ElementTree.parse(tud).iter(XLIFF + "trans-unit"))
    codes = [code.text for unit in units for code in unit.find(XLIFF + "target") if code.get("ctype") == "x-macro"]
    known = SHOWN | macros_of(script, sorted(set(codes)))
    texts = []
    for unit in units:
        target = unit.find(XLIFF + "target")
        pieces = [target.text or ""]
        for code in target:
            shown = code.text or ""
            if shown in known or shown.startswith("%"):
                pieces[-1] += known.get(shown, shown)
            else:
                pieces.append("")
            pieces[-1] += code.tail or ""
        texts.append(max(pieces, key=len))
    return texts


def check(kavo, script, folder, target, is_real):
    source_language = LANGUAGES.get(script.stem, "EN-US")
    folder = folder / f"{script.stem}_{target}"
    folder.mkdir()
    copy = folder / f"{script.stem}.rc"
    shutil.copyfile(script, copy)
    stand_ins = make_stand_ins(folder, copy) if is_real else None
    try:
        before = compiled(folder, copy, stand_ins)
    except Failed as reason:
        if not is_real:
            raise
        # Real scripts are written for another compiler.
        print(f"{script.name}: not even the source compiles: {' '.join(str(reason).splitlines()[1:])[:600]}")
        return 0
    run(kavo, "prepare", "-q", "--source", source_language, "--target", target, copy)
    tud = folder / f"{script.stem}_rc_{target}.tud"
    run(kavo, "pseudo", "-q", tud)
    run(kavo, "rebuild", "-q", tud)
    after = compiled(folder, folder / f"{script.stem}_{target}.rc", stand_ins)
    texts = texts_of(tud, copy)
    missing = [text for text in texts if text.encode("utf-16-le") not in after]
    changed = [text for text in texts if text.encode("utf-16-le") not in before]
    print(f"{script.name} to {target}: {len(texts)} texts, {len(missing)} not compiled")
    # What is in no branch that is compiled is not there; of own scripts all is.
    if (missing and not is_real) or len(missing) * 20 > len(texts) or not changed:
        sys.exit(f"{script}: not in the compiled resources: {missing[:10]}")
    return len(texts)


def main():
    kavo, own = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    corpus = pathlib.Path(sys.argv[3]) / "rc" if len(sys.argv) > 3 else None
    if not shutil.which(COMPILER):
        print(f"skipped: no {COMPILER}")
        sys.exit(77)
    count = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for target in ("FR", "RU", "JA"):
            for script in sorted(own.glob("*.rc")):
                count += check(kavo, script, folder, target, False)
        if corpus and corpus.is_dir():
            scripts = sorted(p for p in corpus.iterdir() if p.suffix.lower() == ".rc")
            counts = [check(kavo, script, folder, "FR", True) for script in scripts]
            compiled_count = sum(texts != 0 for texts in counts)
            count += sum(counts)
            print(f"{compiled_count} of {len(scripts)} real scripts")
            if compiled_count < 5:
                sys.exit("fewer than five real scripts")
    print(f"{count} texts")


try:
    main()
except Failed as failed:
    sys.exit(str(failed))
