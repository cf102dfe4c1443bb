#!/usr/bin/env python3
"""The samples of samples/hosts as far as they can be checked without a host: each says how it is tested, calls only members
that the interfaces have, and takes all steps; Python compiles, and C# where the Mono compiler is installed."""
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


def check(sample, known):
    text = sample.read_text()
    faults = [] if re.search(r"Tested: \w", "\n".join(text.splitlines()[:6])) else ["does not say how it is tested"]
    faults += [f"lacks {step}" for step in STEPS if step not in text]
    called = re.findall(r"(?:wizard|catalogue)\.(?:call\(L\"|put\(L\")?(\w+)", text)
    faults += [f"calls {member}, which no interface has" for member in sorted(set(called) - known - {"call", "put"})]
    if not called:
        faults.append("calls nothing")
    with tempfile.TemporaryDirectory() as folder:
        compiler = None
        if sample.suffix == ".py":
            script = "import py_compile, sys; py_compile.compile(sys.argv[1], cfile=sys.argv[2], doraise=True)"
            compiler = [sys.executable, "-c", script, sample, f"{folder}/host.pyc"]
        elif sample.suffix == ".cs" and shutil.which("mcs"):
            compiler = ["mcs", "-r:Microsoft.CSharp.dll", f"-out:{folder}/host.exe", sample]
        if compiler:
            ran = subprocess.run(compiler, capture_output=True, text=True)
            if ran.returncode:
                faults.append(f"does not compile: {ran.stdout}{ran.stderr}")
    return [f"{sample.name} {fault}" for fault in faults]


def main():
    samples = sorted(path for path in HOSTS.iterdir() if path.suffix != ".md")
    listed = (HOSTS / "README.md").read_text()
    known = members()
    faults = [f"README.md does not list {sample.name}" for sample in samples if f"`{sample.name}`" not in listed]
    for sample in samples:
        faults += check(sample, known)
    print("\n".join(faults) or f"{len(samples)} samples, {len(known)} members")
    sys.exit(1 if faults or len(samples) < 7 or len(known) < 10 else 0)


main()
