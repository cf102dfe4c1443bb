"""Every file-related call of every verb, failing once.

A call that changes something fails with each error that it can give. Most calls only look or read, dozens of times at
the same file; they take their errors in turn (with --all each fails with every one). Of verbs with very many calls, two
of each call site fail (trace.calls_to_disturb).
"""
import classify
import trace
from scenarios import all_scenarios

COLUMNS = ("calls", "runs", "survived", "failed, whole", *classify.CLASSES)


def scenarios():
    return all_scenarios()


def jobs(stage, calls, options):
    chosen = trace.calls_to_disturb(stage, calls, options)
    return [(call, error) for call in chosen for error in _errors_of(call, options)][::options.step]


def _errors_of(call, options):
    errors = call.errors()
    if options.all or call.is_change or len(errors) < 2:
        return errors
    return (errors[call.number % len(errors)],)


def run_job(stage, job):
    """(column, violations) of one run."""
    call, error = job
    run = stage.run(trace.fail_call(stage.sandbox, call, error))
    line = trace.failed_line(stage.sandbox)
    if not line:
        raise RuntimeError(f"{stage.scenario.name}: call {call.number} ({call.text}) was not reached")
    now = stage.sandbox.snapshot()
    faults = classify.faults_of(stage, run, now, error, call)
    column = "survived" if run.code == stage.undisturbed.code else "failed, whole"
    return None if faults else column, [
        {"class": kind, "details": details, "error": error, "failed": line, "exit": run.code,
         "output": run.output, "errors": run.errors} for kind, details in faults]
