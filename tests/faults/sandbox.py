"""A folder of its own for one worker: documents, the user's settings and temporary files, restored before each run."""
import os
import select
import shutil
import signal
import stat
import time
from dataclasses import dataclass

HANG_SECONDS = 20  # longer than a run waits for another run's lock


@dataclass(frozen=True)
class Entry:
    """A file, folder or link: what must be equal before and after."""
    kind: int
    mode: int
    content: bytes

    @property
    def is_folder(self):
        return stat.S_ISDIR(self.kind)


@dataclass
class Run:
    """What came of one run of the command."""
    code: int  # the exit code, or minus the signal that ended it
    output: str
    errors: str
    is_hanging: bool = False


class Sandbox:
    """`docs` is the folder of the run, `home` the user's, `tmp` the temporary one (which may lie elsewhere)."""

    PARTS = ("docs", "home", "tmp")

    def __init__(self, root, kavo, tmp=None):
        self.root = root
        self.kavo = kavo
        self.folders = {"docs": f"{root}/docs", "home": f"{root}/home", "tmp": tmp or f"{root}/tmp"}
        self.log = f"{root}.log"
        self.outputs = (f"{root}.out", f"{root}.err")
        for folder in self.folders.values():
            os.makedirs(folder, exist_ok=True)
        self.environment = {"PATH": os.environ["PATH"], "HOME": self.folders["home"], "TMPDIR": self.folders["tmp"],
                            "LANG": "C.UTF-8"}

    # Snapshots: a dictionary of "docs/name" and Entry.

    def snapshot(self):
        entries = {}
        for part in self.PARTS:
            self._scan(self.folders[part], part, entries)
        return entries

    def _scan(self, folder, name, entries):
        with os.scandir(folder) as listing:
            for item in listing:
                status = item.stat(follow_symlinks=False)
                path = f"{name}/{item.name}"
                kind, mode = stat.S_IFMT(status.st_mode), stat.S_IMODE(status.st_mode)
                if stat.S_ISDIR(kind):
                    entries[path] = Entry(kind, mode, b"")
                    self._scan(item.path, path, entries)
                elif stat.S_ISLNK(kind):
                    entries[path] = Entry(kind, mode, os.fsencode(os.readlink(item.path)))
                else:
                    with open(item.path, "rb") as file:
                        entries[path] = Entry(kind, mode, file.read())

    def path(self, name):
        part, _, rest = name.partition("/")
        return f"{self.folders[part]}/{rest}"

    def restore(self, wanted):
        """Makes the folders hold exactly what the snapshot says."""
        now = self.snapshot()
        for name in sorted(now, reverse=True):
            if now[name] == wanted.get(name):
                continue
            path = self.path(name)
            if now[name].is_folder:
                if name not in wanted:
                    shutil.rmtree(path, ignore_errors=True)
            elif os.path.lexists(path):
                os.unlink(path)
        for name in sorted(wanted):
            entry = wanted[name]
            if now.get(name) == entry:
                continue
            path = self.path(name)
            if entry.is_folder:
                os.makedirs(path, exist_ok=True)
            elif stat.S_ISLNK(entry.kind):
                os.symlink(os.fsdecode(entry.content), path)
                continue
            else:
                with open(path, "wb") as file:
                    file.write(entry.content)
            os.chmod(path, entry.mode)

    def write(self, name, content, mode=0o640):
        """A document of the user's. Its permissions are not the usual ones, so that their loss is seen."""
        path = f"{self.folders['docs']}/{name}"
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        os.chmod(path, mode)

    def read(self, name):
        with open(f"{self.folders['docs']}/{name}", "rb") as file:
            return file.read()

    # Runs.

    def start(self, arguments, prefix=(), outputs=None):
        """Starts the command in the folder of the documents and returns its process id."""
        command = [*prefix, self.kavo, *arguments]
        files = [(os.POSIX_SPAWN_OPEN, number, path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)
                 for number, path in zip((1, 2), outputs or self.outputs)]
        files.insert(0, (os.POSIX_SPAWN_OPEN, 0, "/dev/null", os.O_RDONLY, 0))
        os.chdir(self.folders["docs"])
        return os.posix_spawnp(command[0], command, self.environment, file_actions=files,
                               setsigdef=[signal.SIGPIPE, signal.SIGINT, signal.SIGTERM])

    def finish(self, process, outputs=None, seconds=HANG_SECONDS):
        """Waits for a run that start() began."""
        is_hanging = not wait_at_most(process, seconds)
        if is_hanging:
            # strace takes the program with it only when it is asked politely; a child that is left is killed, too.
            for child in children_of(process):
                os.kill(child, signal.SIGKILL)
            time.sleep(0.05)
            if not wait_at_most(process, 1):
                os.kill(process, signal.SIGKILL)
        code = os.waitstatus_to_exitcode(os.waitpid(process, 0)[1])
        texts = []
        for path in outputs or self.outputs:
            with open(path, "rb") as file:
                texts.append(file.read().decode("utf-8", "replace"))
        return Run(code, texts[0], texts[1], is_hanging)

    def run(self, arguments, prefix=(), seconds=HANG_SECONDS):
        return self.finish(self.start(arguments, prefix), seconds=seconds)


def wait_at_most(process, seconds):
    """True when the process has ended in time. It must still be waited for."""
    handle = os.pidfd_open(process)
    try:
        return bool(select.select([handle], [], [], seconds)[0])
    finally:
        os.close(handle)


def children_of(process):
    try:
        with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as file:
            return [int(child) for child in file.read().split()]
    except OSError:
        return []
