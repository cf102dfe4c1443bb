"""A disk of 1 MB, at 15 levels from full to enough: what is there stays, what comes is whole.

The disk is real: a small file system in a mount namespace of our own (run.py goes there before it starts a worker). The
temporary folder lies on it, or elsewhere.
"""
import os
import subprocess

import classify
import documents
import scenarios as common
from sandbox import Sandbox

COLUMNS = ("runs", "survived", "failed, whole", *classify.CLASSES)
PAGE = 4096  # what a file takes at least, and at a time
LEVELS = 15
LINES = 60


def scenarios():
    return [scenario for scenario in common.all_scenarios() if scenario.writes or scenario.verb == "verify"]


def make_sandboxes(root, kavo):
    disk = f"{root}/disk"
    os.makedirs(disk)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "kavo-faults", disk], check=True)
    os.makedirs(f"{root}/other")
    return [SmallDisk(disk, f"{root}/disk", f"{disk}/tmp", kavo), SmallDisk(disk, f"{root}/disk", f"{root}/tmp", kavo)]


class Stage(common.Stage):
    """With documents of several pages each, so that there are levels between none and enough."""

    def __init__(self, sandbox, scenario):
        documents.lines = LINES
        try:
            super().__init__(sandbox, scenario)
        finally:
            documents.lines = 0


class SmallDisk(Sandbox):
    def __init__(self, disk, root, tmp, kavo):
        super().__init__(root, kavo, tmp)
        self.disk = disk
        self.tmp_is_there = tmp.startswith(disk)

    def restore(self, wanted):
        filler = f"{self.disk}/filler"
        if os.path.exists(filler):
            os.unlink(filler)
        super().restore(wanted)

    def leave_free(self, pages):
        status = os.statvfs(self.disk)
        taken = status.f_bfree * status.f_bsize - pages * PAGE
        if taken <= 0:
            return
        file = os.open(f"{self.disk}/filler", os.O_WRONLY | os.O_CREAT, 0o600)
        os.posix_fallocate(file, 0, taken)
        os.close(file)


def _run_with(stage, pages):
    stage.sandbox.restore(stage.before)
    stage.sandbox.leave_free(pages)
    run = stage.sandbox.run(stage.arguments)
    return run, stage.sandbox.snapshot()


def jobs(stage, calls, options):
    """The numbers of free pages: from none to what the run needs."""
    del calls
    def is_enough(pages):
        run, now = _run_with(stage, pages)
        return run.code == stage.undisturbed.code and now == stage.after
    low, high = -1, 1
    while not is_enough(high):
        low, high = high, high * 2
        if high > 200:
            raise RuntimeError(f"{stage.scenario.name}: no space is enough")
    while high - low > 1:
        middle = (low + high) // 2
        low, high = (low, middle) if is_enough(middle) else (middle, high)
    levels = sorted({round(high * level / (LEVELS - 1)) for level in range(LEVELS)})
    return levels[::4] if options.quick else levels


def run_job(stage, pages):
    run, now = _run_with(stage, pages)
    faults = classify.faults_of(stage, run, now, "ENOSPC")
    place = "there" if stage.sandbox.tmp_is_there else "elsewhere"
    column = "survived" if run.code == stage.undisturbed.code else "failed, whole"
    return None if faults else column, [
        {"class": kind, "details": details, "error": "ENOSPC",
         "failed": f"{pages} pages free, temporary folder {place}", "exit": run.code,
         "output": run.output, "errors": run.errors} for kind, details in faults]
