"""Memory that runs out: allocations of every verb fail.

One allocation fails, and the command gets by with the memory that it keeps back; or memory is short twice in a row,
when that is gone, too; or from then on. failing_new, which is loaded in front of the command, does this.
"""
import os

import classify
import kill
from scenarios import all_scenarios

COLUMNS = ("runs", "survived", "failed, whole", "rerun failed", "rerun wrong", "untold", *classify.CLASSES)
COUNTS = {"once": 1, "twice": 2, "from then on": 10**9}
MOST = 900  # runs of a scenario, evenly spread (--all lifts this)
ALL_OF_START_UP = "prepare page"  # which is the same for all verbs
LIBRARY = "tests/cli/libfailing_new.so"  # in the folder of the build

library = None  # set by run.py


def scenarios():
    return all_scenarios()


def _prefix(number, count, count_file=None):
    words = ["env", f"LD_PRELOAD={library}", f"KAVO_FAILING_NEW={number}", f"KAVO_FAILING_COUNT={count}"]
    return words + ([f"KAVO_COUNT_OF_NEW={count_file}"] if count_file else [])


def _allocations(stage, *more):
    stage.sandbox.restore(stage.before)
    stage.sandbox.run([*stage.arguments, *more], _prefix(0, 1, stage.sandbox.log))
    with open(stage.sandbox.log, encoding="ascii") as file:
        return int(file.read())


def jobs(stage, calls, options):
    """Pairs of an allocation and of how often it fails."""
    del calls
    # What a command line takes that is refused: until then no file is worked on that a message could name.
    stage.start_up = _allocations(stage, "--no-such-option")
    total = _allocations(stage)
    first = 1 if stage.scenario.name == ALL_OF_START_UP else stage.start_up
    everything = [(number, name) for number in range(first, total + 1) for name in COUNTS]
    if len(everything) > MOST and not options.all:
        everything = [everything[i * len(everything) // MOST] for i in range(MOST)]
    return everything[::options.step]


def _faults_of_next_run(stage, faults):
    """Without any memory nobody can clear up: what stays is judged like what a killed run leaves, by the next run.

    Nor can it always be done when memory is short twice: destroying a JSON value allocates, which ends the program.
    """
    mended = [fault for fault in faults if fault[0] not in ("leftover", "lost", "mixed", "permissions")]
    return mended + kill.after_kill(stage, with_modes=True)[0]


def run_job(stage, job):
    number, name = job
    run = stage.run(_prefix(number, COUNTS[name]))
    faults = classify.faults_of(stage, run, stage.sandbox.snapshot(), "ENOMEM")
    if number <= stage.start_up or stage.scenario.owns_home:
        faults = [fault for fault in faults if fault[0] != "unnamed"]
    if name != "once" and any(kind == "leftover" for kind, _ in faults):
        faults = _faults_of_next_run(stage, faults)
    column = "survived" if run.code == stage.undisturbed.code else "failed, whole"
    return None if faults else column, [
        {"class": kind, "details": details, "error": "ENOMEM", "failed": f"allocation {number}, {name}",
         "exit": run.code, "output": run.output, "errors": run.errors} for kind, details in faults]
