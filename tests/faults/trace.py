"""System calls: which ones a run makes, and how to make one of them fail."""
import os
import re
from dataclasses import dataclass

# The calls that a file or folder goes through, with the errors that each can give.
_LOOK = ("EIO", "EACCES")
_MAKE = ("EIO", "EACCES", "ENOSPC")
ERRORS = {
    "open": ("EIO", "EACCES", "EMFILE"), "openat": ("EIO", "EACCES", "EMFILE"), "openat2": ("EIO", "EACCES", "EMFILE"),
    "creat": ("EIO", "EACCES", "EMFILE", "ENOSPC"),
    "stat": _LOOK, "lstat": _LOOK, "fstat": ("EIO",), "newfstatat": _LOOK, "statx": _LOOK,
    "statfs": ("EIO",), "fstatfs": ("EIO",), "access": _LOOK, "faccessat": _LOOK, "faccessat2": _LOOK,
    "readlink": _LOOK, "readlinkat": _LOOK, "getcwd": ("EACCES",), "chdir": _LOOK, "fchdir": _LOOK,
    "getdents64": ("EIO",), "read": ("EIO",), "pread64": ("EIO",), "readv": ("EIO",), "lseek": ("EIO",),
    "write": ("EIO", "ENOSPC"), "pwrite64": ("EIO", "ENOSPC"), "writev": ("EIO", "ENOSPC"),
    "copy_file_range": ("EIO", "ENOSPC"), "sendfile": ("EIO", "ENOSPC"), "fallocate": ("EIO", "ENOSPC"),
    "ftruncate": ("EIO", "EACCES"), "truncate": ("EIO", "EACCES"), "close": ("EIO",),
    "fsync": ("EIO", "ENOSPC"), "fdatasync": ("EIO", "ENOSPC"), "sync_file_range": ("EIO", "ENOSPC"),
    "syncfs": ("EIO", "ENOSPC"),
    "rename": _MAKE, "renameat": _MAKE, "renameat2": _MAKE, "link": _MAKE, "linkat": _MAKE, "symlink": _MAKE,
    "symlinkat": _MAKE, "mkdir": _MAKE, "mkdirat": _MAKE, "unlink": _LOOK, "unlinkat": _LOOK, "rmdir": _LOOK,
    "chmod": _LOOK, "fchmod": ("EIO", "EPERM"), "fchmodat": _LOOK, "chown": ("EIO", "EPERM"),
    "fchown": ("EIO", "EPERM"), "lchown": ("EIO", "EPERM"), "fchownat": ("EIO", "EPERM"), "utimensat": _LOOK,
    "flock": ("EIO", "ENOLCK"), "fcntl": (), "dup": ("EMFILE",), "dup2": ("EMFILE",), "dup3": ("EMFILE",),
}

# Calls that change what is on the disk. Kills between two of these leave the same files.
_CHANGING = {"creat", "write", "pwrite64", "writev", "copy_file_range", "sendfile", "fallocate", "ftruncate",
             "truncate", "rename", "renameat", "renameat2", "link", "linkat", "symlink", "symlinkat", "mkdir",
             "mkdirat", "unlink", "unlinkat", "rmdir", "chmod", "fchmod", "fchmodat", "chown", "fchown", "lchown",
             "fchownat"}

# The dynamic loader runs before main(); what main() does first is to say what becomes of signals.
_FIRST_OF_MAIN = "rt_sigaction"

_LINE = re.compile(r"^(\d+) +([a-z_0-9]+)\((.*)$")
_FRAME = re.compile(r"^ > (.*?)\(.*\[(0x[0-9a-f]+)\]$")

# Verbs that work on copies make thousands of calls, and a run with many calls is slow, since each call of the failing
# one's name stops it. Of calls that come from one place in the program, the first and the last one stand for all.
MANY_CALLS = 3000
SITE_DEPTH = 6  # functions of the program: the adapter to the system, what stages files, and who wants what
_STACKS_SECONDS = 600  # a run takes a minute or two when each call's stack is read


@dataclass
class Call:
    """The `nth` call of its name in the process: what strace counts."""
    number: int  # among the calls of main(), from 1
    name: str
    nth: int
    text: str  # as strace shows it, with the paths of descriptors
    site: tuple = ()  # where it comes from: addresses in the program, where stacks were read

    def errors(self):
        errors = ERRORS[self.name]
        if self.name.startswith("open") and "O_CREAT" in self.text:
            errors += ("ENOSPC",)
        if self.name == "fcntl" and ("F_SETLK" in self.text or "F_OFD_SETLK" in self.text):
            errors = ("ENOLCK",)
        return errors

    @property
    def is_change(self):
        """Whether it changed what is on the disk."""
        if self.descriptor or re.search(r"= -1 E[A-Z]+ \(", self.text):
            return False
        return self.name in _CHANGING or (self.name.startswith("open") and ("O_CREAT" in self.text or
                                                                            "O_TRUNC" in self.text))

    @property
    def descriptor(self):
        """The number of the standard stream that is written, or None."""
        found = re.match(r"write\(([12])(<|,)", self.text)
        return int(found.group(1)) if found else None

    @property
    def path(self):
        """The last name of the path that the call works on, "" when it has none."""
        paths = []
        if self.name not in ("read", "readv", "pread64", "write", "writev", "pwrite64"):
            paths = [path for path in re.findall(r'"((?:[^"\\]|\\.)*)"', self.text)[:1] if path]
        paths = paths or re.findall(r"\(\d+<([^>]*)>", self.text)
        return os.path.basename(paths[0]) if paths else ""


def strace(log, *options):
    return ["strace", "-f", "-qq", "-o", log, "-e", "signal=none", *options, "--"]


def watch(sandbox, arguments, with_stacks=False):
    """Runs the command undisturbed; its Run, and the file-related calls that main() makes."""
    names = ",".join(f"?{name}" for name in (*ERRORS, _FIRST_OF_MAIN))
    stacks = ("-k",) if with_stacks else ()
    run = sandbox.run(arguments, strace(sandbox.log, *stacks, "-y", "-s", "80", "-e", f"trace={names}"),
                      seconds=_STACKS_SECONDS)
    with open(sandbox.log, encoding="utf-8", errors="replace") as file:
        return run, calls_in(file.read(), os.path.basename(sandbox.kavo))


def calls_to_disturb(stage, calls, options):
    """All calls, or of very many the first and the last one of each site (--all takes all)."""
    if len(calls) <= MANY_CALLS or options.all:
        return calls
    if not hasattr(stage, "call_of_each_site"):
        stage.sandbox.restore(stage.before)
        sites = {}
        for call in watch(stage.sandbox, stage.arguments, with_stacks=True)[1]:
            sites.setdefault((call.name, call.site), []).append(call.number)
        numbers = {number for found in sites.values() for number in (found[0], found[-1])}
        stage.call_of_each_site = [call for call in calls if call.number in numbers]
        stage.sites = len(sites)
    return stage.call_of_each_site


def calls_in(log, program=""):
    counts, calls, first_process, in_main, traced = {}, [], None, False, None
    for line in log.splitlines():
        frame = _FRAME.match(line)
        if frame and traced and os.path.basename(frame.group(1)) == program and len(traced.site) < SITE_DEPTH:
            traced.site += (frame.group(2),)
        found = _LINE.match(line)
        if not found:
            continue
        traced = None
        process, name, _ = found.groups()
        first_process = first_process or process
        if process != first_process:
            raise RuntimeError("the command has a second thread or process, whose calls are counted apart: " + line)
        if name == _FIRST_OF_MAIN:
            in_main = True
            continue
        counts[name] = counts.get(name, 0) + 1
        if in_main:
            traced = Call(len(calls) + 1, name, counts[name], line.split(" ", 1)[1].strip())
            calls.append(traced)
    if not in_main:
        raise RuntimeError("the beginning of main() was not found")
    return calls


def fail_call(sandbox, call, error):
    """The words before a command that make one of its calls fail."""
    # Only calls of that name stop the program, which makes it fast.
    return strace(sandbox.log, "--seccomp-bpf", "-e", f"trace={call.name}",
                  "-e", f"inject={call.name}:error={error}:when={call.nth}")


def signal_at_call(sandbox, call, signal_name):
    """The same for a signal as the call begins. SIGKILL ends the program before the call does anything."""
    # Without the seccomp filter: behind it strace's signal is lost.
    return strace(sandbox.log, "-e", f"trace={call.name}",
                  "-e", f"inject={call.name}:signal={signal_name}:when={call.nth}")


def slow_down(sandbox, microseconds):
    """The same for a run that rests behind each change on the disk, so that another meets it there."""
    names = ",".join(f"?{name}" for name in sorted(_CHANGING - {"write"}))
    return strace(sandbox.log, "--seccomp-bpf", "-e", f"trace={names}",
                  "-e", f"inject={names}:delay_exit={microseconds}")


def failed_line(sandbox):
    """What the last run's log says of the call that failed, "" when none did."""
    with open(sandbox.log, encoding="utf-8", errors="replace") as file:
        for line in file:
            if "(INJECTED)" in line:
                return line.split(" ", 1)[1].strip()
    return ""
