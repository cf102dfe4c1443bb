"""What a disturbed run did, by classes."""
import json
import os
import re

# class -> what it says, in the order of the tables
CLASSES = {
    "incomplete": "exit code of success, and a result that is missing or different",
    "lost": "failed, and a file that was there before is missing or is neither the old nor the new one",
    "mixed": "failed, and some files are new while others are old",
    "permissions": "a file has other permissions than it should",
    "leftover": "files stay behind that no message names",
    "silent": "failed without a message",
    "unnamed": "failed, and the message names no file",
    "no cause": "failed, and the message does not give the system's reason",
    "crash": "ended by a signal or in terminate()",
    "hang": "did not end",
}

_CAUSES = {"EIO": "Input/output error", "EACCES": "Permission denied", "EPERM": "Operation not permitted",
           "EMFILE": "Too many open files", "ENOSPC": "No space left on device", "ENOLCK": "No locks available",
           "ENOMEM": "not enough memory"}


def names_of(path):
    """The name of a file and of its folders inside of the part: any of them in a message names it."""
    return path.split("/")[1:]


def is_own(path, owns_home):
    """Whether that file must be as it was: a document, and the settings where they are the result."""
    return path.startswith("docs/") or (owns_home and path.endswith("/registry.json"))


def extra_files(now, *known):
    """Files that none of the known states has. In the user's folder only scratch files count: a run may be the first
    that stores settings."""
    return [path for path in now if not any(path in state for state in known) and
            (not path.startswith("home/") or ".kavo-" in path)]


def leftovers(stage, now):
    """Files that are neither of the state before nor of the result. A folder counts once, with all that it holds."""
    extra = extra_files(now, stage.before, stage.after)
    return [path for path in extra if os.path.dirname(path) not in extra]


def files(snapshot, owns_home):
    return {path: entry for path, entry in snapshot.items() if is_own(path, owns_home)}


def without(snapshot, paths):
    return {path: entry for path, entry in snapshot.items()
            if not any(path == one or path.startswith(one + "/") for one in paths)}


def contents(snapshot):
    return {path: (entry.kind, entry.content) for path, entry in snapshot.items()}


def differences(wanted, now):
    """(path, how) for each file that is not as wanted; modes last."""
    found = []
    for path in sorted(wanted.keys() | now.keys()):
        if path not in now:
            found.append((path, "missing"))
        elif path not in wanted:
            found.append((path, "new"))
        elif (wanted[path].kind, wanted[path].content) != (now[path].kind, now[path].content):
            found.append((path, f"different ({len(wanted[path].content)} bytes, now {len(now[path].content)})"))
        elif wanted[path].mode != now[path].mode:
            found.append((path, f"mode {wanted[path].mode:o}, now {now[path].mode:o}"))
    return found


def sets_wanted(before, after, left):
    """Of several sets of documents, a folder each, those that were done before a failure are the new ones."""
    def of_set(snapshot, name):
        return {path: entry for path, entry in snapshot.items()
                if name == (path if entry.is_folder else os.path.dirname(path) + "/*")}
    wanted = {}
    for path, entry in {**before, **after}.items():
        name = path if entry.is_folder else os.path.dirname(path) + "/*"
        new = of_set(after, name)
        wanted.update(new if contents(of_set(left, name)) == contents(new) else of_set(before, name))
    return wanted


def is_manifest_of_done(path, left):
    """Whether a manifest lists exactly the bilingual documents that are there."""
    if os.path.basename(path) != "manifest.json" or path not in left:
        return False
    top = os.path.dirname(path) + "/"
    listed = {top + document for languages in json.loads(left[path].content)["files"].values()
              for entry in languages.values() for document in entry["documents"]}
    return listed == {file for file in left if file.startswith(top) and file.endswith(".tud")}


def state_faults(stage, now, succeeded, errors):
    """Faults of the files that a run left. Its messages may name what stays behind, or what lost its permissions."""
    owns_home = stage.scenario.owns_home
    before, after = files(stage.before, owns_home), files(stage.after, owns_home)
    extra = leftovers(stage, now)
    left = without(files(now, owns_home), extra)
    if stage.scenario.is_tree and not succeeded:
        wanted = sets_wanted(before, after, left)
        wanted.update({path: left[path] for path in left if is_manifest_of_done(path, left)})
    else:
        wanted = after if succeeded or contents(left) == contents(after) else before
    faults = []
    unnamed = [path for path in extra if not any(name in errors for name in names_of(path))]
    if unnamed:
        faults.append(("leftover", ", ".join(unnamed)))
    wrong = differences(wanted, left)
    by_mode = [f"{path}: {how}" for path, how in wrong if how.startswith("mode") and
               not (succeeded and os.path.basename(path) in errors)]
    if by_mode:
        faults.append(("permissions", "; ".join(by_mode)))
    wrong = [(path, how) for path, how in wrong if not how.startswith("mode")]
    if not wrong:
        return faults
    if succeeded:
        return faults + [("incomplete", "; ".join(f"{path}: {how}" for path, how in wrong))]
    lost, mixed = [], []
    for path, how in wrong:
        same_as_result = (path not in left and path not in after) or (
            path in left and path in after and left[path].content == after[path].content)
        if path in before and not same_as_result:
            lost.append(f"{path}: {how}")
        else:
            mixed.append(f"{path}: {'as in the result' if same_as_result else 'not whole'}")
    if lost:
        faults.append(("lost", "; ".join(lost)))
    if mixed:
        faults.append(("mixed", "; ".join(mixed)))
    return faults


def crash_faults(run):
    if run.is_hanging:
        return [("hang", "killed after the time limit")]
    if run.code < 0:
        return [("crash", f"signal {-run.code}")]
    if "terminate called" in run.errors or run.code >= 128:
        return [("crash", f"exit code {run.code}")]
    return []


def message_faults(stage, run, error, call=None):
    """Faults of the messages of a run that failed."""
    if call and call.descriptor == 2:
        return []  # there is nowhere to write to
    if not run.errors.strip():
        return [("silent", f"exit code {run.code}")]
    faults = []
    # Names match without regard to case, and some are told as they were put together.
    if not any(name.lower() in run.errors.lower() for name in _known_names(stage, call)):
        faults.append(("unnamed", run.errors.strip()))
    # The system does not say why a converter of its own cannot be loaded.
    is_told = "converter" in run.errors and "cannot be loaded" in run.errors
    if error and _CAUSES[error] not in run.errors and not is_told and not (call and call.descriptor == 1):
        faults.append(("no cause", run.errors.strip()))
    return faults


def _known_names(stage, call):
    if call and call.text.find(stage.sandbox.folders["home"] + "/") >= 0:
        # What fails here is the user's settings, whatever document the run was about.
        return {"registry.json", "registry.lock", stage.sandbox.folders["home"]}
    names = {name for path in (*stage.before, *stage.after) for name in names_of(path) if re.search(r"[._]", name)}
    if stage.scenario.is_tree:
        names |= {part for path in stage.after for part in path.split("/")[1:-1]}  # its folders
    names |= {stage.sandbox.folders["tmp"], stage.sandbox.folders["home"], stage.sandbox.folders["docs"]}
    if call and call.path:
        names.add(call.path)
    if call and call.descriptor == 1:
        names.add("standard output")
    names.add("kavo.json")  # the project file, which is looked for in every folder above, too
    if call and call.name == "getcwd":
        names.add("the current folder")  # nobody knows its name then
    return names


def faults_of(stage, run, now, error=None, call=None):
    """All faults of one run, as (class, details)."""
    faults = crash_faults(run)
    if faults:
        return faults + state_faults(stage, now, False, run.errors)
    succeeded = run.code == stage.undisturbed.code
    faults = state_faults(stage, now, succeeded, run.errors)
    if succeeded:
        is_told = error and _CAUSES[error] in run.output
        if run.output != stage.undisturbed.output and not is_told and not any(kind == "incomplete" for kind, _ in faults):
            faults.append(("incomplete", "the output is another one: " + run.output))
        return faults
    return faults + message_faults(stage, run, error, call)
