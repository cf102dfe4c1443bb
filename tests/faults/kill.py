"""Runs that are killed, and runs that are asked to stop.

After SIGKILL the same command is run again: it must succeed and leave what an undisturbed run leaves, and nothing else.
Where the killed run had put its results in place, what a second undisturbed run does is right, too: a second extraction,
say, is refused. After SIGINT and SIGTERM everything is as before, or complete.
"""
import classify
import trace
from scenarios import all_scenarios

COLUMNS = ("calls", "runs", "right", "rerun failed", "rerun wrong", "untold", "wrong code", *classify.CLASSES)
EVERY_CALL = {"prepare page, existing", "rebuild page, existing", "rtf extract"}
INTERRUPTED = {"INT": (130,), "TERM": (130, 143)}
QUICK_STEP = 10


def scenarios():
    return [scenario for scenario in all_scenarios() if scenario.writes]


def jobs(stage, calls, options):
    killed = calls if stage.scenario.name in EVERY_CALL else calls[::2]
    everything = ([(call, "KILL") for call in killed] + [(call, "INT") for call in calls[::3]] +
                  [(call, "TERM") for call in calls[1::3]])
    return everything[::QUICK_STEP] if options.quick else everything


def run_job(stage, job):
    call, name = job
    run = stage.run(trace.signal_at_call(stage.sandbox, call, name))
    now = stage.sandbox.snapshot()
    if name == "KILL":
        if run.code != -9:
            raise RuntimeError(f"{stage.scenario.name}: call {call.number} ({call.text}) was not reached")
        faults, run = _after_kill(stage, now)
    else:
        faults = _after_request(stage, run, now, INTERRUPTED[name])
    return None if faults else "right", [
        {"class": kind, "details": details, "error": "SIG" + name, "failed": call.text, "exit": run.code,
         "output": run.output, "errors": run.errors} for kind, details in faults]


def _after_request(stage, run, now, codes):
    faults = classify.crash_faults(run) if run.code not in codes else []
    if not faults and run.code not in (*codes, stage.undisturbed.code):
        faults.append(("wrong code", f"exit code {run.code}"))
    faults += classify.state_faults(stage, now, run.code == stage.undisturbed.code, run.errors)
    if run.code != stage.undisturbed.code and not run.errors.strip():
        faults.append(("silent", f"exit code {run.code}"))
    return faults


def _after_kill(stage, killed):
    run = stage.sandbox.run(stage.arguments)
    now = stage.sandbox.snapshot()
    owns_home = stage.scenario.owns_home
    faults = classify.crash_faults(run)
    allowed = [(stage.undisturbed.code, stage.after)]
    if classify.differences(stage.before, killed):
        allowed.append(second_run(stage))
    left = classify.extra_files(now, stage.before, *(after for _, after in allowed))
    own = classify.without(classify.files(now, owns_home), left)
    if left:
        faults.append(("leftover", "after the next run: " + ", ".join(left)))
    elif classify.extra_files(killed, stage.before, stage.after) and not run.errors.strip():
        faults.append(("untold", "the next run cleared up without a word"))
    if not any(code == run.code and not classify.differences(classify.files(after, owns_home), own)
               for code, after in allowed):
        wrong = classify.differences(classify.files(stage.after, owns_home), own)
        kind = "rerun wrong" if run.code == stage.undisturbed.code else "rerun failed"
        faults.append((kind, "; ".join(f"{path}: {how}" for path, how in wrong)))
    return faults, run


def second_run(stage):
    """(exit code, state) of the command run once more after an undisturbed run."""
    if not hasattr(stage, "second"):
        sandbox = stage.sandbox
        kept = sandbox.snapshot()
        sandbox.restore(stage.after)
        run = sandbox.run(stage.arguments)
        stage.second = run.code, sandbox.snapshot()
        sandbox.restore(kept)
    return stage.second
