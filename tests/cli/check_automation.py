#!/usr/bin/env python3
"""docs/automation.md describes the members of the interface definition: in its order, with their parameters and numbers."""
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
TYPES = {"BSTR": "text", "long": "number"}


def members():
    """Name, dispatch number, kind of each member, and its parameters as (name, type)."""
    text = (TOP / "src/resources/K19FPW.idl").read_text()
    found = {}
    for attributes, name, arguments in re.findall(r"\[(id\([^\]]*)\]\s*HRESULT (\w+)\((.*?)\);", text, flags=re.S):
        number = re.search(r"id\((\w+)\)", attributes)[1]
        if "propput" in attributes:
            found[name]["written"] = True
            continue
        parameters = []
        for direction, kind, parameter in re.findall(r"\[([\w, ]+)\] (\w+) \*?(\w+)", arguments):
            if "retval" in direction:
                result = TYPES[kind]
            else:
                parameters.append((parameter, f"{TYPES[kind]}, {direction.replace(', ', ' and ')}"))
        found[name] = {"number": number, "property": "propget" in attributes, "written": False, "parameters": parameters,
                       "result": result, "help": re.search(r'helpstring\("(.*?)"', attributes)[1]}
    return found


def main():
    page = (TOP / "docs/automation.md").read_text()
    described = re.findall(r"^### (\w+)(\([^\n]*\))?\n(.*?)(?=^##)", page, flags=re.M | re.S)
    known = members()
    faults = []
    if [name for name, _, _ in described] != list(known):
        faults.append(f"described: {[name for name, _, _ in described]}, defined: {list(known)}")
    for name, arguments, text in described:
        member = known.get(name)
        if not member:
            continue
        expected = "" if member["property"] else "(" + ", ".join(parameter for parameter, _ in member["parameters"]) + ")"
        told = re.findall(r"^\| `(\w+)` \| ([\w, ]+) \|", text, flags=re.M)
        words = [f"Dispatch number {member['number']}", member["help"]]
        if member["property"]:
            words.append(f"a {member['result']} that is read {'and written' if member['written'] else 'only'}")
        if arguments != expected:
            faults.append(f"{name}{arguments} is {name}{expected}")
        if told != member["parameters"]:
            faults.append(f"{name}: parameters {told}, defined {member['parameters']}")
        faults += [f"{name}: the page does not say: {word}" for word in words if word not in text]
    print("\n".join(faults) or f"{len(known)} members, as the interface definition has them")
    sys.exit(1 if faults or len(known) < 7 else 0)


main()
