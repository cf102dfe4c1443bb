#!/usr/bin/env python3
"""The samples of samples/hosts as far as they can be checked without a host.

Each says how it is tested, calls only members that the interfaces have, and takes all steps. Python is compiled, C# where
the Mono compiler is installed; PowerShell is parsed where tree-sitter's grammar is. What could not be done is said. A copy
with a mistake in it must fail each of these. VBA is compiled in tests/office/libreoffice.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[2]
HOSTS = TOP / "samples" / "hosts"
STEPS = ["K19FPW.K19FPWObj", "PreProcess", "GetFileCount", "GetFile", "K19Suite.FilterCatalogue", "Convert",
         "CreateTranslation", "QuietMode"]


def members():
    """Of the library, from its interface definition, and of the suite, from the document that describes it."""
    library = re.findall(r"HRESULT (\w+)\(", (TOP / "src/resources/K19FPW.idl").read_text())
    suite = re.findall(r"^### (\w+)", (TOP / "docs/suite-interface.md").read_text(), flags=re.M)
    return set(library + suite)


# Says "wrong" when the parser finds a mistake.
POWERSHELL_PROGRAM = """
const [modules, script] = process.argv.slice(1);
const {Parser, Language} = await import(modules + "/web-tree-sitter/tree-sitter.js");
const {readFileSync} = await import("node:fs");
await Parser.init();
const parser = new Parser();
parser.setLanguage(await Language.load(modules + "/tree-sitter-powershell/tree-sitter-powershell.wasm"));
console.log(parser.parse(readFileSync(script, "utf8")).rootNode.hasError ? "wrong" : "right");
"""
MODULES = pathlib.Path(os.environ.get("XDG_CACHE_HOME", pathlib.Path.home() / ".cache")) / "kavo-npm" / "node_modules"


class Checks:
    """The compilers and parsers that are there; each returns what is wrong with a sample, "" for nothing."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.skipped = []
        self.by_suffix = {".py": self.python}
        self.offer(".cs", self.csharp, shutil.which("mcs"), "C# (no Mono compiler)")
        self.offer(".ps1", self.powershell, shutil.which("node") and (MODULES / "tree-sitter-powershell").is_dir(),
                   "PowerShell (no grammar)")

    def offer(self, suffix, check, is_there, name):
        if is_there:
            self.by_suffix[suffix] = check
        else:
            self.skipped.append(name)

    def run(self, *command):
        ran = subprocess.run([str(word) for word in command], capture_output=True, text=True)
        return ran.stdout + ran.stderr if ran.returncode else ""

    def python(self, sample):
        script = "import py_compile, sys; py_compile.compile(sys.argv[1], cfile=sys.argv[2], doraise=True)"
        return self.run(sys.executable, "-c", script, sample, self.folder / "host.pyc")

    def csharp(self, sample):
        return self.run("mcs", "-r:Microsoft.CSharp.dll", f"-out:{self.folder}/host.exe", sample)

    def powershell(self, sample):
        # The quick compiler for WebAssembly alone: the other one takes seconds for the grammar.
        ran = subprocess.run(["node", "--liftoff-only", "--input-type=module", "-e", POWERSHELL_PROGRAM, str(MODULES),
                              str(sample)], capture_output=True, text=True)
        return "" if ran.stdout == "right\n" else ran.stdout + ran.stderr

    def faults(self, sample):
        check = self.by_suffix.get(sample.suffix)
        if check is None:
            return []
        found = check(sample)
        if found:
            return [f"does not compile: {found}"]
        wrong = self.folder / ("wrong" + sample.suffix)
        wrong.write_text(sample.read_text() + "\nIf (\n")
        return [] if check(wrong) else ["a mistake in it would not be found"]


def faults_of(sample, known):
    text = sample.read_text()
    faults = [] if re.search(r"Tested: \w", "\n".join(text.splitlines()[:6])) else ["does not say how it is tested"]
    faults += [f"lacks {step}" for step in STEPS if step not in text]
    called = re.findall(r"(?:wizard|catalogue)\.(?:call\(L\"|put\(L\")?(\w+)", text)
    faults += [f"calls {member}, which no interface has" for member in sorted(set(called) - known - {"call", "put"})]
    if not called:
        faults.append("calls nothing")
    return faults


def main():
    samples = sorted(path for path in HOSTS.iterdir() if path.suffix != ".md")
    listed = (HOSTS / "README.md").read_text()
    known = members()
    faults = [f"README.md does not list {sample.name}" for sample in samples if f"`{sample.name}`" not in listed]
    with tempfile.TemporaryDirectory() as folder:
        checks = Checks(folder)
        for sample in samples:
            faults += [f"{sample.name} {fault}" for fault in faults_of(sample, known) + checks.faults(sample)]
    for name in checks.skipped:
        print(f"skipped: {name}")
    print("\n".join(faults) or f"{len(samples)} samples, {len(known)} members")
    sys.exit(1 if faults or len(samples) < 7 or len(known) < 10 else 0)


main()
