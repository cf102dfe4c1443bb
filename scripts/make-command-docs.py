#!/usr/bin/env python3
"""Makes what describes the `kavo` command out of the command's own help: `kavo help --json`.

    scripts/make-command-docs.py KAVO man FOLDER          manual pages, compressed: kavo.1.gz, kavo-prepare.1.gz ...
    scripts/make-command-docs.py KAVO completion FOLDER   completions for bash (kavo), zsh (_kavo) and fish (kavo.fish)
    scripts/make-command-docs.py KAVO reference FILE      all verbs and options, in Markdown

KAVO is the program. SOURCE_DATE_EPOCH, when it is set, dates the manual pages (seconds since 1970).
"""
import gzip
import json
import os
import pathlib
import re
import subprocess
import sys
import time


def main():
    if len(sys.argv) != 4 or sys.argv[2] not in MAKERS:
        sys.exit(__doc__)
    program, kind, place = sys.argv[1:]
    described = subprocess.run([program, "help", "--json"], check=True, capture_output=True)
    command = json.loads(described.stdout)
    MAKERS[kind](command, pathlib.Path(place))


def usage(verb):
    """How the verb is called, as words with a kind each: [("kavo prepare", "bold"), ("FILE", "italic"), ...]."""
    words = [("kavo " + verb["name"], "bold")]
    for option in verb["options"]:
        if option["required"]:
            words += [(option["names"][-1], "bold"), (option["value"], "italic")]
    words.append(("[options]", "plain"))
    for argument in verb["arguments"]:
        name = argument["names"][0] + ("..." if argument["many"] else "")
        words.append((name if argument["required"] else f"[{name}]", "italic"))
    return words


def value_of(option):
    """What follows the option: "{likely,all,none}", "FILE ..." or nothing."""
    value = "{" + ",".join(option["choices"]) + "}" if option["choices"] else option["value"]
    return value + " ..." if value and option["many"] else value


# Manual pages, in the language of man(7).

def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\n".join("\\&" + line if line[:1] in (".", "'") else line for line in text.split("\n"))


def roff_options(options):
    lines = []
    for option in options:
        names = ", ".join(f"\\fB{roff(name)}\\fR" for name in option["names"])
        value = value_of(option)
        lines += [".TP", names + (f" \\fI{roff(value)}\\fR" if value else "")]
        first, *rest = option["help"].split("\n")
        lines.append(roff(first))
        for line in rest:  # such as the settings, one a line
            lines += [".br", roff(line.strip())]
    return lines


def page(name, summary, version, sections):
    date = time.strftime("%Y-%m-%d", time.gmtime(int(os.environ.get("SOURCE_DATE_EPOCH", time.time()))))
    lines = [f'.TH "{name.upper()}" "1" "{date}" "{version}" "KAVO"', ".SH NAME", f"{roff(name)} \\- {roff(summary)}"]
    for title, content in sections:
        lines += [f".SH {title}", *content]
    return "\n".join(lines) + "\n"


def make_manual(command, folder):
    folder.mkdir(parents=True, exist_ok=True)
    verbs = command["verbs"]
    listed = []
    for verb in verbs:
        listed += [".TP", f"\\fBkavo\\-{roff(verb['name'].replace(' ', '-'))}\\fR(1)", roff(verb["summary"])]
    exit_codes, *_ = command["footer"].split("\n")
    pages = {"kavo": page("kavo", "prepare documents for translation and rebuild them", command["version"], [
        ("SYNOPSIS", ["\\fBkavo\\fR \\fIVERB\\fR [options] [\\fIFILE\\fR...]"]),
        ("VERBS", listed),
        ("OPTIONS", roff_options(command["options"])),
        ("EXIT STATUS", [roff(exit_codes.removeprefix("Exit codes: "))])])}
    for verb in verbs:
        name = "kavo-" + verb["name"].replace(" ", "-")
        fonts = {"bold": "\\fB{}\\fR", "italic": "\\fI{}\\fR", "plain": "{}"}
        synopsis = " ".join(fonts[kind].format(roff(word)) for word, kind in usage(verb))
        examples = [".nf", *(roff(example) for example in verb["examples"]), ".fi"]
        pages[name] = page(name, verb["summary"], command["version"], [
            ("SYNOPSIS", [synopsis]),
            ("OPTIONS", roff_options(verb["arguments"] + verb["options"])),
            ("EXAMPLES", examples),
            ("EXIT STATUS", [roff(exit_codes.removeprefix("Exit codes: "))]),
            ("SEE ALSO", ["\\fBkavo\\fR(1)"])])
    for name, text in pages.items():
        (folder / f"{name}.1.gz").write_bytes(gzip.compress(text.encode(), 9, mtime=0))


# Completions. Each shell gets a table of the verbs and of their options, and a short function that reads it.

def grouped(command):
    """The words after `kavo`, and those after a group such as `html`: {"": {...}, "html": {...}} with summaries."""
    words = {"": {}}
    for verb in command["verbs"]:
        group, _, name = verb["name"].rpartition(" ")
        words.setdefault(group, {})[name] = verb["summary"]
        if group:
            words[""][group] = group.capitalize() + ": " + ", ".join(words[group])
    return words


def takes_folder(option):
    return "FOLDER" in option["value"]


def setting_names(verb):
    """The settings that the verb lists in the help of its argument."""
    return [name for argument in verb["arguments"] for name in re.findall(r"(?m)^\s+([\w.-]+): ", argument["help"])]


def bash(command):
    groups = grouped(command)
    lines = ["# Completion of kavo for bash; made from the command's own help.", "_kavo() {",
             "  local word=$2 before=$3 verb=${COMP_WORDS[1]:-} options='' words=''",
             '  case $verb in ' + " | ".join(sorted(group for group in groups if group))
             + ') verb+=" ${COMP_WORDS[2]:-}" ;; esac',
             "  if [ \"$COMP_CWORD\" = 1 ]; then", f"    words='{' '.join(groups[''])} help --help --version'"]
    for group in groups:
        if group:
            lines += [f"  elif [ \"$COMP_CWORD\" = 2 ] && [ \"${{COMP_WORDS[1]}}\" = {group} ]; then",
                      f"    words='{' '.join(groups[group])}'"]
    lines += ["  elif [ \"${COMP_WORDS[1]}\" = help ]; then", f"    words='{' '.join(groups[''])}'", "  else",
              "    case $verb:$before in"]
    for verb in command["verbs"]:
        for option in verb["options"]:
            if not option["value"]:
                continue
            names = " | ".join(f"'{verb['name']}:{name}'" for name in option["names"])
            if option["choices"]:
                lines.append(f"      {names}) words='{' '.join(option['choices'])}' ;;")
            elif takes_folder(option):
                lines.append(f"      {names}) mapfile -t COMPREPLY < <(compgen -d -- \"$word\"); return ;;")
    lines += ["    esac", "    if [ -z \"$words\" ]; then", "      case $verb in"]
    for verb in command["verbs"]:
        options = " ".join(name for option in verb["options"] for name in option["names"])
        lines.append(f"        '{verb['name']}') options='{options}' words='{' '.join(setting_names(verb))}' ;;")
    lines += ["      esac", "      case $word in -*) words=$options ;; esac", "    fi", "  fi",
              "  if [ -n \"$words\" ]; then", "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")", "  else",
              "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")", "  fi", "}",
              "complete -o filenames -F _kavo kavo"]
    return "\n".join(lines) + "\n"


def zsh_text(text):
    return text.split("\n")[0].replace("'", "'\\''").replace("[", "(").replace("]", ")").replace(":", "\\:")


def zsh(command):
    groups = grouped(command)
    lines = ["#compdef kavo", "# Completion of kavo for zsh; made from the command's own help.", "_kavo() {",
             "  local verb=$words[2] first=3", "  local -a verbs arguments"]
    lines.append("  case $verb in " + " | ".join(sorted(group for group in groups if group))
                 + ") verb+=\" $words[3]\" first=4 ;; esac")
    for group in groups:
        test = "(( CURRENT == 2 ))" if not group else f"(( CURRENT == 3 )) && [[ $words[2] == {group} ]]"
        entries = " ".join(f"'{name}:{zsh_text(text)}'" for name, text in groups[group].items())
        lines += [f"  if {test}; then", f"    verbs=({entries})", "    _describe verb verbs; return", "  fi"]
    lines.append("  case $verb in")
    for verb in command["verbs"]:
        specs = []
        for option in verb["options"]:
            action = ""
            if option["value"]:
                choices = f"({' '.join(option['choices'])})" if option["choices"] else (
                    "_files -/" if takes_folder(option) else "_files" if "FILE" in option["value"] else " ")
                action = f":{zsh_text(option['value'])}:{choices}"
            for name in option["names"]:
                many = "*" if option["many"] else ""
                specs.append(f"'{many}{name}[{zsh_text(option['help'])}]{action}'")
        settings = setting_names(verb)
        rest = f"({' '.join(settings)})" if settings else "_files"
        specs.append(f"'*:file:{rest}'")
        lines.append(f"    '{verb['name']}') arguments=({' '.join(specs)}) ;;")
    lines += ["    *) _files; return ;;", "  esac",
              "  words=($verb \"${(@)words[first,-1]}\") CURRENT=$(( CURRENT - first + 2 ))",
              "  _arguments -S $arguments", "}", "_kavo \"$@\""]
    return "\n".join(lines) + "\n"


def fish_text(text):
    return text.split("\n")[0].replace("\\", "\\\\").replace("'", "\\'")


def fish(command):
    groups = grouped(command)
    lines = ["# Completion of kavo for fish; made from the command's own help."]
    for group, words in groups.items():
        condition = "__fish_use_subcommand" if not group else (
            f"__fish_seen_subcommand_from {group}; and not __fish_seen_subcommand_from {' '.join(words)}")
        for name, text in words.items():
            lines.append(f"complete -c kavo -f -n '{condition}' -a {name} -d '{fish_text(text)}'")
    for verb in command["verbs"]:
        condition = "; and ".join(f"__fish_seen_subcommand_from {word}" for word in verb["name"].split(" "))
        for option in verb["options"]:
            names = " ".join(("-l " if name.startswith("--") else "-s ") + name.lstrip("-") for name in option["names"])
            value = ""
            if option["choices"]:
                value = f" -x -a '{' '.join(option['choices'])}'"
            elif takes_folder(option):
                value = " -x -a '(__fish_complete_directories)'"
            elif option["value"]:
                value = " -r"
            lines.append(f"complete -c kavo -n '{condition}' {names}{value} -d '{fish_text(option['help'])}'")
        for name in setting_names(verb):
            lines.append(f"complete -c kavo -f -n '{condition}' -a {name}")
    return "\n".join(lines) + "\n"


def make_completion(command, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in (("kavo", bash(command)), ("_kavo", zsh(command)), ("kavo.fish", fish(command))):
        (folder / name).write_text(text)


# The reference in Markdown.

def cell(text):
    return text.replace("|", "\\|").replace("<", "&lt;")


def make_reference(command, file):
    lines = ["# All verbs and options", "",
             "Made from the command's own help by `scripts/make-command-docs.py`. [command.md](command.md) explains the "
             "verbs; this page lists what each takes.", ""]
    common = [option for option in command["verbs"][0]["options"]
              if all(option in verb["options"] for verb in command["verbs"])]
    lines += ["## Options of every verb", "", "| option | meaning |", "|---|---|"]
    row = "| `{}` | {} |"
    lines += [row.format(cell(", ".join(option["names"]) + (" " + value_of(option) if value_of(option) else "")),
                         cell(option["help"])) for option in common]
    for verb in command["verbs"]:
        lines += ["", f"## kavo {verb['name']}", "", verb["summary"] + ".", "",
                  "```text", " ".join(word for word, _ in usage(verb)), "```", ""]
        own = [option for option in verb["options"] if option not in common]
        if own:
            lines += ["| option | meaning |", "|---|---|"]
            lines += [row.format(cell(", ".join(option["names"]) + (" " + value_of(option) if value_of(option) else "")),
                                 cell(option["help"])) for option in own]
            lines.append("")
        for argument in verb["arguments"]:
            first, *rest = argument["help"].split("\n")
            lines.append(f"`{argument['names'][0]}`: {first}")
            if rest:
                lines += ["", *(re.sub(r"^\s*([\w.-]+): ", r"- `\1`: ", line) for line in rest)]
            lines.append("")
        lines += ["For example:", "", "```console not run: an example of the help, whose options tests/cli/check_descriptions.py tries",
                  *("$ " + example for example in verb["examples"]), "```"]
    file.write_text("\n".join(lines) + "\n")


MAKERS = {"man": make_manual, "completion": make_completion, "reference": make_reference}

if __name__ == "__main__":
    main()
