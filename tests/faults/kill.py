"""Runs that are killed, and runs that are asked to stop.

After SIGKILL the same command is run again: it must succeed and leave what an undisturbed run leaves, and nothing
else. Where the killed run had put its results in place, what a second undisturbed run does is right, too: a second
extraction, say, is refused. The run that clears up is itself killed, or one of its calls fails; then a third one must
succeed. And a verb that reads what the killed one wrote must find the old documents or the new ones. After SIGINT and
SIGTERM everything is as before, or complete.
"""
import random
import re

import classify
import trace
from scenarios import all_scenarios

COLUMNS = ("calls", "runs", "right", "rerun failed", "rerun wrong", "untold", "wrong code", *classify.CLASSES)
EVERY_CALL = {"prepare page, existing", "rebuild page, existing", "rtf extract"}
INTERRUPTED = {"INT": (130,), "TERM": (130, 143)}
TOLD = re.compile(r"stopped|is back")  # what a run says that clears up


def scenarios():
    return [scenario for scenario in all_scenarios() if scenario.writes or scenario.verb == "verify"]


def jobs(stage, calls, options):
    calls = trace.calls_to_disturb(stage, calls, options)
    killed = calls if stage.scenario.name in EVERY_CALL else calls[::2]
    changes = [call for call in calls if call.is_change]
    readers = [(call, "KILL, then read") for call in changes] if stage.scenario.reader else []
    everything = ([(call, "KILL") for call in killed] + [(call, "INT") for call in calls[::3]] +
                  [(call, "TERM") for call in calls[1::3]] + [(call, "KILL, KILL") for call in changes] +
                  [(call, "KILL, then fail") for call in changes] + readers)
    return everything[::options.step]


def run_job(stage, job):
    call, name = job
    what = name.split(",")[0]
    run = stage.run(trace.signal_at_call(stage.sandbox, call, what))
    now = stage.sandbox.snapshot()
    then = ""
    if what != "KILL":
        faults = _after_request(stage, run, now, INTERRUPTED[name])
    elif run.code != -9:
        raise RuntimeError(f"{stage.scenario.name}: call {call.number} ({call.text}) was not reached")
    elif name == "KILL, then read":
        faults, run = _after_kill_by_reader(stage)
    else:
        if name != "KILL":
            then = _disturb_again(stage, now, name, random.Random(f"{stage.scenario.name} {call.number}"))
        # A call that fails may cost a file its permissions, with a message; the next run cannot know them.
        faults, run = after_kill(stage, with_modes=name != "KILL, then fail")
    return None if faults else "right", [
        {"class": kind, "details": details, "error": "SIG" + name, "failed": call.text + then, "exit": run.code,
         "output": run.output, "errors": run.errors} for kind, details in faults]


def _after_request(stage, run, now, codes):
    faults = classify.crash_faults(run) if run.code not in codes else []
    if not faults and run.code not in (*codes, stage.undisturbed.code):
        faults.append(("wrong code", f"exit code {run.code}"))
    faults += classify.state_faults(stage, now, run.code == stage.undisturbed.code, run.errors)
    if run.code != stage.undisturbed.code and not run.errors.strip():
        faults.append(("silent", f"exit code {run.code}"))
    return faults


def _disturb_again(stage, killed, name, source):
    """Kills the run behind a killed one, or lets it fail; what was done."""
    calls = [call for call in trace.watch(stage.sandbox, stage.arguments)[1] if call.is_change]
    call = source.choice(calls)
    stage.sandbox.restore(killed)
    if name == "KILL, KILL":
        stage.sandbox.run(stage.arguments, trace.signal_at_call(stage.sandbox, call, "KILL"))
    else:
        stage.sandbox.run(stage.arguments, trace.fail_call(stage.sandbox, call, "EIO"))
    return f"; then call {call.number}: {call.text}"


def _after_kill_by_reader(stage):
    """A verb that reads the documents must do with them what it does with the old ones or with the new ones."""
    killed = stage.sandbox.snapshot()
    reader = stage.reader_arguments()
    if not hasattr(stage, "read"):
        stage.read = []
        for state in (stage.before, stage.after):
            stage.sandbox.restore(state)
            run = stage.sandbox.run(reader)
            own = classify.files(stage.sandbox.snapshot(), stage.scenario.owns_home)
            stage.read.append((run.code, run.output, own))
        stage.sandbox.restore(killed)
    run = stage.sandbox.run(reader)
    now = classify.files(stage.sandbox.snapshot(), stage.scenario.owns_home)
    known = {path for _, _, state in stage.read for path in state}
    left = [path for path in now if path not in known]
    own = classify.without(now, left)
    faults = classify.crash_faults(run)
    if left:
        faults.append(("leftover", f"after {reader[0]}: " + ", ".join(left)))
    if stage.scenario.is_tree:
        old, new = (state for _, _, state in stage.read)
        right = run.code == stage.read[1][0] and not classify.differences(classify.sets_wanted(old, new, own), own)
    else:
        right = (run.code, run.output, own) in stage.read
    if not right:
        wrong = [f"{path}: {how}" for path, how in classify.differences(stage.read[1][2], own)]
        faults.append(("mixed", f"{' '.join(reader)}: exit code {run.code}, of the new ones {stage.read[1][0]}; " +
                       "; ".join(wrong)))
    return faults, run


def after_kill(stage, with_modes):
    killed = stage.sandbox.snapshot()
    run = stage.sandbox.run(stage.arguments)
    now = stage.sandbox.snapshot()
    owns_home = stage.scenario.owns_home
    faults = classify.crash_faults(run)
    allowed = [(stage.undisturbed.code, stage.after)]
    if classify.differences(stage.before, killed):
        allowed += later_runs(stage)
    left = classify.extra_files(now, stage.before, *(after for _, after in allowed))
    own = classify.without(classify.files(now, owns_home), left)
    if left:
        faults.append(("leftover", "after the next run: " + ", ".join(left)))
    elif _clutters(stage, killed) and not TOLD.search(run.errors):
        faults.append(("untold", "the next run cleared up without a word"))

    def wrong_of(after):
        return [(path, how) for path, how in classify.differences(classify.files(after, owns_home), own)
                if with_modes or not how.startswith("mode")]
    if not any(code == run.code and not wrong_of(after) for code, after in allowed):
        wrong = wrong_of(stage.after)
        kind = "rerun wrong" if run.code == stage.undisturbed.code else "rerun failed"
        faults.append((kind, "; ".join(f"{path}: {how}" for path, how in wrong)))
    return faults, run


def _clutters(stage, killed):
    """Whether files lie about where people look. Of the settings' own scratch file nobody needs to hear."""
    return any(not path.startswith("home/") for path in classify.extra_files(killed, stage.before, stage.after))


def later_runs(stage):
    """(exit code, state) of the command run for a second and a third time, undisturbed."""
    if not hasattr(stage, "later"):
        sandbox = stage.sandbox
        kept = sandbox.snapshot()
        sandbox.restore(stage.after)
        stage.later = [(sandbox.run(stage.arguments).code, sandbox.snapshot()) for _ in range(2)]
        sandbox.restore(kept)
    return stage.later
